// The agent rule on a register's records, on a real database.
#include "currentagent.h"
#include "dataset.h"
#include "lookupcatalogue.h"
#include "ownership.h"
#include "recordscreen.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include "comboboxbinder.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <gtest/gtest.h>

using namespace tv;

namespace {

void exec(test::TestData& data, const QString& sql)
{
    Query::execute(data.dm().datos, data.dm().Transacion, sql);
}

// Two agents, ANA (1) and EVA (2), neither an administrator, and a client of each.
void twoAgents(test::TestData& data, bool evaIsAdmin = false)
{
    exec(data, QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, ADMINISTRADOR) VALUES (1, 'ANA', 'ana', 'N')"));
    exec(data, QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, ADMINISTRADOR) VALUES (2, 'EVA', 'eva', '") +
                   (evaIsAdmin ? QStringLiteral("S") : QStringLiteral("N")) + QStringLiteral("')"));
    for (int i = 1; i <= 2; ++i)
        exec(data, QStringLiteral("INSERT INTO PROPIETARIOS (CODIGO, APEYNOM, DIR, DIRSIGLA, PAIS, POB, PROVINCIA, CODAGENTE) "
                                  "VALUES (%1, 'P%1', 'C', 'C', 'ESPAÑA', 'X', 'Y', %1)")
                       .arg(i));
}

class Register : public ui::RecordScreen {
public:
    explicit Register(DataSet& ds)
    {
        setDataSet(&ds);
        setOwnership(ui::Ownership::propietarios());
        name = new QLineEdit(body());
        bindText(name, QStringLiteral("APEYNOM"));
    }
    QLineEdit* name;
};

void typeName(Register& r, const QString& text)
{
    r.name->setText(text);
    Q_EMIT r.name->textEdited(text);
}

} // namespace

TEST(Ownership, AnotherAgentsRecordCanNeitherBeChangedNorDeleted)
{
    test::TestData data;
    twoAgents(data);
    data.dm().cargarAgente(1);
    test::ScriptedDialogs dialogs;
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setTable(QStringLiteral("PROPIETARIOS"), {QStringLiteral("CODIGO")});
    ds.open();
    Register screen(ds);

    ASSERT_TRUE(ds.locate(QStringLiteral("CODIGO"), 2));
    typeName(screen, QStringLiteral("CAMBIADO"));
    EXPECT_FALSE(ds.isEditing()) << "the edit is cancelled at once";
    EXPECT_EQ(ds.fieldByName(QStringLiteral("APEYNOM")).asString(), QStringLiteral("P2"));
    EXPECT_EQ(screen.name->text(), QStringLiteral("P2")) << "the box shows the record as it is";
    screen.borrar();
    EXPECT_EQ(dialogs.texts(),
              (QStringList{
                  QStringLiteral("No tiene privilegios para modificar este propietario debido a que pertenece a otro agente"),
                  QStringLiteral("No tiene privilegios para eliminar este propietario debido a que pertenece a otro agente")}));
    EXPECT_EQ(dialogs.log().at(0).kind, test::ScriptedDialogs::Kind::Information);
    EXPECT_EQ(Query::scalar(data.dm().datos, data.dm().Transacion, QStringLiteral("SELECT COUNT(*) FROM PROPIETARIOS"))
                  .toInt(),
              2);

    // His own record is his to change; new ones are his.
    ASSERT_TRUE(ds.locate(QStringLiteral("CODIGO"), 1));
    typeName(screen, QStringLiteral("MÍO"));
    EXPECT_TRUE(ds.isEditing());
    ds.cancel();
    ds.insert();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODAGENTE")).value().toInt(), 1);
    ds.cancel();
    EXPECT_EQ(dialogs.texts().size(), 2);
}

TEST(Ownership, AdministratorsAndNobodyLoggedInMayChangeEverything)
{
    test::TestData data;
    twoAgents(data, true);
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setTable(QStringLiteral("PROPIETARIOS"), {QStringLiteral("CODIGO")});
    ds.open();
    Register screen(ds);
    ASSERT_TRUE(ds.locate(QStringLiteral("CODIGO"), 1));
    data.dm().cargarAgente(0); // no login: "TODOS", administrator
    EXPECT_TRUE(ui::currentAgent().administrador);
    EXPECT_EQ(ui::currentAgent().usuario, QStringLiteral("TODOS"));
    EXPECT_TRUE(ui::mayChange(ds, ui::Ownership::propietarios()));
    data.dm().cargarAgente(2);
    EXPECT_TRUE(ui::mayChange(ds, ui::Ownership::propietarios()));
    typeName(screen, QStringLiteral("OTRO"));
    EXPECT_TRUE(ds.isEditing());
    ds.cancel();
    data.dm().cargarAgente(1);
    ASSERT_TRUE(ds.locate(QStringLiteral("CODIGO"), 2));
    EXPECT_FALSE(ui::mayChange(ds, ui::Ownership::propietarios()));
}

