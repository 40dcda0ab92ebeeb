#pragma once

#include <QString>
#include <QStringList>

namespace tv::shell {

// The commands the main window answers itself (leaving, the background, the
// desktop's calculator and manual...).
const QStringList& comandosDelShell();

// Commands of the ribbon whose screen is not part of this version yet: every
// button and menu entry that neither the shell nor the command table of the
// libraries answers. Each one answers with one information message naming
// the function; a library that brings the screen registers its command and
// the entry stops being pending by itself.
QStringList comandosPendientes();
bool esPendiente(const QString& command);
// "La función «Inmuebles» todavía no está disponible en esta versión."
QString mensajePendiente(const QString& command);

} // namespace tv::shell
