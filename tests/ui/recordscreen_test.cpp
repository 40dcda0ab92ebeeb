#include "recordscreen.h"

#include "database.h"
#include "transaction.h"

#include "column.h"
#include "formbuilder.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include <QAction>
#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QTabWidget>
#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;
using Action = tv::ui::RecordScreen::Action;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

// A small agents screen: name on the first page, flags on the second.
class AgentScreen : public ui::RecordScreen {
public:
    explicit AgentScreen(DataSet& ds)
    {
        setDataSet(&ds);
        tabs = new QTabWidget(body());
        auto* general = new QWidget;
        auto* flags = new QWidget;
        tabs->addTab(general, QStringLiteral("General"));
        tabs->addTab(flags, QStringLiteral("Permisos"));
        auto* layout = new QGridLayout(body());
        layout->addWidget(tabs);
        code = new QLineEdit(general);
        name = new QLineEdit(general);
        auto* g = new QGridLayout(general);
        g->addWidget(code, 0, 0);
        g->addWidget(name, 1, 0);
        bindText(code, QStringLiteral("CODIGO"));
        bindText(name, QStringLiteral("APEYNOM"));
        buildFields(new QGridLayout(flags),
                    {{QStringLiteral("ADMINISTRADOR"), QStringLiteral("Administrador"), ui::FieldKind::Flag},
                     {QStringLiteral("USUARIO"), QStringLiteral("Usuario"), ui::FieldKind::Text}});
    }

    QLineEdit* code;
    QLineEdit* name;
    QTabWidget* tabs;

protected:
    bool validar() override
    {
        return checkRequired({{QStringLiteral("CODIGO"), QStringLiteral("Debe indicar el código")},
                              {QStringLiteral("APEYNOM"), QStringLiteral("Debe indicar el nombre del agente")},
                              {QStringLiteral("USUARIO"), QStringLiteral("Debe indicar el usuario")}});
    }
};

class RecordScreenTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Query::execute(data.dm().datos, data.dm().Transacion,
                       QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO) VALUES (1, 'ANA', 'ana')"));
        data.dm().Transacion.commitRetaining();
        ds = std::make_unique<DataSet>(data.dm().datos, data.dm().Transacion);
        ds->setTable(QStringLiteral("AGENTES"), {QStringLiteral("CODIGO")});
        ds->open();
        screen = std::make_unique<AgentScreen>(*ds);
        screen->show();
        screen->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(screen.get()));
    }

    int countInDatabase(const QString& where)
    {
        return Query::scalar(data.dm().datos, data.dm().Transacion,
                             QStringLiteral("SELECT COUNT(*) FROM AGENTES WHERE ") + where)
            .toInt();
    }

    test::TestData data;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<DataSet> ds;
    std::unique_ptr<AgentScreen> screen;
};

} // namespace

TEST_F(RecordScreenTest, ButtonsFollowTheDataSetState)
{
    EXPECT_TRUE(screen->isActionEnabled(Action::Nuevo));
    EXPECT_TRUE(screen->isActionEnabled(Action::Borrar));
    EXPECT_FALSE(screen->isActionEnabled(Action::Grabar));
    EXPECT_FALSE(screen->isActionEnabled(Action::Cancelar));
    EXPECT_FALSE(screen->action(Action::Buscar)->isVisible()) << "not supported by this screen";
    EXPECT_TRUE(screen->action(Action::Salir)->isEnabled());

    QTest::keyClicks(screen->name, QStringLiteral("BEL"));
    EXPECT_TRUE(screen->action(Action::Grabar)->isEnabled());
    EXPECT_TRUE(screen->action(Action::Cancelar)->isEnabled());
    EXPECT_FALSE(screen->action(Action::Nuevo)->isEnabled());
    EXPECT_FALSE(screen->action(Action::Siguiente)->isEnabled());
}

