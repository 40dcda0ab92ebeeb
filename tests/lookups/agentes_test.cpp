// The agents screen: who opens it, the administrator box, the ownership of
// agent records, the checks on saving, the modification password, the NIF
// box and the current agent loaded again when the screen closes.
#include "frmagentes.h"

#include "appstate.h"
#include "commands.h"
#include "datagrid.h"
#include "gridsettings.h"
#include "lookups.h"
#include "query.h"
#include "scripteddialogs.h"
#include "sqltext.h"
#include "testdata.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <ostream>

// Readable texts in failure messages.
static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using lookups::TfrmAgentes;
using Action = tv::ui::RecordScreen::Action;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

const QString kGrabar = QStringLiteral("¿Está seguro de grabar los cambios?");
const QString kCancelar = QStringLiteral("¿Está seguro de cancelar los cambios?");
const QString kBorrar = QStringLiteral("¿Está seguro de eliminar el registro actual? ");
const QString kSinAcceso = QStringLiteral("No tiene privilegios para acceder a esta pantalla");
const QString kNoModificar = QStringLiteral("No tiene privilegios para modificar este agente");
const QString kNoEliminar = QStringLiteral("No tiene privilegios para eliminar este agente");
const QString kNoAnadir = QStringLiteral("No tiene privilegios añadir nuevos agentes");
const QString kClave =
    QStringLiteral("La contraseña para modificar los datos no es correcta, no tiene \r\npermiso para realizar esta acción");
const QString kSinNombre = QStringLiteral("Debe indicar el nombre del agente");
const QString kUsuarioRepetido = QStringLiteral("Ya existe otro agente con ese nombre de usuario");

// The seven flags and their captions, in the screen's order.
const std::pair<const char*, const char*> kFlags[] = {
    {"OCULTARDATOSECONOMICOS", "Ocultar datos económicos"},
    {"VERSOLOSUSGESTIONES", "Ver solo sus gestiones"},
    {"VERSOLOSUAGENDA", "Ver solo su agenda"},
    {"OCULTARDATOSINTERNOS", "Ocultar datos internos del inmueble"},
    {"OCULTARCLIENTES", "Ocultar clientes no asignados"},
    {"OCULTASPROPIETARIOS", "Ocultar propietarios no asignados"},
    {"ADMINISTRADOR", "Agente Administrador"},
};
const char* const kRestricciones[] = {"OCULTARDATOSECONOMICOS", "VERSOLOSUSGESTIONES", "VERSOLOSUAGENDA",
                                      "OCULTARDATOSINTERNOS",   "OCULTARCLIENTES",     "OCULTASPROPIETARIOS"};

class Agentes : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mSettings.isValid());
        ui::GridSettings::setStorageFile(mSettings.filePath(QStringLiteral("rejillas.ini")));
        ui::appState().reset();
        ui::commands().clear();
    }

    void TearDown() override
    {
        screen.reset();
        // Screens run by the command table go with DeleteOnClose.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        ui::commands().clear();
        ui::GridSettings::setStorageFile({});
        ui::appState().reset();
    }

    void ejecutar(const QString& text)
    {
        Query::execute(data.dm().datos, data.dm().Transacion, text);
        data.dm().Transacion.commitRetaining();
    }

    // An agent with the given flags set to "S" (the others "N").
    void agente(int codigo, const char* nombre, const char* usuario, QStringList marcadas = {},
                const QString& otras = {}, const QString& valores = {})
    {
        QString columnas = QStringLiteral("CODIGO, APEYNOM, USUARIO");
        QString lista = sql::number(qlonglong(codigo)) + QStringLiteral(", ") +
                        sql::quote(QString::fromUtf8(nombre)) + QStringLiteral(", ") +
                        sql::quote(QString::fromUtf8(usuario));
        for (const auto& [col, caption] : kFlags) {
            columnas += QStringLiteral(", ") + QLatin1String(col);
            lista += QStringLiteral(", ") + sql::quote(sql::flag(marcadas.contains(QLatin1String(col))));
        }
        if (!otras.isEmpty()) {
            columnas += QStringLiteral(", ") + otras;
            lista += QStringLiteral(", ") + valores;
        }
        ejecutar(QStringLiteral("INSERT INTO AGENTES (") + columnas + QStringLiteral(") VALUES (") + lista +
            QStringLiteral(")"));
    }

    void abrir()
    {
        screen = std::make_unique<TfrmAgentes>(data.dm());
        screen->show();
        screen->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(screen.get()));
    }

    DataSet& ds() { return *screen->dataSet(); }
    QString valor(const char* campo) { return ds().fieldByName(QLatin1String(campo)).asString(); }
    int codigo() { return ds().fieldByName(QStringLiteral("CODIGO")).asInteger(); }

    QVariant enBase(int cod, const char* campo)
    {
        return Query::scalar(data.dm().datos, data.dm().Transacion,
                             QStringLiteral("SELECT ") + QLatin1String(campo) +
                                 QStringLiteral(" FROM AGENTES WHERE CODIGO = ") + sql::number(qlonglong(cod)));
    }
    int cuantos()
    {
        return Query::scalar(data.dm().datos, data.dm().Transacion, QStringLiteral("SELECT COUNT(*) FROM AGENTES"))
            .toInt();
    }

    QCheckBox* casilla(const char* campo)
    {
        return qobject_cast<QCheckBox*>(screen->controlFor(QLatin1String(campo)));
    }
    QLineEdit* caja(const char* campo)
    {
        return qobject_cast<QLineEdit*>(screen->controlFor(QLatin1String(campo)));
    }

    // Replaces a box's text as the user does (the binder hears textEdited).
    static void teclear(QLineEdit* e, const QString& texto)
    {
        ASSERT_NE(e, nullptr);
        e->setText(texto);
        Q_EMIT e->textEdited(texto);
    }
    void teclear(const char* campo, const QString& texto) { teclear(caja(campo), texto); }

    void moverA(int cod) { ASSERT_TRUE(ds().locate(QStringLiteral("CODIGO"), cod)); }

    test::TestData data;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<TfrmAgentes> screen;

