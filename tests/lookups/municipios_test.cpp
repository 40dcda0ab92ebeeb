// The municipalities picker: its search statement, filtering the seeded
// list, the three ways it is offered, and the dialog that adds or changes a
// municipality (checks in order, the duplicate test of the database, keys
// from the generator, staying on the row after the list is read again).
#include "commands.h"
#include "datagrid.h"
#include "dialogs.h"
#include "frmaltamunicipio.h"
#include "frmmunicipio.h"
#include "gridsettings.h"
#include "report.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <ostream>

// Readable texts in failure messages.
static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using lookups::TfrmAltaMunicipio;
using lookups::TfrmMunicipio;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

const QString kBase = QStringLiteral(" select DESMUNIINE,CODIGOINE, DESPROVINCIA, ID,DESPAIS from MUNICIPIOS ");

// The program's settings and the grids' kept widths of this binary live in
// a temporary folder, never in the user's own.
class AjustesAparte : public ::testing::Environment {
public:
    void SetUp() override
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mDir.path());
        ui::GridSettings::setStorageFile(mDir.path() + QStringLiteral("/rejillas-municipios.ini"));
    }

private:
    QTemporaryDir mDir;
};

const auto* const kAjustes = ::testing::AddGlobalTestEnvironment(new AjustesAparte);

QVariant scalar(test::TestData& data, const QString& sql)
{
    return Query::scalar(data.dm().datos, data.dm().Transacion, sql);
}

qlonglong contar(test::TestData& data, const QString& where = QString())
{
    return scalar(data, QStringLiteral("SELECT COUNT(*) FROM MUNICIPIOS") +
                            (where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where))
        .toLongLong();
}

// What the user types reaches the bound field as it would from the keyboard.
void escribir(QLineEdit* edit, const QString& text)
{
    ASSERT_NE(edit, nullptr);
    edit->setText(text);
    Q_EMIT edit->textEdited(text);
}

// Every test restores the plain modal run, whatever it replaced.
class Municipios : public ::testing::Test {
protected:
    void TearDown() override
    {
        TfrmMunicipio::setModalRunner({});
        reports::setUrlOpener({});
    }
    test::TestData data;
};

} // namespace

// ---------------------------------------------------------------- the search

TEST(BuscarMunicipios, StatementWithoutTextIsTheWholeListWithItsBlanks)
{
    EXPECT_EQ(lookups::sqlBuscarMunicipios(QString()), kBase);
    // Only blanks: nothing to search by.
    EXPECT_EQ(lookups::sqlBuscarMunicipios(QStringLiteral("   ")), kBase);
}

TEST(BuscarMunicipios, StatementWithTextSearchesTheNameAsTyped)
{
    EXPECT_EQ(lookups::sqlBuscarMunicipios(QStringLiteral("Madri")),
              kBase + QStringLiteral("WHERE DESMUNIINE STARTING WITH 'Madri'"));
    // Neither trimmed nor upper-cased: STARTING WITH gets exactly what was typed.
    EXPECT_EQ(lookups::sqlBuscarMunicipios(QStringLiteral(" Sant")),
              kBase + QStringLiteral("WHERE DESMUNIINE STARTING WITH ' Sant'"));
    EXPECT_EQ(lookups::sqlBuscarMunicipios(QStringLiteral("sant ")),
              kBase + QStringLiteral("WHERE DESMUNIINE STARTING WITH 'sant '"));
}

TEST(BuscarMunicipios, AQuoteInTheTextIsDoubled)
{
    EXPECT_EQ(lookups::sqlBuscarMunicipios(QStringLiteral("L'Hospitalet")),
              kBase + QStringLiteral("WHERE DESMUNIINE STARTING WITH 'L''Hospitalet'"));
    EXPECT_EQ(lookups::sqlBuscarMunicipios(QStringLiteral("' OR 1=1 --")),
              kBase + QStringLiteral("WHERE DESMUNIINE STARTING WITH ''' OR 1=1 --'"));
}

