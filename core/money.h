#pragma once

#include <QString>
#include <QVariant>

#include <cstdint>
#include <stdexcept>

namespace tv {

// An amount left the signed 64-bit range; thrown instead of wrapping round.
class MoneyOverflow : public std::overflow_error {
public:
    MoneyOverflow();
};

// A currency amount with four decimals held as a signed 64-bit count of
// ten-thousandths, so sums and comparisons are exact. Arithmetic and
// conversions that would leave the range throw MoneyOverflow; turning a
// Money into text never throws.
class Money {
public:
    static constexpr int64_t kScale = 10000;

    constexpr Money() = default;
    static constexpr Money fromRaw(int64_t tenThousandths) { return Money(tenThousandths); }
    static constexpr Money fromUnits(int64_t units)
    {
        int64_t r = 0;
        if (__builtin_mul_overflow(units, kScale, &r))
            throw MoneyOverflow();
        return Money(r);
    }
    // Rounds to four decimals, halves away from zero; NaN, infinities and
    // values outside the range throw MoneyOverflow.
    static Money fromDouble(double value);
    static Money fromLongDouble(long double value);
    // Accepts "1234.56", "1234,56" and "1.234,56" (Spanish grouping) with at
    // most 14 whole digits; false on anything else.
    static bool parse(const QString& text, Money* out);

    constexpr int64_t raw() const { return mValue; }
    double toDouble() const { return static_cast<double>(mValue) / kScale; }
    long double toLongDouble() const { return static_cast<long double>(mValue) / kScale; }

    // Rounding to a number of decimals (0..4; more leave the value as it is,
    // fewer count as 0). Throws MoneyOverflow when the result leaves the range.
    Money roundHalfAwayFromZero(int decimals) const;
    Money roundHalfEven(int decimals) const;

    // "1234.5600"-style plain text with the given decimals (rounded halves away
    // from zero; beyond four the extra digits are zeros) and a decimal point.
    QString toPlainString(int decimals = 2) const;
    // Spanish display: "1.234,56" and, with the symbol, "1.234,56 €".
    QString toSpanish(int decimals = 2, bool withSymbol = false) const;

    constexpr Money operator+(Money o) const
    {
        int64_t r = 0;
        if (__builtin_add_overflow(mValue, o.mValue, &r))
            throw MoneyOverflow();
        return Money(r);
    }
    constexpr Money operator-(Money o) const
    {
        int64_t r = 0;
        if (__builtin_sub_overflow(mValue, o.mValue, &r))
            throw MoneyOverflow();
        return Money(r);
    }
    constexpr Money operator-() const { return Money() - *this; }
    constexpr Money& operator+=(Money o) { return *this = *this + o; }
    constexpr Money& operator-=(Money o) { return *this = *this - o; }
    constexpr Money operator*(int64_t k) const
    {
        int64_t r = 0;
        if (__builtin_mul_overflow(mValue, k, &r))
            throw MoneyOverflow();
        return Money(r);
    }
    constexpr auto operator<=>(const Money&) const = default;

private:
    constexpr explicit Money(int64_t v) : mValue(v) {}
    int64_t mValue = 0;
};

// Spanish formatting of a plain amount: "1.234,56 €".
QString formatEuros(double value, int decimals = 2);

} // namespace tv
