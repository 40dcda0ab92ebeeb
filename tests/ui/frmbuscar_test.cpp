#include "datasetmodel.h"
#include "frmbuscar.h"
#include "query.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;
using namespace tv::ui;

namespace {

const QString kSql = QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS ORDER BY DESMUNIINE");

// The dialog over the seeded municipalities, with two upper-case ones added
// (the seeded names are mixed case, and the search upper-cases what is typed).
class FrmBuscar : public ::testing::Test {
protected:
    void SetUp() override
    {
        exec("INSERT INTO MUNICIPIOS (ID, DESMUNIINE, CODIGOINE, DESPROVINCIA) VALUES (90001, 'VILLAMADRE', 99001, "
             "'PRUEBA')");
        exec("INSERT INTO MUNICIPIOS (ID, DESMUNIINE, CODIGOINE, DESPROVINCIA) VALUES (90002, 'MADROÑAL DE ARRIBA', "
             "99002, 'PRUEBA')");
        dlg = std::make_unique<TTfrmBuscar>(data.dm().datos, data.dm().Transacion);
        campos = dlg->findChild<QComboBox*>(QStringLiteral("cbCampos"));
        texto = dlg->findChild<QLineEdit*>(QStringLiteral("edBuscar"));
        grid = dlg->findChild<QTableView*>(QStringLiteral("grid"));
        seleccionar = dlg->findChild<QPushButton*>(QStringLiteral("FlatButton1"));
        cancelar = dlg->findChild<QPushButton*>(QStringLiteral("FlatButton2"));
        ASSERT_TRUE(campos && texto && grid && seleccionar && cancelar);
    }

    void TearDown() override { llenarCamposBusqueda({}); }

    void exec(const char* sql) { Query::execute(data.dm().datos, data.dm().Transacion, QString::fromUtf8(sql)); }

    int count(const QString& sql) { return Query::scalar(data.dm().datos, data.dm().Transacion, sql).toInt(); }

    // Fills the table as a caller does and shows the dialog.
    void mostrar(const QString& sql = kSql)
    {
        llenarCamposBusqueda({{QStringLiteral("DESMUNIINE"), QStringLiteral("Municipio")},
                              {QStringLiteral("CODIGOINE"), QStringLiteral("Código INE")},
                              {QStringLiteral("DESPROVINCIA"), QStringLiteral("Provincia")}});
        dlg->setSql(sql);
        dlg->show();
    }

    // Every row of the result, as the grid shows them.
    int filasEnRejilla()
    {
        dlg->qrybuscar()->fetchAll();
        return grid->model()->rowCount();
    }

    QString valorActual(const char* field)
    {
        return dlg->qrybuscar()->fieldByName(QString::fromUtf8(field)).asString();
    }

