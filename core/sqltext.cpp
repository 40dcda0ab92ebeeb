#include "sqltext.h"

#include <cmath>

namespace tv::sql {

QString quote(const QString& text)
{
    QString s = text;
    s.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + s + QLatin1Char('\'');
}

QString number(qlonglong value)
{
    return QString::number(value);
}

QString number(double value)
{
    if (!std::isfinite(value))
        return QStringLiteral("0");
    if (value == std::floor(value) && std::fabs(value) < 1e15)
        return QString::number(static_cast<qlonglong>(value));
    return QString::number(value, 'g', 15);
}

QString date(const QDate& d)
{
    return QLatin1Char('\'') + d.toString(QStringLiteral("dd.MM.yyyy")) + QLatin1Char('\'');
}

QString dateTime(const QDateTime& dt)
{
    return QLatin1Char('\'') + dt.toString(QStringLiteral("dd.MM.yyyy hh:mm:ss")) + QLatin1Char('\'');
}

} // namespace tv::sql
