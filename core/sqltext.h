#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QVariant>

// The only way run-time SQL takes values: texts quoted with inner quotes
// doubled, numbers written as numbers, dates as 'dd.mm.yyyy'.
namespace tv::sql {

QString quote(const QString& text);
QString number(qlonglong value);
QString number(double value);
QString date(const QDate& d);
QString dateTime(const QDateTime& dt); // 'dd.mm.yyyy hh:mm:ss'

// S/N flags.
inline QString flag(bool on) { return on ? QStringLiteral("S") : QStringLiteral("N"); }
// Only "S" is set; anything else (N, blank, NULL, garbage) reads as unset.
inline bool isSet(const QVariant& v) { return v.toString() == QLatin1String("S"); }

} // namespace tv::sql
