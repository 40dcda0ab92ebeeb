// The family of code/description tables: each member is a row of one table,
// so these tests walk the rows and the edge cases of the special members.
#include "commands.h"
#include "dialogs.h"
#include "lookups.h"
#include "ownership.h"
#include "scripteddialogs.h"
#include "tablaauxiliar.h"
#include "testdata.h"

#include <QComboBox>
#include <QLineEdit>
#include "datagrid.h"
#include <gtest/gtest.h>

using namespace tv;
using lookups::TablaAuxiliar;
using lookups::TablaDef;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

QVariant scalar(test::TestData& data, const QString& sql)
{
    return Query::scalar(data.dm().datos, data.dm().Transacion, sql);
}

qlonglong count(test::TestData& data, const QString& table)
{
    return scalar(data, QStringLiteral("SELECT COUNT(*) FROM ") + table).toLongLong();
}

void type(QWidget* w, const QString& text)
{
    auto* edit = qobject_cast<QLineEdit*>(w);
    ASSERT_NE(edit, nullptr);
    edit->setText(text);
    Q_EMIT edit->textEdited(text);
}

const TablaDef& def(const char* clase)
{
    const TablaDef* d = lookups::tablaAuxiliar(QString::fromLatin1(clase));
    EXPECT_NE(d, nullptr) << clase;
    return *d;
}

} // namespace

TEST(TablasAuxiliares, TwelveMembersEachWithItsTableKeySourceAndCommand)
{
    const QStringList clases = {"TfrmTipoZonas", "TfrmEstados", "TfrmTipoInmuebles", "TfrmTipoFamilia",
                                "TfrmTipoGastos", "TfrmOrigenPubli", "TfrmTipoGestiones", "TfrmTipoOperacion",
                                "TfrmDepartamento", "TfrmPerfiles", "TfrmIva", "TfrmTiposVisitas"};
    ASSERT_EQ(lookups::tablasAuxiliares().size(), clases.size());
    for (int i = 0; i < clases.size(); ++i)
        EXPECT_EQ(lookups::tablasAuxiliares().at(i).clase, clases.at(i));
    EXPECT_EQ(def("TfrmTipoZonas").procedimiento, QStringLiteral("CODZONA"));
    EXPECT_EQ(def("TfrmTipoGastos").procedimiento, QStringLiteral("CODGASTOS"));
    EXPECT_EQ(def("TfrmTiposVisitas").tabla, QStringLiteral("TIPOS_VISITAS"));
    EXPECT_TRUE(def("TfrmIva").procedimiento.isEmpty());
    EXPECT_EQ(def("TfrmIva").generador, QStringLiteral("GEN_IVA"));
    // The delete checks' statements as the database receives them.
    EXPECT_EQ(def("TfrmTipoInmuebles").sqlBorrado,
              QStringLiteral(" SELECT COUNT(*) FROM INMUEBLES WHERE CODTIPOINMUEBLE =:CODTIPOINMUEBLE"));
    EXPECT_EQ(def("TfrmTipoFamilia").sqlBorrado,
              QStringLiteral(" SELECT COUNT(*) FROM TIPOINMUEBLE WHERE CODFAMILIA=:CODFAMILIA "));
    for (const TablaDef& d : lookups::tablasAuxiliares())
        if (d.clase != QLatin1String("TfrmTipoInmuebles") && d.clase != QLatin1String("TfrmTipoFamilia"))
            EXPECT_TRUE(d.sqlBorrado.isEmpty()) << d.clase.toStdString();

    ui::commands().clear();
    lookups::registrarComandos();
    for (const TablaDef& d : lookups::tablasAuxiliares())
        EXPECT_TRUE(ui::commands().contains(d.comando)) << d.comando.toStdString();
}

