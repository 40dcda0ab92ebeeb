// The financing table: the seven recalculation steps, the 5 x 7 grid, the
// screen's boxes and its printing.
#include "campoimporte.h"
#include "cuadrofinanciacion.h"
#include "frmfinanciacion.h"
#include "informefinanciacion.h"
#include "report.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"
#include "testdata.h"

#include <QLineEdit>
#include <QSpinBox>
#include <QTest>
#include <gtest/gtest.h>

using namespace tv::finance;
using tv::Money;
using tv::test::ScriptedDialogs;
using tv::test::ScriptedServices;

namespace {

Money euros(const char* text)
{
    Money m;
    EXPECT_TRUE(Money::parse(QString::fromLatin1(text), &m)) << text;
    return m;
}

// One screen: price 249.999,99, variable costs 10 % (24.999,999), fixed
// costs 3.000, down payment 50.000, so a loan of 227.999,989; 25 years at
// 0,5 %. The rows run from -0,5 % to 1,5 %; the second is the zero rule.
// Worked out with exact rational arithmetic (Python's fractions).
const char* const kRejilla[5][7] = {
    {"1.852,50 €", "1.219,50 €", "903,09 €", "713,33 €", "586,89 €", "496,63 €", "428,98 €"},
    {"1.900,00 €", "1.267,00 €", "950,00 €", "760,00 €", "633,00 €", "543,00 €", "475,00 €"},
    {"1.948,29 €", "1.315,02 €", "998,49 €", "808,65 €", "682,15 €", "591,85 €", "524,18 €"},
    {"1.997,37 €", "1.364,57 €", "1.048,56 €", "859,27 €", "733,34 €", "643,61 €", "576,51 €"},
    {"2.047,25 €", "1.415,29 €", "1.100,20 €", "911,85 €", "786,87 €", "698,10 €", "631,95 €"},
};
const char* const kTipos[5] = {"-0,50 %", "0,00 %", "0,50 %", "1,00 %", "1,50 %"};

CuadroFinanciacion ejemplo()
{
    CuadroFinanciacion c;
    c.importeInmueble = euros("249999.99");
    c.variable = euros("10");
    c.importeFijo = euros("3000");
    c.importeEntrada = euros("50000");
    c.anos = 25;
    c.intereses = euros("0.5");
    return c;
}

} // namespace

TEST(Financiacion, StepsOneToFive)
{
    CuadroFinanciacion c = ejemplo();
    c.recalcular(false);
    EXPECT_EQ(c.importeVariable, euros("24999.999"));
    EXPECT_EQ(c.totalOperacion, euros("277999.989"));
    EXPECT_EQ(c.importeHipoteca, euros("227999.989"));
    EXPECT_EQ(c.cuota, euros("808.65"));
    EXPECT_EQ(c.importeInmueble, euros("249999.99"));
    EXPECT_EQ(c.importeFijo, euros("3000"));
    EXPECT_EQ(c.importeEntrada, euros("50000"));
}

TEST(Financiacion, VariableCostsKeepFourDecimals)
{
    CuadroFinanciacion c;
    c.importeInmueble = euros("123456.78");
    c.variable = euros("10.55");
    c.recalcular(false);
    // 13024.690290 -> 13024.6903
    EXPECT_EQ(c.importeVariable, euros("13024.6903"));
    EXPECT_EQ(c.totalOperacion, euros("136481.4703"));
}

TEST(Financiacion, BlankPriceZeroesTheOperation)
{
    CuadroFinanciacion c = ejemplo();
    c.recalcular(true);
    EXPECT_EQ(c.importeInmueble, Money());
    EXPECT_EQ(c.importeFijo, Money());
    EXPECT_EQ(c.importeVariable, Money());
    EXPECT_EQ(c.totalOperacion, Money());
    EXPECT_EQ(c.importeEntrada, Money());
    EXPECT_EQ(c.importeHipoteca, Money());
    EXPECT_EQ(c.cuota, Money());
    EXPECT_EQ(c.variable, euros("10"));  // the percentage is not an amount and stays
    for (const auto& fila : c.celdas)
        for (Money m : fila)
            EXPECT_EQ(m, Money());
}

