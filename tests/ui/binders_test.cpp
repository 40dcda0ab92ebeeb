#include "checkboxbinder.h"
#include "comboboxbinder.h"
#include "dateeditbinder.h"
#include "lineeditbinder.h"
#include "memobinder.h"
#include "richtextbinder.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;

namespace {

// Agents 1..5 whose ADMINISTRADOR holds S, s, NULL, N and X.
class Binders : public ::testing::Test {
protected:
    void SetUp() override
    {
        const char* rows[] = {
            "INSERT INTO AGENTES (CODIGO, APEYNOM, ADMINISTRADOR, CODDEPARTAMENTO, FECHAALTA, OBSERVACIONES) "
            "VALUES (1, 'ANA', 'S', 2, '05.03.2024', 'Primera')",
            "INSERT INTO AGENTES (CODIGO, APEYNOM, ADMINISTRADOR, CODDEPARTAMENTO) VALUES (2, 'LUIS', 's', 7)",
            "INSERT INTO AGENTES (CODIGO, APEYNOM, ADMINISTRADOR) VALUES (3, 'PEPA', NULL)",
            "INSERT INTO AGENTES (CODIGO, APEYNOM, ADMINISTRADOR) VALUES (4, 'JUAN', 'N')",
            "INSERT INTO AGENTES (CODIGO, APEYNOM, ADMINISTRADOR) VALUES (5, 'EVA', 'X')",
            "INSERT INTO DEPARTAMENTOS (CODIGO, DESCRIPCION) VALUES (1, 'VENTAS')",
            "INSERT INTO DEPARTAMENTOS (CODIGO, DESCRIPCION) VALUES (2, 'ALQUILERES')",
        };
        for (const char* sql : rows)
            Query::execute(data.dm().datos, data.dm().Transacion, QString::fromUtf8(sql));
        ds = std::make_unique<DataSet>(data.dm().datos, data.dm().Transacion);
        ds->setTable(QStringLiteral("AGENTES"), {QStringLiteral("CODIGO")});
        ds->setSelectSQL(QStringLiteral("SELECT * FROM AGENTES ORDER BY CODIGO"));
        ds->open();
    }

    test::TestData data;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<DataSet> ds;
};

} // namespace

TEST_F(Binders, CheckBoxIsCheckedOnlyForCapitalS)
{
    QCheckBox box;
    ui::CheckBoxBinder binder(*ds, QStringLiteral("administrador"), &box);
    const bool expected[] = {true, false, false, false, false};
    for (int row = 0; row < 5; ++row) {
        ds->moveTo(row);
        EXPECT_EQ(box.isChecked(), expected[row]) << "row " << row;
    }
    // Odd values are left alone until the user clicks.
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_EQ(ds->fieldByName(QStringLiteral("ADMINISTRADOR")).asString(), QStringLiteral("X"));

    box.click();
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_EQ(ds->fieldByName(QStringLiteral("ADMINISTRADOR")).asString(), QStringLiteral("S"));
    box.click();
    EXPECT_EQ(ds->fieldByName(QStringLiteral("ADMINISTRADOR")).asString(), QStringLiteral("N"));
}

TEST_F(Binders, TypingPutsTheDataSetInEditAndWritesTheField)
{
    QLineEdit edit;
    ui::LineEditBinder binder(*ds, QStringLiteral("APEYNOM"), &edit);
    EXPECT_EQ(edit.text(), QStringLiteral("ANA"));
    int beforeEditCalls = 0;
    ds->beforeEdit += [&](DataSet&) { ++beforeEditCalls; };

    QTest::keyClicks(&edit, QStringLiteral("BEL"));
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_EQ(beforeEditCalls, 1);
    EXPECT_EQ(ds->fieldByName(QStringLiteral("APEYNOM")).asString(), QStringLiteral("ANABEL"));
    EXPECT_EQ(edit.text(), QStringLiteral("ANABEL"));

    // Emptying a text box stores NULL.
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    EXPECT_TRUE(ds->fieldByName(QStringLiteral("APEYNOM")).isNull());

    ds->cancel();
    EXPECT_EQ(edit.text(), QStringLiteral("ANA"));
    ds->next();
    EXPECT_EQ(edit.text(), QStringLiteral("LUIS")) << "the control follows the current row";
}

TEST_F(Binders, RefusedEditRevertsTheControl)
{
    QLineEdit edit;
    QCheckBox box;
    ui::LineEditBinder nameBinder(*ds, QStringLiteral("APEYNOM"), &edit);
    ui::CheckBoxBinder flagBinder(*ds, QStringLiteral("ADMINISTRADOR"), &box);
    ds->beforeEdit += [](DataSet&) { throw Abort(); };

    QTest::keyClicks(&edit, QStringLiteral("Z"));
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_EQ(edit.text(), QStringLiteral("ANA"));
    EXPECT_EQ(ds->fieldByName(QStringLiteral("APEYNOM")).asString(), QStringLiteral("ANA"));

    QTextEdit rich;
    ui::RichTextBinder richBinder(*ds, QStringLiteral("OBSERVACIONES"), &rich);
    const QString before = ds->fieldByName(QStringLiteral("OBSERVACIONES")).asString();
    rich.setPlainText(QStringLiteral("Cambiado"));
    EXPECT_EQ(ds->fieldByName(QStringLiteral("OBSERVACIONES")).asString(), before);
    EXPECT_FALSE(rich.toPlainText().contains(QStringLiteral("Cambiado"))) << "the box shows what is stored";

    box.click();
    EXPECT_TRUE(box.isChecked()) << "the click is undone";
    EXPECT_EQ(ds->fieldByName(QStringLiteral("ADMINISTRADOR")).asString(), QStringLiteral("S"));
    EXPECT_TRUE(dialogs.log().isEmpty()) << "the hook gives its own message";
}