    test::TestData data;
    std::unique_ptr<TTfrmBuscar> dlg;
    QComboBox* campos = nullptr;
    QLineEdit* texto = nullptr;
    QTableView* grid = nullptr;
    QPushButton* seleccionar = nullptr;
    QPushButton* cancelar = nullptr;
};

TEST(FrmBuscarTabla, CreatingTheDialogClearsTheCaptions)
{
    test::TestData data;
    llenarCamposBusqueda({{QStringLiteral("A"), QStringLiteral("Uno")}, {QStringLiteral("B"), QStringLiteral("Dos")}});
    TTfrmBuscar dlg(data.dm().datos, data.dm().Transacion);
    for (const CampoBusqueda& c : camposBusqueda())
        EXPECT_TRUE(c.titulo.isEmpty()) << c.campo.toStdString();
    // Only the captions go: the caller names the columns again anyway.
    EXPECT_EQ(camposBusqueda()[0].campo, QStringLiteral("A"));
    EXPECT_EQ(dlg.findChild<QComboBox*>(QStringLiteral("cbCampos"))->count(), 0);
    EXPECT_EQ(dlg.windowTitle(), QStringLiteral("Busqueda"));
    EXPECT_EQ(dlg.qrybuscar()->objectName(), QStringLiteral("qrybuscar"));
    EXPECT_EQ(dlg.findChild<QPushButton*>(QStringLiteral("FlatButton1"))->text(), QStringLiteral("&Seleccionar"));
    EXPECT_EQ(dlg.findChild<QPushButton*>(QStringLiteral("FlatButton2"))->text(), QStringLiteral("&Cancelar"));
    llenarCamposBusqueda({});
}

TEST(FrmBuscarTabla, FillsFromColumnDescriptions)
{
    Columns columnas;
    columnas.append({QStringLiteral("CODIGO"), QStringLiteral("Código"), ui::ColumnKind::Integer});
    columnas.append({QStringLiteral("FOTO"), QStringLiteral("Foto"), ui::ColumnKind::Picture});
    Column oculta{QStringLiteral("CLAVE"), QStringLiteral("Clave")};
    oculta.searchable = false;
    columnas.append(oculta);
    for (int i = 0; i < 10; ++i)
        columnas.append({QStringLiteral("C%1").arg(i), QStringLiteral("Columna %1").arg(i)});
    const QList<CampoBusqueda> campos = camposBusquedaDe(columnas);
    ASSERT_EQ(campos.size(), 8);
    EXPECT_EQ(campos[0].campo, QStringLiteral("CODIGO"));
    EXPECT_EQ(campos[0].titulo, QStringLiteral("Código"));
    EXPECT_EQ(campos[1].campo, QStringLiteral("C0"));
    EXPECT_EQ(campos[7].titulo, QStringLiteral("Columna 6"));

    llenarCamposBusqueda(campos.mid(0, 2));
    EXPECT_EQ(camposBusqueda()[1].titulo, QStringLiteral("Columna 0"));
    EXPECT_TRUE(camposBusqueda()[2].campo.isEmpty());
    EXPECT_TRUE(camposBusqueda()[7].titulo.isEmpty());
    llenarCamposBusqueda({});
}

TEST_F(FrmBuscar, ShowingOpensTheCallersSelectAndFillsTheFieldBox)
{
    mostrar();
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(), kSql);
    ASSERT_TRUE(dlg->qrybuscar()->isOpen());
    EXPECT_EQ(filasEnRejilla(), 8131 + 2);
    ASSERT_EQ(campos->count(), 3);
    EXPECT_EQ(campos->itemText(0), QStringLiteral("Municipio"));
    EXPECT_EQ(campos->itemText(1), QStringLiteral("Código INE"));
    EXPECT_EQ(campos->itemText(2), QStringLiteral("Provincia"));
    EXPECT_EQ(campos->currentIndex(), 0);
    EXPECT_EQ(campos->currentText(), QStringLiteral("Municipio"));
    EXPECT_EQ(dlg->focusWidget(), texto);
    EXPECT_TRUE(texto->text().isEmpty());
    // The grid is headed by the captions where the table gives them.
    auto* model = grid->model();
    EXPECT_EQ(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("ID"));
    EXPECT_EQ(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Municipio"));
    EXPECT_EQ(model->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Código INE"));
    EXPECT_EQ(model->headerData(3, Qt::Horizontal).toString(), QStringLiteral("Provincia"));
    // A text column is wider than a number.
    EXPECT_GT(grid->horizontalHeader()->sectionSize(1), grid->horizontalHeader()->sectionSize(0));
}

TEST_F(FrmBuscar, AnEmptyEntryEndsTheFieldBox)
{
    llenarCamposBusqueda({{QStringLiteral("DESMUNIINE"), QStringLiteral("Municipio")}});
    dlg->setSql(kSql);
    dlg->show();
    EXPECT_EQ(campos->count(), 1);
    EXPECT_EQ(dlg->campoElegido().campo, QStringLiteral("DESMUNIINE"));
}

TEST_F(FrmBuscar, MaximumLengthFollowsTheColumn)
{
    mostrar();
    EXPECT_EQ(texto->maxLength(), 70);
    EXPECT_EQ(dlg->tamanoCampo(), 70);
    campos->setCurrentIndex(1);
    EXPECT_EQ(texto->maxLength(), 12);
    EXPECT_TRUE(dlg->campoEntero());
    EXPECT_EQ(dlg->tamanoCampo(), 0);
    campos->setCurrentIndex(2);
    EXPECT_EQ(texto->maxLength(), 30);
    EXPECT_FALSE(dlg->campoEntero());
}

TEST_F(FrmBuscar, TypingFiltersTheGrid)
{
    mostrar();
    QTest::keyClicks(texto, "madr");
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS  WHERE DESMUNIINE like "
                             "'%MADR%' ORDER BY DESMUNIINE"));
    ASSERT_EQ(filasEnRejilla(), 2);
    EXPECT_EQ(grid->model()->index(0, 1).data().toString(), QStringLiteral("MADROÑAL DE ARRIBA"));
    EXPECT_EQ(grid->model()->index(1, 1).data().toString(), QStringLiteral("VILLAMADRE"));
    EXPECT_EQ(grid->currentIndex().row(), 0);