TEST(Financiacion, NoInstalmentWithoutLoanOrTerm)
{
    CuadroFinanciacion c = ejemplo();
    c.anos = 0;
    c.recalcular(false);
    EXPECT_EQ(c.cuota, Money());
    EXPECT_EQ(c.celdas[2][3], euros("808.65"));  // the grid has its own terms
    c = ejemplo();
    c.importeEntrada = euros("300000");  // more down payment than cost
    c.recalcular(false);
    EXPECT_EQ(c.importeHipoteca, euros("-22000.011"));
    EXPECT_EQ(c.cuota, Money());
}

TEST(Financiacion, GridRatesAroundTheChosenOne)
{
    CuadroFinanciacion c = ejemplo();
    c.intereses = euros("3.25");
    c.recalcular(false);
    const char* esperados[] = {"2.25", "2.75", "3.25", "3.75", "4.25"};
    for (int f = 0; f < 5; ++f)
        EXPECT_EQ(c.interes[f], euros(esperados[f]));
    c.intereses = euros("1");  // the first row falls to 0: the zero rule
    c.recalcular(false);
    EXPECT_EQ(c.interes[0], Money());
}

TEST(Financiacion, ZeroAndNegativeRowsAreComputed)
{
    CuadroFinanciacion c;
    c.importeInmueble = euros("120000");
    c.anos = 10;
    c.intereses = euros("1");
    c.recalcular(false);
    EXPECT_EQ(c.celdas[0][0], euros("1000"));  // 0 % over 10 years
    c.intereses = euros("0.5");
    c.recalcular(false);
    EXPECT_EQ(c.interes[0], euros("-0.5"));
    EXPECT_EQ(c.celdas[0][0], euros("975"));  // -0,5 % by the formula
    EXPECT_EQ(c.celdas[1][0], euros("1000"));
}

TEST(Financiacion, ScreenShowsTheThirtyFiveCells)
{
    TfrmFinanciacion frm;
    frm.edImporteInmueble()->setText(QStringLiteral("249999,99"));
    frm.edVariable()->setText(QStringLiteral("10"));
    frm.edImporteFijo()->setText(QStringLiteral("3000"));
    frm.edImporteEntrada()->setText(QStringLiteral("50.000,00 €"));
    frm.edAnos()->setValue(25);
    frm.edIntereses()->setText(QStringLiteral("0,5"));

    EXPECT_EQ(frm.edImporteVariable()->text(), QStringLiteral("25.000,00 €"));
    EXPECT_EQ(frm.edTotalOperacion()->text(), QStringLiteral("277.999,99 €"));
    EXPECT_EQ(frm.edImporteHipoteca()->text(), QStringLiteral("227.999,99 €"));
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("808,65 €"));
    for (int f = 1; f <= 5; ++f) {
        EXPECT_EQ(frm.edInteres(f)->text(), QString::fromUtf8(kTipos[f - 1]));
        EXPECT_EQ(frm.edInteres(f)->objectName(), QStringLiteral("edInteres%1").arg(f));
        for (int c = 1; c <= 7; ++c) {
            EXPECT_EQ(frm.celda(f, c)->text(), QString::fromUtf8(kRejilla[f - 1][c - 1])) << "c" << f << c;
            EXPECT_EQ(frm.celda(f, c)->objectName(), QStringLiteral("c%1%2").arg(f).arg(c));
        }
    }
}

TEST(Financiacion, ScreenRecalculatesOnEveryChange)
{
    TfrmFinanciacion frm;
    frm.show();
    frm.edImporteInmueble()->setValue(euros("200000"));
    frm.edVariable()->setValue(Money());
    frm.edIntereses()->setValue(euros("3"));
    frm.edAnos()->setValue(25);
    EXPECT_EQ(frm.edImporteHipoteca()->text(), QStringLiteral("200.000,00 €"));
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("948,42 €"));
    frm.edImporteEntrada()->setValue(euros("100000"));
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("474,21 €"));
    frm.edAnos()->setValue(10);
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("965,61 €"));
    frm.edIntereses()->setValue(Money());
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("833,00 €"));
    frm.edImporteFijo()->setValue(euros("20000"));
    EXPECT_EQ(frm.edTotalOperacion()->text(), QStringLiteral("220.000,00 €"));
    frm.edVariable()->setValue(euros("10"));
    EXPECT_EQ(frm.edImporteVariable()->text(), QStringLiteral("20.000,00 €"));
    EXPECT_EQ(frm.edTotalOperacion()->text(), QStringLiteral("240.000,00 €"));
    EXPECT_EQ(frm.edImporteHipoteca()->text(), QStringLiteral("140.000,00 €"));
}