TEST(LugarElegido, ProvinceCutAt35MunicipalityAt30ThenTrimmed)
{
    const QString provincia = QStringLiteral("Provincia de nombre muy largo para c") + QStringLiteral("ortar aquí");
    ASSERT_EQ(provincia.left(35), QStringLiteral("Provincia de nombre muy largo para "));
    ASSERT_EQ(provincia.at(35), QLatin1Char('c'));
    const QString municipio = QStringLiteral("Villanueva del Arzobispo Altoz") + QStringLiteral("ano y su término");
    const lookups::Lugar l = lookups::lugarElegido(provincia, municipio, QStringLiteral("  ESPAÑA   "));
    EXPECT_EQ(l.provincia, QStringLiteral("Provincia de nombre muy largo para"));
    EXPECT_EQ(l.municipio, QStringLiteral("Villanueva del Arzobispo Altoz"));
    EXPECT_EQ(l.pais, QStringLiteral("ESPAÑA"));

    // Cut first, trimmed after: a blank at the 30th place goes.
    const lookups::Lugar m = lookups::lugarElegido(QStringLiteral(" Ávila "), QStringLiteral("San Bartolomé de Pinares d") +
                                                                                QStringLiteral("e   arriba"),
                                                   QString());
    EXPECT_EQ(m.provincia, QStringLiteral("Ávila"));
    EXPECT_EQ(m.municipio, QStringLiteral("San Bartolomé de Pinares de"));
    EXPECT_EQ(m.pais, QString());
    // Short names pass whole.
    const lookups::Lugar c = lookups::lugarElegido(QStringLiteral("Cádiz"), QStringLiteral("Cádiz"), QStringLiteral("ESPAÑA"));
    EXPECT_EQ(c.municipio, QStringLiteral("Cádiz"));
}

// ---------------------------------------------------------------- the picker

TEST_F(Municipios, TypingFiltersTheSeededListByTheBeginningOfTheName)
{
    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    DataSet& ds = picker.municipios();
    ds.fetchAll();
    EXPECT_EQ(ds.recordCount(), 8131);

    // The grid is frozen while the list is read again, and free after.
    QList<bool> pintando;
    QObject::connect(&ds, &DataSet::reset, &picker, [&] { pintando.append(picker.rejilla()->updatesEnabled()); });
    QTest::keyClicks(picker.edBuscar(), QStringLiteral("Madri"));
    EXPECT_EQ(ds.selectSQL(), kBase + QStringLiteral("WHERE DESMUNIINE STARTING WITH 'Madri'"));
    ASSERT_FALSE(pintando.isEmpty());
    EXPECT_FALSE(pintando.contains(true));
    EXPECT_TRUE(picker.rejilla()->updatesEnabled());

    ds.fetchAll();
    EXPECT_EQ(ds.recordCount(), contar(data, QStringLiteral("DESMUNIINE STARTING WITH 'Madri'")));
    QStringList nombres;
    for (int i = 0; i < ds.recordCount(); ++i)
        nombres.append(ds.value(i, ds.fieldIndex(QStringLiteral("DESMUNIINE"))).toString());
    EXPECT_TRUE(nombres.contains(QStringLiteral("Madrid")));
    for (const QString& n : nombres)
        EXPECT_TRUE(n.startsWith(QStringLiteral("Madri"))) << n.toStdString();
    EXPECT_EQ(picker.rejilla()->model()->rowCount(), ds.recordCount());

    // As typed: lower case finds nothing, a leading blank finds nothing.
    picker.edBuscar()->setText(QStringLiteral("madri"));
    EXPECT_TRUE(ds.isEmpty());
    picker.edBuscar()->setText(QStringLiteral(" Madri"));
    EXPECT_TRUE(ds.isEmpty());
    EXPECT_FALSE(picker.btnModificar()->isEnabled()) << "nothing to modify";

    picker.edBuscar()->clear();
    ds.fetchAll();
    EXPECT_EQ(ds.recordCount(), 8131);
    EXPECT_TRUE(picker.btnModificar()->isEnabled());
    picker.closeQuery();
    EXPECT_FALSE(ds.isOpen());
}