private:
    QTemporaryDir mSettings;
};

struct Host : ui::CommandHost {
    QWidget* hostWidget() override { return nullptr; }
    void showChild(QWidget*) override {}
};

} // namespace

// --------------------------------------------------------------- opening

TEST_F(Agentes, OpensOnTheLastAgentWithItsGroupsBoxesAndDepartments)
{
    ejecutar(QStringLiteral("INSERT INTO DEPARTAMENTOS (CODIGO, DESCRIPCION) VALUES (1, 'VENTAS')"));
    ejecutar(QStringLiteral("INSERT INTO DEPARTAMENTOS (CODIGO, DESCRIPCION) VALUES (2, 'ALQUILERES')"));
    agente(1, "ANA PONS", "ana");
    agente(2, "LUIS GIL", "luis");
    agente(3, "EVA ROS", "eva", {}, QStringLiteral("CODDEPARTAMENTO"), QStringLiteral("2"));
    abrir();

    EXPECT_EQ(screen->objectName(), QStringLiteral("TfrmAgentes"));
    EXPECT_EQ(screen->windowTitle(), QStringLiteral("Agentes"));
    EXPECT_EQ(ds().recordCount(), 3);
    EXPECT_EQ(codigo(), 3) << "the last agent";
    EXPECT_EQ(caja("APEYNOM")->text(), QStringLiteral("EVA ROS"));
    EXPECT_EQ(screen->rejilla()->currentIndex().row(), 2) << "the list follows the record";
    EXPECT_EQ(screen->rejilla()->model()->rowCount(), 3);

    auto* departamento = qobject_cast<QComboBox*>(screen->controlFor(QStringLiteral("CODDEPARTAMENTO")));
    ASSERT_NE(departamento, nullptr);
    EXPECT_EQ(departamento->currentText(), QStringLiteral("ALQUILERES"));
    ASSERT_EQ(departamento->count(), 3);
    EXPECT_EQ(departamento->itemText(2), QStringLiteral("VENTAS"));

    QStringList grupos;
    for (QGroupBox* g : screen->findChildren<QGroupBox*>())
        grupos.append(g->title());
    for (const char* g : {"Datos personales", "Acceso", "Permisos"})
        EXPECT_TRUE(grupos.contains(QString::fromUtf8(g))) << g;

    // The seven flags carry their captions, one under the other in order.
    int filaAnterior = -1;
    for (const auto& [col, caption] : kFlags) {
        QCheckBox* box = casilla(col);
        ASSERT_NE(box, nullptr) << col;
        EXPECT_EQ(box->text(), QString::fromUtf8(caption));
        auto* grid = qobject_cast<QGridLayout*>(box->parentWidget()->layout());
        ASSERT_NE(grid, nullptr);
        int fila = 0, columna = 0, filas = 0, columnas = 0;
        grid->getItemPosition(grid->indexOf(box), &fila, &columna, &filas, &columnas);
        EXPECT_GT(fila, filaAnterior) << col;
        filaAnterior = fila;
    }

    for (const char* col : {"CODIGO", "APEYNOM", "NIF", "USUARIO", "CONTRASENA", "CLAVE_PERSONALES",
                            "PORCENTAJE_OPERACIONES", "PORCENTAJE_CAPTACION", "DIR", "POB", "CP", "PROVINCIA",
                            "TEL", "TEL_MOVIL", "FAX", "OBSERVACIONES", "FECHAALTA"})
        EXPECT_NE(screen->controlFor(QLatin1String(col)), nullptr) << col;
    EXPECT_EQ(caja("CONTRASENA")->echoMode(), QLineEdit::Password);
    EXPECT_EQ(caja("CLAVE_PERSONALES")->echoMode(), QLineEdit::Password);
    EXPECT_FALSE(caja("CODIGO")->isEnabled()) << "drawn from CODAGENTE";
    EXPECT_TRUE(screen->claveModificacion()->isHidden()) << "an administrator needs no password to save";
    EXPECT_EQ(screen->claveModificacion()->objectName(), QStringLiteral("uClaveModificacion"));
}

