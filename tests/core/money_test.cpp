#include "money.h"
#include "sqltext.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>

using namespace tv;

namespace {

constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
constexpr int64_t kMin = std::numeric_limits<int64_t>::min();

// Checked arithmetic must stay usable in constant expressions.
static_assert((Money::fromRaw(2) + Money::fromRaw(3)).raw() == 5);
static_assert((Money::fromRaw(2) - Money::fromRaw(3)).raw() == -1);
static_assert((-Money::fromRaw(kMax)).raw() == kMin + 1);
static_assert((Money::fromRaw(-7) * 3).raw() == -21);
static_assert(Money::fromUnits(-2).raw() == -20000);
static_assert((Money::fromRaw(1) += Money::fromRaw(kMax - 1)).raw() == kMax);
static_assert((Money::fromRaw(-1) -= Money::fromRaw(kMax)).raw() == kMin);

// nullopt: the operation must throw MoneyOverflow.
using Expected = std::optional<int64_t>;
constexpr Expected kThrows = std::nullopt;

void expectRaw(const std::function<Money()>& op, Expected expected)
{
    if (expected) {
        Money m;
        EXPECT_NO_THROW(m = op());
        EXPECT_EQ(m.raw(), *expected);
    } else {
        EXPECT_THROW(op(), MoneyOverflow);
    }
}

struct ArithmeticCase {
    const char* name;
    std::function<Money()> op;
    Expected expected;
};

void PrintTo(const ArithmeticCase& c, std::ostream* os)
{
    *os << c.name;
}

class MoneyArithmetic : public ::testing::TestWithParam<ArithmeticCase> {};

TEST_P(MoneyArithmetic, ExactOrThrows)
{
    expectRaw(GetParam().op, GetParam().expected);
}

Money raw(int64_t v)
{
    return Money::fromRaw(v);
}

INSTANTIATE_TEST_SUITE_P(
    Limits, MoneyArithmetic,
    ::testing::Values(
        ArithmeticCase{"AddSmall", [] { return raw(15000) + raw(22500); }, 37500},
        ArithmeticCase{"AddToMax", [] { return raw(kMax - 1) + raw(1); }, kMax},
        ArithmeticCase{"AddPastMax", [] { return raw(kMax) + raw(1); }, kThrows},
        ArithmeticCase{"AddMaxToMax", [] { return raw(kMax) + raw(kMax); }, kThrows},
        ArithmeticCase{"AddToMin", [] { return raw(kMin + 1) + raw(-1); }, kMin},
        ArithmeticCase{"AddPastMin", [] { return raw(kMin) + raw(-1); }, kThrows},
        ArithmeticCase{"AddMinAndMax", [] { return raw(kMin) + raw(kMax); }, -1},
        ArithmeticCase{"SubtractSmall", [] { return raw(15000) - raw(22500); }, -7500},
        ArithmeticCase{"SubtractToMin", [] { return raw(-1) - raw(kMax); }, kMin},
        ArithmeticCase{"SubtractPastMin", [] { return raw(kMin) - raw(1); }, kThrows},
        ArithmeticCase{"SubtractMinFromZero", [] { return Money() - raw(kMin); }, kThrows},
        ArithmeticCase{"SubtractPastMax", [] { return raw(kMax) - raw(-1); }, kThrows},
        ArithmeticCase{"SubtractMinFromMinusOne", [] { return raw(-1) - raw(kMin); }, kMax},
        ArithmeticCase{"NegateSmall", [] { return -raw(12345); }, -12345},
        ArithmeticCase{"NegateZero", [] { return -Money(); }, 0},
        ArithmeticCase{"NegateMax", [] { return -raw(kMax); }, kMin + 1},
        ArithmeticCase{"NegateMinPlusOne", [] { return -raw(kMin + 1); }, kMax},
        ArithmeticCase{"NegateMin", [] { return -raw(kMin); }, kThrows},
        ArithmeticCase{"MultiplySmall", [] { return raw(-12345) * 3; }, -37035},
        ArithmeticCase{"MultiplyMaxByOne", [] { return raw(kMax) * 1; }, kMax},
        ArithmeticCase{"MultiplyMaxByMinusOne", [] { return raw(kMax) * -1; }, kMin + 1},
        ArithmeticCase{"MultiplyMinByOne", [] { return raw(kMin) * 1; }, kMin},
        ArithmeticCase{"MultiplyMinByMinusOne", [] { return raw(kMin) * -1; }, kThrows},
        ArithmeticCase{"MultiplyToEvenMax", [] { return raw(kMax / 2) * 2; }, kMax - 1},
        ArithmeticCase{"MultiplyPastMax", [] { return raw(kMax / 2 + 1) * 2; }, kThrows},
        ArithmeticCase{"MultiplyToMin", [] { return raw(kMin / 2) * 2; }, kMin},
        ArithmeticCase{"MultiplyPastMin", [] { return raw(kMin / 2 - 1) * 2; }, kThrows},
        ArithmeticCase{"MultiplyWrapsToPositive", [] { return raw(3037000500) * 3037000500; }, kThrows},
        ArithmeticCase{"MultiplyZeroByMin", [] { return Money() * kMin; }, 0},
        ArithmeticCase{"UnitsSmall", [] { return Money::fromUnits(-474); }, -4740000},
        ArithmeticCase{"UnitsLargest", [] { return Money::fromUnits(kMax / 10000); }, kMax / 10000 * 10000},
        ArithmeticCase{"UnitsPastMax", [] { return Money::fromUnits(kMax / 10000 + 1); }, kThrows},
        ArithmeticCase{"UnitsSmallest", [] { return Money::fromUnits(kMin / 10000); }, kMin / 10000 * 10000},
        ArithmeticCase{"UnitsPastMin", [] { return Money::fromUnits(kMin / 10000 - 1); }, kThrows},
        ArithmeticCase{"AddAssign", [] { return raw(kMax - 5) += raw(5); }, kMax},
        ArithmeticCase{"AddAssignPastMax", [] { return raw(kMax - 5) += raw(6); }, kThrows},
        ArithmeticCase{"SubtractAssign", [] { return raw(kMin + 5) -= raw(5); }, kMin},
        ArithmeticCase{"SubtractAssignPastMin", [] { return raw(kMin + 5) -= raw(6); }, kThrows}),
    [](const ::testing::TestParamInfo<ArithmeticCase>& p) { return std::string(p.param.name); });

TEST(Money, FailedCompoundAssignmentKeepsTheValue)
{
    Money m = raw(kMax);
    EXPECT_THROW(m += raw(1), MoneyOverflow);
    EXPECT_EQ(m.raw(), kMax);
    m = raw(kMin);
    EXPECT_THROW(m -= raw(1), MoneyOverflow);
    EXPECT_EQ(m.raw(), kMin);
}

TEST(Money, OverflowIsAStandardOverflowWithASpanishMessage)
{
    try {
        (void)(raw(kMax) + raw(1));
        FAIL() << "no exception";
    } catch (const std::overflow_error& e) {
        EXPECT_EQ(QString::fromUtf8(e.what()),
                  QStringLiteral("El importe está fuera del intervalo admitido"));
    }
}

struct RoundCase {
    int64_t raw;
    int decimals;
    int64_t awayFromZero;
    int64_t halfEven;
};

class MoneyRounding : public ::testing::TestWithParam<RoundCase> {};

TEST_P(MoneyRounding, BothRules)
{
    const RoundCase c = GetParam();
    EXPECT_EQ(Money::fromRaw(c.raw).roundHalfAwayFromZero(c.decimals).raw(), c.awayFromZero);
    EXPECT_EQ(Money::fromRaw(c.raw).roundHalfEven(c.decimals).raw(), c.halfEven);
}

INSTANTIATE_TEST_SUITE_P(Cases, MoneyRounding,
                         ::testing::Values(RoundCase{12345, 2, 12300, 12300},    // 1.2345 -> 1.23
                                           RoundCase{12350, 2, 12400, 12400},    // 1.235 -> 1.24 both (3 is odd)
                                           RoundCase{12250, 2, 12300, 12200},    // 1.225: away 1.23, even 1.22
                                           RoundCase{-12250, 2, -12300, -12200}, // negatives mirror
                                           RoundCase{25000, 0, 30000, 20000},    // 2.5 -> 3 / 2
                                           RoundCase{35000, 0, 40000, 40000},    // 3.5 -> 4 / 4
                                           RoundCase{-5000, 0, -10000, 0},       // -0.5 -> -1 / 0
                                           RoundCase{4999, 0, 0, 0}));

struct LimitRoundCase {
    int64_t raw;
    int decimals;
    Expected awayFromZero;
    Expected halfEven;
};

void PrintTo(const LimitRoundCase& c, std::ostream* os)
{
    *os << c.raw << " to " << c.decimals << " decimals";
}

class MoneyRoundingLimits : public ::testing::TestWithParam<LimitRoundCase> {};

TEST_P(MoneyRoundingLimits, BothRulesExactOrThrow)
{
    const LimitRoundCase c = GetParam();
    expectRaw([&] { return Money::fromRaw(c.raw).roundHalfAwayFromZero(c.decimals); }, c.awayFromZero);
    expectRaw([&] { return Money::fromRaw(c.raw).roundHalfEven(c.decimals); }, c.halfEven);
}

// The largest amount is 922337203685477.5807, the smallest -922337203685477.5808.
INSTANTIATE_TEST_SUITE_P(
    Cases, MoneyRoundingLimits,
    ::testing::Values(LimitRoundCase{kMax, 0, kThrows, kThrows},
                      LimitRoundCase{kMax, 2, kMax - 7, kMax - 7},
                      LimitRoundCase{kMax, 3, kThrows, kThrows},
                      LimitRoundCase{kMax, 4, kMax, kMax},
                      LimitRoundCase{kMax, 6, kMax, kMax}, // more decimals than held: unchanged
                      LimitRoundCase{kMin, 0, kThrows, kThrows},
                      LimitRoundCase{kMin, 2, kMin + 8, kMin + 8},
                      LimitRoundCase{kMin, 3, kThrows, kThrows},
                      LimitRoundCase{kMin, 4, kMin, kMin},
                      LimitRoundCase{9223372036854765000, 0, 9223372036854770000, 9223372036854760000},
                      LimitRoundCase{-9223372036854765000, 0, -9223372036854770000, -9223372036854760000},
                      LimitRoundCase{9223372036854775000, 0, kThrows, kThrows},
                      LimitRoundCase{9223372036854774999, 0, 9223372036854770000, 9223372036854770000},
                      LimitRoundCase{12345, -1, 10000, 10000})); // below 0 decimals counts as 0

struct DoubleCase {
    const char* name;
    long double value;
    Expected raw;
};

void PrintTo(const DoubleCase& c, std::ostream* os)
{
    *os << c.name;
}

class MoneyFromFloating : public ::testing::TestWithParam<DoubleCase> {};

TEST_P(MoneyFromFloating, RoundsOrThrows)
{
    const DoubleCase c = GetParam();
    expectRaw([&] { return Money::fromLongDouble(c.value); }, c.raw);
    const double d = static_cast<double>(c.value);
    if (static_cast<long double>(d) == c.value)
        expectRaw([&] { return Money::fromDouble(d); }, c.raw);
}

constexpr long double kInf = std::numeric_limits<long double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Cases, MoneyFromFloating,
    ::testing::Values(
        DoubleCase{"Zero", 0.0L, 0},
        DoubleCase{"NegativeZero", -0.0L, 0},
        DoubleCase{"HalfOfLastDecimal", 0.00005, 1},
        DoubleCase{"NegativeHalfOfLastDecimal", -0.00005, -1},
        DoubleCase{"BelowHalfOfLastDecimal", 0.0000499, 0},
        DoubleCase{"DecimalHalf", 1234.56785, 12345679},
        DoubleCase{"NegativeDecimalHalf", -1234.56785, -12345679},
        DoubleCase{"BelowDecimalHalf", 1234.56784999, 12345678},
        DoubleCase{"FourDecimals", 474.2199, 4742199},
        DoubleCase{"TenMillion", 10000000.0, 100000000000LL},
        DoubleCase{"HalfAtHundredMillion", 123456789.12345, 1234567891235LL},
        // Once the relative nudge passed half a ten-thousandth it moved exact amounts.
        DoubleCase{"FiftyThousandMillion", 5e10, 500000000000000LL},
        DoubleCase{"NegativeHundredThousandMillion", -1e11, -1000000000000000LL},
        DoubleCase{"FifteenDigitsFourDecimals", 57181156209.1234, 571811562091234LL},
        DoubleCase{"TenToTheFourteen", 1e14, 1000000000000000000LL},
        DoubleCase{"NegativeTenToTheFourteen", -1e14, -1000000000000000000LL},
        DoubleCase{"LargestHalfDouble", 922337203685477.5, 9223372036854775000LL},
        DoubleCase{"SmallestHalfDouble", -922337203685477.5, -9223372036854775000LL},
        DoubleCase{"NextDoublePastMax", 922337203685477.625, kThrows},
        DoubleCase{"NextDoublePastMin", -922337203685477.625, kThrows},
        DoubleCase{"TenToTheFifteen", 1e15, kThrows},
        DoubleCase{"NegativeTenToTheFifteen", -1e15, kThrows},
        DoubleCase{"Huge", 1e300, kThrows},
        DoubleCase{"LargestDouble", std::numeric_limits<double>::max(), kThrows},
        DoubleCase{"LargestLongDouble", std::numeric_limits<long double>::max(), kThrows},
        DoubleCase{"Tiny", std::numeric_limits<double>::denorm_min(), 0},
        DoubleCase{"Infinity", kInf, kThrows},
        DoubleCase{"NegativeInfinity", -kInf, kThrows},
        DoubleCase{"NaN", std::numeric_limits<long double>::quiet_NaN(), kThrows}),
    [](const ::testing::TestParamInfo<DoubleCase>& p) { return std::string(p.param.name); });