TEST_F(Municipios, ShowingFocusesTheSearchAndEnterThereAccepts)
{
    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    EXPECT_EQ(picker.btnModificar()->text(), QStringLiteral("Modificar"));
    EXPECT_EQ(picker.btnModificar()->objectName(), QStringLiteral("cxButton1"));
    EXPECT_EQ(picker.btnNuevo()->text(), QStringLiteral("Nuevo"));
    EXPECT_EQ(picker.btnNuevo()->objectName(), QStringLiteral("cxButton2"));
    EXPECT_EQ(picker.edBuscar()->objectName(), QStringLiteral("edBuscar"));
    EXPECT_EQ(picker.btnAceptar()->objectName(), QStringLiteral("btnAceptar"));
    picker.show();
    picker.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&picker));
    EXPECT_EQ(QApplication::focusWidget(), picker.edBuscar());

    QTest::keyClicks(picker.edBuscar(), QStringLiteral("Zarago"));
    QTest::keyClick(picker.edBuscar(), Qt::Key_Return);
    EXPECT_FALSE(picker.isVisible());
    EXPECT_EQ(picker.result(), QDialog::Accepted);
    EXPECT_EQ(picker.municipios().fieldByName(QStringLiteral("DESMUNIINE")).asString(), QStringLiteral("Zaragoza"));
}

TEST_F(Municipios, DoubleClickOnARowAccepts)
{
    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    picker.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&picker));
    picker.edBuscar()->setText(QStringLiteral("Sant"));
    ui::DataGrid* grid = picker.rejilla();
    const QModelIndex second = grid->model()->index(1, 0);
    ASSERT_TRUE(second.isValid());
    const QPoint at = grid->visualRect(second).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
    EXPECT_FALSE(picker.isVisible());
    EXPECT_EQ(picker.result(), QDialog::Accepted);
    EXPECT_EQ(picker.municipios().recNo(), 1);
}

TEST_F(Municipios, DownInTheSearchBoxWalksTheList)
{
    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    picker.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&picker));
    picker.edBuscar()->setText(QStringLiteral("Sant"));
    ASSERT_EQ(picker.municipios().recNo(), 0);
    QTest::keyClick(picker.edBuscar(), Qt::Key_Down);
    QTest::keyClick(picker.edBuscar(), Qt::Key_Down);
    EXPECT_EQ(picker.municipios().recNo(), 2);
    EXPECT_EQ(picker.edBuscar()->text(), QStringLiteral("Sant"));
}

// ------------------------------------------------------------- the operations

TEST_F(Municipios, PickingANameReturnsTheChosenRowsNameAndNothingWhenCancelled)
{
    QPointer<TfrmMunicipio> visto;
    QPointer<DataSet> lista;
    TfrmMunicipio::setModalRunner([&](QDialog& d) {
        auto* picker = qobject_cast<TfrmMunicipio*>(&d);
        EXPECT_NE(picker, nullptr);
        visto = picker;
        lista = &picker->municipios();
        EXPECT_TRUE(picker->municipios().isOpen()) << "opened before it is shown";
        QTest::keyClicks(picker->edBuscar(), QStringLiteral("Zarago"));
        picker->btnAceptar()->click();
        return d.result();
    });
    EXPECT_EQ(lookups::elegirMunicipio(nullptr), QStringLiteral("Zaragoza"));
    EXPECT_TRUE(visto.isNull()) << "the picker is freed";
    EXPECT_TRUE(lista.isNull());

    TfrmMunicipio::setModalRunner([](QDialog& d) {
        auto* picker = qobject_cast<TfrmMunicipio*>(&d);
        QTest::keyClicks(picker->edBuscar(), QStringLiteral("Zarago"));
        d.reject();
        return d.result();
    });
    EXPECT_EQ(lookups::elegirMunicipio(nullptr), QString());
}

TEST_F(Municipios, PickingAPlaceCutsALongNameAndGivesProvinceAndCountry)
{
    const QString largo = QStringLiteral("Villanueva de la Concepción del Monte Alto y Bajo del Río Grande y Sur");
    ASSERT_EQ(largo.size(), 70);
    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO MUNICIPIOS (ID, DESMUNIINE, CODIGOINE, DESPROVINCIA, DESPAIS) VALUES "
                                  "(9001, '%1', 29999, 'Málaga', 'ESPAÑA')")
                       .arg(largo));
    data.dm().Transacion.commitRetaining();

    TfrmMunicipio::setModalRunner([&](QDialog& d) {
        auto* picker = qobject_cast<TfrmMunicipio*>(&d);
        // Long enough to pass the seeded "Villanueva de la Concepción".
        picker->edBuscar()->setText(largo.left(40));
        EXPECT_EQ(picker->municipios().recordCount(), 1);
        picker->btnAceptar()->click();
        return d.result();
    });
    QString provincia = QStringLiteral("x"), municipio = QStringLiteral("x"), pais = QStringLiteral("x");
    ASSERT_TRUE(lookups::elegirLugar(nullptr, &provincia, &municipio, &pais));
    EXPECT_EQ(municipio, QStringLiteral("Villanueva de la Concepción de"));
    EXPECT_EQ(municipio, largo.left(30));
    EXPECT_EQ(provincia, QStringLiteral("Málaga"));
    EXPECT_EQ(pais, QStringLiteral("ESPAÑA"));

    TfrmMunicipio::setModalRunner([](QDialog& d) {
        d.reject();
        return d.result();
    });
    provincia = municipio = pais = QStringLiteral("sin tocar");
    EXPECT_FALSE(lookups::elegirLugar(nullptr, &provincia, &municipio, &pais));
    EXPECT_EQ(provincia, QStringLiteral("sin tocar"));
    EXPECT_EQ(municipio, QStringLiteral("sin tocar"));
}

