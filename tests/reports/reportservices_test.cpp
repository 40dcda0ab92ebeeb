// The program's desktop services: a grid exported to a real .xlsx, report
// failures told once, and the service installed at start-up.
#include "datagrid.h"
#include "gridsettings.h"
#include "pdftools.h"
#include "report.h"
#include "reportservices.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace tv;
using tv::reports::ReportServices;
using tv::test::ScriptedDialogs;

namespace {

// Records the files the desktop would open, and puts the real opener back.
class OpenedFiles {
public:
    OpenedFiles()
    {
        reports::setUrlOpener([this](const QUrl& url) {
            mUrls.append(url);
            return true;
        });
    }
    ~OpenedFiles()
    {
        reports::setUrlOpener({});
        for (const QUrl& u : mUrls)
            QFile::remove(u.toLocalFile());
    }
    const QList<QUrl>& urls() const { return mUrls; }

private:
    QList<QUrl> mUrls;
};

} // namespace

TEST(ReportServices, AGridBecomesARealSpreadsheet)
{
    test::TestData data;
    QTemporaryDir settings;
    ui::GridSettings::setStorageFile(settings.filePath(QStringLiteral("rejillas.ini")));
    for (int i = 1; i <= 300; ++i) {
        Query q(data.dm().datos, data.dm().Transacion,
                QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, ADMINISTRADOR, PORCENTAJE_CAPTACION, FECHAALTA) "
                               "VALUES (:C, :N, :A, :P, :F)"));
        q.paramByName(QStringLiteral("C")).setAsInteger(i);
        q.paramByName(QStringLiteral("N")).setAsString(QStringLiteral("Agente %1 Peña").arg(i, 3, 10, QLatin1Char('0')));
        q.paramByName(QStringLiteral("A")).setAsString(i % 2 ? QStringLiteral("S") : QStringLiteral("N"));
        q.paramByName(QStringLiteral("P")).setAsDouble(i + 0.25);
        q.paramByName(QStringLiteral("F")).setAsDate(QDate(2026, 1, 1).addDays(i));
        q.exec();
    }
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setSelectSQL(QStringLiteral("SELECT * FROM AGENTES ORDER BY CODIGO"));
    ds.open();
    ui::DataGrid grid(&ds,
                      {{QStringLiteral("CODIGO"), QStringLiteral("Código"), ui::ColumnKind::Integer},
                       {QStringLiteral("APEYNOM"), QStringLiteral("Nombre")},
                       {QStringLiteral("PORCENTAJE_CAPTACION"), QStringLiteral("Captación"), ui::ColumnKind::Number},
                       {QStringLiteral("FECHAALTA"), QStringLiteral("Alta"), ui::ColumnKind::Date},
                       {QStringLiteral("ADMINISTRADOR"), QStringLiteral("Administrador"), ui::ColumnKind::Flag}},
                      QStringLiteral("agentes"));
    grid.setColumnVisible(3, false);
    ASSERT_LT(ds.recordCount(), 300) << "the grid has not read the list yet";

    ScriptedDialogs dialogs;
    OpenedFiles opened;
    ReportServices services;
    grid.setSheetName(QStringLiteral("Agentes"));
    // The grid hands its visible columns to the service; the service fetches every row.
    ui::Services::install(&services);
    grid.exportToSpreadsheet();
    ui::Services::install(nullptr);

    EXPECT_TRUE(dialogs.log().isEmpty());
    ASSERT_EQ(opened.urls().size(), 1);
    const QString file = opened.urls().first().toLocalFile();
    ASSERT_TRUE(file.endsWith(QStringLiteral(".xlsx")));
    ASSERT_TRUE(QFileInfo::exists(file));
    int code = -1;
    const QString csv = test::runTool(QStringLiteral("xlsx2csv"), {file}, &code);
    EXPECT_EQ(code, 0);
    const QStringList lines = csv.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 301) << csv.toStdString();
    EXPECT_EQ(lines.at(0), QStringLiteral("Código,Nombre,Captación,Administrador"));
    EXPECT_EQ(lines.at(1), QStringLiteral("1,Agente 001 Peña,1.25,S"));
    EXPECT_EQ(lines.at(300), QStringLiteral("300,Agente 300 Peña,300.25,N"));
    const QString workbook = test::runTool(QStringLiteral("unzip"), {QStringLiteral("-p"), file,
                                                                     QStringLiteral("xl/workbook.xml")});
    EXPECT_TRUE(workbook.contains(QStringLiteral("name=\"Agentes\""))) << workbook.toStdString();
    ui::GridSettings::setStorageFile({});
}

TEST(ReportServices, AMissingTemplateIsToldOnce)
{
    ScriptedDialogs dialogs;
    ReportServices services;
    EXPECT_FALSE(services.print(QStringLiteral("no_existe"), {}));
    services.preview(QStringLiteral("no_existe"), {});
    const QList<ScriptedDialogs::Entry> log = dialogs.log();
    ASSERT_EQ(log.size(), 2);
    for (const ScriptedDialogs::Entry& e : log) {
        EXPECT_EQ(e.kind, ScriptedDialogs::Kind::Error);
        EXPECT_TRUE(e.text.contains(QStringLiteral("no_existe"))) << e.text.toStdString();
    }
    try {
        reports::renderHtml(QStringLiteral("no_existe"), {});
        ADD_FAILURE() << "no error";
    } catch (const reports::ReportError& e) {
        EXPECT_EQ(log.first().text, e.message()) << "the report's own message";
    }
}

TEST(ReportServices, StartUpInstallsThem)
{
    ui::Services* before = &ui::services();
    ASSERT_EQ(dynamic_cast<ReportServices*>(before), nullptr);
    reports::installReportServices();
    EXPECT_NE(dynamic_cast<ReportServices*>(&ui::services()), nullptr);
    ui::Services::install(nullptr);
    EXPECT_EQ(&ui::services(), before);
}
