#include "frmconfigura.h"

#include "commands.h"
#include "lookups.h"
#include "query.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"
#include "testdata.h"

#include <QAction>
#include <QCheckBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;
using lookups::TfrmConfigura;
using Action = tv::ui::RecordScreen::Action;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

const QString kPregunta = QStringLiteral("¿Está seguro de grabar los cambios?");
const QString kCarrusel = QStringLiteral("El intervalo del carrusel debe ser un número de segundos mayor que cero");
const QString kDiasNegativos = QStringLiteral("Los días entre actualizaciones no pueden ser negativos");
const QString kSinDias =
    QStringLiteral("Debe indicar cada cuántos días se hace la actualización automática (un número mayor que cero)");

// Every column the user edits, with a value unlike the seeded one. Flags
// are clicked (the seed holds the opposite of `valor`).
struct Ajuste {
    const char* campo;
    const char* valor;
    bool marca = false;
};
const Ajuste kAjustes[] = {
    {"DIRECTORIO_FOTOS", "/srv/fotos/inmuebles"},
    {"DOCU_RED", "S", true},
    {"PORTALINMO", "PI-000123"},
    {"FTP_HOST", "ftp.agencia.es"},
    {"FTP_USUARIO", "web"},
    {"FTP_PASSWORD", "clave-ftp"},
    {"ACTUALIZA_AUTOMATICA", "S", true},
    {"DIASACTUALIZACION", "3"},
    {"SERVIDOR_HOST", "central.agencia.es"},
    {"SERVIDOR_DATABASE", "/datos/central.fdb"},
    {"SERVIDOR_USUARIO", "SYSDBA"},
    {"SERVIDOR_PASSWORD", "masterkey"},
    {"SINCRONIZACION_OFICINA", "Gandia centro"},
    {"SINCRONIZACION_USUARIO", "oficina2"},
    {"SINCRONIZACION_CLAVE", "s1ncr0"},
    {"OFICINA", "2"},
    {"EMPRESA", "17"},
    {"CARRUSEL_TIEMPO", "12"},
    {"VER_DIRECCION", "N", true},
    {"VER_FECHA", "N", true},
    {"DESACTIVAR_MENSAJES", "S", true},
};

class ConfiguraTest : public ::testing::Test {
protected:
    void abrir()
    {
        screen = std::make_unique<TfrmConfigura>(data.dm());
        screen->show();
        screen->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(screen.get()));
    }

    QWidget* control(const char* campo) const { return screen->controlFor(QString::fromLatin1(campo)); }
    QLineEdit* caja(const char* campo) const { return qobject_cast<QLineEdit*>(control(campo)); }

    void escribir(const char* campo, const QString& texto)
    {
        QLineEdit* e = caja(campo);
        ASSERT_NE(e, nullptr) << campo;
        e->setFocus();
        e->selectAll();
        if (!e->text().isEmpty())
            QTest::keyClick(e, Qt::Key_Delete);
        QTest::keyClicks(e, texto);
    }

    void marcar(const char* campo)
    {
        auto* box = qobject_cast<QCheckBox*>(control(campo));
        ASSERT_NE(box, nullptr) << campo;
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(4, box->height() / 2));
    }

    QVariant enBase(const QString& columna)
    {
        return Query::scalar(data.dm().datos, data.dm().Transacion,
                             QStringLiteral("SELECT %1 FROM CONFIGURACION").arg(columna));
    }

    // The whole row as the database holds it, to tell "nothing changed".
    QVector<QVariant> filaEnBase()
    {
        Query q(data.dm().datos, data.dm().Transacion, QStringLiteral("SELECT * FROM CONFIGURACION"));
        QVector<QVariant> out;
        for (q.open(); !q.eof(); q.next())
            out += q.values();
        q.close();
        return out;
    }

    int filas()
    {
        return enBase(QStringLiteral("COUNT(*)")).toInt();
    }

    DataSet& ds() const { return *screen->dataSet(); }

    test::TestData data;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<TfrmConfigura> screen;
};

} // namespace