TEST_F(Municipios, BrowsingIsTheRibbonsCommandAndClosesTheListOnTheWayOut)
{
    ui::commands().clear();
    lookups::registrarMunicipios();
    const ui::Command* c = ui::commands().find(QStringLiteral("municipios"));
    ASSERT_NE(c, nullptr);
    ASSERT_TRUE(c->action);
    EXPECT_FALSE(c->factory);

    QPointer<DataSet> lista;
    QList<DataSet::State> estados;
    int corridas = 0;
    TfrmMunicipio::setModalRunner([&](QDialog& d) {
        auto* picker = qobject_cast<TfrmMunicipio*>(&d);
        ++corridas;
        lista = &picker->municipios();
        EXPECT_TRUE(lista->isOpen());
        QObject::connect(lista.data(), &DataSet::stateChanged, [&](DataSet::State s) { estados.append(s); });
        d.accept();
        return d.result();
    });
    struct Anfitrion : ui::CommandHost {
        QWidget* hostWidget() override { return nullptr; }
        void showChild(QWidget*) override { ADD_FAILURE() << "a modal list is no child window"; }
    } anfitrion;
    EXPECT_TRUE(ui::commands().run(QStringLiteral("municipios"), anfitrion));
    EXPECT_EQ(corridas, 1);
    EXPECT_EQ(estados, QList<DataSet::State>{DataSet::State::Inactive}) << "the query is closed";
    EXPECT_TRUE(lista.isNull()) << "and the picker freed";
    ui::commands().clear();
}

// ---------------------------------------------------------------- new and edit