TEST_F(RecordScreenTest, ValidationStopsAtTheFirstFailureFocusesAndStaysInEdit)
{
    QTest::keyClick(screen.get(), Qt::Key_F2);
    ASSERT_EQ(ds->state(), DataSet::State::Insert);
    QTest::keyClicks(screen->code, QStringLiteral("7"));
    screen->tabs->setCurrentIndex(1);

    EXPECT_FALSE(screen->grabar());
    ASSERT_EQ(dialogs.log().size(), 1) << "no confirmation before the checks pass";
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Warning);
    EXPECT_EQ(dialogs.log().at(0).text, QStringLiteral("Debe indicar el nombre del agente"));
    EXPECT_EQ(screen->tabs->currentIndex(), 0) << "the page of the field comes to the front";
    EXPECT_TRUE(screen->name->hasFocus());
    EXPECT_EQ(ds->state(), DataSet::State::Insert);
    EXPECT_EQ(ds->fieldByName(QStringLiteral("CODIGO")).asInteger(), 7) << "typed values are kept";

    QTest::keyClicks(screen->name, QStringLiteral("LUIS"));
    dialogs.clear();
    EXPECT_FALSE(screen->grabar());
    ASSERT_EQ(dialogs.texts(), QStringList{QStringLiteral("Debe indicar el usuario")});
    EXPECT_EQ(screen->tabs->currentIndex(), 1);
    EXPECT_TRUE(screen->controlFor(QStringLiteral("USUARIO"))->hasFocus());
}

TEST_F(RecordScreenTest, SaveAsksAndActsOnlyOnYes)
{
    QTest::keyClick(screen.get(), Qt::Key_F2);
    QTest::keyClicks(screen->code, QStringLiteral("8"));
    QTest::keyClicks(screen->name, QStringLiteral("EVA"));
    QTest::keyClicks(qobject_cast<QLineEdit*>(screen->controlFor(QStringLiteral("USUARIO"))), QStringLiteral("eva"));

    dialogs.answer(false);
    QTest::keyClick(screen.get(), Qt::Key_F3);
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("¿Está seguro de grabar los cambios?")});
    EXPECT_EQ(ds->state(), DataSet::State::Insert);
    EXPECT_EQ(countInDatabase(QStringLiteral("CODIGO = 8")), 0);

    dialogs.clear();
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_FALSE(ds->updatesPending());
    EXPECT_FALSE(screen->isActionEnabled(Action::Grabar));

    // Committed: another attachment sees it.
    Database other(data.folder() + Tdm::kDatosFile);
    other.open();
    Transaction tr;
    EXPECT_EQ(Query::scalar(other, tr, QStringLiteral("SELECT APEYNOM FROM AGENTES WHERE CODIGO = 8")).toString(),
              QStringLiteral("EVA"));
    tr.commit();
    other.close();
}

TEST_F(RecordScreenTest, CancelAsksAndRestoresOnYes)
{
    QTest::keyClicks(screen->name, QStringLiteral("XX"));
    dialogs.answer(false);
    QTest::keyClick(screen.get(), Qt::Key_F5);
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("¿Está seguro de cancelar los cambios?")});
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_EQ(screen->name->text(), QStringLiteral("ANAXX"));

    dialogs.answer(true);
    EXPECT_TRUE(screen->cancelar());
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_EQ(screen->name->text(), QStringLiteral("ANA"));
}

TEST_F(RecordScreenTest, DatabaseErrorIsShownOnceWithItsOwnMessage)
{
    screen->nuevo();
    QTest::keyClicks(screen->code, QStringLiteral("1")); // already taken
    QTest::keyClicks(screen->name, QStringLiteral("COPIA"));
    QTest::keyClicks(qobject_cast<QLineEdit*>(screen->controlFor(QStringLiteral("USUARIO"))), QStringLiteral("x"));
    dialogs.answer(true);
    EXPECT_FALSE(screen->grabar());
    ASSERT_EQ(dialogs.log().size(), 2);
    EXPECT_EQ(dialogs.log().at(1).kind, Kind::Error);
    EXPECT_TRUE(dialogs.log().at(1).text.contains(QLatin1String("PK_AGENTES"))) << dialogs.log().at(1).text.toStdString();
    EXPECT_TRUE(ds->updatesPending()) << "what was typed is not thrown away";
    EXPECT_TRUE(screen->isActionEnabled(Action::Grabar));
    EXPECT_TRUE(screen->isActionEnabled(Action::Cancelar));
}

