// Tax numbers as typed into a record and as they are kept: real numbers with
// right and wrong check characters, checked by hand against the published rules.
#include "nif.h"

#include <QProcess>
#include <QStringList>
#include <gtest/gtest.h>

#include <string>

using namespace tv;

namespace {

struct NifCase {
    const char* name;
    const char* typed;
    const char* expected; // nullptr: kNifErroneo
    const char* pais = "España";
};

std::ostream& operator<<(std::ostream& os, const NifCase& c)
{
    return os << '"' << c.typed << "\" (" << c.pais << ')';
}

class NifNormaliza : public ::testing::TestWithParam<NifCase> {};

TEST_P(NifNormaliza, GivesTheKeptFormOrTheErrorMarker)
{
    const NifCase& c = GetParam();
    const QString expected = c.expected ? QString::fromUtf8(c.expected) : kNifErroneo;
    EXPECT_EQ(normalizarNif(QString::fromUtf8(c.typed), QString::fromUtf8(c.pais)).toStdString(),
              expected.toStdString());
}

std::string caseName(const ::testing::TestParamInfo<NifCase>& info)
{
    return info.param.name;
}

constexpr const char* kErr = nullptr;

INSTANTIATE_TEST_SUITE_P(
    NifDni, NifNormaliza,
    ::testing::Values(NifCase{"RightLetter", "12345678Z", "12345678Z"},
                      NifCase{"LetterAppended", "12345678", "12345678Z"},
                      NifCase{"LowerCaseLetter", "12345678z", "12345678Z"},
                      NifCase{"WrongLetter", "12345678A", kErr},
                      NifCase{"LetterOutsideTheTable", "12345678I", kErr},
                      NifCase{"ShortPadded", "1234567", "01234567L"},
                      NifCase{"ShortWithRightLetter", "1234567l", "01234567L"},
                      NifCase{"ShortWithWrongLetter", "1234567z", kErr},
                      NifCase{"OneDigit", "8", "00000008P"},
                      NifCase{"OneDigitWithLetter", "3a", "00000003A"},
                      NifCase{"HighestNumber", "99999999R", "99999999R"},
                      NifCase{"BlanksAndHyphens", " 12 345 678 - z ", "12345678Z"},
                      NifCase{"DotsAndSlashes", "12.345.678/Z", "12345678Z"},
                      NifCase{"TabsInside", "1234\t5678", "12345678Z"},
                      NifCase{"NineDigits", "123456789", kErr},
                      NifCase{"NineDigitsAndLetter", "123456789Z", kErr},
                      NifCase{"TwoLetters", "12345678ZZ", kErr},
                      NifCase{"LetterInside", "1234A5678", kErr},
                      NifCase{"DigitAfterLetter", "12345678Z1", kErr},
                      NifCase{"NonAsciiDigits", "١٢٣٤٥٦٧٨", kErr}),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    NifNie, NifNormaliza,
    ::testing::Values(NifCase{"XRight", "X1234567L", "X1234567L"},
                      NifCase{"YRight", "Y1234567X", "Y1234567X"},
                      NifCase{"ZRight", "Z1234567R", "Z1234567R"},
                      NifCase{"LowerCaseWithSeparators", "x-1234567-l", "X1234567L"},
                      NifCase{"XLetterAppended", "X1234567", "X1234567L"},
                      NifCase{"YLetterAppended", "y 1234567", "Y1234567X"},
                      NifCase{"ZLetterAppended", "Z1234567", "Z1234567R"},
                      NifCase{"ShortPadded", "X123", "X0000123P"},
                      NifCase{"XWrongLetter", "X1234567X", kErr},
                      NifCase{"YWithTheXLetter", "Y1234567L", kErr},
                      NifCase{"ZWithTheYLetter", "Z1234567X", kErr},
                      NifCase{"EightDigits", "X12345678", kErr},
                      NifCase{"NoDigits", "X", kErr},
                      NifCase{"OnlyLetters", "XL", kErr}),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    NifSpecialPersonal, NifNormaliza,
    ::testing::Values(NifCase{"KRight", "K1234567L", "K1234567L"},
                      NifCase{"LLetterAppended", "L1234567", "L1234567L"},
                      NifCase{"MWrongLetter", "M1234567A", kErr},
                      NifCase{"KEightDigits", "K12345678", kErr}),
    caseName);

// Control values: 1234567 -> 4 (D), 2801586 -> 5 (E), 2818014 -> 9 (I),
// 2345678 -> 3 (C), 0000001 -> 8 (H), 4612345 -> 1 (A), 8015865 -> 2 (B),
// 7000000 -> 5 (E), 0000000 -> 0 (J).
INSTANTIATE_TEST_SUITE_P(
    NifCif, NifNormaliza,
    ::testing::Values(NifCase{"ADigitRight", "A28015865", "A28015865"},
                      NifCase{"ADigitWrong", "A28015864", kErr},
                      NifCase{"ARefusesLetter", "A2801586E", kErr},
                      NifCase{"AAppendsDigit", "a-2801586", "A28015865"},
                      NifCase{"BDigitRight", "B12345674", "B12345674"},
                      NifCase{"BAppendsDigit", "B1234567", "B12345674"},
                      NifCase{"BDigitWrong", "B12345675", kErr},
                      NifCase{"BRefusesLetter", "B1234567D", kErr},
                      NifCase{"ERight", "E00000018", "E00000018"},
                      NifCase{"ERefusesLetter", "E0000001H", kErr},
                      NifCase{"HRight", "H80158652", "H80158652"},
                      NifCase{"HRefusesLetter", "H8015865B", kErr},
                      NifCase{"QLetterRight", "Q2818014I", "Q2818014I"},
                      NifCase{"QAppendsLetter", "Q2818014", "Q2818014I"},
                      NifCase{"QRefusesDigit", "Q28180149", kErr},
                      NifCase{"QLetterWrong", "Q2818014H", kErr},
                      NifCase{"PLetterRight", "P1234567D", "P1234567D"},
                      NifCase{"PAppendsLetter", "p.1234567", "P1234567D"},
                      NifCase{"PRefusesDigit", "P12345674", kErr},
                      NifCase{"RLetterRight", "R2345678C", "R2345678C"},
                      NifCase{"SLetterRight", "S2801586E", "S2801586E"},
                      NifCase{"NLetterRight", "N0000000J", "N0000000J"},
                      NifCase{"NRefusesDigit", "N00000000", kErr},
                      NifCase{"WLetterRight", "W4612345A", "W4612345A"},
                      NifCase{"WAppendsLetter", "W4612345", "W4612345A"},
                      NifCase{"GDigitRight", "G23456783", "G23456783"},
                      NifCase{"GLetterRight", "G2345678C", "G2345678C"},
                      NifCase{"GAppendsDigit", "G2345678", "G23456783"},
                      NifCase{"GDigitWrong", "G23456784", kErr},
                      NifCase{"GLetterWrong", "G2345678D", kErr},
                      NifCase{"CBothForms", "C0000001H", "C0000001H"},
                      NifCase{"CDigit", "c 0000001 8", "C00000018"},
                      NifCase{"DLetterZeroIsJ", "D0000000J", "D0000000J"},
                      NifCase{"DDigitZero", "D00000000", "D00000000"},
                      NifCase{"FAppendsDigitZero", "F0000000", "F00000000"},
                      NifCase{"JLetterRight", "J7000000E", "J7000000E"},
                      NifCase{"JAppendsDigit", "J7000000", "J70000005"},
                      NifCase{"ULetterRight", "U4612345A", "U4612345A"},
                      NifCase{"VDigitRight", "V80158652", "V80158652"},
                      NifCase{"ControlOutsideTheRows", "B1234567Z", kErr},
                      NifCase{"SixDigits", "B123456", kErr},
                      NifCase{"SixDigitsAndControl", "P123456D", kErr},
                      NifCase{"EightDigits", "B123456745", kErr},
                      NifCase{"LetterAmongDigits", "B12A45674", kErr},
                      NifCase{"NotACompanyLetter", "I1234567D", kErr},
                      NifCase{"TNotACompanyLetter", "T12345674", kErr}),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    NifOther, NifNormaliza,
    ::testing::Values(NifCase{"ForeignLegalPerson", "pj-12345", "PJ12345"},
                      NifCase{"ForeignIndividual", "PFL X 99.1", "PFLX991"},
                      NifCase{"MarkerWithLetters", "Pj/ABC 1", "PJABC1"},
                      NifCase{"PFIsNoMarker", "PF123", kErr},
                      NifCase{"Empty", "", ""},
                      NifCase{"Blank", "  \t ", ""},
                      NifCase{"Words", "ABC", kErr},
                      NifCase{"Symbols", "12345678*", kErr},
                      NifCase{"EnyeFirst", "Ñ1234567", kErr},
                      NifCase{"OtherCountryUntouched", "  x-123 z ", "  x-123 z ", "Francia"},
                      NifCase{"OtherCountryWrongLetterKept", "12345678A", "12345678A", "Portugal"},
                      NifCase{"OtherCountryBlankKept", "  ", "  ", "Alemania"},
                      NifCase{"CountryUpperCase", "12345678", "12345678Z", "ESPAÑA"},
                      NifCase{"CountryLowerCase", "12345678", "12345678Z", "españa"},
                      NifCase{"CountryWithoutTilde", "12345678", "12345678Z", "Espana"},
                      NifCase{"CountryPadded", "12345678", "12345678Z", "  España "}),
    caseName);

TEST(NifDefaults, SpainWhenNoCountryIsGiven)
{
    EXPECT_EQ(normalizarNif(QStringLiteral("x1234567")), QStringLiteral("X1234567L"));
    EXPECT_EQ(normalizarNif(QStringLiteral("x1234567x")), kNifErroneo);
}

TEST(NifDefaults, EveryCheckLetterFollowsTheRemainder)
{
    // One number per remainder 0..22, with the letter the published table gives it.
    const char* const letters = "TRWAGMYFPDXBNJZSQVHLCKE";
    for (int r = 0; r < 23; ++r) {
        const QString numero = QString::number(12345664 + r);
        SCOPED_TRACE(numero.toStdString());
        ASSERT_EQ(12345664 % 23, 0);
        EXPECT_EQ(normalizarNif(numero), numero + QLatin1Char(letters[r]));
    }
}

struct CliRun {
    int exitCode = -1;
    QString out;
};

CliRun runNif(const QStringList& args)
{
    QProcess p;
    p.start(QStringLiteral(TEJAVISTA_CLI_PATH), QStringList{QStringLiteral("nif")} + args);
    CliRun r;
    if (!p.waitForFinished(60000))
        return r;
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    return r;
}

TEST(NifCli, PrintsTheNormalisedNumber)
{
    const CliRun r = runNif({QStringLiteral("y-1234567")});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out.toStdString(), "Y1234567X\n");
}

TEST(NifCli, PrintsTheMarkerAndFailsOnAWrongNumber)
{
    const CliRun r = runNif({QStringLiteral("B12345675")});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out.toStdString(), "ERR. NIF\n");
}

TEST(NifCli, LeavesAnotherCountrysNumberAsTyped)
{
    const CliRun r = runNif({QStringLiteral("ab-12 3"), QStringLiteral("--pais"), QStringLiteral("Francia")});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out.toStdString(), "ab-12 3\n");
    // The same text is checked for Spain.
    const CliRun spain =
        runNif({QStringLiteral("ab-12 3"), QStringLiteral("--pais"), QStringLiteral("España")});
    EXPECT_EQ(spain.exitCode, 1);
    EXPECT_EQ(spain.out.toStdString(), "ERR. NIF\n");
}

} // namespace