TEST_F(Municipios, NewMunicipalityChecksInOrderRefusesADuplicateAndStoresWithTheGeneratorsKey)
{
    test::ScriptedDialogs dialogs;
    const qlonglong antes = contar(data);
    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    picker.edBuscar()->setText(QStringLiteral("Madrid"));
    int dialogos = 0;
    TfrmMunicipio::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaMunicipio*>(&d);
        EXPECT_NE(alta, nullptr);
        if (!alta)
            return int(QDialog::Rejected);
        ++dialogos;
        EXPECT_TRUE(alta->esNuevo());
        EXPECT_EQ(picker.municipios().state(), DataSet::State::Insert);
        alta->show();
        EXPECT_EQ(alta->focusWidget(), alta->edPais()) << "the country first";

        struct Paso {
            QLineEdit* caja;
            QString texto;
            QString mensaje;
            QLineEdit* foco;
        };
        const QList<Paso> pasos = {
            {nullptr, QString(), QStringLiteral("Debe indicar el país"), alta->edPais()},
            {alta->edPais(), QStringLiteral("ESPAÑA"), QStringLiteral("Debe indicar la provincia"), alta->edProvincia()},
            {alta->edProvincia(), QStringLiteral("Madrid"), QStringLiteral("Debe indicar el municipio"), alta->edMunicipio()},
            // Case and blanks do not make another one.
            {alta->edMunicipio(), QStringLiteral("  mAdRiD "), QStringLiteral("Ya existe ese municipio en esa provincia"),
             alta->edMunicipio()},
        };
        for (const Paso& p : pasos) {
            if (p.caja)
                escribir(p.caja, p.texto);
            alta->edCodigoIne()->setFocus();
            EXPECT_FALSE(alta->aceptar()) << p.mensaje.toStdString();
            const auto& log = dialogs.log();
            EXPECT_EQ(log.size(), 1);
            if (!log.isEmpty()) {
                EXPECT_EQ(log.last().kind, Kind::Warning);
                EXPECT_EQ(log.last().text, p.mensaje);
            }
            dialogs.clear();
            EXPECT_EQ(alta->focusWidget(), p.foco) << p.mensaje.toStdString();
            EXPECT_EQ(picker.municipios().state(), DataSet::State::Insert) << "still in edit";
            EXPECT_EQ(contar(data), antes) << "nothing stored";
        }
        escribir(alta->edMunicipio(), QStringLiteral("Madrid Norte"));
        escribir(alta->edCodigoIne(), QStringLiteral("28999"));
        alta->btnAceptar()->click();
        EXPECT_FALSE(alta->isVisible());
        EXPECT_FALSE(picker.municipios().updatesPending()) << "applied as it was posted";
        EXPECT_EQ(contar(data), antes + 1);
        return alta->result();
    });
    picker.nuevo();
    EXPECT_EQ(dialogos, 1);

    const qlonglong id = scalar(data, QStringLiteral("SELECT GEN_ID(GEN_MUNIINE, 0) FROM RDB$DATABASE")).toLongLong();
    EXPECT_EQ(id, 8132) << "one value drawn from the generator";
    EXPECT_EQ(contar(data), antes + 1);
    EXPECT_EQ(contar(data, QStringLiteral("ID = 8132 AND DESMUNIINE = 'Madrid Norte' AND DESPROVINCIA = 'Madrid' "
                                          "AND DESPAIS = 'ESPAÑA' AND CODIGOINE = 28999")),
              1);
    // The list was read again and stays on the new row, found by its ID.
    DataSet& ds = picker.municipios();
    EXPECT_EQ(ds.state(), DataSet::State::Browse);
    EXPECT_FALSE(ds.updatesPending());
    EXPECT_EQ(ds.fieldByName(QStringLiteral("ID")).asInt64(), 8132);
    EXPECT_EQ(ds.fieldByName(QStringLiteral("DESMUNIINE")).asString(), QStringLiteral("Madrid Norte"));
    EXPECT_GT(ds.recNo(), 0) << "Madrid comes first in the list";

    // Committed: another attachment sees it.
    Tdm otro(data.folder());
    otro.datos.open();
    EXPECT_EQ(Query::scalar(otro.datos, otro.Transacion,
                            QStringLiteral("SELECT COUNT(*) FROM MUNICIPIOS WHERE DESMUNIINE = 'Madrid Norte'"))
                  .toInt(),
              1);
    otro.Transacion.commit();
    otro.datos.close();
}

TEST_F(Municipios, EditingAsksForDuplicatesOnlyWhenTheNamesChanged)
{
    test::ScriptedDialogs dialogs;
    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    DataSet& ds = picker.municipios();
    // No search: a renamed row must stay in the list.
    ASSERT_TRUE(ds.locate(QStringLiteral("DESMUNIINE"), QStringLiteral("Zaragoza")));
    const qlonglong id = ds.fieldByName(QStringLiteral("ID")).asInt64();

    // Only the code, then only the case of the name: it is still itself.
    for (const QString& nombre : {QStringLiteral("Zaragoza"), QStringLiteral("ZARAGOZA")}) {
        TfrmMunicipio::setModalRunner([&](QDialog& d) {
            auto* alta = qobject_cast<TfrmAltaMunicipio*>(&d);
            EXPECT_FALSE(alta->esNuevo());
            EXPECT_EQ(ds.state(), DataSet::State::Edit);
            EXPECT_EQ(alta->edMunicipio()->text(), QStringLiteral("Zaragoza"));
            escribir(alta->edMunicipio(), nombre);
            escribir(alta->edCodigoIne(), QStringLiteral("50298"));
            EXPECT_TRUE(alta->aceptar());
            return alta->result();
        });
        picker.modificar();
        EXPECT_TRUE(dialogs.texts().isEmpty()) << nombre.toStdString();
        EXPECT_EQ(scalar(data, QStringLiteral("SELECT DESMUNIINE FROM MUNICIPIOS WHERE ID = %1").arg(id)).toString(),
                  nombre);
        EXPECT_EQ(ds.fieldByName(QStringLiteral("ID")).asInt64(), id) << "still on the same row";
    }
    EXPECT_EQ(scalar(data, QStringLiteral("SELECT CODIGOINE FROM MUNICIPIOS WHERE ID = %1").arg(id)).toInt(), 50298);

    // Renamed as another municipality of that province: refused, nothing changes.
    TfrmMunicipio::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaMunicipio*>(&d);
        escribir(alta->edMunicipio(), QStringLiteral("Zuera"));
        EXPECT_FALSE(alta->aceptar());
        EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("Ya existe ese municipio en esa provincia")});
        dialogs.clear();
        alta->btnCancelar()->click();
        return alta->result();
    });
    picker.modificar();
    EXPECT_EQ(scalar(data, QStringLiteral("SELECT DESMUNIINE FROM MUNICIPIOS WHERE ID = %1").arg(id)).toString(),
              QStringLiteral("ZARAGOZA"));
    EXPECT_EQ(ds.state(), DataSet::State::Browse);
    EXPECT_FALSE(ds.updatesPending());
    EXPECT_EQ(ds.fieldByName(QStringLiteral("DESMUNIINE")).asString(), QStringLiteral("ZARAGOZA"));
}