TEST_F(Agentes, TheCommandOpensForAnyoneWhileThereIsNoAdministrator)
{
    lookups::registrarAgentes();
    const ui::Command* c = ui::commands().find(QStringLiteral("agentes"));
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->openAs, ui::OpenAs::Modal);
    EXPECT_TRUE(bool(c->allowed));

    QList<int> abiertos; // the agent each opened screen stood on
    ui::commands().setModalRunner([&](QDialog* d) {
        auto* s = qobject_cast<TfrmAgentes*>(d);
        EXPECT_NE(s, nullptr);
        if (s)
            abiertos.append(s->dataSet()->fieldByName(QStringLiteral("CODIGO")).asInteger());
        d->close();
    });
    Host host;
    agente(1, "ANA PONS", "ana");
    agente(2, "LUIS GIL", "luis");
    data.dm().cargarAgente(1);
    ASSERT_FALSE(data.dm().agente.administrador);

    EXPECT_TRUE(ui::commands().run(QStringLiteral("agentes"), host)) << "nobody is an administrator yet";
    EXPECT_EQ(abiertos, QList<int>{2});

    agente(3, "EVA ROS", "eva", {QStringLiteral("ADMINISTRADOR")});
    EXPECT_FALSE(ui::commands().run(QStringLiteral("agentes"), host));
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Information);
    EXPECT_EQ(dialogs.log().at(0).text, kSinAcceso);
    EXPECT_EQ(abiertos.size(), 1) << "refused: no screen";

    data.dm().cargarAgente(3);
    EXPECT_TRUE(ui::commands().run(QStringLiteral("agentes"), host)) << "an administrator always opens it";
    EXPECT_EQ(abiertos, (QList<int>{2, 3}));
    EXPECT_TRUE(lookups::puedeAbrirAgentes(data.dm(), nullptr));
    data.dm().cargarAgente(2);
    EXPECT_FALSE(lookups::puedeAbrirAgentes(data.dm(), nullptr));
    EXPECT_EQ(dialogs.texts(), (QStringList{kSinAcceso, kSinAcceso}));
}

TEST_F(Agentes, TheCommandIsRegisteredWithTheLibrarysScreens)
{
    // The program registers the library as a whole.
    ASSERT_FALSE(ui::commands().contains(QStringLiteral("agentes")));
    lookups::registrarComandos();
    EXPECT_TRUE(ui::commands().contains(QStringLiteral("agentes")));
}

TEST_F(Agentes, ClosingLoadsTheCurrentAgentAgainSoChangedRightsApplyAtOnce)
{
    lookups::registrarAgentes();
    agente(1, "ANA PONS", "ana");
    agente(2, "LUIS GIL", "luis");
    data.dm().cargarAgente(1);
    Host host;

    // First visit: the agent restricts his own agenda and clients.
    bool antesDeCerrar = true;
    ui::commands().setModalRunner([&](QDialog* d) {
        auto* s = qobject_cast<TfrmAgentes*>(d);
        ASSERT_NE(s, nullptr);
        ASSERT_TRUE(s->dataSet()->locate(QStringLiteral("CODIGO"), 1));
        s->findChild<QCheckBox*>(QStringLiteral("VERSOLOSUAGENDA"))->click();
        s->findChild<QCheckBox*>(QStringLiteral("OCULTARCLIENTES"))->click();
        dialogs.answer(true);
        EXPECT_TRUE(s->grabar());
        antesDeCerrar = data.dm().agente.verSoloSuAgenda;
        d->close();
    });
    ASSERT_TRUE(ui::commands().run(QStringLiteral("agentes"), host));
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});
    EXPECT_FALSE(antesDeCerrar) << "saving alone does not reload";
    EXPECT_TRUE(data.dm().agente.verSoloSuAgenda);
    EXPECT_TRUE(data.dm().agente.ocultarClientes);
    EXPECT_FALSE(data.dm().agente.administrador);
    EXPECT_EQ(data.dm().agente.codigo, 1);

    // Second visit: he makes himself the first administrator.
    ui::commands().setModalRunner([&](QDialog* d) {
        auto* s = qobject_cast<TfrmAgentes*>(d);
        ASSERT_NE(s, nullptr);
        ASSERT_TRUE(s->dataSet()->locate(QStringLiteral("CODIGO"), 1));
        s->findChild<QCheckBox*>(QStringLiteral("ADMINISTRADOR"))->click();
        dialogs.answer(true);
        EXPECT_TRUE(s->grabar());
        d->close();
    });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(ui::commands().run(QStringLiteral("agentes"), host));
    dialogs.log();
    EXPECT_TRUE(data.dm().agente.administrador);
    EXPECT_FALSE(data.dm().agente.verSoloSuAgenda) << "an administrator carries no restriction";
    EXPECT_FALSE(data.dm().agente.ocultarClientes);
}