TEST(TablasAuxiliares, EveryMemberAddsARowWithTheKeyOfItsProcedure)
{
    test::TestData data;
    for (const TablaDef& d : lookups::tablasAuxiliares()) {
        if (!d.columnaPadre.isEmpty() || !d.generador.isEmpty())
            continue; // zones and VAT have tests of their own
        SCOPED_TRACE(d.clase.toStdString());
        test::ScriptedDialogs dialogs;
        TablaAuxiliar screen(data.dm(), d);
        const qlonglong before = count(data, d.tabla);
        screen.nuevo();
        ASSERT_TRUE(screen.dataSet()->isEditing());
        const QVariant code = screen.dataSet()->fieldByName(QStringLiteral("CODIGO")).value();
        ASSERT_FALSE(code.isNull()) << "the key comes from the procedure when the row starts";
        EXPECT_EQ(screen.controlFor(QStringLiteral("DESCRIPCION"))->objectName(), QStringLiteral("DESCRIPCION"));

        type(screen.controlFor(QStringLiteral("DESCRIPCION")), QStringLiteral("NUEVA"));
        if (d.tabla == QLatin1String("TIPOINMUEBLE"))
            screen.dataSet()->fieldByName(QStringLiteral("CODFAMILIA")).setValue(1);
        if (d.tabla == QLatin1String("FAMILIA"))
            screen.dataSet()->fieldByName(QStringLiteral("CODPLANTILLA")).setValue(1);
        dialogs.answer(true);
        ASSERT_TRUE(screen.grabar());
        EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("¿Está seguro de grabar los cambios?")});
        EXPECT_EQ(count(data, d.tabla), before + 1);
        EXPECT_EQ(scalar(data, QStringLiteral("SELECT TRIM(DESCRIPCION) FROM ") + d.tabla +
                                   QStringLiteral(" WHERE CODIGO = ") + code.toString())
                      .toString(),
                  QStringLiteral("NUEVA"));
    }
}

TEST(TablasAuxiliares, ChecksOnSavingStopAtTheFirstAndSaveNothing)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    TablaAuxiliar tipos(data.dm(), def("TfrmTipoInmuebles"));
    const qlonglong before = count(data, QStringLiteral("TIPOINMUEBLE"));
    tipos.nuevo();
    EXPECT_FALSE(tipos.grabar());
    type(tipos.controlFor(QStringLiteral("DESCRIPCION")), QStringLiteral("ÁTICO"));
    EXPECT_FALSE(tipos.grabar());
    EXPECT_EQ(dialogs.texts(), (QStringList{QStringLiteral("Debe indicar la descripción"),
                                            QStringLiteral("Debe indicar la familia a la que pertenece")}));
    EXPECT_TRUE(tipos.dataSet()->isEditing()) << "a failed check leaves the typed record in edit";
    EXPECT_EQ(tipos.dataSet()->fieldByName(QStringLiteral("DESCRIPCION")).asString(), QStringLiteral("ÁTICO"));
    EXPECT_EQ(count(data, QStringLiteral("TIPOINMUEBLE")), before);

    TablaAuxiliar familias(data.dm(), def("TfrmTipoFamilia"));
    familias.nuevo();
    type(familias.controlFor(QStringLiteral("DESCRIPCION")), QStringLiteral("GARAJES"));
    EXPECT_FALSE(familias.grabar());
    TablaAuxiliar iva(data.dm(), def("TfrmIva"));
    iva.nuevo();
    type(iva.controlFor(QStringLiteral("DESCRIPCION")), QStringLiteral("Superreducido"));
    EXPECT_FALSE(iva.grabar());
    EXPECT_EQ(dialogs.texts().mid(2), (QStringList{QStringLiteral("Debe indicar la plantilla"),
                                                   QStringLiteral("Debe el porcentaje a aplicar")}));
    EXPECT_EQ(dialogs.log().last().kind, Kind::Warning);
}

