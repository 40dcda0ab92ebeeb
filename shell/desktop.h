#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace tv::shell {

// The application folder (manual/, fondos/, informes/): TEJAVISTA_APP_DIR,
// the installed share folder, or the source tree of a build.
QString carpetaAplicacion();
// The user manual: the first PDF in manual/ (empty when there is none).
QString rutaManual();
// Opens the manual with the desktop's PDF viewer; false after a message.
bool abrirManual(QWidget* parent = nullptr);
// Starts the desktop's calculator; false after a message when none is installed.
bool abrirCalculadora(QWidget* parent = nullptr);

} // namespace tv::shell
