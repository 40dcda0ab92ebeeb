#include "money.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace tv {

namespace {

// |INT64_MIN|: the largest magnitude a negative amount may have.
constexpr uint64_t kNegativeLimit = uint64_t(1) << 63;
constexpr uint64_t kPositiveLimit = kNegativeLimit - 1;

// Through unsigned arithmetic so that |INT64_MIN| is representable.
uint64_t magnitude(int64_t v)
{
    return v < 0 ? uint64_t(0) - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
}

int64_t signedValue(uint64_t amount, bool negative)
{
    if (amount > (negative ? kNegativeLimit : kPositiveLimit))
        throw MoneyOverflow();
    return static_cast<int64_t>(negative ? uint64_t(0) - amount : amount);
}

// Ten-thousandths in one step of the last kept decimal.
uint64_t unitFor(int decimals)
{
    uint64_t unit = 1;
    for (int n = 4 - std::clamp(decimals, 0, 4); n > 0; --n)
        unit *= 10;
    return unit;
}

// Whole digits parse accepts: the largest such amount, and the double a field
// stores it as, fit the range, so parsing cannot wrap.
constexpr int kMaxWholeDigits = 14;
static_assert([] {
    uint64_t largest = 1;
    for (int i = 0; i < kMaxWholeDigits; ++i)
        largest *= 10;
    return largest * Money::kScale - 1 <= kPositiveLimit;
}());

enum class Rounding { HalfAwayFromZero, HalfEven };

// Never overflows: the result is at most 2^63 + 9999, well inside uint64.
uint64_t roundMagnitude(uint64_t a, uint64_t unit, Rounding rule)
{
    uint64_t q = a / unit;
    const uint64_t rem = a % unit;
    if (rem * 2 > unit || (rem * 2 == unit && (rule == Rounding::HalfAwayFromZero || q % 2 == 1)))
        ++q;
    return q * unit;
}

// Rounded halves away from zero and signed only when the rounded amount is
// not zero; decimals beyond four are zeros.
QString amountText(int64_t value, int decimals, QChar point, bool grouped)
{
    const uint64_t a = roundMagnitude(magnitude(value), unitFor(decimals), Rounding::HalfAwayFromZero);
    const uint64_t scale = static_cast<uint64_t>(Money::kScale);
    QString s = QString::number(a / scale);
    if (grouped)
        for (qsizetype i = s.size() - 3; i > 0; i -= 3)
            s.insert(i, QLatin1Char('.'));
    if (decimals > 0) {
        const int kept = std::min(decimals, 4);
        const QChar zero = QLatin1Char('0');
        s += point + QString::number((a % scale) / unitFor(kept)).rightJustified(kept, zero) +
             QString(decimals - kept, zero);
    }
    if (value < 0 && a != 0)
        s.prepend(QLatin1Char('-'));
    return s;
}

} // namespace

MoneyOverflow::MoneyOverflow() : std::overflow_error("El importe está fuera del intervalo admitido") {}

Money Money::fromDouble(double value)
{
    return fromLongDouble(static_cast<long double>(value));
}

Money Money::fromLongDouble(long double value)
{
    if (!std::isfinite(value))
        throw MoneyOverflow();
    // Decimal inputs such as 1234.565 are not exact in binary; nudge by a
    // relative epsilon so the intended half rounds away from zero. The cap
    // keeps the nudge below a half ten-thousandth, which from about 5e10 on it
    // would pass and push exact amounts up.
    const long double scaled = std::fabs(value * kScale);
    const long double nudge = std::min(scaled * 1e-15L, 0.25L);
    // Split off the fraction (exact) so the half test does not lose it to
    // the precision of a large amount.
    long double r = std::floor(scaled);
    if (scaled - r + nudge >= 0.5L)
        r += 1;
    // Compared as long double before converting: an out-of-range conversion is undefined.
    const bool negative = value < 0;
    if (r > static_cast<long double>(kNegativeLimit))
        throw MoneyOverflow();
    return Money(signedValue(static_cast<uint64_t>(r), negative));
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
    if (ints.size() > kMaxWholeDigits)
        return false;
    const uint64_t decimals = m.captured(3).leftJustified(4, QLatin1Char('0')).toULongLong();
    const uint64_t a = ints.toULongLong() * Money::kScale + decimals;
    const bool negative = m.captured(1) == QLatin1String("-");
    *out = Money(signedValue(a, negative));
    return true;
}

Money Money::roundHalfAwayFromZero(int decimals) const
{
    return Money(signedValue(roundMagnitude(magnitude(mValue), unitFor(decimals), Rounding::HalfAwayFromZero),
                             mValue < 0));
}

Money Money::roundHalfEven(int decimals) const
{
    return Money(
        signedValue(roundMagnitude(magnitude(mValue), unitFor(decimals), Rounding::HalfEven), mValue < 0));
}

QString Money::toPlainString(int decimals) const
{
    return amountText(mValue, decimals, QLatin1Char('.'), false);
}

QString Money::toSpanish(int decimals, bool withSymbol) const
{
    QString s = amountText(mValue, decimals, QLatin1Char(','), true);
    if (withSymbol)
        s += QStringLiteral(" €");
    return s;
}

QString formatEuros(double value, int decimals)
{
    return Money::fromDouble(value).toSpanish(decimals, true);
}

} // namespace tv
