#include "settings.h"

#include <QSettings>

namespace tv::shell::settings {

namespace {

const char* const kIdioma = "general/idioma";
const char* const kFondo = "ventana/fondo";

QSettings store()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("tejavista"),
                     QStringLiteral("tejavista"));
}

} // namespace

int idioma()
{
    const int v = store().value(QLatin1String(kIdioma), 0).toInt();
    return (v == 0 || v == 1) ? v : 0;
}

void setIdioma(int index)
{
    store().setValue(QLatin1String(kIdioma), index);
}

QString fondo()
{
    return store().value(QLatin1String(kFondo), QStringLiteral("azul.jpg")).toString();
}

void setFondo(const QString& fileName)
{
    store().setValue(QLatin1String(kFondo), fileName);
}

} // namespace tv::shell::settings