TEST_F(ConfiguraTest, FourPagesWithTheirCaptionsAndNoInternalMarkers)
{
    abrir();
    const QStringList esperadas{QStringLiteral("Carpetas y documentos"), QStringLiteral("Portales y FTP"),
                                QStringLiteral("Sincronización"), QStringLiteral("Mensajes y carrusel")};
    ASSERT_EQ(screen->paginas()->count(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(screen->paginas()->tabText(i), esperadas.at(i));
    EXPECT_EQ(TfrmConfigura::paginasDeLaPantalla(), esperadas);

    // Each column on its page.
    const std::pair<const char*, int> donde[] = {{"DIRECTORIO_FOTOS", 0}, {"DOCU_RED", 0}, {"FTP_HOST", 1},
                                                 {"PORTALINMO", 1},       {"ULTACTUALIZACION", 1},
                                                 {"SERVIDOR_HOST", 2},    {"SINCRONIZACION_CLAVE", 2},
                                                 {"CARRUSEL_TIEMPO", 3},  {"DESACTIVAR_MENSAJES", 3}};
    for (const auto& [campo, pagina] : donde) {
        ASSERT_NE(control(campo), nullptr) << campo;
        EXPECT_TRUE(screen->paginas()->widget(pagina)->isAncestorOf(control(campo))) << campo;
    }
    for (const char* oculto : {"OBSERVACIONES_MIGRADAS", "EJECUTADO"}) {
        EXPECT_EQ(control(oculto), nullptr) << oculto;
        EXPECT_EQ(screen->findChild<QWidget*>(QString::fromLatin1(oculto)), nullptr) << oculto;
    }
    for (const char* clave : {"FTP_PASSWORD", "SERVIDOR_PASSWORD", "SINCRONIZACION_CLAVE"})
        EXPECT_EQ(caja(clave)->echoMode(), QLineEdit::Password) << clave;
    auto* ultima = qobject_cast<QDateEdit*>(control("ULTACTUALIZACION"));
    ASSERT_NE(ultima, nullptr);
    EXPECT_TRUE(ultima->isReadOnly());
    EXPECT_EQ(ultima->date(), enBase(QStringLiteral("ULTACTUALIZACION")).toDateTime().date()) << "the stored date shows";
    EXPECT_EQ(caja("CARRUSEL_TIEMPO")->text(), QStringLiteral("5"));

    for (Action a : {Action::Nuevo, Action::Borrar, Action::Anterior, Action::Siguiente})
        EXPECT_FALSE(screen->action(a)->isVisible());
    EXPECT_TRUE(screen->action(Action::Grabar)->isVisible());
}

TEST_F(ConfiguraTest, EveryFieldRoundTripsToTheDatabase)
{
    const QVariant ultima = enBase(QStringLiteral("ULTACTUALIZACION"));
    const QVariant migradas = enBase(QStringLiteral("OBSERVACIONES_MIGRADAS"));
    const QVariant ejecutado = enBase(QStringLiteral("EJECUTADO"));
    abrir();
    for (const Ajuste& a : kAjustes)
        ASSERT_NE(control(a.campo), nullptr) << a.campo << " is on the screen";
    for (const Ajuste& a : kAjustes) {
        if (a.marca) {
            ASSERT_NE(enBase(QString::fromLatin1(a.campo)).toString(), QString::fromLatin1(a.valor)) << a.campo;
            marcar(a.campo);
        } else {
            escribir(a.campo, QString::fromLatin1(a.valor));
        }
    }
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kPregunta}) << "the standard question";

    EXPECT_EQ(filas(), 1);
    for (const Ajuste& a : kAjustes)
        EXPECT_EQ(enBase(QString::fromLatin1(a.campo)).toString(), QString::fromLatin1(a.valor)) << a.campo;
    EXPECT_EQ(enBase(QStringLiteral("ULTACTUALIZACION")), ultima) << "read-only, kept to the second";
    EXPECT_EQ(enBase(QStringLiteral("OBSERVACIONES_MIGRADAS")), migradas);
    EXPECT_EQ(enBase(QStringLiteral("EJECUTADO")), ejecutado);

    // And back from the database into a fresh screen.
    data.dm().Transacion.commit();
    screen.reset();
    abrir();
    for (const Ajuste& a : kAjustes) {
        if (a.marca)
            EXPECT_EQ(qobject_cast<QCheckBox*>(control(a.campo))->isChecked(), a.valor[0] == 'S') << a.campo;
        else
            EXPECT_EQ(caja(a.campo)->text(), QString::fromLatin1(a.valor)) << a.campo;
    }
}