TEST_F(Binders, NumbersAreTypedTheSpanishWay)
{
    QLineEdit edit;
    ui::LineEditBinder binder(*ds, QStringLiteral("PORCENTAJE_CAPTACION"), &edit, ui::LineEditBinder::Kind::Number);
    EXPECT_EQ(edit.text(), QString());
    QTest::keyClicks(&edit, QStringLiteral("12,"));
    EXPECT_EQ(ds->fieldByName(QStringLiteral("PORCENTAJE_CAPTACION")).asDouble(), 12.0);
    EXPECT_EQ(edit.text(), QStringLiteral("12,")) << "the box is not rewritten while typing";
    QTest::keyClicks(&edit, QStringLiteral("5"));
    EXPECT_DOUBLE_EQ(ds->fieldByName(QStringLiteral("PORCENTAJE_CAPTACION")).asDouble(), 12.5);
    ds->post();
    EXPECT_EQ(edit.text(), QStringLiteral("12,50"));
}

TEST_F(Binders, DateMemoAndRichText)
{
    QDateEdit date;
    QPlainTextEdit memo;
    QTextEdit rich;
    ui::DateEditBinder dateBinder(*ds, QStringLiteral("FECHAALTA"), &date);
    ui::MemoBinder memoBinder(*ds, QStringLiteral("OBSERVACIONES"), &memo);
    EXPECT_EQ(date.date(), QDate(2024, 3, 5));
    EXPECT_EQ(date.displayFormat(), QStringLiteral("dd/MM/yyyy"));
    EXPECT_EQ(memo.toPlainText(), QStringLiteral("Primera"));

    ds->next();
    EXPECT_EQ(date.date(), ui::DateEditBinder::noDate()) << "NULL shows the empty box";
    EXPECT_EQ(memo.toPlainText(), QString());

    date.setDate(QDate(2025, 12, 31));
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_EQ(ds->fieldByName(QStringLiteral("FECHAALTA")).asDate(), QDate(2025, 12, 31));
    date.setDate(ui::DateEditBinder::noDate());
    EXPECT_TRUE(ds->fieldByName(QStringLiteral("FECHAALTA")).isNull());
    memo.setPlainText(QStringLiteral("Línea 1\nLínea 2"));
    EXPECT_EQ(ds->fieldByName(QStringLiteral("OBSERVACIONES")).asString(), QStringLiteral("Línea 1\nLínea 2"));
    ds->cancel();

    // Stored RTF shows as its text; what the user writes is stored as HTML.
    ds->first();
    ds->edit();
    ds->fieldByName(QStringLiteral("OBSERVACIONES")).setAsString(QStringLiteral("{\\rtf1\\ansi Hola \\b mundo\\b0\\par}"));
    ds->post();
    ui::RichTextBinder richBinder(*ds, QStringLiteral("OBSERVACIONES"), &rich);
    EXPECT_EQ(rich.toPlainText(), QStringLiteral("Hola mundo"));
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    QTest::keyClicks(&rich, QStringLiteral("X"));
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    const QString stored = ds->fieldByName(QStringLiteral("OBSERVACIONES")).asString();
    EXPECT_TRUE(stored.contains(QLatin1String("<html"))) << stored.toStdString();
    EXPECT_TRUE(stored.contains(QLatin1String("Hola mundo"))) << stored.toStdString();
}

TEST_F(Binders, LookupShowsDescriptionsAndStoresCodes)
{
    QComboBox box;
    ui::ComboBoxBinder binder(*ds, QStringLiteral("CODDEPARTAMENTO"), &box);
    binder.loadItems(data.dm().datos, data.dm().Transacion,
                     QStringLiteral("SELECT CODIGO, DESCRIPCION FROM DEPARTAMENTOS ORDER BY DESCRIPCION"), true);
    ASSERT_EQ(box.count(), 3);
    EXPECT_EQ(box.itemText(1), QStringLiteral("ALQUILERES"));
    EXPECT_EQ(box.currentText(), QStringLiteral("ALQUILERES"));

    ds->next(); // department 7 is not in the list
    EXPECT_EQ(box.currentIndex(), -1);
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    ds->next(); // NULL: the blank entry
    EXPECT_EQ(box.currentIndex(), 0);

    box.setCurrentIndex(2);
    Q_EMIT box.activated(2);
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_EQ(ds->fieldByName(QStringLiteral("CODDEPARTAMENTO")).asInteger(), 1);
}