    // Emptying the box on a text column lists every row with a value.
    texto->clear();
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS  WHERE DESMUNIINE like "
                             "'%%' ORDER BY DESMUNIINE"));
    EXPECT_EQ(filasEnRejilla(), 8131 + 2);
}

TEST_F(FrmBuscar, IntegerColumnsMatchByTheirStart)
{
    mostrar();
    campos->setCurrentIndex(1);
    QTest::keyClicks(texto, "280");
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS  WHERE CODIGOINE like "
                             "'280%' ORDER BY DESMUNIINE"));
    const int expected = count(QStringLiteral("SELECT COUNT(*) FROM MUNICIPIOS WHERE CODIGOINE = 280 OR CODIGOINE "
                                              "BETWEEN 2800 AND 2809 OR CODIGOINE BETWEEN 28000 AND 28099"));
    ASSERT_GT(expected, 50);
    EXPECT_EQ(filasEnRejilla(), expected);

    // An empty box on a column without a size has no condition at all.
    texto->clear();
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS  ORDER BY DESMUNIINE"));
    EXPECT_EQ(filasEnRejilla(), 8131 + 2);
}

TEST_F(FrmBuscar, ChangingTheFieldEmptiesTheBoxAndSearchesAgain)
{
    mostrar();
    QTest::keyClicks(texto, "villa");
    EXPECT_EQ(filasEnRejilla(), 1);
    campos->setCurrentIndex(2);
    EXPECT_TRUE(texto->text().isEmpty());
    EXPECT_EQ(dlg->focusWidget(), texto);
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS  WHERE DESPROVINCIA like "
                             "'%%' ORDER BY DESMUNIINE"));
    QTest::keyClicks(texto, "prueba");
    EXPECT_EQ(filasEnRejilla(), 2);
}

TEST_F(FrmBuscar, ABaseThatFiltersGetsAnd)
{
    mostrar(QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS WHERE DESPROVINCIA = "
                           "'PRUEBA' ORDER BY ID"));
    EXPECT_EQ(filasEnRejilla(), 2);
    texto->setText(QStringLiteral("ña")); // keyClicks types ASCII only
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS WHERE DESPROVINCIA = "
                             "'PRUEBA'  AND DESMUNIINE like '%ÑA%' ORDER BY ID"));
    ASSERT_EQ(filasEnRejilla(), 1);
    EXPECT_EQ(valorActual("ID"), QStringLiteral("90002"));
}