TEST(Ownership, TheRegistersMessagesAndTheRestrictions)
{
    EXPECT_EQ(ui::Ownership::inmuebles().editRefused,
              QStringLiteral("No tiene privilegios para modificar este inmueble debido a que pertenece a otro agente"));
    EXPECT_EQ(ui::Ownership::inmuebles().deleteRefused,
              QStringLiteral("No tiene privilegios para eliminar este inmueble debido a que pertenece a otro agente"));
    EXPECT_EQ(ui::Ownership::demandas().editRefused,
              QStringLiteral("No tiene privilegios para modificar esta demanda debido a que pertenece a otro agente"));
    EXPECT_EQ(ui::Ownership::demandas().deleteRefused,
              QStringLiteral("No tiene privilegios para eliminar esta demanda debido a que pertenece a otro agente"));
    EXPECT_EQ(ui::Ownership::clientes().editRefused,
              QStringLiteral("No tiene privilegios para modificar este cliente debido a que pertenece a otro agente"));
    EXPECT_TRUE(ui::Ownership::clientes().deleteRefused.isEmpty());
    EXPECT_EQ(ui::Ownership::operaciones().editRefused,
              QStringLiteral("No tiene privilegios para modificar esta operación debido a que pertenece a otro agente"));
    EXPECT_TRUE(ui::Ownership::operaciones().deleteRefused.isEmpty());
    EXPECT_EQ(ui::Ownership::agentes().insertRefused, QStringLiteral("No tiene privilegios añadir nuevos agentes"));

    test::TestData data;
    exec(data, QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, ADMINISTRADOR, OCULTASPROPIETARIOS, "
                              "VERSOLOSUAGENDA) VALUES (7, 'ANA', 'ana', 'N', 'S', 'S')"));
    data.dm().cargarAgente(7);
    const ui::Restrictions r = ui::Restrictions::current();
    EXPECT_EQ(r.agent, 7);
    EXPECT_FALSE(r.administrador);
    EXPECT_TRUE(r.ocultarPropietarios);
    EXPECT_TRUE(r.verSoloSuAgenda);
    EXPECT_FALSE(r.ocultarClientes);
    EXPECT_EQ(r.ownRows(r.ocultarPropietarios), QStringLiteral("CODAGENTE = 7"));
    EXPECT_TRUE(r.ownRows(r.ocultarClientes).isEmpty());
}

TEST(LookupCatalogue, ItemsAreCachedUntilTheirTableChangesAndFilteredByParent)
{
    test::TestData data;
    auto& db = data.dm().datos;
    auto& tr = data.dm().Transacion;
    ui::lookups().clear();
    const QList<ui::LookupItem> estados = ui::lookups().items(db, tr, QStringLiteral("estados"));
    ASSERT_EQ(estados.size(), 5);
    exec(data, QStringLiteral("INSERT INTO ESTADO (CODIGO, DESCRIPCION) VALUES (99, 'ARCHIVADO')"));
    EXPECT_EQ(ui::lookups().items(db, tr, QStringLiteral("estados")).size(), 5) << "read once";
    ui::lookups().changed(QStringLiteral("estado"));
    EXPECT_EQ(ui::lookups().items(db, tr, QStringLiteral("estados")).size(), 6);
    EXPECT_EQ(ui::lookups().description(db, tr, QStringLiteral("estados"), 99), QStringLiteral("ARCHIVADO"));
    EXPECT_EQ(ui::lookups().description(db, tr, QStringLiteral("estados"), QStringLiteral("99 ")),
              QStringLiteral("ARCHIVADO"));
    EXPECT_TRUE(ui::lookups().description(db, tr, QStringLiteral("estados"), QVariant()).isEmpty());
    EXPECT_TRUE(ui::lookups().description(db, tr, QStringLiteral("estados"), 12345).isEmpty());

    exec(data, QStringLiteral("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (1, 28079, 'CENTRO')"));
    exec(data, QStringLiteral("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (2, 8019, 'GRACIA')"));
    const QList<ui::LookupItem> madrid = ui::lookups().items(db, tr, QStringLiteral("zonas"), 28079);
    ASSERT_EQ(madrid.size(), 1);
    EXPECT_EQ(madrid.at(0).description, QStringLiteral("CENTRO")) << "CHAR padding trimmed";
    EXPECT_EQ(ui::lookups().items(db, tr, QStringLiteral("zonas")).size(), 2);
    EXPECT_TRUE(ui::lookups().items(db, tr, QStringLiteral("desconocido")).isEmpty());
}

TEST(LookupCatalogue, AComboFollowsItsParentAndShowsTheDescription)
{
    test::TestData data;
    ui::lookups().clear();
    exec(data, QStringLiteral("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (1, 28079, 'CENTRO')"));
    exec(data, QStringLiteral("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (2, 28079, 'ARGANZUELA')"));
    exec(data, QStringLiteral("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (3, 8019, 'GRACIA')"));
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setSelectSQL(QStringLiteral("SELECT 28079 AS CODMUNIINE, 2 AS CODTIPOZONA FROM RDB$DATABASE UNION ALL "
                                   "SELECT 8019, 3 FROM RDB$DATABASE UNION ALL SELECT NULL, NULL FROM RDB$DATABASE"));
    ds.open();
    ui::RecordScreen screen;
    screen.setDataSet(&ds);
    ui::Column zona{QStringLiteral("CODTIPOZONA"), QStringLiteral("Zona"), ui::ColumnKind::Lookup, QStringLiteral("zonas")};
    screen.buildFields(new QGridLayout(screen.body()), {zona});
    auto* box = qobject_cast<QComboBox*>(screen.controlFor(QStringLiteral("CODTIPOZONA")));
    ASSERT_NE(box, nullptr);
    static_cast<ui::ComboBoxBinder*>(screen.binderFor(QStringLiteral("CODTIPOZONA")))
        ->setLookup(QStringLiteral("zonas"), true, QStringLiteral("CODMUNIINE"));
    EXPECT_EQ(box->count(), 3) << "blank + Madrid's two";
    EXPECT_EQ(box->currentText(), QStringLiteral("ARGANZUELA"));
    ds.next();
    EXPECT_EQ(box->count(), 2);
    EXPECT_EQ(box->currentText(), QStringLiteral("GRACIA"));
    ds.next();
    EXPECT_EQ(box->count(), 1) << "no municipality, no zones to choose";
}
