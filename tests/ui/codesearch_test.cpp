#include "codesearchbinder.h"
#include "dataset.h"
#include "query.h"
#include "testdata.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;
using namespace tv::ui;

namespace {

// Calls about owners 10 and 11; call 3 names owner 77, who has gone.
class CodeSearch : public ::testing::Test {
protected:
    void SetUp() override
    {
        const char* rows[] = {
            "INSERT INTO PROPIETARIOS (CODIGO, APEYNOM, DIR, DIRSIGLA, PAIS, POB, PROVINCIA, NIF) "
            "VALUES (10, 'GARCIA PEREZ, ANA', 'MAYOR 1', 'C', 'ESPAÑA', 'MADRID', 'MADRID', '12345678Z')",
            "INSERT INTO PROPIETARIOS (CODIGO, APEYNOM, DIR, DIRSIGLA, PAIS, POB, PROVINCIA, NIF) "
            "VALUES (11, 'LOPEZ MARTIN, LUIS', 'SOL 2', 'C', 'ESPAÑA', 'TOLEDO', 'TOLEDO', '87654321X')",
            "INSERT INTO TELEFONOS (CODIGO, ORIGEN, CODPROPIETARIO) VALUES (1, 'UNO', 10)",
            "INSERT INTO TELEFONOS (CODIGO, ORIGEN, CODPROPIETARIO) VALUES (2, 'DOS', NULL)",
            "INSERT INTO TELEFONOS (CODIGO, ORIGEN, CODPROPIETARIO) VALUES (3, 'TRES', 77)",
        };
        for (const char* sql : rows)
            Query::execute(data.dm().datos, data.dm().Transacion, QString::fromUtf8(sql));
        ds = std::make_unique<DataSet>(data.dm().datos, data.dm().Transacion);
        ds->setTable(QStringLiteral("TELEFONOS"), {QStringLiteral("CODIGO")});
        ds->setSelectSQL(QStringLiteral("SELECT * FROM TELEFONOS ORDER BY CODIGO"));
        ds->open();
        box = new CodeSearchBox(data.dm().datos, data.dm().Transacion, CodeTarget::propietarios(), &window);
        binder = new CodeSearchBinder(*ds, QStringLiteral("CODPROPIETARIO"), box);
    }

    void TearDown() override { llenarCamposBusqueda({}); }

    QVariant stored() { return ds->fieldByName(QStringLiteral("CODPROPIETARIO")).value(); }

    void type(const char* code)
    {
        box->codeEdit()->clear();
        QTest::keyClicks(box->codeEdit(), code);
        QTest::keyClick(box->codeEdit(), Qt::Key_Return);
    }