TEST_F(FrmBuscar, WorksOverAJoin)
{
    exec("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (1, 99001, 'CENTRO')");
    exec("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (2, 99002, 'PLAYA')");
    exec("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (3, 99002, 'CENTRO HISTORICO')");
    llenarCamposBusqueda({{QStringLiteral("Z.DESCRIPCION"), QStringLiteral("Zona")},
                          {QStringLiteral("Z.CODIGO"), QStringLiteral("Código")}});
    dlg->setSql(QStringLiteral("SELECT Z.CODIGO, Z.DESCRIPCION, M.DESMUNIINE FROM ZONAS Z JOIN MUNICIPIOS M ON "
                               "M.CODIGOINE = Z.CODMUNIINE ORDER BY Z.CODIGO"));
    dlg->show();
    EXPECT_EQ(filasEnRejilla(), 3);
    EXPECT_EQ(texto->maxLength(), 20);
    QTest::keyClicks(texto, "centro");
    EXPECT_EQ(filasEnRejilla(), 2);
    EXPECT_EQ(grid->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Zona"));
    campos->setCurrentIndex(1);
    EXPECT_EQ(texto->maxLength(), 12);
    QTest::keyClicks(texto, "2");
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT Z.CODIGO, Z.DESCRIPCION, M.DESMUNIINE FROM ZONAS Z JOIN MUNICIPIOS M ON "
                             "M.CODIGOINE = Z.CODMUNIINE  WHERE Z.CODIGO like '2%' ORDER BY Z.CODIGO"));
    ASSERT_EQ(filasEnRejilla(), 1);
    EXPECT_EQ(valorActual("DESMUNIINE"), QStringLiteral("MADROÑAL DE ARRIBA"));
}

TEST_F(FrmBuscar, OnAnIntegerColumnANonDigitRubsOutThePreviousCharacter)
{
    mostrar();
    campos->setCurrentIndex(1);
    QTest::keyClicks(texto, "280");
    QTest::keyClick(texto, Qt::Key_A);
    EXPECT_EQ(texto->text(), QStringLiteral("28"));
    QTest::keyClick(texto, Qt::Key_Space);
    EXPECT_EQ(texto->text(), QStringLiteral("2"));
    QTest::keyClick(texto, Qt::Key_Minus);
    EXPECT_TRUE(texto->text().isEmpty());
    QTest::keyClicks(texto, "79");
    QTest::keyClick(texto, Qt::Key_Backspace);
    EXPECT_EQ(texto->text(), QStringLiteral("7"));
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE, CODIGOINE, DESPROVINCIA FROM MUNICIPIOS  WHERE CODIGOINE like "
                             "'7%' ORDER BY DESMUNIINE"));
    // A text column takes letters as they come.
    campos->setCurrentIndex(0);
    QTest::keyClicks(texto, "ab 1");
    EXPECT_EQ(texto->text(), QStringLiteral("ab 1"));
}

TEST_F(FrmBuscar, EnterSelectsTheCurrentRow)
{
    mostrar();
    QTest::keyClicks(texto, "madr");
    grid->setCurrentIndex(grid->model()->index(1, 1));
    EXPECT_EQ(dlg->qrybuscar()->recNo(), 1);
    QTest::keyClick(texto, Qt::Key_Return);
    EXPECT_EQ(dlg->result(), 1);
    EXPECT_FALSE(dlg->isVisible());
    EXPECT_EQ(valorActual("DESMUNIINE"), QStringLiteral("VILLAMADRE"));
    const QVariantMap fila = filaActual(*dlg->qrybuscar());
    EXPECT_EQ(fila.value(QStringLiteral("ID")).toInt(), 90001);
    EXPECT_EQ(fila.value(QStringLiteral("CODIGOINE")).toInt(), 99001);
}

TEST_F(FrmBuscar, SeleccionarOnAnEmptyResultLeavesTheDialogOpen)
{
    mostrar();
    QTest::keyClicks(texto, "zzzz");
    ASSERT_EQ(filasEnRejilla(), 0);
    seleccionar->click();
    EXPECT_TRUE(dlg->isVisible());
    EXPECT_EQ(dlg->result(), 0);
    QTest::keyClick(texto, Qt::Key_Enter);
    EXPECT_TRUE(dlg->isVisible());

    QTest::keyClick(texto, Qt::Key_Backspace);
    QTest::keyClick(texto, Qt::Key_Backspace);
    QTest::keyClick(texto, Qt::Key_Backspace);
    QTest::keyClick(texto, Qt::Key_Backspace);
    QTest::keyClicks(texto, "villa");
    seleccionar->click();
    EXPECT_FALSE(dlg->isVisible());
    EXPECT_EQ(dlg->result(), 1);
    EXPECT_EQ(valorActual("ID"), QStringLiteral("90001"));
}

