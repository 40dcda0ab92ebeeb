#include "pdftools.h"
#include "report.h"
#include "scripteddialogs.h"

#include <QDate>
#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace tv::reports;

namespace {

Sheet muestra()
{
    Sheet s;
    s.name = "Gastos";
    s.titles = {"Código", "Fecha", "Descripción", "Importe", "Unidades", "Pagado"};
    s.rows.append({"00012", QDate(2026, 3, 7), "Anuncio, en portales", 1234.56, 3, true});
    s.rows.append({"00013", QDateTime(QDate(2026, 3, 8), QTime(10, 30)), "Línea 1\nLínea 2", -50.0, QVariant(), false});
    return s;
}

// The sheet's values as xlsx2csv reads them (dates in the file's own format).
QString csv(const QString& path)
{
    int code = -1;
    const QString out = tv::test::runTool("xlsx2csv", {path}, &code);
    EXPECT_EQ(code, 0);
    return out;
}

// The worksheet's XML: a typed number is a <c> without t="s" (shared string).
QString sheetXml(const QString& path)
{
    return tv::test::runTool("unzip", {"-p", path, "xl/worksheets/sheet1.xml"});
}

} // namespace

TEST(Spreadsheet, WritesTitlesTypedNumbersAndDates)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("hoja.xlsx");
    writeSpreadsheet(muestra(), path);
    ASSERT_TRUE(QFileInfo::exists(path));
    const QString values = csv(path);
    const QStringList lines = values.split('\n', Qt::SkipEmptyParts);
    ASSERT_GE(lines.size(), 3);
    EXPECT_EQ(lines.at(0), "Código,Fecha,Descripción,Importe,Unidades,Pagado");
    EXPECT_EQ(lines.at(1), "00012,07/03/2026,\"Anuncio, en portales\",1234.56,3,Sí");
    EXPECT_TRUE(values.contains("00013,08/03/2026 10:30,\"Línea 1\nLínea 2\",-50,,No")) << values.toStdString();

    const QString xml = sheetXml(path);
    // Titles and the code are text; the date is a serial day number; amounts and counts are numbers.
    EXPECT_TRUE(xml.contains(QRegularExpression(R"(<c r="A1" s="\d+" t="s">)"))) << xml.toStdString();
    EXPECT_TRUE(xml.contains(QRegularExpression(R"(<c r="A2" t="s">)"))) << xml.toStdString();
    EXPECT_TRUE(xml.contains(QRegularExpression(R"(<c r="B2" s="\d+"><v>46088</v></c>)"))) << xml.toStdString();
    EXPECT_TRUE(xml.contains(QRegularExpression(R"(<c r="D2" s="\d+"><v>1234.56</v></c>)"))) << xml.toStdString();
    EXPECT_TRUE(xml.contains(QRegularExpression(R"(<c r="E2" s="\d+"><v>3</v></c>)"))) << xml.toStdString();
    EXPECT_TRUE(xml.contains(QRegularExpression(R"(<c r="D3" s="\d+"><v>-50</v></c>)"))) << xml.toStdString();
    EXPECT_FALSE(xml.contains(R"(<c r="E3")")) << "a NULL stays an empty cell";
    // Titles stay in view and every column has a width.
    EXPECT_TRUE(xml.contains(R"(state="frozen")"));
    EXPECT_EQ(xml.count("customWidth=\"1\""), 6);
}

TEST(Spreadsheet, AFileThatCannotBeWrittenIsReported)
{
    try {
        writeSpreadsheet(muestra(), "/no/existe/hoja.xlsx");
        FAIL() << "no error";
    } catch (const ReportError& e) {
        EXPECT_TRUE(e.message().startsWith("No se ha podido escribir la hoja de cálculo /no/existe/hoja.xlsx"))
            << e.message().toStdString();
    }
}

TEST(Spreadsheet, ExportOpensTheFileOrSaysExcelIsMissing)
{
    tv::test::ScriptedDialogs dialogs;
    QList<QUrl> opened;
    bool answer = true;
    setUrlOpener([&](const QUrl& url) {
        opened.append(url);
        return answer;
    });

    exportToSpreadsheet(muestra());
    ASSERT_EQ(opened.size(), 1);
    EXPECT_TRUE(opened.at(0).isLocalFile());
    const QString file = opened.at(0).toLocalFile();
    EXPECT_TRUE(file.endsWith(".xlsx"));
    EXPECT_TRUE(QFileInfo::exists(file));
    EXPECT_TRUE(csv(file).contains("00012,07/03/2026"));
    EXPECT_TRUE(dialogs.log().isEmpty());

    answer = false;
    exportToSpreadsheet(muestra());
    ASSERT_EQ(opened.size(), 2);
    EXPECT_NE(opened.at(1), opened.at(0)) << "each export gets its own file";
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, tv::test::ScriptedDialogs::Kind::Error);
    EXPECT_EQ(dialogs.log().at(0).text, "No se ha podido iniciar, debe tener instalado Microsoft Excel.");

    QFile::remove(opened.at(0).toLocalFile());
    QFile::remove(opened.at(1).toLocalFile());
    setUrlOpener({});
}

TEST(Spreadsheet, AGridModelBecomesASheetWithItsTypes)
{
    QStandardItemModel model(2, 3);
    model.setHorizontalHeaderLabels({"Código", "Fecha", "Precio"});
    model.setData(model.index(0, 0), "00001");
    model.setData(model.index(0, 1), QDate(2026, 1, 10));
    model.setData(model.index(0, 2), 185000.0);
    model.setData(model.index(1, 0), "00002");
    model.setData(model.index(1, 2), 420000.0);
    const Sheet s = sheetFromModel(model);
    EXPECT_EQ(s.titles, QStringList({"Código", "Fecha", "Precio"}));
    ASSERT_EQ(s.rows.size(), 2);
    EXPECT_EQ(s.rows.at(0).at(1).typeId(), QMetaType::QDate);
    EXPECT_EQ(s.rows.at(1).at(2).toDouble(), 420000.0);
    QTemporaryDir dir;
    writeSpreadsheet(s, dir.filePath("grid.xlsx"));
    EXPECT_TRUE(csv(dir.filePath("grid.xlsx")).contains("00001,10/01/2026,185000"));
    EXPECT_TRUE(sheetXml(dir.filePath("grid.xlsx")).contains(QRegularExpression(R"(<c r="C2" s="\d+"><v>185000</v></c>)")));
}