TEST_F(Agentes, LeavingWithChangesAndStayingDoesNotReloadTheAgent)
{
    agente(1, "ANA PONS", "ana");
    data.dm().cargarAgente(1);
    abrir();
    casilla("VERSOLOSUAGENDA")->click();
    dialogs.answer(false);
    EXPECT_FALSE(screen->close());
    EXPECT_EQ(dialogs.texts(), QStringList{kCancelar});
    EXPECT_TRUE(screen->isVisible());
    // Simulate the record changing elsewhere; the screen is still open.
    ejecutar(QStringLiteral("UPDATE AGENTES SET OCULTARCLIENTES = 'S' WHERE CODIGO = 1"));
    EXPECT_FALSE(data.dm().agente.ocultarClientes);
    dialogs.answer(true);
    EXPECT_TRUE(screen->close());
    EXPECT_EQ(dialogs.texts(), (QStringList{kCancelar, kCancelar}));
    EXPECT_TRUE(data.dm().agente.ocultarClientes) << "closed: loaded again";
    EXPECT_FALSE(data.dm().agente.verSoloSuAgenda) << "the cancelled change never reached the database";
}

// ------------------------------------------------------ administrator box

TEST_F(Agentes, TickingAdministratorClearsTheSixRestrictionsAndDisablesTheirBoxes)
{
    agente(1, "ANA PONS", "ana",
           {QStringLiteral("OCULTARDATOSECONOMICOS"), QStringLiteral("VERSOLOSUAGENDA"),
            QStringLiteral("OCULTASPROPIETARIOS")});
    agente(2, "EVA ROS", "eva", {QStringLiteral("ADMINISTRADOR"), QStringLiteral("OCULTARCLIENTES")});
    abrir();

    ASSERT_EQ(codigo(), 2);
    for (const char* r : kRestricciones)
        EXPECT_FALSE(casilla(r)->isEnabled()) << r << ": the record is an administrator";
    EXPECT_TRUE(casilla("ADMINISTRADOR")->isEnabled());

    screen->anterior();
    ASSERT_EQ(codigo(), 1);
    for (const char* r : kRestricciones)
        EXPECT_TRUE(casilla(r)->isEnabled()) << r << ": moving follows the record";
    EXPECT_TRUE(casilla("VERSOLOSUAGENDA")->isChecked());

    casilla("ADMINISTRADOR")->click();
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_EQ(valor("ADMINISTRADOR"), QStringLiteral("S"));
    for (const char* r : kRestricciones) {
        EXPECT_EQ(valor(r), QStringLiteral("N")) << r;
        EXPECT_FALSE(casilla(r)->isChecked()) << r;
        EXPECT_FALSE(casilla(r)->isEnabled()) << r;
    }

    casilla("ADMINISTRADOR")->click();
    EXPECT_EQ(valor("ADMINISTRADOR"), QStringLiteral("N"));
    for (const char* r : kRestricciones) {
        EXPECT_TRUE(casilla(r)->isEnabled()) << r;
        EXPECT_EQ(valor(r), QStringLiteral("N")) << r << ": unticking restores nothing";
    }

    // Cancelled: the record and its boxes as they were, the database untouched.
    dialogs.answer(true);
    EXPECT_TRUE(screen->cancelar());
    EXPECT_EQ(valor("OCULTARDATOSECONOMICOS"), QStringLiteral("S"));
    EXPECT_TRUE(casilla("VERSOLOSUAGENDA")->isChecked());
    EXPECT_EQ(enBase(1, "ADMINISTRADOR").toString(), QStringLiteral("N"));
    EXPECT_EQ(enBase(1, "VERSOLOSUAGENDA").toString(), QStringLiteral("S"));

    // On an administrator, unticking enables the boxes and keeps their values.
    screen->siguiente();
    ASSERT_EQ(codigo(), 2);
    casilla("ADMINISTRADOR")->click();
    EXPECT_EQ(valor("ADMINISTRADOR"), QStringLiteral("N"));
    EXPECT_TRUE(casilla("OCULTARCLIENTES")->isEnabled());
    EXPECT_TRUE(casilla("OCULTARCLIENTES")->isChecked());
    EXPECT_EQ(valor("OCULTARCLIENTES"), QStringLiteral("S"));
    // Ticked again and saved: the database holds no restriction for him.
    casilla("ADMINISTRADOR")->click();
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), (QStringList{kCancelar, kGrabar}));
    EXPECT_EQ(enBase(2, "ADMINISTRADOR").toString(), QStringLiteral("S"));
    for (const char* r : kRestricciones)
        EXPECT_EQ(enBase(2, r).toString(), QStringLiteral("N")) << r;
}