TEST_F(FrmBuscar, DoubleClickOnARowSelectsIt)
{
    mostrar();
    campos->setCurrentIndex(2);
    QTest::keyClicks(texto, "prueba");
    ASSERT_EQ(filasEnRejilla(), 2);
    const QRect cell = grid->visualRect(grid->model()->index(1, 1));
    ASSERT_TRUE(cell.isValid());
    // A double click arrives after the first click of the pair.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
    EXPECT_TRUE(dlg->isVisible());
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
    EXPECT_EQ(dlg->result(), 1);
    EXPECT_FALSE(dlg->isVisible());
    EXPECT_EQ(dlg->qrybuscar()->recNo(), 1);
    EXPECT_EQ(valorActual("DESMUNIINE"), QStringLiteral("VILLAMADRE"));
}

TEST_F(FrmBuscar, EscapeCancels)
{
    mostrar();
    QTest::keyClicks(texto, "villa");
    QTest::keyClick(texto, Qt::Key_Escape);
    EXPECT_EQ(dlg->result(), 0);
    EXPECT_FALSE(dlg->isVisible());

    // From the grid too.
    dlg->show();
    QTest::keyClick(grid, Qt::Key_Escape);
    EXPECT_EQ(dlg->result(), 0);
    EXPECT_FALSE(dlg->isVisible());
}

TEST_F(FrmBuscar, CancelarCloses)
{
    mostrar();
    QTest::keyClicks(texto, "villa");
    cancelar->click();
    EXPECT_EQ(dlg->result(), 0);
    EXPECT_FALSE(dlg->isVisible());
}

TEST_F(FrmBuscar, ShowingAgainStartsFromTheCallersNewSelect)
{
    mostrar();
    QTest::keyClicks(texto, "villa");
    cancelar->click();
    mostrar(QStringLiteral("SELECT ID, DESMUNIINE FROM MUNICIPIOS WHERE ID > 90000 ORDER BY ID DESC"));
    EXPECT_EQ(filasEnRejilla(), 2);
    EXPECT_TRUE(texto->text().isEmpty());
    QTest::keyClicks(texto, "madr");
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE FROM MUNICIPIOS WHERE ID > 90000  AND DESMUNIINE like '%MADR%' "
                             "ORDER BY ID DESC"));
    EXPECT_EQ(filasEnRejilla(), 2);
    // CODIGOINE is not among the select's fields: no size known, so a start
    // match, and no limit on the box.
    campos->setCurrentIndex(1);
    EXPECT_EQ(dlg->tamanoCampo(), 0);
    EXPECT_FALSE(dlg->campoEntero());
    EXPECT_EQ(texto->maxLength(), 32767);
    QTest::keyClicks(texto, "99001");
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(),
              QStringLiteral("SELECT ID, DESMUNIINE FROM MUNICIPIOS WHERE ID > 90000  AND CODIGOINE like '99001%' "
                             "ORDER BY ID DESC"));
    ASSERT_EQ(filasEnRejilla(), 1);
    EXPECT_EQ(valorActual("ID"), QStringLiteral("90001"));
}

TEST_F(FrmBuscar, AFailingSelectIsToldWithTheDatabasesMessage)
{
    test::ScriptedDialogs dialogs;
    mostrar(QStringLiteral("SELECT NOEXISTE FROM MUNICIPIOS ORDER BY ID"));
    const QStringList texts = dialogs.texts();
    ASSERT_EQ(texts.size(), 1);
    EXPECT_TRUE(texts.first().contains(QStringLiteral("NOEXISTE"))) << texts.first().toStdString();
    seleccionar->click();
    EXPECT_TRUE(dlg->isVisible());
}

} // namespace