// The exact ends of the range need the 64-bit mantissa of x87 long double.
TEST(Money, FromLongDoubleReachesBothEndsOfTheRange)
{
    if constexpr (std::numeric_limits<long double>::digits < 64) {
        GTEST_SKIP() << "long double cannot hold the ends of the range";
    } else {
        EXPECT_EQ(Money::fromLongDouble(922337203685477.5807L).raw(), kMax);
        EXPECT_EQ(Money::fromLongDouble(-922337203685477.5808L).raw(), kMin);
        EXPECT_THROW(Money::fromLongDouble(922337203685477.5808L), MoneyOverflow);
        EXPECT_THROW(Money::fromLongDouble(-922337203685477.5809L), MoneyOverflow);
        // Rounding up past the end, not only starting past it.
        EXPECT_THROW(Money::fromLongDouble(922337203685477.58076L), MoneyOverflow);
    }
}

struct TextCase {
    int64_t raw;
    int decimals;
    const char* plain;
    const char* spanish;
};

void PrintTo(const TextCase& c, std::ostream* os)
{
    *os << c.raw << " with " << c.decimals << " decimals";
}

class MoneyText : public ::testing::TestWithParam<TextCase> {};

TEST_P(MoneyText, PlainAndSpanish)
{
    const TextCase c = GetParam();
    EXPECT_EQ(Money::fromRaw(c.raw).toPlainString(c.decimals), QString::fromUtf8(c.plain));
    EXPECT_EQ(Money::fromRaw(c.raw).toSpanish(c.decimals), QString::fromUtf8(c.spanish));
    EXPECT_EQ(Money::fromRaw(c.raw).toSpanish(c.decimals, true),
              QString::fromUtf8(c.spanish) + QStringLiteral(" €"));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MoneyText,
    ::testing::Values(TextCase{4742100, 2, "474.21", "474,21"},
                      TextCase{-12345670050, 2, "-1234567.01", "-1.234.567,01"},
                      TextCase{9990000, 0, "999", "999"},
                      TextCase{12345678, 4, "1234.5678", "1.234,5678"},
                      TextCase{12345678, 5, "1234.56780", "1.234,56780"},
                      TextCase{12345678, 6, "1234.567800", "1.234,567800"},
                      TextCase{-12345678, 6, "-1234.567800", "-1.234,567800"},
                      TextCase{-1, 6, "-0.000100", "-0,000100"},
                      TextCase{0, 6, "0.000000", "0,000000"},
                      TextCase{0, 0, "0", "0"},
                      TextCase{-49, 2, "0.00", "0,00"}, // rounds to zero: no sign
                      TextCase{-50, 2, "-0.01", "-0,01"},
                      TextCase{kMin, 4, "-922337203685477.5808", "-922.337.203.685.477,5808"},
                      TextCase{kMin, 6, "-922337203685477.580800", "-922.337.203.685.477,580800"},
                      TextCase{kMin, 2, "-922337203685477.58", "-922.337.203.685.477,58"},
                      TextCase{kMin, 3, "-922337203685477.581", "-922.337.203.685.477,581"},
                      TextCase{kMin, 0, "-922337203685478", "-922.337.203.685.478"},
                      TextCase{kMax, 4, "922337203685477.5807", "922.337.203.685.477,5807"},
                      TextCase{kMax, 0, "922337203685478", "922.337.203.685.478"},
                      TextCase{kMax, 8, "922337203685477.58070000", "922.337.203.685.477,58070000"}));

