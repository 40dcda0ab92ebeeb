#include "money.h"
#include "sqltext.h"

#include <gtest/gtest.h>

using namespace tv;

namespace {

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

TEST(Money, FromDoubleRoundsHalvesAwayAtFourDecimals)
{
    EXPECT_EQ(Money::fromDouble(1234.56785).raw(), 12345679);
    EXPECT_EQ(Money::fromDouble(-0.00005).raw(), -1);
    EXPECT_EQ(Money::fromDouble(10000000.0).raw(), 100000000000LL);
    EXPECT_EQ(Money::fromDouble(0.1).raw() + Money::fromDouble(0.2).raw(), Money::fromDouble(0.3).raw());
}

TEST(Money, SpanishTextAndParsing)
{
    EXPECT_EQ(Money::fromDouble(1234.56).toSpanish(2, true), QStringLiteral("1.234,56 €"));
    EXPECT_EQ(Money::fromDouble(-1234567.005).toSpanish(2), QStringLiteral("-1.234.567,01"));
    EXPECT_EQ(Money::fromDouble(999).toSpanish(0), QStringLiteral("999"));
    EXPECT_EQ(Money::fromDouble(474.21).toPlainString(2), QStringLiteral("474.21"));
    EXPECT_EQ(formatEuros(0.5), QStringLiteral("0,50 €"));
    Money m;
    ASSERT_TRUE(Money::parse(QStringLiteral("1.234,56 €"), &m));
    EXPECT_EQ(m.raw(), 12345600);
    ASSERT_TRUE(Money::parse(QStringLiteral("1234.5"), &m));
    EXPECT_EQ(m.raw(), 12345000);
    ASSERT_TRUE(Money::parse(QStringLiteral("-7,25"), &m));
    EXPECT_EQ(m.raw(), -72500);
    ASSERT_TRUE(Money::parse(QStringLiteral("0.500"), &m)); // no thousands start with 0: a decimal point
    EXPECT_EQ(m.raw(), 5000);
    ASSERT_TRUE(Money::parse(QStringLiteral("250.000"), &m));
    EXPECT_EQ(m.raw(), 2500000000LL);
    EXPECT_FALSE(Money::parse(QStringLiteral("12a"), &m));
    EXPECT_FALSE(Money::parse(QStringLiteral("1.2.3"), &m));
    EXPECT_FALSE(Money::parse(QString(), &m));
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