TEST_F(Agentes, OnAnEmptyListTheAdministratorBoxStartsAnAdministrator)
{
    abrir();
    ASSERT_TRUE(ds().isEmpty());
    EXPECT_FALSE(screen->isActionEnabled(Action::Borrar));
    casilla("ADMINISTRADOR")->click();
    EXPECT_EQ(ds().state(), DataSet::State::Insert);
    EXPECT_EQ(valor("ADMINISTRADOR"), QStringLiteral("S"));
    for (const char* r : kRestricciones)
        EXPECT_FALSE(casilla(r)->isEnabled()) << r;
    teclear("APEYNOM", QStringLiteral("PRIMERO"));
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});
    EXPECT_EQ(cuantos(), 1);
    EXPECT_EQ(enBase(codigo(), "ADMINISTRADOR").toString(), QStringLiteral("S"));
}

// -------------------------------------------------------------- ownership

TEST_F(Agentes, ANonAdministratorCannotChangeDeleteOrAddOtherAgents)
{
    agente(1, "ANA PONS", "ana");
    agente(2, "LUIS GIL", "luis", {QStringLiteral("VERSOLOSUAGENDA")});
    data.dm().cargarAgente(1);
    abrir();
    ASSERT_EQ(codigo(), 2);
    EXPECT_FALSE(screen->claveModificacion()->isHidden()) << "a non-administrator may need it";
    const qlonglong generador =
        Query::scalar(data.dm().datos, data.dm().Transacion, QStringLiteral("SELECT GEN_ID(GEN_AGENTES, 0) FROM RDB$DATABASE"))
            .toLongLong();

    // Typing into another agent's record: refused at once, nothing changed.
    teclear("APEYNOM", QStringLiteral("LUIS GILX"));
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Information);
    EXPECT_EQ(dialogs.log().at(0).text, kNoModificar);
    EXPECT_EQ(ds().state(), DataSet::State::Browse);
    EXPECT_EQ(caja("APEYNOM")->text(), QStringLiteral("LUIS GIL"));
    EXPECT_EQ(valor("APEYNOM"), QStringLiteral("LUIS GIL"));
    EXPECT_FALSE(ds().updatesPending());
    EXPECT_FALSE(screen->isActionEnabled(Action::Grabar));

    // Nor his flags: one message each, the box back as it was.
    dialogs.clear();
    casilla("ADMINISTRADOR")->click();
    casilla("VERSOLOSUAGENDA")->click();
    EXPECT_EQ(dialogs.texts(), (QStringList{kNoModificar, kNoModificar}));
    EXPECT_FALSE(casilla("ADMINISTRADOR")->isChecked());
    EXPECT_TRUE(casilla("VERSOLOSUAGENDA")->isChecked());
    EXPECT_EQ(ds().state(), DataSet::State::Browse);

    // Deleting him: the refusal comes before any question; nothing goes.
    dialogs.clear();
    screen->borrar();
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Information);
    EXPECT_EQ(dialogs.log().at(0).text, kNoEliminar);
    EXPECT_EQ(ds().recordCount(), 2);
    EXPECT_EQ(cuantos(), 2);

    // Adding: refused before a code is drawn.
    dialogs.clear();
    screen->nuevo();
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Information);
    EXPECT_EQ(dialogs.log().at(0).text, kNoAnadir);
    EXPECT_EQ(ds().state(), DataSet::State::Browse);
    EXPECT_EQ(ds().recordCount(), 2);
    EXPECT_EQ(Query::scalar(data.dm().datos, data.dm().Transacion,
                            QStringLiteral("SELECT GEN_ID(GEN_AGENTES, 0) FROM RDB$DATABASE"))
                  .toLongLong(),
              generador);

    // The database still holds him exactly as he was.
    EXPECT_EQ(enBase(2, "APEYNOM").toString(), QStringLiteral("LUIS GIL"));
    EXPECT_EQ(enBase(2, "ADMINISTRADOR").toString(), QStringLiteral("N"));
    EXPECT_EQ(enBase(2, "VERSOLOSUAGENDA").toString(), QStringLiteral("S"));
}

TEST_F(Agentes, ANonAdministratorChangesAndDeletesHisOwnRecord)
{
    agente(1, "ANA PONS", "ana");
    agente(2, "LUIS GIL", "luis");
    data.dm().cargarAgente(1);
    abrir();
    screen->anterior();
    ASSERT_EQ(codigo(), 1);

    teclear("APEYNOM", QStringLiteral("ANA PONS VIDAL"));
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});
    EXPECT_EQ(enBase(1, "APEYNOM").toString(), QStringLiteral("ANA PONS VIDAL"));

    dialogs.answer(false);
    screen->borrar();
    EXPECT_EQ(dialogs.texts(), (QStringList{kGrabar, kBorrar}));
    EXPECT_EQ(cuantos(), 2);
    dialogs.answer(true);
    screen->borrar();
    dialogs.log();
    EXPECT_EQ(cuantos(), 1);
    EXPECT_EQ(enBase(2, "APEYNOM").toString(), QStringLiteral("LUIS GIL"));
}