TEST(ComprobarMunicipio, TheDatabaseIsAskedOnlyForANewRowOrChangedNames)
{
    int preguntas = 0;
    auto existe = [&](const lookups::DatosMunicipio&) {
        ++preguntas;
        return true;
    };
    const lookups::DatosMunicipio antes{QStringLiteral("ESPAÑA"), QStringLiteral("Huesca"), QStringLiteral("Jaca")};
    EXPECT_TRUE(lookups::comprobarMunicipio(antes, &antes, existe).mensaje.isEmpty());
    EXPECT_TRUE(lookups::comprobarMunicipio({QStringLiteral(" españa"), QStringLiteral("HUESCA "), QStringLiteral("jaca")},
                                            &antes, existe)
                    .mensaje.isEmpty());
    EXPECT_EQ(preguntas, 0);
    EXPECT_EQ(lookups::comprobarMunicipio(antes, nullptr, existe).mensaje,
              QStringLiteral("Ya existe ese municipio en esa provincia"));
    EXPECT_EQ(lookups::comprobarMunicipio({QStringLiteral("ESPAÑA"), QStringLiteral("Teruel"), QStringLiteral("Jaca")},
                                          &antes, existe)
                  .campo,
              QStringLiteral("DESMUNIINE"));
    EXPECT_EQ(preguntas, 2);
    // Blanks are no name: the checks stop before asking.
    EXPECT_EQ(lookups::comprobarMunicipio({QStringLiteral(" "), QStringLiteral("Teruel"), QStringLiteral("Jaca")}, nullptr,
                                          existe)
                  .mensaje,
              QStringLiteral("Debe indicar el país"));
    EXPECT_EQ(preguntas, 2);
}

TEST_F(Municipios, TheProcedureIgnoresCaseAndAnEmptyCountryMatchesAny)
{
    using lookups::DatosMunicipio;
    EXPECT_TRUE(lookups::existeMunicipio(data.dm(), {QStringLiteral("ESPAÑA"), QStringLiteral("MADRID"), QStringLiteral("madrid")}));
    EXPECT_TRUE(lookups::existeMunicipio(data.dm(), {QString(), QStringLiteral("Madrid"), QStringLiteral("Madrid")}));
    EXPECT_FALSE(lookups::existeMunicipio(data.dm(), {QStringLiteral("FRANCIA"), QStringLiteral("Madrid"), QStringLiteral("Madrid")}));
    EXPECT_FALSE(lookups::existeMunicipio(data.dm(), {QStringLiteral("ESPAÑA"), QStringLiteral("Toledo"), QStringLiteral("Madrid")}));
}