TEST_F(RecordScreenTest, ASaveOverAnotherWorkstationsChangeIsRefusedAndNothingIsCommitted)
{
    // Another workstation renames the agent after this screen read it.
    Database other(data.dm().datos.databaseName());
    other.open();
    Transaction otherTr;
    Query::execute(other, otherTr, QStringLiteral("UPDATE AGENTES SET USUARIO = 'ana.b' WHERE CODIGO = 1"));
    otherTr.commit();

    screen->name->selectAll();
    QTest::keyClicks(screen->name, QStringLiteral("ANA MARIA"));
    dialogs.answer(true);
    EXPECT_FALSE(screen->grabar());
    ASSERT_EQ(dialogs.log().size(), 2);
    EXPECT_EQ(dialogs.log().at(1).kind, Kind::Error);
    EXPECT_EQ(dialogs.log().at(1).text,
              QStringLiteral("El registro ha sido modificado o eliminado por otro usuario. Vuelva a cargar los datos."));
    EXPECT_TRUE(ds->updatesPending()) << "what was typed is not thrown away";
    // No commit ran: the other workstation still sees its own name only.
    EXPECT_EQ(Query::scalar(other, otherTr, QStringLiteral("SELECT APEYNOM || '/' || USUARIO FROM AGENTES WHERE CODIGO = 1"))
                  .toString(),
              QStringLiteral("ANA/ana.b"));
    otherTr.commit();
    other.close();
}

TEST_F(RecordScreenTest, DeleteAsksAndRemovesOnYes)
{
    dialogs.answer(false);
    screen->borrar();
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("¿Está seguro de eliminar el registro actual? ")});
    EXPECT_EQ(countInDatabase(QStringLiteral("CODIGO = 1")), 1);
    dialogs.answer(true);
    screen->borrar();
    EXPECT_EQ(countInDatabase(QStringLiteral("CODIGO = 1")), 0);
    EXPECT_TRUE(ds->isEmpty());
    EXPECT_FALSE(screen->isActionEnabled(Action::Borrar));
}

TEST_F(RecordScreenTest, LeavingWithChangesAsksFirst)
{
    QTest::keyClicks(screen->name, QStringLiteral("Z"));
    dialogs.answer(false);
    EXPECT_FALSE(screen->close());
    EXPECT_TRUE(screen->isVisible());
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    dialogs.answer(true);
    EXPECT_TRUE(screen->close());
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
}

TEST(FormBuilder, FlagTableBuildsBoundCheckBoxes)
{
    test::TestData data;
    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, OCULTARCLIENTES, OCULTARDATOSINTERNOS, "
                                  "ADMINISTRADOR) VALUES (1, 'ANA', 'S', 'N', 'S')"));
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setTable(QStringLiteral("AGENTES"), {QStringLiteral("CODIGO")});
    ds.open();
    const QList<ui::FieldSpec> flags = {
        {QStringLiteral("OCULTARCLIENTES"), QStringLiteral("Ocultar clientes"), ui::FieldKind::Flag},
        {QStringLiteral("OCULTARDATOSINTERNOS"), QStringLiteral("Ocultar datos internos"), ui::FieldKind::Flag},
        {QStringLiteral("ADMINISTRADOR"), QStringLiteral("Administrador"), ui::FieldKind::Flag},
    };
    QWidget form;
    auto* grid = new QGridLayout(&form);
    const auto binders = ui::FormBuilder(ds).build(grid, flags, 2);
    ASSERT_EQ(binders.size(), 3);
    auto* clientes = form.findChild<QCheckBox*>(QStringLiteral("OCULTARCLIENTES"));
    auto* internos = form.findChild<QCheckBox*>(QStringLiteral("OCULTARDATOSINTERNOS"));
    ASSERT_TRUE(clientes && internos);
    EXPECT_EQ(clientes->text(), QStringLiteral("Ocultar clientes"));
    EXPECT_TRUE(clientes->isChecked());
    EXPECT_FALSE(internos->isChecked());
    EXPECT_EQ(grid->itemAtPosition(0, 2)->widget(), internos) << "two fields per row";
    internos->click();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("OCULTARDATOSINTERNOS")).asString(), QStringLiteral("S"));
}