TEST(TablasAuxiliares, VatKeysAreDrawnOnlyWhenTheRowIsPosted)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    TablaAuxiliar iva(data.dm(), def("TfrmIva"));
    const qlonglong generator = Query::genId(data.dm().datos, data.dm().Transacion, QStringLiteral("GEN_IVA"), 0);
    iva.nuevo();
    EXPECT_TRUE(iva.dataSet()->fieldByName(QStringLiteral("CODIGO")).value().isNull());
    type(iva.controlFor(QStringLiteral("DESCRIPCION")), QStringLiteral("Superreducido"));
    type(iva.controlFor(QStringLiteral("PORCENTAJE")), QStringLiteral("4"));
    // Cancelling draws nothing.
    dialogs.answer(true);
    ASSERT_TRUE(iva.cancelar());
    EXPECT_EQ(Query::genId(data.dm().datos, data.dm().Transacion, QStringLiteral("GEN_IVA"), 0), generator);

    iva.nuevo();
    type(iva.controlFor(QStringLiteral("DESCRIPCION")), QStringLiteral("Superreducido"));
    type(iva.controlFor(QStringLiteral("PORCENTAJE")), QStringLiteral("4"));
    dialogs.answer(true);
    ASSERT_TRUE(iva.grabar());
    EXPECT_EQ(scalar(data, QStringLiteral("SELECT CODIGO FROM COMUN_IVA WHERE DESCRIPCION = 'Superreducido'")).toLongLong(),
              generator + 1);
    EXPECT_EQ(dialogs.texts(), (QStringList{QStringLiteral("¿Está seguro de cancelar los cambios?"),
                                            QStringLiteral("¿Está seguro de grabar los cambios?")}));
}

TEST(TablasAuxiliares, ZonesBelongToTheChosenMunicipality)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    TablaAuxiliar zonas(data.dm(), def("TfrmTipoZonas"));
    ASSERT_NE(zonas.cajaPadre(), nullptr);
    const qlonglong before = count(data, QStringLiteral("ZONAS"));

    zonas.nuevo();
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("Debe seleccionar un municipio")});
    EXPECT_FALSE(zonas.dataSet()->isEditing()) << "nothing is inserted without a municipality";

    zonas.setPadre(28079); // Madrid
    ASSERT_EQ(zonas.padre().toInt(), 28079);
    zonas.nuevo();
    ASSERT_TRUE(zonas.dataSet()->isEditing());
    EXPECT_EQ(zonas.dataSet()->fieldByName(QStringLiteral("CODMUNIINE")).value().toInt(), 28079);
    EXPECT_FALSE(zonas.cajaPadre()->isEnabled()) << "the municipality stays while the zone is edited";
    EXPECT_FALSE(zonas.grabar());
    EXPECT_EQ(dialogs.texts().last(), QStringLiteral("Debe indicar la descripción de la zona"));
    type(zonas.controlFor(QStringLiteral("DESCRIPCION")), QStringLiteral("CENTRO"));
    dialogs.answer(true);
    ASSERT_TRUE(zonas.grabar());
    dialogs.log();
    EXPECT_EQ(count(data, QStringLiteral("ZONAS")), before + 1);
    EXPECT_EQ(scalar(data, QStringLiteral("SELECT CODMUNIINE FROM ZONAS WHERE DESCRIPCION = 'CENTRO'")).toInt(), 28079);

    // Another municipality lists only its own zones.
    zonas.setPadre(8019); // Barcelona
    EXPECT_EQ(zonas.dataSet()->recordCount(), 0);
    zonas.setPadre(28079);
    EXPECT_EQ(zonas.dataSet()->recordCount(), 1);
}

