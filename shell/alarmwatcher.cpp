#include "alarmwatcher.h"

#include "datapath.h"
#include "dm.h"
#include "sqltext.h"

#include <QFileInfo>

namespace tv::shell::alarms {

namespace {

Starter& registered()
{
    static Starter s;
    return s;
}

} // namespace

void setAlarmWatcherStarter(Starter starter)
{
    registered() = std::move(starter);
}

bool permitido(Tdm& data)
{
    if (QFileInfo::exists(data.dataFolder() + QLatin1Char('/') + kNoThreadsMarker))
        return false;
    return !sql::isSet(Query::scalar(data.datos, data.Transacion, kSqlDesactivar));
}

bool arrancar(Tdm& data, QWidget* mainWindow)
{
    if (!registered() || !permitido(data))
        return false;
    registered()(data, mainWindow);
    return true;
}

} // namespace tv::shell::alarms
