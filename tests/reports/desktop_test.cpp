#include "pdftools.h"
#include "report.h"
#include "scripteddialogs.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace tv::reports;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

class Desktop : public ::testing::Test {
protected:
    void SetUp() override
    {
        setUrlOpener([this](const QUrl& url) {
            mOpened.append(url);
            return mAnswer;
        });
        setProgramStarter([this](const QString& program, const QStringList&) {
            mStarted.append(program);
            return program == mWorkingProgram;
        });
    }
    void TearDown() override
    {
        setUrlOpener({});
        setProgramStarter({});
    }

    tv::test::ScriptedDialogs mDialogs;
    QList<QUrl> mOpened;
    QStringList mStarted;
    bool mAnswer = true;
    QString mWorkingProgram;
};

} // namespace

TEST_F(Desktop, OpensMailUrlsFilesAndFolders)
{
    QTemporaryDir dir;
    const QString doc = dir.filePath("contrato.pdf");
    QFile f(doc);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();

    EXPECT_TRUE(openWithDesktop("mailto:maria.fernandez@correo.es"));
    EXPECT_TRUE(openWithDesktop("https://www.fotocasa.es/"));
    EXPECT_TRUE(openWithDesktop("www.inmomediterranea.es"));
    EXPECT_TRUE(openWithDesktop(doc));
    EXPECT_TRUE(openWithDesktop(dir.path()));
    ASSERT_EQ(mOpened.size(), 5);
    EXPECT_EQ(mOpened.at(0).toString(), "mailto:maria.fernandez@correo.es");
    EXPECT_EQ(mOpened.at(1).toString(), "https://www.fotocasa.es/");
    EXPECT_EQ(mOpened.at(2).toString(), "http://www.inmomediterranea.es");
    EXPECT_EQ(mOpened.at(3), QUrl::fromLocalFile(doc));
    EXPECT_EQ(mOpened.at(4), QUrl::fromLocalFile(dir.path()));
    EXPECT_TRUE(mDialogs.log().isEmpty());
}

TEST_F(Desktop, AMissingFileIsNamedAndNothingStarts)
{
    EXPECT_FALSE(openWithDesktop("/no/existe/documento.doc"));
    EXPECT_TRUE(mOpened.isEmpty());
    ASSERT_EQ(mDialogs.log().size(), 1);
    EXPECT_EQ(mDialogs.log().at(0).kind, Kind::Error);
    EXPECT_EQ(mDialogs.log().at(0).text, "No existe el fichero o la carpeta /no/existe/documento.doc");
}

TEST_F(Desktop, FailuresSayWhatCouldNotBeOpened)
{
    mAnswer = false;
    QTemporaryDir dir;
    const QString doc = dir.filePath("plano.dwg");
    QFile f(doc);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();

    EXPECT_FALSE(openWithDesktop("mailto:pnavarro@correo.es"));
    EXPECT_FALSE(openWithDesktop("http://www.idealista.com"));
    EXPECT_FALSE(openWithDesktop(doc));
    EXPECT_FALSE(openWithDesktop("mailto:"));
    const QStringList texts = mDialogs.texts();
    ASSERT_EQ(texts.size(), 4);
    EXPECT_EQ(texts.at(0), "No se ha podido abrir el programa de correo para escribir a pnavarro@correo.es.\n"
                           "Compruebe que tiene un programa de correo instalado.");
    EXPECT_EQ(texts.at(1), "No se ha podido abrir la dirección http://www.idealista.com.\n"
                           "Compruebe que tiene un navegador instalado.");
    EXPECT_EQ(texts.at(2), "No se ha podido abrir el fichero " + doc +
                               ".\nNo hay ningún programa asociado a los ficheros de tipo \"dwg\".");
    EXPECT_EQ(texts.at(3), "No ha indicado la cuenta de correo");
    EXPECT_EQ(mOpened.size(), 3);
}

TEST_F(Desktop, CalculatorTriesEachKnownProgramInTurn)
{
    mWorkingProgram = "galculator";
    EXPECT_TRUE(openCalculator());
    EXPECT_EQ(mStarted, QStringList({"gnome-calculator", "kcalc", "galculator"}));
    EXPECT_TRUE(mDialogs.log().isEmpty());

    mStarted.clear();
    mWorkingProgram.clear();
    EXPECT_FALSE(openCalculator());
    EXPECT_EQ(mStarted, calculatorPrograms());
    EXPECT_EQ(calculatorPrograms(), QStringList({"gnome-calculator", "kcalc", "galculator", "mate-calc", "xcalc"}));
    ASSERT_EQ(mDialogs.log().size(), 1);
    EXPECT_EQ(mDialogs.log().at(0).kind, Kind::Error);
    EXPECT_EQ(mDialogs.log().at(0).text,
              "No se ha podido abrir la calculadora.\n"
              "Instale una calculadora de escritorio (por ejemplo gnome-calculator o kcalc).");
}