    test::TestData data;
    std::unique_ptr<DataSet> ds;
    QWidget window;
    CodeSearchBox* box = nullptr;
    CodeSearchBinder* binder = nullptr;
};

TEST_F(CodeSearch, ShowsTheStoredCodeAndItsDescription)
{
    EXPECT_EQ(box->codeEdit()->text(), QStringLiteral("10"));
    EXPECT_EQ(box->descriptionLabel()->text(), QStringLiteral("GARCIA PEREZ, ANA"));
    EXPECT_TRUE(box->noteLabel()->text().isEmpty());
    ds->next();
    EXPECT_TRUE(box->codeEdit()->text().isEmpty());
    EXPECT_TRUE(box->descriptionLabel()->text().isEmpty());
    // A stored code whose owner has gone says so.
    ds->next();
    EXPECT_EQ(box->codeEdit()->text(), QStringLiteral("77"));
    EXPECT_TRUE(box->descriptionLabel()->text().isEmpty());
    EXPECT_EQ(box->noteLabel()->text(), QStringLiteral("Código inexistente"));
    ds->first();
    EXPECT_EQ(box->descriptionLabel()->text(), QStringLiteral("GARCIA PEREZ, ANA"));
    EXPECT_TRUE(box->noteLabel()->text().isEmpty());
}

TEST_F(CodeSearch, AKnownCodeIsWrittenWithItsDescription)
{
    int edits = 0;
    QObject::connect(binder, &FieldBinder::edited, [&] { ++edits; });
    type("11");
    EXPECT_EQ(stored().toInt(), 11);
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_EQ(edits, 1);
    EXPECT_EQ(box->descriptionLabel()->text(), QStringLiteral("LOPEZ MARTIN, LUIS"));
    EXPECT_TRUE(box->noteLabel()->text().isEmpty());
    ds->post();
    ds->applyUpdates();
    EXPECT_EQ(Query::scalar(data.dm().datos, data.dm().Transacion,
                            QStringLiteral("SELECT CODPROPIETARIO FROM TELEFONOS WHERE CODIGO = 1"))
                  .toInt(),
              11);
}

TEST_F(CodeSearch, AnUnknownCodeIsNotWritten)
{
    type("999");
    EXPECT_EQ(stored().toInt(), 10);
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_FALSE(ds->updatesPending());
    EXPECT_TRUE(box->descriptionLabel()->text().isEmpty());
    EXPECT_EQ(box->noteLabel()->text(), QStringLiteral("Código inexistente"));
    EXPECT_EQ(box->noteLabel()->palette().color(QPalette::WindowText), QColor(0xC0, 0x1C, 0x28));
    // The typing stays to be corrected.
    EXPECT_EQ(box->codeEdit()->text(), QStringLiteral("999"));
    EXPECT_EQ(box->code().toInt(), 10);

    // Correcting it takes the code and clears the note.
    type("11");
    EXPECT_EQ(stored().toInt(), 11);
    EXPECT_TRUE(box->noteLabel()->text().isEmpty());
}

TEST_F(CodeSearch, LeavingTheBoxUnchangedWritesNothing)
{
    QTest::keyClick(box->codeEdit(), Qt::Key_Return);
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    // The same code typed again is no change either.
    type("10");
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_EQ(box->descriptionLabel()->text(), QStringLiteral("GARCIA PEREZ, ANA"));
}

TEST_F(CodeSearch, EmptyingTheBoxClearsTheCode)
{
    box->codeEdit()->clear();
    EXPECT_TRUE(box->takeTypedCode());
    EXPECT_TRUE(stored().isNull() || !stored().isValid());
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_TRUE(box->descriptionLabel()->text().isEmpty());
}

TEST_F(CodeSearch, OnlyDigitsMakeAnIntegerCode)
{
    QTest::keyClicks(box->codeEdit(), "x");
    EXPECT_EQ(box->codeEdit()->text(), QStringLiteral("10"));
    // Text set from elsewhere is checked the same way, never sent to the engine.
    box->codeEdit()->setText(QStringLiteral("1x"));
    EXPECT_FALSE(box->takeTypedCode());
    box->codeEdit()->setText(QStringLiteral("99999999999"));
    EXPECT_FALSE(box->takeTypedCode());
    EXPECT_EQ(box->noteLabel()->text(), QStringLiteral("Código inexistente"));
    EXPECT_EQ(stored().toInt(), 10);
}

TEST_F(CodeSearch, ChoosingARowInTheSearchDialogWritesItsCode)
{
    box->searchButton()->click();
    TTfrmBuscar* dlg = box->searchDialog();
    ASSERT_NE(dlg, nullptr);
    EXPECT_TRUE(dlg->isVisible());
    auto* campos = dlg->findChild<QComboBox*>(QStringLiteral("cbCampos"));
    ASSERT_EQ(campos->count(), 5);
    EXPECT_EQ(campos->itemText(0), QStringLiteral("Apellidos y nombre"));
    auto* texto = dlg->findChild<QLineEdit*>(QStringLiteral("edBuscar"));
    QTest::keyClicks(texto, "lopez");
    EXPECT_EQ(dlg->qrybuscar()->selectSQL(), QStringLiteral("SELECT CODIGO, APEYNOM, NIF, TEL, POB FROM PROPIETARIOS  "
                                                            "WHERE APEYNOM like '%LOPEZ%' ORDER BY APEYNOM"));
    dlg->findChild<QPushButton*>(QStringLiteral("FlatButton1"))->click();
    EXPECT_FALSE(dlg->isVisible());
    EXPECT_EQ(box->searchDialog(), nullptr);
    EXPECT_EQ(stored().toInt(), 11);
    EXPECT_EQ(box->codeEdit()->text(), QStringLiteral("11"));
    EXPECT_EQ(box->descriptionLabel()->text(), QStringLiteral("LOPEZ MARTIN, LUIS"));
}

TEST_F(CodeSearch, CancellingTheSearchDialogLeavesTheField)
{
    box->searchButton()->click();
    TTfrmBuscar* dlg = box->searchDialog();
    ASSERT_NE(dlg, nullptr);
    dlg->findChild<QPushButton*>(QStringLiteral("FlatButton2"))->click();
    EXPECT_EQ(box->searchDialog(), nullptr);
    EXPECT_EQ(stored().toInt(), 10);
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
}

TEST_F(CodeSearch, ARefusedEditPutsTheStoredCodeBack)
{
    ds->beforeEdit += [](DataSet&) { throw Abort(); };
    type("11");
    EXPECT_EQ(stored().toInt(), 10);
    EXPECT_EQ(box->codeEdit()->text(), QStringLiteral("10"));
    EXPECT_EQ(box->descriptionLabel()->text(), QStringLiteral("GARCIA PEREZ, ANA"));
}

} // namespace