// ----------------------------------------------------------------- saving

TEST_F(Agentes, ANewAgentTakesItsCodeFromCodagente)
{
    agente(1, "ANA PONS", "ana");
    agente(2, "LUIS GIL", "luis");
    ejecutar(QStringLiteral("SET GENERATOR GEN_AGENTES TO 40"));
    agente(41, "EVA ROS", "eva");
    ui::appState().pais = QStringLiteral("España");
    abrir();

    screen->nuevo();
    EXPECT_EQ(ds().state(), DataSet::State::Insert);
    EXPECT_EQ(codigo(), 42) << "CODAGENTE skips the taken 41";
    EXPECT_EQ(caja("CODIGO")->text(), QStringLiteral("42"));
    EXPECT_EQ(ds().fieldByName(QStringLiteral("FECHAALTA")).asDate(), QDate::currentDate());
    EXPECT_EQ(valor("PAIS"), QStringLiteral("España"));
    for (const auto& [col, caption] : kFlags)
        EXPECT_EQ(valor(col), QStringLiteral("N")) << col;
    EXPECT_TRUE(caja("APEYNOM")->hasFocus());

    EXPECT_FALSE(screen->grabar());
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Warning);
    EXPECT_EQ(dialogs.log().at(0).text, kSinNombre);
    EXPECT_EQ(ds().state(), DataSet::State::Insert);

    teclear("APEYNOM", QStringLiteral("JOSÉ PEÑA"));
    teclear("USUARIO", QStringLiteral("jose"));
    teclear("CONTRASENA", QStringLiteral("Secreta 1"));
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), (QStringList{kSinNombre, kGrabar}));
    EXPECT_EQ(enBase(42, "APEYNOM").toString(), QStringLiteral("JOSÉ PEÑA"));
    EXPECT_EQ(enBase(42, "CONTRASENA").toString(), QStringLiteral("Secreta 1")) << "stored as typed";
    EXPECT_EQ(enBase(42, "ADMINISTRADOR").toString(), QStringLiteral("N"));
    EXPECT_EQ(ds().recordCount(), 4);
}

TEST_F(Agentes, TheChecksOnSavingComeInTheFormsOrderBeforeTheQuestion)
{
    ui::appState().pais = QStringLiteral("España");
    agente(1, "ANA PONS", "ana");
    agente(2, "LUIS GIL", "luis");
    abrir();
    ASSERT_EQ(codigo(), 2);

    teclear("APEYNOM", QString());
    teclear("NIF", QStringLiteral("12345678A"));
    teclear("USUARIO", QStringLiteral(" ANA "));
    teclear("PORCENTAJE_OPERACIONES", QStringLiteral("150"));
    teclear("PORCENTAJE_CAPTACION", QStringLiteral("-1"));

    struct Paso {
        const char* mensaje;
        const char* campo; // the box that gets the focus
        const char* arreglo;
    };
    const Paso pasos[] = {
        {"Debe indicar el nombre del agente", "APEYNOM", "LUIS GIL SANZ"},
        {"El NIF del agente no es correcto", "NIF", "12345678Z"},
        {"Ya existe otro agente con ese nombre de usuario", "USUARIO", "luis.gil"},
        {"El porcentaje de operaciones debe estar entre 0 y 100", "PORCENTAJE_OPERACIONES", "12,5"},
        {"El porcentaje de captación debe estar entre 0 y 100", "PORCENTAJE_CAPTACION", "100"},
    };
    for (const Paso& p : pasos) {
        EXPECT_FALSE(screen->grabar()) << p.mensaje;
        ASSERT_EQ(dialogs.log().size(), 1) << p.mensaje;
        EXPECT_EQ(dialogs.log().at(0).kind, Kind::Warning);
        EXPECT_EQ(dialogs.log().at(0).text, QString::fromUtf8(p.mensaje));
        EXPECT_TRUE(screen->controlFor(QLatin1String(p.campo))->hasFocus()) << p.campo;
        EXPECT_EQ(ds().state(), DataSet::State::Edit);
        EXPECT_EQ(enBase(2, "APEYNOM").toString(), QStringLiteral("LUIS GIL")) << "nothing saved yet";
        dialogs.clear();
        teclear(p.campo, QString::fromUtf8(p.arreglo));
    }
    EXPECT_EQ(valor("NIF"), QStringLiteral("12345678Z"));

    dialogs.answer(false);
    EXPECT_FALSE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_EQ(enBase(2, "USUARIO").toString(), QStringLiteral("luis"));

    dialogs.clear();
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});
    EXPECT_EQ(enBase(2, "APEYNOM").toString(), QStringLiteral("LUIS GIL SANZ"));
    EXPECT_EQ(enBase(2, "USUARIO").toString(), QStringLiteral("luis.gil"));
    EXPECT_DOUBLE_EQ(enBase(2, "PORCENTAJE_OPERACIONES").toDouble(), 12.5);
    EXPECT_EQ(enBase(2, "NIF").toString(), QStringLiteral("12345678Z"));
}

