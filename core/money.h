#pragma once

#include <QString>
#include <QVariant>

#include <cstdint>

namespace tv {

// A currency amount with four decimals held as a signed 64-bit count of
// ten-thousandths, so sums and comparisons are exact.
class Money {
public:
    static constexpr int64_t kScale = 10000;

    constexpr Money() = default;
    static constexpr Money fromRaw(int64_t tenThousandths) { return Money(tenThousandths); }
    static constexpr Money fromUnits(int64_t units) { return Money(units * kScale); }
    // Rounds to four decimals, halves away from zero.
    static Money fromDouble(double value);
    static Money fromLongDouble(long double value);
    // Accepts "1234.56", "1234,56" and "1.234,56" (Spanish grouping); false on anything else.
    static bool parse(const QString& text, Money* out);

    constexpr int64_t raw() const { return mValue; }
    double toDouble() const { return static_cast<double>(mValue) / kScale; }
    long double toLongDouble() const { return static_cast<long double>(mValue) / kScale; }

    // Rounding to a number of decimals (0..4).
    Money roundHalfAwayFromZero(int decimals) const;
    Money roundHalfEven(int decimals) const;

    // "1234.5600"-style plain text with the given decimals and a decimal point.
    QString toPlainString(int decimals = 2) const;
    // Spanish display: "1.234,56" and, with the symbol, "1.234,56 €".
    QString toSpanish(int decimals = 2, bool withSymbol = false) const;

    constexpr Money operator+(Money o) const { return Money(mValue + o.mValue); }
    constexpr Money operator-(Money o) const { return Money(mValue - o.mValue); }
    constexpr Money operator-() const { return Money(-mValue); }
    Money& operator+=(Money o) { mValue += o.mValue; return *this; }
    Money& operator-=(Money o) { mValue -= o.mValue; return *this; }
    constexpr Money operator*(int64_t k) const { return Money(mValue * k); }
    constexpr auto operator<=>(const Money&) const = default;

private:
    constexpr explicit Money(int64_t v) : mValue(v) {}
    int64_t mValue = 0;
};

// Spanish formatting of a plain amount: "1.234,56 €".
QString formatEuros(double value, int decimals = 2);

} // namespace tv
