#pragma once

#include <QString>
#include <QStringList>

namespace tv::shell {

// Commands whose screen is not part of this version yet. Each one answers
// with one information message naming the function. A later version that
// brings the screen removes its row and registers the command's handler in
// the main window.
const QStringList& comandosPendientes();
bool esPendiente(const QString& command);
// "La función «Inmuebles» todavía no está disponible en esta versión."
QString mensajePendiente(const QString& command);

} // namespace tv::shell