TEST_F(Agentes, ALoginNameIsRefusedOnlyWhenAnotherAgentUsesIt)
{
    agente(1, "ANA PONS", "Ana");
    agente(2, "LUIS GIL", "luis");
    agente(3, "SIN ACCESO", "");
    Database& db = data.dm().datos;
    Transaction& tr = data.dm().Transacion;
    EXPECT_TRUE(lookups::usuarioEnUso(db, tr, QStringLiteral("ana"), 2));
    EXPECT_TRUE(lookups::usuarioEnUso(db, tr, QStringLiteral("  ANA "), 2));
    EXPECT_FALSE(lookups::usuarioEnUso(db, tr, QStringLiteral("ana"), 1)) << "his own name";
    EXPECT_FALSE(lookups::usuarioEnUso(db, tr, QStringLiteral("anab"), 2));
    EXPECT_FALSE(lookups::usuarioEnUso(db, tr, QStringLiteral("  "), 2)) << "agents without a login share none";

    abrir();
    screen->anterior(); // LUIS
    ASSERT_EQ(codigo(), 2);
    // Saving his other data with his own name passes.
    teclear("TEL", QStringLiteral("600 000 000"));
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});

    teclear("USUARIO", QStringLiteral("ANA"));
    EXPECT_FALSE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), (QStringList{kGrabar, kUsuarioRepetido}));
    EXPECT_EQ(enBase(2, "USUARIO").toString(), QStringLiteral("luis"));
    dialogs.answer(true);
    EXPECT_TRUE(screen->cancelar());

    // A new agent may not take it either; an agent without a login may be added.
    screen->nuevo();
    teclear("APEYNOM", QStringLiteral("OTRA ANA"));
    teclear("USUARIO", QStringLiteral("ana"));
    EXPECT_FALSE(screen->grabar());
    teclear("USUARIO", QString());
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), (QStringList{kGrabar, kUsuarioRepetido, kCancelar, kUsuarioRepetido, kGrabar}));
    EXPECT_EQ(cuantos(), 4);
}

// ---------------------------------------------------- modification password

TEST_F(Agentes, ValidarContrasenaComparesTrimmedAndUpperCased)
{
    agente(1, "ANA PONS", "ana", {}, QStringLiteral("CLAVE_PERSONALES"), QStringLiteral("'  clave '"));
    agente(2, "LUIS GIL", "luis");
    agente(3, "EVA ROS", "eva", {}, QStringLiteral("CLAVE_PERSONALES"), QStringLiteral("'   '"));
    Database& db = data.dm().datos;
    Transaction& tr = data.dm().Transacion;

    EXPECT_TRUE(lookups::validarContrasena(db, tr, 1, QStringLiteral("CLAVE"), nullptr));
    EXPECT_TRUE(lookups::validarContrasena(db, tr, 1, QStringLiteral(" Clave  "), nullptr));
    EXPECT_TRUE(lookups::validarContrasena(db, tr, 2, QStringLiteral("lo que sea"), nullptr)) << "NULL: no password";
    EXPECT_TRUE(lookups::validarContrasena(db, tr, 3, QStringLiteral("x"), nullptr)) << "blanks: no password";
    EXPECT_TRUE(lookups::validarContrasena(db, tr, 99, QStringLiteral("x"), nullptr)) << "no such agent";
    EXPECT_TRUE(dialogs.log().isEmpty());

    EXPECT_FALSE(lookups::validarContrasena(db, tr, 1, QStringLiteral("CLAVES"), nullptr));
    EXPECT_FALSE(lookups::validarContrasena(db, tr, 1, QString(), nullptr));
    ASSERT_EQ(dialogs.log().size(), 2);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Information);
    EXPECT_EQ(dialogs.log().at(0).text, kClave);
    EXPECT_TRUE(dialogs.log().at(0).text.contains(QLatin1String("no tiene \r\npermiso")));

    // The screen's method asks about the agent on screen.
    dialogs.clear();
    abrir();
    ASSERT_EQ(codigo(), 3);
    EXPECT_TRUE(screen->ValidarContrasena(QStringLiteral("cualquiera")));
    screen->anterior();
    screen->anterior();
    ASSERT_EQ(codigo(), 1);
    EXPECT_TRUE(screen->ValidarContrasena(QStringLiteral("CLAVE")));
    EXPECT_TRUE(dialogs.log().isEmpty());
    EXPECT_FALSE(screen->ValidarContrasena(QStringLiteral("cualquiera")));
    EXPECT_EQ(dialogs.texts(), QStringList{kClave});
}

