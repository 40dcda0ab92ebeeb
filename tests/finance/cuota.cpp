// The monthly instalment routine: known values, the two roundings, the
// extremes of the range and the degenerate inputs.
#include "instalment.h"

#include <gtest/gtest.h>

#include <cmath>

using tv::calculaCuota;
using tv::Money;

namespace {

Money euros(const char* text)
{
    Money m;
    EXPECT_TRUE(Money::parse(QString::fromLatin1(text), &m)) << text;
    return m;
}

struct Caso {
    const char* interes;
    int anos;
    const char* importe;
    const char* cuota;
};

// Expected values worked out with exact rational arithmetic (Python's
// fractions): the formula evaluated exactly, rounded half away from zero to
// four decimals and then to two.
const Caso kConocidos[] = {
    {"3", 25, "100000", "474.21"},        // i = 0.0025, n = 300
    {"3", 10, "100000", "965.61"},
    {"0", 10, "100000", "833"},           // 833.33 goes to a whole amount
    {"0", 10, "120000", "1000"},
    {"-0.5", 10, "120000", "975"},        // a negative rate is not the zero rule
    {"3", 1, "100000", "8469.37"},
    {"25", 50, "10000000", "208334.22"},  // largest loan, highest rate, longest term
    {"25", 1, "10000000", "950442.03"},
    {"-5", 50, "10000000", "3704.93"},    // lowest rate, longest term
    {"-5", 50, "100000", "37.05"},
    {"-5", 1, "10000000", "810936.65"},
    {"0.01", 50, "10000000", "16708.44"}, // tiny rate over 600 months
    {"24.99", 50, "9999999.99", "208250.89"},
};

} // namespace

TEST(Cuota, KnownValuesAcrossTheRange)
{
    for (const Caso& c : kConocidos) {
        SCOPED_TRACE(::testing::Message() << c.interes << " % " << c.anos << " años " << c.importe);
        EXPECT_EQ(calculaCuota(euros(c.interes), c.anos, euros(c.importe)), euros(c.cuota));
        // The double entry point reads the rate to four decimals and agrees.
        EXPECT_EQ(calculaCuota(std::stod(c.interes), c.anos, euros(c.importe)), euros(c.cuota));
    }
}

TEST(Cuota, RoundsToFourDecimalsBeforeTwo)
{
    // 100091 at 2.5 % over 25 years is 449.024975...: four decimals give
    // 449.0250, which then rounds up to 449.03 (a single rounding would give 449.02).
    EXPECT_EQ(calculaCuota(euros("2.5"), 25, euros("100091")), euros("449.03"));
    // 100199 at 3 %: 475.154994... -> 475.1550 -> 475.16.
    EXPECT_EQ(calculaCuota(euros("3"), 25, euros("100199")), euros("475.16"));
    // 100198 at 2.5 %: 449.504995... -> 449.5050 -> 449.51.
    EXPECT_EQ(calculaCuota(euros("2.5"), 25, euros("100198")), euros("449.51"));
}

TEST(Cuota, ZeroRateRoundsHalvesAwayFromZero)
{
    // 30 / 12 = 2.5 -> 3 and -2.5 -> -3.
    EXPECT_EQ(calculaCuota(Money(), 1, euros("30")), Money::fromUnits(3));
    EXPECT_EQ(calculaCuota(Money(), 1, euros("-30")), Money::fromUnits(-3));
    // 29.9999 / 12 = 2.4999916...: just under the half stays down, even though
    // taking it to four decimals first would have made it 2.5000.
    EXPECT_EQ(calculaCuota(Money(), 1, euros("29.9999")), Money::fromUnits(2));
    // 227999.989 over 15 years: 1266.666... -> 1267.
    EXPECT_EQ(calculaCuota(Money(), 15, euros("227999.989")), Money::fromUnits(1267));
}

TEST(Cuota, NegativeLoanMirrorsThePositiveOne)
{
    EXPECT_EQ(calculaCuota(euros("3"), 25, euros("-100000")), euros("-474.21"));
    EXPECT_EQ(calculaCuota(euros("2.5"), 25, euros("-100091")), euros("-449.03"));
}

TEST(Cuota, DegenerateInputsGiveZero)
{
    EXPECT_EQ(calculaCuota(euros("3"), 0, euros("100000")), Money());
    EXPECT_EQ(calculaCuota(euros("3"), -5, euros("100000")), Money());
    EXPECT_EQ(calculaCuota(euros("3"), 25, Money()), Money());
    EXPECT_EQ(calculaCuota(Money(), 0, euros("100000")), Money());
    // A monthly rate of -100 % or below has no instalment.
    EXPECT_EQ(calculaCuota(euros("-1200"), 10, euros("100000")), Money());
    EXPECT_EQ(calculaCuota(euros("-1500"), 10, euros("100000")), Money());
}

TEST(Cuota, AgreesWithLongDoubleAwayFromRoundingTies)
{
    // Across the whole range the exact result matches a careful floating
    // evaluation wherever that one is not within reach of a rounding tie.
    int compared = 0;
    for (int tipo = -500; tipo <= 2500; tipo += 37) {          // hundredths of a point
        for (int anos = 1; anos <= 50; anos += 7) {
            for (int64_t importe : {1000LL, 123457LL, 987654321LL, 1000000000LL}) {  // cents
                const Money r = Money::fromRaw(tipo * 100LL);
                const Money p = Money::fromRaw(importe * 100LL);
                const Money cuota = calculaCuota(r, anos, p);
                if (tipo == 0)
                    continue;
                const long double i = static_cast<long double>(tipo) / 120000.0L;
                const long double n = 12.0L * anos;
                const long double v = p.toLongDouble() * i / -std::expm1l(-n * std::log1pl(i)) * 10000.0L;
                const long double frac = v - std::floor(v);
                if (std::fabs(frac - 0.5L) < 1e-6L)
                    continue;
                const Money stored = Money::fromRaw(static_cast<int64_t>(std::floor(v + 0.5L)));
                EXPECT_EQ(cuota, stored.roundHalfAwayFromZero(2)) << tipo << " " << anos << " " << importe;
                ++compared;
            }
        }
    }
    EXPECT_GT(compared, 1000);
}

TEST(Cuota, LongTermsStayFastAndFinite)
{
    // A thousand-year loan still answers (the interest alone, to the cent).
    EXPECT_EQ(calculaCuota(euros("12"), 1000, euros("100000")), euros("1000"));
    // Beyond that the routine switches to floating point and still converges.
    EXPECT_EQ(calculaCuota(euros("12"), 5000, euros("100000")), euros("1000"));
}
