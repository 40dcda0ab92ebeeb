#include "money.h"

#include <QLocale>
#include <QRegularExpression>

#include <cmath>
#include <cstdlib>

namespace tv {

namespace {

int64_t pow10(int n)
{
    int64_t p = 1;
    while (n-- > 0)
        p *= 10;
    return p;
}

} // namespace

Money Money::fromDouble(double value)
{
    return fromLongDouble(static_cast<long double>(value));
}

Money Money::fromLongDouble(long double value)
{
    // Decimal inputs such as 1234.565 are not exact in binary; nudge by a
    // relative epsilon so the intended half rounds away from zero.
    const long double scaled = value * kScale;
    const long double nudge = std::fabs(scaled) * 1e-15L;
    const long double r = scaled >= 0 ? std::floor(scaled + 0.5L + nudge) : std::ceil(scaled - 0.5L - nudge);
    return Money(static_cast<int64_t>(r));
}

bool Money::parse(const QString& text, Money* out)
{
    QString t = text.trimmed();
    t.remove(QChar(0x20AC)).remove(QLatin1Char(' '));
    static const QRegularExpression plain(QStringLiteral(R"(^([+-]?)(\d+)(?:[.,](\d{1,4}))?$)"));
    static const QRegularExpression grouped(QStringLiteral(R"(^([+-]?)([1-9]\d{0,2}(?:\.\d{3})+)(?:,(\d{1,4}))?$)"));
    QRegularExpressionMatch m = grouped.match(t);
    if (!m.hasMatch())
        m = plain.match(t);
    if (!m.hasMatch())
        return false;
    QString ints = m.captured(2);
    ints.remove(QLatin1Char('.'));
    if (ints.size() > 14)
        return false;
    QString dec = m.captured(3);
    dec = dec.leftJustified(4, QLatin1Char('0'));
    int64_t v = ints.toLongLong() * kScale + dec.toLongLong();
    if (m.captured(1) == QLatin1String("-"))
        v = -v;
    *out = Money(v);
    return true;
}

Money Money::roundHalfAwayFromZero(int decimals) const
{
    const int64_t unit = pow10(4 - decimals);
    const int64_t a = std::llabs(mValue);
    int64_t q = a / unit;
    if (a % unit * 2 >= unit)
        ++q;
    return Money((mValue < 0 ? -q : q) * unit);
}

Money Money::roundHalfEven(int decimals) const
{
    const int64_t unit = pow10(4 - decimals);
    const int64_t a = std::llabs(mValue);
    int64_t q = a / unit;
    const int64_t rem = a % unit;
    if (rem * 2 > unit || (rem * 2 == unit && (q % 2) == 1))
        ++q;
    return Money((mValue < 0 ? -q : q) * unit);
}

QString Money::toPlainString(int decimals) const
{
    const Money r = roundHalfAwayFromZero(decimals);
    const int64_t a = std::llabs(r.mValue);
    QString s = QString::number(a / kScale);
    if (decimals > 0)
        s += QLatin1Char('.') +
             QString::number((a % kScale) / pow10(4 - decimals)).rightJustified(decimals, QLatin1Char('0'));
    return r.mValue < 0 ? QLatin1Char('-') + s : s;
}

QString Money::toSpanish(int decimals, bool withSymbol) const
{
    const Money r = roundHalfAwayFromZero(decimals);
    const int64_t a = std::llabs(r.mValue);
    QString ints = QString::number(a / kScale);
    for (int i = ints.size() - 3; i > 0; i -= 3)
        ints.insert(i, QLatin1Char('.'));
    QString s = ints;
    if (decimals > 0)
        s += QLatin1Char(',') +
             QString::number((a % kScale) / pow10(4 - decimals)).rightJustified(decimals, QLatin1Char('0'));
    if (r.mValue < 0)
        s.prepend(QLatin1Char('-'));
    if (withSymbol)
        s += QStringLiteral(" €");
    return s;
}

QString formatEuros(double value, int decimals)
{
    return Money::fromDouble(value).toSpanish(decimals, true);
}

} // namespace tv