TEST_F(Agentes, ANonAdministratorTypesHisModificationPasswordToSave)
{
    agente(1, "ANA PONS", "ana", {}, QStringLiteral("CLAVE_PERSONALES"), QStringLiteral("'  clave '"));
    agente(2, "LUIS GIL", "luis");
    data.dm().cargarAgente(1);
    abrir();
    screen->anterior();
    ASSERT_EQ(codigo(), 1);

    teclear("TEL", QStringLiteral("961 000 000"));
    EXPECT_FALSE(screen->grabar());
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Information);
    EXPECT_EQ(dialogs.log().at(0).text, kClave);
    EXPECT_TRUE(screen->claveModificacion()->hasFocus());
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_TRUE(enBase(1, "TEL").isNull());

    teclear(screen->claveModificacion(), QStringLiteral("Clave "));
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), (QStringList{kClave, kGrabar}));
    EXPECT_EQ(enBase(1, "TEL").toString(), QStringLiteral("961 000 000"));
    EXPECT_TRUE(screen->claveModificacion()->text().isEmpty()) << "never left to unlock the next change";

    // Nor carried to another agent's record.
    teclear(screen->claveModificacion(), QStringLiteral("clave"));
    screen->siguiente();
    ASSERT_EQ(codigo(), 2);
    EXPECT_TRUE(screen->claveModificacion()->text().isEmpty());
}

TEST_F(Agentes, AnAdministratorSavesWithoutTheModificationPassword)
{
    agente(1, "ANA PONS", "ana", {}, QStringLiteral("CLAVE_PERSONALES"), QStringLiteral("'clave'"));
    abrir();
    teclear("TEL", QStringLiteral("961 000 000"));
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});
    EXPECT_EQ(enBase(1, "TEL").toString(), QStringLiteral("961 000 000"));
}

// ---------------------------------------------------------------- NIF box

TEST_F(Agentes, LeavingTheNifBoxNormalisesItForASpanishAgency)
{
    ui::appState().pais = QStringLiteral("España");
    agente(1, "ANA PONS", "ana", {}, QStringLiteral("NIF"), QStringLiteral("'1234'"));
    abrir();

    // Browsing: leaving the box writes nothing.
    screen->edNifExit();
    EXPECT_EQ(ds().state(), DataSet::State::Browse);
    EXPECT_EQ(valor("NIF"), QStringLiteral("1234"));

    teclear("NIF", QStringLiteral("12345678"));
    EXPECT_EQ(valor("NIF"), QStringLiteral("12345678")) << "as typed until the box is left";
    screen->edNifExit();
    EXPECT_EQ(valor("NIF"), QStringLiteral("12345678Z"));
    EXPECT_EQ(caja("NIF")->text(), QStringLiteral("12345678Z"));

    teclear("NIF", QStringLiteral("12345678A"));
    screen->edNifExit();
    EXPECT_EQ(valor("NIF"), QStringLiteral("ERR. NIF"));

    // Leaving it with the keyboard does the same, and the focus moves on.
    QLineEdit* nif = caja("NIF");
    nif->setFocus();
    nif->selectAll();
    QTest::keyClicks(nif, QStringLiteral("1234567"));
    EXPECT_EQ(valor("NIF"), QStringLiteral("1234567"));
    QTest::keyClick(nif, Qt::Key_Tab);
    EXPECT_FALSE(nif->hasFocus());
    EXPECT_EQ(valor("NIF"), QStringLiteral("01234567L"));
    EXPECT_EQ(enBase(1, "NIF").toString(), QStringLiteral("1234")) << "written to the record, not saved";
}

TEST_F(Agentes, TheNifIsKeptAsTypedForAnotherCountry)
{
    ui::appState().pais = QStringLiteral("Francia");
    agente(1, "ANA PONS", "ana");
    abrir();
    teclear("NIF", QStringLiteral("12345678"));
    screen->edNifExit();
    EXPECT_EQ(valor("NIF"), QStringLiteral("12345678"));
    teclear("NIF", QStringLiteral("FR 123"));
    screen->edNifExit();
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar()) << "no Spanish check abroad";
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});
    EXPECT_EQ(enBase(1, "NIF").toString(), QStringLiteral("FR 123"));
}

TEST_F(Agentes, SavingFromTheToolbarNormalisesTheNifLeftInTheBox)
{
    ui::appState().pais = QStringLiteral("España");
    agente(1, "ANA PONS", "ana");
    abrir();
    teclear("NIF", QStringLiteral("12.345.678-z"));
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kGrabar});
    EXPECT_EQ(enBase(1, "NIF").toString(), QStringLiteral("12345678Z"));
}

TEST_F(Agentes, AScreenDestroyedWhileTypingInTheNifBoxSavesNothingAndDoesNotCrash)
{
    ui::appState().pais = QStringLiteral("España");
    agente(1, "ANA PONS", "ana");
    abrir();
    QLineEdit* nif = caja("NIF");
    nif->setFocus();
    QTest::keyClicks(nif, QStringLiteral("12345678"));
    ASSERT_TRUE(nif->hasFocus());
    ASSERT_EQ(ds().state(), DataSet::State::Edit);
    screen.reset(); // the box is left as the window goes
    EXPECT_TRUE(enBase(1, "NIF").isNull());
}