struct Comprobacion {
    const char* nombre;
    std::vector<std::pair<const char*, const char*>> tecleado;
    bool automatica;
    const char* campo;
    QString mensaje;
};

void PrintTo(const Comprobacion& c, std::ostream* os)
{
    *os << c.nombre;
}

class ConfiguraChecks : public ConfiguraTest, public ::testing::WithParamInterface<Comprobacion> {};

TEST_P(ConfiguraChecks, RefusesWithItsMessageFocusAndNothingSaved)
{
    const Comprobacion& c = GetParam();
    abrir();
    const QVector<QVariant> antes = filaEnBase();
    for (const auto& [campo, texto] : c.tecleado)
        escribir(campo, QString::fromLatin1(texto));
    if (c.automatica)
        marcar("ACTUALIZA_AUTOMATICA");
    screen->paginas()->setCurrentIndex(2);

    EXPECT_FALSE(screen->grabar());
    ASSERT_EQ(dialogs.log().size(), 1) << "no question before the checks pass";
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Warning);
    EXPECT_EQ(dialogs.log().at(0).text, c.mensaje);
    EXPECT_TRUE(control(c.campo)->hasFocus());
    EXPECT_TRUE(screen->paginas()->currentWidget()->isAncestorOf(control(c.campo)));
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_EQ(filaEnBase(), antes);
    for (const auto& [campo, texto] : c.tecleado)
        EXPECT_EQ(caja(campo)->text(), QString::fromLatin1(texto)) << "what was typed stays";
}

INSTANTIATE_TEST_SUITE_P(
    Comprobaciones, ConfiguraChecks,
    ::testing::Values(Comprobacion{"CarruselCero", {{"CARRUSEL_TIEMPO", "0"}}, false, "CARRUSEL_TIEMPO", kCarrusel},
                      Comprobacion{"CarruselNegativo", {{"CARRUSEL_TIEMPO", "-4"}}, false, "CARRUSEL_TIEMPO", kCarrusel},
                      Comprobacion{"DiasNegativos", {{"DIASACTUALIZACION", "-1"}}, false, "DIASACTUALIZACION",
                                   kDiasNegativos},
                      Comprobacion{"AutomaticaSinDias", {{"DIASACTUALIZACION", ""}}, true, "DIASACTUALIZACION", kSinDias},
                      Comprobacion{"AutomaticaConCeroDias", {{"DIASACTUALIZACION", "0"}}, true, "DIASACTUALIZACION",
                                   kSinDias},
                      // The pages' order: the days are checked before the carousel.
                      Comprobacion{"DiasAntesQueCarrusel",
                                   {{"CARRUSEL_TIEMPO", "0"}, {"DIASACTUALIZACION", "-2"}},
                                   false,
                                   "DIASACTUALIZACION",
                                   kDiasNegativos}),
    [](const ::testing::TestParamInfo<Comprobacion>& i) { return std::string(i.param.nombre); });

TEST_F(ConfiguraTest, EmptyCarouselAndNoDaysWithoutAutomaticUpdateAreFine)
{
    abrir();
    escribir("CARRUSEL_TIEMPO", QString());
    escribir("DIASACTUALIZACION", QString());
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kPregunta});
    EXPECT_FALSE(enBase(QStringLiteral("CARRUSEL_TIEMPO")).isValid()) << "NULL";
    EXPECT_FALSE(enBase(QStringLiteral("DIASACTUALIZACION")).isValid());

    // A row holding NULLs is still found by its columns on the next save.
    escribir("FTP_HOST", QStringLiteral("ftp.otra.es"));
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(enBase(QStringLiteral("FTP_HOST")).toString(), QStringLiteral("ftp.otra.es"));
    EXPECT_EQ(filas(), 1);
}