TEST(TablasAuxiliares, DeletingAUsedTypeOrAFamilyWithTypesIsRefused)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION) VALUES ('00001', 1, 1)"));
    TablaAuxiliar tipos(data.dm(), def("TfrmTipoInmuebles"));
    ASSERT_TRUE(tipos.dataSet()->locate(QStringLiteral("CODIGO"), 1));
    const qlonglong before = count(data, QStringLiteral("TIPOINMUEBLE"));
    tipos.borrar();
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("No se puede eliminar, existen inmuebles de este tipo")});
    EXPECT_EQ(count(data, QStringLiteral("TIPOINMUEBLE")), before);
    EXPECT_EQ(tipos.dataSet()->fieldByName(QStringLiteral("CODIGO")).value().toInt(), 1) << "the row stays";

    TablaAuxiliar familias(data.dm(), def("TfrmTipoFamilia"));
    ASSERT_TRUE(familias.dataSet()->locate(QStringLiteral("CODIGO"), 1));
    dialogs.clear();
    familias.borrar();
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Error);
    EXPECT_EQ(dialogs.texts().at(0),
              QStringLiteral("La familia no se puede eliminar porque contiene tipos de inmuebles"));
    EXPECT_EQ(count(data, QStringLiteral("FAMILIA")), 8);

    // An unused type goes after the question; No first keeps it.
    const int unused = scalar(data, QStringLiteral("SELECT MAX(CODIGO) FROM TIPOINMUEBLE")).toInt();
    ASSERT_TRUE(tipos.dataSet()->locate(QStringLiteral("CODIGO"), unused));
    dialogs.clear();
    dialogs.answer(false);
    tipos.borrar();
    EXPECT_EQ(count(data, QStringLiteral("TIPOINMUEBLE")), before);
    dialogs.answer(true);
    tipos.borrar();
    EXPECT_EQ(dialogs.texts(), (QStringList{QStringLiteral("¿Está seguro de eliminar el registro actual? "),
                                            QStringLiteral("¿Está seguro de eliminar el registro actual? ")}));
    EXPECT_EQ(count(data, QStringLiteral("TIPOINMUEBLE")), before - 1);
}

TEST(TablasAuxiliares, AnsweringNoLeavesTheRecordAsItWas)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    TablaAuxiliar estados(data.dm(), def("TfrmEstados"));
    estados.dataSet()->first();
    const QString was = estados.dataSet()->fieldByName(QStringLiteral("DESCRIPCION")).asString();
    type(estados.controlFor(QStringLiteral("DESCRIPCION")), QStringLiteral("OTRO"));
    dialogs.answer(false);
    EXPECT_FALSE(estados.grabar());
    EXPECT_TRUE(estados.dataSet()->isEditing());
    dialogs.answer(false);
    EXPECT_FALSE(estados.cancelar());
    EXPECT_EQ(estados.dataSet()->fieldByName(QStringLiteral("DESCRIPCION")).asString(), QStringLiteral("OTRO"));
    dialogs.answer(true);
    EXPECT_TRUE(estados.cancelar());
    EXPECT_EQ(estados.dataSet()->fieldByName(QStringLiteral("DESCRIPCION")).asString(), was);
    EXPECT_EQ(scalar(data, QStringLiteral("SELECT COUNT(*) FROM ESTADO WHERE DESCRIPCION = 'OTRO'")).toInt(), 0);
    dialogs.log();
}

TEST(TablasAuxiliares, DepartmentsOpenForAdministratorsOrWhenThereAreNone)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    ui::commands().clear();
    lookups::registrarComandos();
    QList<QDialog*> shown;
    ui::commands().setModalRunner([&](QDialog* d) {
        shown.append(d);
        d->close();
    });
    struct Host : ui::CommandHost {
        QWidget* hostWidget() override { return nullptr; }
        void showChild(QWidget*) override {}
    } host;

    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, ADMINISTRADOR) VALUES (1, 'ANA', 'ana', 'N')"));
    data.dm().cargarAgente(1);
    EXPECT_TRUE(ui::commands().run(QStringLiteral("departamentos"), host)) << "nobody is an administrator yet";
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown.at(0)->objectName(), QStringLiteral("TfrmDepartamento"));

    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, ADMINISTRADOR) VALUES (2, 'EVA', 'eva', 'S')"));
    EXPECT_FALSE(ui::commands().run(QStringLiteral("departamentos"), host));
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("No tiene privilegios para acceder a esta pantalla")});
    EXPECT_EQ(shown.size(), 1);
    // Other members open for anyone.
    EXPECT_TRUE(ui::commands().run(QStringLiteral("tipos-estados"), host));
    EXPECT_EQ(shown.size(), 2);

    data.dm().cargarAgente(2);
    EXPECT_TRUE(ui::commands().run(QStringLiteral("departamentos"), host));
    EXPECT_EQ(shown.size(), 3);
    ui::commands().setModalRunner({});
}