constexpr Expected kRefused = std::nullopt;

struct ParseCase {
    const char* text;
    Expected raw;
};

void PrintTo(const ParseCase& c, std::ostream* os)
{
    *os << '"' << c.text << '"';
}

class MoneyParse : public ::testing::TestWithParam<ParseCase> {};

TEST_P(MoneyParse, AcceptsOrRefuses)
{
    const ParseCase c = GetParam();
    Money m = Money::fromRaw(-42);
    const bool ok = Money::parse(QString::fromUtf8(c.text), &m);
    if (c.raw) {
        ASSERT_TRUE(ok) << c.text;
        EXPECT_EQ(m.raw(), *c.raw) << c.text;
    } else {
        EXPECT_FALSE(ok) << c.text;
        EXPECT_EQ(m.raw(), -42) << "a refused text left its mark: " << c.text;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MoneyParse,
    ::testing::Values(ParseCase{"1.234,56 €", 12345600},
                      ParseCase{"1234.5", 12345000},
                      ParseCase{"-7,25", -72500},
                      ParseCase{"0.500", 5000}, // no thousands start with 0: a decimal point
                      ParseCase{"250.000", 2500000000LL},
                      ParseCase{"12a", kRefused},
                      ParseCase{"1.2.3", kRefused},
                      ParseCase{"", kRefused},
                      ParseCase{"99999999999999,9999", 999999999999999999LL},
                      ParseCase{"-99.999.999.999.999,9999", -999999999999999999LL},
                      ParseCase{"00000000000001", 10000},
                      ParseCase{"999999999999999", kRefused},
                      ParseCase{"100.000.000.000.000", kRefused},
                      ParseCase{"922337203685477,5807", kRefused},
                      ParseCase{"-922337203685477,5808", kRefused},
                      ParseCase{"922337203685478", kRefused},
                      ParseCase{"-9223372036854775808", kRefused},
                      ParseCase{"18446744073709551616", kRefused},
                      ParseCase{"99999999999999999999999999999999", kRefused}));

TEST(Money, FromDoubleRoundsHalvesAwayAtFourDecimals)
{
    EXPECT_EQ(Money::fromDouble(1234.56785).raw(), 12345679);
    EXPECT_EQ(Money::fromDouble(-0.00005).raw(), -1);
    EXPECT_EQ(Money::fromDouble(10000000.0).raw(), 100000000000LL);
    EXPECT_EQ(Money::fromDouble(0.1).raw() + Money::fromDouble(0.2).raw(), Money::fromDouble(0.3).raw());
}

TEST(Money, SpanishText)
{
    EXPECT_EQ(Money::fromDouble(1234.56).toSpanish(2, true), QStringLiteral("1.234,56 €"));
    EXPECT_EQ(Money::fromDouble(-1234567.005).toSpanish(2), QStringLiteral("-1.234.567,01"));
    EXPECT_EQ(Money::fromDouble(999).toSpanish(0), QStringLiteral("999"));
    EXPECT_EQ(Money::fromDouble(474.21).toPlainString(2), QStringLiteral("474.21"));
    EXPECT_EQ(formatEuros(0.5), QStringLiteral("0,50 €"));
}

TEST(SqlText, QuotingNumbersDatesAndFlags)
{
    EXPECT_EQ(sql::quote(QStringLiteral("O'Donnell")), QStringLiteral("'O''Donnell'"));
    EXPECT_EQ(sql::quote(QStringLiteral("''")), QStringLiteral("''''''"));
    EXPECT_EQ(sql::quote(QStringLiteral("Peñíscola")), QStringLiteral("'Peñíscola'"));
    EXPECT_EQ(sql::quote(QStringLiteral("Москва")), QStringLiteral("'Москва'"));
    EXPECT_EQ(sql::number(12.5), QStringLiteral("12.5"));
    EXPECT_EQ(sql::number(150000.0), QStringLiteral("150000"));
    EXPECT_EQ(sql::number(qlonglong(-3)), QStringLiteral("-3"));
    EXPECT_EQ(sql::date(QDate(2026, 3, 7)), QStringLiteral("'07.03.2026'"));
    EXPECT_TRUE(sql::isSet(QStringLiteral("S")));
    for (const QVariant& v : {QVariant(QStringLiteral("N")), QVariant(QStringLiteral("s")), QVariant(QString()), QVariant(),
                              QVariant(QStringLiteral("X"))})
        EXPECT_FALSE(sql::isSet(v));
    EXPECT_EQ(sql::flag(true), QStringLiteral("S"));
    EXPECT_EQ(sql::flag(false), QStringLiteral("N"));
}

} // namespace
