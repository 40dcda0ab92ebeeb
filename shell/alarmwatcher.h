#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace tv {
class Tdm;
}

namespace tv::shell {

// Where the reminder watcher starts. The watcher itself belongs to the
// agenda; it plugs in here with setAlarmWatcherStarter(). The shell decides
// whether it may run at all.
namespace alarms {

inline const QString kSqlDesactivar = QStringLiteral(" select DESACTIVAR_MENSAJES from configuracion ");

using Starter = std::function<void(Tdm& data, QWidget* mainWindow)>;
void setAlarmWatcherStarter(Starter starter);

// Not with "nohilos.txt" in the data folder; not when
// CONFIGURACION.DESACTIVAR_MENSAJES is "S".
bool permitido(Tdm& data);
// Runs the registered starter when allowed; true when one ran.
bool arrancar(Tdm& data, QWidget* mainWindow);

} // namespace alarms

} // namespace tv::shell
