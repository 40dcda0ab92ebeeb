#include "instalment.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace tv {

namespace {

// Non-negative integer of any size, little-endian 32-bit limbs, no leading
// zero limbs. Just enough arithmetic for one exact instalment.
class Natural {
public:
    Natural() = default;
    explicit Natural(uint64_t v)
    {
        while (v) {
            mLimbs.push_back(static_cast<uint32_t>(v));
            v >>= 32;
        }
    }

    int bitLength() const
    {
        if (mLimbs.empty())
            return 0;
        int bits = static_cast<int>(mLimbs.size() - 1) * 32;
        for (uint32_t top = mLimbs.back(); top; top >>= 1)
            ++bits;
        return bits;
    }

    friend Natural operator*(const Natural& a, const Natural& b)
    {
        Natural r;
        if (a.mLimbs.empty() || b.mLimbs.empty())
            return r;
        r.mLimbs.assign(a.mLimbs.size() + b.mLimbs.size(), 0);
        for (size_t i = 0; i < a.mLimbs.size(); ++i) {
            uint64_t carry = 0;
            const uint64_t ai = a.mLimbs[i];
            for (size_t j = 0; j < b.mLimbs.size(); ++j) {
                const uint64_t t = ai * b.mLimbs[j] + r.mLimbs[i + j] + carry;
                r.mLimbs[i + j] = static_cast<uint32_t>(t);
                carry = t >> 32;
            }
            r.mLimbs[i + b.mLimbs.size()] = static_cast<uint32_t>(carry);
        }
        r.trim();
        return r;
    }

    // a - b, for a >= b.
    friend Natural operator-(const Natural& a, const Natural& b)
    {
        Natural r = a;
        int64_t borrow = 0;
        for (size_t i = 0; i < r.mLimbs.size(); ++i) {
            int64_t t = static_cast<int64_t>(r.mLimbs[i]) - borrow - (i < b.mLimbs.size() ? b.mLimbs[i] : 0);
            borrow = t < 0 ? 1 : 0;
            if (t < 0)
                t += int64_t(1) << 32;
            r.mLimbs[i] = static_cast<uint32_t>(t);
        }
        r.trim();
        return r;
    }

    friend int compare(const Natural& a, const Natural& b)
    {
        if (a.mLimbs.size() != b.mLimbs.size())
            return a.mLimbs.size() < b.mLimbs.size() ? -1 : 1;
        for (size_t i = a.mLimbs.size(); i-- > 0;)
            if (a.mLimbs[i] != b.mLimbs[i])
                return a.mLimbs[i] < b.mLimbs[i] ? -1 : 1;
        return 0;
    }

    Natural shiftedLeft(int bits) const
    {
        Natural r;
        if (mLimbs.empty())
            return r;
        const int limbs = bits / 32;
        const int rest = bits % 32;
        r.mLimbs.assign(static_cast<size_t>(limbs), 0);
        uint32_t carry = 0;
        for (uint32_t limb : mLimbs) {
            r.mLimbs.push_back(rest ? (limb << rest) | carry : limb);
            carry = rest ? limb >> (32 - rest) : 0;
        }
        r.mLimbs.push_back(carry);
        r.trim();
        return r;
    }

    Natural power(int exponent) const
    {
        Natural result(1);
        Natural base = *this;
        for (; exponent > 0; exponent >>= 1) {
            if (exponent & 1)
                result = result * base;
            if (exponent > 1)
                base = base * base;
        }
        return result;
    }

private:
    void trim()
    {
        while (!mLimbs.empty() && mLimbs.back() == 0)
            mLimbs.pop_back();
    }

    std::vector<uint32_t> mLimbs;
};

// num / den rounded to the nearest integer, halves up; false when the
// quotient would not fit a signed 64-bit value.
bool divideRounded(const Natural& num, const Natural& den, uint64_t* quotient)
{
    const int shift = num.bitLength() - den.bitLength();
    uint64_t q = 0;
    Natural rest = num;
    if (shift > 61)
        return false;
    for (int b = shift; b >= 0; --b) {
        const Natural part = den.shiftedLeft(b);
        if (compare(rest, part) >= 0) {
            rest = rest - part;
            q |= uint64_t(1) << b;
        }
    }
    if (compare(rest.shiftedLeft(1), den) >= 0)
        ++q;
    *quotient = q;
    return true;
}

uint64_t magnitude(int64_t v)
{
    return v < 0 ? uint64_t(0) - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
}

// Monthly rate denominator: i = r / 1200 with r held in ten-thousandths.
constexpr int64_t kRateDenominator = 1200 * Money::kScale;

// Beyond this the exact powers grow needlessly large; no loan runs that long.
constexpr int kMaxExactYears = 1000;

Money approximateCuota(int64_t rateRaw, int months, Money importe)
{
    const long double i = static_cast<long double>(rateRaw) / kRateDenominator;
    const long double denom = -std::expm1l(-months * std::log1pl(i));
    return Money::fromLongDouble(importe.toLongDouble() * i / denom).roundHalfAwayFromZero(2);
}

} // namespace

Money calculaCuota(Money interes, int anos, Money importe)
{
    if (anos <= 0 || importe.raw() == 0)
        return Money();
    const int64_t rateRaw = interes.raw();
    const uint64_t loan = magnitude(importe.raw());
    const bool negative = importe.raw() < 0;

    if (rateRaw == 0) {
        // Whole amount of P / (12 y), halves away from zero.
        const uint64_t divisor = uint64_t(12) * static_cast<uint64_t>(anos) * Money::kScale;
        uint64_t units = loan / divisor;
        if ((loan % divisor) * 2 >= divisor)
            ++units;
        const Money m = Money::fromUnits(static_cast<int64_t>(units));
        return negative ? -m : m;
    }

    // 1 + i = N / D; at i <= -1 the formula has no meaning.
    if (rateRaw <= -kRateDenominator)
        return Money();
    if (anos > kMaxExactYears)
        return approximateCuota(rateRaw, 12 * anos, importe);
    const int64_t n = kRateDenominator + rateRaw;
    const int64_t g = std::gcd(n, kRateDenominator);
    const int months = 12 * anos;

    // In ten-thousandths: P i (1+i)^m / ((1+i)^m - 1)
    //   = Praw * r * N^m / (D * (N^m - D^m)), with N and D reduced by their gcd.
    const Natural growth = Natural(static_cast<uint64_t>(n / g)).power(months);
    const Natural base = Natural(static_cast<uint64_t>(kRateDenominator / g)).power(months);
    const Natural difference = rateRaw > 0 ? growth - base : base - growth;
    const Natural num = Natural(loan) * Natural(magnitude(rateRaw)) * growth;
    const Natural den = Natural(static_cast<uint64_t>(kRateDenominator)) * difference;

    uint64_t stored = 0;
    if (!divideRounded(num, den, &stored))
        throw std::overflow_error("La cuota mensual no cabe en un importe");
    const Money m = Money::fromRaw(static_cast<int64_t>(stored)).roundHalfAwayFromZero(2);
    return negative ? -m : m;
}

Money calculaCuota(double interes, int anos, Money importe)
{
    return calculaCuota(Money::fromDouble(interes), anos, importe);
}

} // namespace tv
