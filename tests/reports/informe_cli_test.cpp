#include "dm.h"
#include "pdftools.h"
#include "reportfixture.h"
#include "testdata.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// The command line over a data folder filled by the fixture; the test's own
// connections are closed first so the command has the files to itself.
class InformeCli : public ::testing::Test {
protected:
    void SetUp() override
    {
        mCli = QCoreApplication::applicationDirPath() + "/../cli/tejavista-cli";
        if (!QFileInfo::exists(mCli))
            GTEST_SKIP() << "tejavista-cli not built next to the tests: " << mCli.toStdString();
        tv::test::ReportFixture::fill(mData.dm());
        mData.dm().Transacion.commit();
        mData.dm().cerrarConexiones();
        tv::dm = nullptr;
    }

    int run(const QStringList& args)
    {
        QProcess p;
        // A runtime folder of its own keeps Qt's start-up notice off stderr.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_RUNTIME_DIR", mDir.path());
        p.setProcessEnvironment(env);
        p.start(mCli, args);
        EXPECT_TRUE(p.waitForFinished(120000));
        mOut = QString::fromUtf8(p.readAllStandardOutput());
        mErr = QString::fromUtf8(p.readAllStandardError());
        return p.exitCode();
    }

    tv::test::TestData mData;
    QTemporaryDir mDir;
    QString mCli;
    QString mOut;
    QString mErr;
};

} // namespace

TEST_F(InformeCli, WritesAPropertySheetByItsFamily)
{
    const QString pdf = mDir.filePath("ficha.pdf");
    EXPECT_EQ(run({"informe", "ficha", "--datos", mData.folder(), "--salida", pdf, "--param", "codigo=12"}), 1);
    EXPECT_EQ(mErr.trimmed(), "No existe el inmueble 00012.");
    EXPECT_FALSE(QFileInfo::exists(pdf));

    ASSERT_EQ(run({"informe", "ficha", "--datos", mData.folder(), "--salida", pdf, "--param", "codigo=1"}), 0)
        << mErr.toStdString();
    EXPECT_TRUE(mOut.contains("Informe in_ficha_piso guardado en " + pdf)) << mOut.toStdString();
    const QString text = tv::test::pdfText(pdf);
    EXPECT_TRUE(text.contains("Piso en venta en Valencia"));
    EXPECT_TRUE(text.contains("185.000,00 €"));
}

TEST_F(InformeCli, AMissingTemplateEndsWithItsName)
{
    const QString pdf = mDir.filePath("x.pdf");
    EXPECT_EQ(run({"informe", "in_no_existe", "--datos", mData.folder(), "--salida", pdf}), 1);
    EXPECT_TRUE(mErr.startsWith("No se encuentra la plantilla del informe: ")) << mErr.toStdString();
    EXPECT_TRUE(mErr.trimmed().endsWith("/informes/in_no_existe.html")) << mErr.toStdString();
    EXPECT_FALSE(QFileInfo::exists(pdf));
}

TEST_F(InformeCli, StatisticsAndListsWithParameters)
{
    const QString pdf = mDir.filePath("e7.pdf");
    ASSERT_EQ(run({"informe", "in_estadistica7", "--datos", mData.folder(), "--salida", pdf}), 0) << mErr.toStdString();
    const QString text = tv::test::pdfText(pdf);
    EXPECT_TRUE(text.contains("Evolución de las operaciones"));
    EXPECT_TRUE(text.contains("Año y mes"));

    const QString tareas = mDir.filePath("tareas.pdf");
    ASSERT_EQ(run({"informe", "in_agendax", "--datos", mData.folder(), "--salida", tareas, "--param", "desde=01/03/2026",
                   "--param", "hasta=31/03/2026", "--param", "usuario=JORGE"}),
              0)
        << mErr.toStdString();
    EXPECT_TRUE(tv::test::pdfText(tareas).contains("Número de Tareas: 1"));

    EXPECT_EQ(run({"informe", "in_agendax", "--datos", mData.folder(), "--salida", mDir.filePath("vacio.pdf"), "--param",
                   "desde=01/01/2020", "--param", "hasta=02/01/2020"}),
              1);
    EXPECT_EQ(mErr.trimmed(), "No existen registros para esta consulta.");

    EXPECT_EQ(run({"informe", "in_cliente", "--datos", mData.folder(), "--salida", mDir.filePath("c.pdf"), "--param",
                   "codigo"}),
              1);
    EXPECT_TRUE(mErr.contains("Parámetro no válido: codigo")) << mErr.toStdString();
}