TEST(Financiacion, ScreenBlankPriceZeroesItsBoxes)
{
    TfrmFinanciacion frm;
    frm.edImporteInmueble()->setValue(euros("200000"));
    frm.edImporteFijo()->setValue(euros("3000"));
    frm.edImporteEntrada()->setValue(euros("40000"));
    frm.edImporteInmueble()->setText(QStringLiteral("   "));
    EXPECT_EQ(frm.edImporteInmueble()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.edImporteFijo()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.edImporteEntrada()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.edImporteVariable()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.edTotalOperacion()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.edImporteHipoteca()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.celda(3, 4)->text(), QStringLiteral("0,00 €"));
}

TEST(Financiacion, ScreenRecalculatesWhenShown)
{
    TfrmFinanciacion frm;
    EXPECT_EQ(frm.edCuota()->text(), QString());
    frm.show();
    // Nothing typed yet: a blank price gives zeros, the grid rates follow the default rate.
    // (The price box has the focus, so it holds the bare "0" ready to be typed over.)
    EXPECT_FALSE(frm.edImporteInmueble()->isBlank());
    EXPECT_EQ(frm.edImporteInmueble()->value(), Money());
    EXPECT_EQ(frm.edImporteEntrada()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("0,00 €"));
    EXPECT_EQ(frm.edInteres(3)->text(), frm.edIntereses()->text());
}

TEST(Financiacion, AmountBoxesTakeSpanishInput)
{
    CampoImporte campo(2, QStringLiteral("€"), 10);
    campo.show();
    campo.setFocus();
    QTest::keyClicks(&campo, "1234.5");  // a typed point is the decimal comma
    EXPECT_EQ(campo.text(), QStringLiteral("1234,5"));
    EXPECT_EQ(campo.value(), euros("1234.5"));
    QTest::keyClicks(&campo, "x,.9");  // letters and a second comma are refused
    EXPECT_EQ(campo.text(), QStringLiteral("1234,59"));
    campo.clearFocus();
    campo.reformat();
    EXPECT_EQ(campo.text(), QStringLiteral("1.234,59 €"));
    EXPECT_EQ(campo.value(), euros("1234.59"));
    campo.setText(QStringLiteral("12345678901"));  // an eleventh whole digit does not parse as typed
    EXPECT_FALSE(campo.hasAcceptableInput());
    campo.setText(QStringLiteral("1234,"));
    EXPECT_EQ(campo.value(), euros("1234"));
}

TEST(Financiacion, PrintsTheTableThroughTheReportService)
{
    ScriptedDialogs dialogs;
    ScriptedServices services;
    services.printAnswer(true);
    TfrmFinanciacion frm;
    frm.edImporteInmueble()->setText(QStringLiteral("249999,99"));
    frm.edVariable()->setText(QStringLiteral("10"));
    frm.edImporteFijo()->setText(QStringLiteral("3000"));
    frm.edImporteEntrada()->setText(QStringLiteral("50000"));
    frm.edAnos()->setValue(25);
    frm.edIntereses()->setText(QStringLiteral("0,5"));
    frm.btnImprimirClick();

    ASSERT_EQ(services.calls().size(), 1);
    const ScriptedServices::Call& llamada = services.calls().first();
    EXPECT_EQ(llamada.kind, ScriptedServices::Kind::Print);
    EXPECT_EQ(llamada.name, QStringLiteral("in_financiacion"));
    const QVariantMap& datos = llamada.data;
    EXPECT_EQ(datos.value(QStringLiteral("importeHipoteca")).toString(), QStringLiteral("227.999,99 €"));
    EXPECT_EQ(datos.value(QStringLiteral("cuota")).toString(), QStringLiteral("808,65 €"));
    EXPECT_EQ(datos.value(QStringLiteral("variable")).toString(), QStringLiteral("10,00 %"));
    const QVariantList plazos = datos.value(QStringLiteral("plazos")).toList();
    ASSERT_EQ(plazos.size(), 7);
    EXPECT_EQ(plazos.first().toMap().value(QStringLiteral("titulo")).toString(), QStringLiteral("10 Años"));
    EXPECT_EQ(plazos.last().toMap().value(QStringLiteral("titulo")).toString(), QStringLiteral("40 Años"));
    const QVariantList filas = datos.value(QStringLiteral("filas")).toList();
    ASSERT_EQ(filas.size(), 5);
    for (int f = 0; f < 5; ++f) {
        const QVariantMap fila = filas[f].toMap();
        EXPECT_EQ(fila.value(QStringLiteral("interes")).toString(), QString::fromUtf8(kTipos[f]));
        EXPECT_EQ(fila.value(QStringLiteral("actual")).toBool(), f == 2);
        const QVariantList celdas = fila.value(QStringLiteral("celdas")).toList();
        ASSERT_EQ(celdas.size(), 7);
        for (int c = 0; c < 7; ++c)
            EXPECT_EQ(celdas[c].toMap().value(QStringLiteral("importe")).toString(), QString::fromUtf8(kRejilla[f][c]));
    }
    EXPECT_TRUE(dialogs.log().isEmpty());
}