TEST_F(ConfiguraTest, AnEmptyTableGetsItsRowOnTheFirstSave)
{
    Query::execute(data.dm().datos, data.dm().Transacion, QStringLiteral("DELETE FROM CONFIGURACION"));
    data.dm().Transacion.commitRetaining();
    abrir();
    EXPECT_TRUE(ds().isEmpty());
    EXPECT_FALSE(screen->action(Action::Grabar)->isEnabled());

    escribir("FTP_HOST", QStringLiteral("ftp.nueva.es"));
    EXPECT_EQ(ds().state(), DataSet::State::Insert);
    EXPECT_EQ(caja("CARRUSEL_TIEMPO")->text(), QStringLiteral("5")) << "a new folder's settings";
    EXPECT_TRUE(qobject_cast<QCheckBox*>(control("VER_FECHA"))->isChecked());
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(filas(), 1);
    EXPECT_EQ(enBase(QStringLiteral("FTP_HOST")).toString(), QStringLiteral("ftp.nueva.es"));
    EXPECT_EQ(enBase(QStringLiteral("CARRUSEL_TIEMPO")).toInt(), 5);
    EXPECT_EQ(enBase(QStringLiteral("DESACTIVAR_MENSAJES")).toString(), QStringLiteral("N"));
    EXPECT_FALSE(enBase(QStringLiteral("OBSERVACIONES_MIGRADAS")).isValid()) << "left to the start-up";

    // The new row is edited in place afterwards, not inserted again.
    marcar("DESACTIVAR_MENSAJES");
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(filas(), 1);
    EXPECT_EQ(enBase(QStringLiteral("DESACTIVAR_MENSAJES")).toString(), QStringLiteral("S"));
}

TEST_F(ConfiguraTest, OnAnEmptyTableTheFolderChooserStartsTheRow)
{
    Query::execute(data.dm().datos, data.dm().Transacion, QStringLiteral("DELETE FROM CONFIGURACION"));
    data.dm().Transacion.commitRetaining();
    abrir();
    test::ScriptedServices services;
    services.fileAnswer(QStringLiteral("/srv/fotos"));
    QTest::mouseClick(screen->botonCarpetaFotos(), Qt::LeftButton);
    ASSERT_EQ(services.calls().size(), 1);
    EXPECT_TRUE(services.calls().at(0).detail.isEmpty()) << "no folder to start from";
    EXPECT_EQ(ds().state(), DataSet::State::Insert);
    EXPECT_EQ(caja("DIRECTORIO_FOTOS")->text(), QStringLiteral("/srv/fotos"));
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(filas(), 1);
    EXPECT_EQ(enBase(QStringLiteral("DIRECTORIO_FOTOS")).toString(), QStringLiteral("/srv/fotos"));
}

TEST_F(ConfiguraTest, ThePhotoFolderIsChosenOnDisk)
{
    abrir();
    test::ScriptedServices services;
    services.fileAnswer(QString());
    EXPECT_FALSE(screen->elegirCarpetaFotos());
    ASSERT_EQ(services.calls().size(), 1);
    EXPECT_EQ(services.calls().at(0).kind, test::ScriptedServices::Kind::Folder);
    EXPECT_EQ(ds().state(), DataSet::State::Browse) << "cancelled: nothing changes";

    services.fileAnswer(QStringLiteral("/") + QString(80, QLatin1Char('x')));
    EXPECT_FALSE(screen->elegirCarpetaFotos());
    services.calls();
    EXPECT_EQ(dialogs.texts(),
              QStringList{QStringLiteral("La ruta de la carpeta es demasiado larga: caben 70 caracteres")});
    EXPECT_EQ(ds().state(), DataSet::State::Browse);

    services.fileAnswer(QStringLiteral("/srv/fotos"));
    QTest::mouseClick(screen->botonCarpetaFotos(), Qt::LeftButton);
    EXPECT_EQ(services.calls().size(), 3);
    EXPECT_EQ(caja("DIRECTORIO_FOTOS")->text(), QStringLiteral("/srv/fotos"));
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(enBase(QStringLiteral("DIRECTORIO_FOTOS")).toString(), QStringLiteral("/srv/fotos"));
}

TEST_F(ConfiguraTest, TheCommandOpensTheScreenModally)
{
    ui::commands().clear();
    lookups::registrarComandos();
    const ui::Command* c = ui::commands().find(QStringLiteral("configurar-aplicacion"));
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->openAs, ui::OpenAs::Modal);
    std::unique_ptr<QWidget> w(c->factory(nullptr));
    EXPECT_NE(qobject_cast<TfrmConfigura*>(w.get()), nullptr);
    ui::commands().clear();
}