TEST_F(Municipios, CancellingANewOneLeavesListAndDatabaseAsTheyWere)
{
    const qlonglong antes = contar(data);
    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    picker.edBuscar()->setText(QStringLiteral("Ceuta"));
    DataSet& ds = picker.municipios();
    ASSERT_EQ(ds.recordCount(), 1);
    TfrmMunicipio::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaMunicipio*>(&d);
        escribir(alta->edPais(), QStringLiteral("ESPAÑA"));
        escribir(alta->edProvincia(), QStringLiteral("Ceuta"));
        escribir(alta->edMunicipio(), QStringLiteral("Ceuta Norte"));
        QTest::keyClick(alta, Qt::Key_Escape);
        return alta->result();
    });
    picker.nuevo();
    EXPECT_EQ(ds.state(), DataSet::State::Browse);
    EXPECT_FALSE(ds.updatesPending());
    EXPECT_EQ(ds.recordCount(), 1);
    EXPECT_EQ(ds.fieldByName(QStringLiteral("DESMUNIINE")).asString(), QStringLiteral("Ceuta"));
    EXPECT_EQ(contar(data), antes);
    EXPECT_EQ(scalar(data, QStringLiteral("SELECT GEN_ID(GEN_MUNIINE, 0) FROM RDB$DATABASE")).toLongLong(), 8131)
        << "no key drawn for a row never stored";
}

TEST_F(Municipios, ARowTheDatabaseRefusesStaysTypedAndIsNeverHalfStored)
{
    // The generator behind the seeded keys: the next key is taken.
    Query::execute(data.dm().datos, data.dm().Transacion, QStringLiteral("SET GENERATOR GEN_MUNIINE TO 8130"));
    data.dm().Transacion.commitRetaining();
    test::ScriptedDialogs dialogs;
    const qlonglong antes = contar(data);
    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    DataSet& ds = picker.municipios();
    TfrmMunicipio::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaMunicipio*>(&d);
        escribir(alta->edPais(), QStringLiteral("ESPAÑA"));
        escribir(alta->edProvincia(), QStringLiteral("Melilla"));
        escribir(alta->edMunicipio(), QStringLiteral("Melilla la Vieja"));
        EXPECT_FALSE(alta->aceptar());
        const auto& log = dialogs.log();
        EXPECT_EQ(log.size(), 1);
        if (!log.isEmpty()) {
            EXPECT_EQ(log.last().kind, Kind::Error);
            EXPECT_TRUE(log.last().text.contains(QStringLiteral("PK_MUNICIPIOS"))) << log.last().text.toStdString();
        }
        EXPECT_TRUE(ds.isEditing()) << "back in edit as typed";
        EXPECT_EQ(alta->edMunicipio()->text(), QStringLiteral("Melilla la Vieja"));
        EXPECT_EQ(contar(data), antes);
        alta->cancelar();
        return alta->result();
    });
    picker.nuevo();
    EXPECT_FALSE(ds.isEditing());
    EXPECT_FALSE(ds.updatesPending());
    EXPECT_EQ(contar(data), antes);
    EXPECT_EQ(contar(data, QStringLiteral("DESMUNIINE = 'Melilla la Vieja'")), 0);
}

TEST_F(Municipios, TheCodesButtonOpensTheConfiguredReference)
{
    QList<QUrl> abiertas;
    reports::setUrlOpener([&](const QUrl& u) {
        abiertas.append(u);
        return true;
    });
    QSettings ajustes(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("tejavista"), QStringLiteral("tejavista"));
    ajustes.remove(QStringLiteral("municipios/codigosIne"));
    ajustes.sync();
    EXPECT_EQ(lookups::direccionCodigosIne(), QStringLiteral("https://www.ine.es/daco/daco42/codmun/diccionario25.xlsx"));

    TfrmMunicipio picker(data.dm());
    picker.openQuery();
    TfrmMunicipio::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaMunicipio*>(&d);
        EXPECT_EQ(alta->btnCodigosIne()->text(), QStringLiteral("Códigos INE"));
        alta->btnCodigosIne()->click();
        ajustes.setValue(QStringLiteral("municipios/codigosIne"), QStringLiteral("https://ejemplo.es/codigos.xlsx"));
        ajustes.sync();
        alta->btnCodigosIne()->click();
        alta->cancelar();
        return alta->result();
    });
    picker.nuevo();
    ajustes.remove(QStringLiteral("municipios/codigosIne"));
    ASSERT_EQ(abiertas.size(), 2);
    EXPECT_EQ(abiertas.at(0), QUrl(QStringLiteral("https://www.ine.es/daco/daco42/codmun/diccionario25.xlsx")));
    EXPECT_EQ(abiertas.at(1), QUrl(QStringLiteral("https://ejemplo.es/codigos.xlsx")));
}