TEST(Financiacion, ACancelledPrintSaysNothing)
{
    ScriptedDialogs dialogs;
    ScriptedServices services;
    services.printAnswer(false);
    TfrmFinanciacion frm;
    frm.btnImprimirClick();
    ASSERT_EQ(services.calls().size(), 1);
    EXPECT_EQ(services.calls().first().kind, ScriptedServices::Kind::Print);
    EXPECT_TRUE(dialogs.log().isEmpty());
}

TEST(Financiacion, TemplateRendersTheWholeTable)
{
    CuadroFinanciacion c = ejemplo();
    c.recalcular(false);
    const QString html = tv::reports::renderHtml(QString::fromLatin1(kPlantillaFinanciacion),
                                                 datosInformeFinanciacion(c, QDate(2025, 3, 14)));
    EXPECT_TRUE(html.contains(QStringLiteral("Cuadro de financiación")));
    EXPECT_TRUE(html.contains(QStringLiteral("Tabla comparativa dependiendo del típo de interés y plazo")));
    EXPECT_TRUE(html.contains(QStringLiteral("14/03/2025")));
    EXPECT_TRUE(html.contains(QStringLiteral("10 Años")));
    EXPECT_TRUE(html.contains(QStringLiteral("40 Años")));
    EXPECT_TRUE(html.contains(QStringLiteral("227.999,99 €")));
    for (const auto& fila : kRejilla)
        for (const char* celda : fila)
            EXPECT_TRUE(html.contains(QString::fromUtf8(celda))) << celda;
    EXPECT_FALSE(html.contains(QStringLiteral("{{")));
}

TEST(Financiacion, PdfIsOnePage)
{
    CuadroFinanciacion c = ejemplo();
    c.recalcular(false);
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("cuadro.pdf"));
    tv::reports::exportPdf(QString::fromLatin1(kPlantillaFinanciacion), datosInformeFinanciacion(c, QDate(2025, 3, 14)),
                           pdf);
    QFile f(pdf);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    EXPECT_TRUE(bytes.startsWith("%PDF"));
    EXPECT_EQ(bytes.count("/Type /Page\n") + bytes.count("/Type /Page\r") + bytes.count("/Type /Page "), 1);
}

TEST(Financiacion, PrintCarriesTheAgencyLetterhead)
{
    tv::test::TestData data;
    tv::Query q(data.dm().datos, data.dm().Transacion,
                QStringLiteral("UPDATE EMPRESA SET NOMBRE = :NOMBRE, MUNICIPIO = :MUNICIPIO"));
    q.paramByName(QStringLiteral("NOMBRE")).setAsString(QStringLiteral("Inmobiliaria Peña"));
    q.paramByName(QStringLiteral("MUNICIPIO")).setAsString(QStringLiteral("Peñíscola"));
    q.exec();

    CuadroFinanciacion c = ejemplo();
    c.recalcular(false);
    const QString html = tv::reports::renderHtml(QString::fromLatin1(kPlantillaFinanciacion),
                                                 datosInformeFinanciacion(c, QDate(2025, 3, 14)));
    EXPECT_TRUE(html.contains(QStringLiteral("Inmobiliaria Peña")));
    EXPECT_TRUE(html.contains(QStringLiteral("Peñíscola")));
}
