#include "appstate.h"
#include "dataset.h"
#include "fondomdiarea.h"
#include "frmmain.h"
#include "recordscreen.h"
#include "ribbon.h"
#include "scripteddialogs.h"
#include "settings.h"
#include "testdata.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QSysInfo>
#include <QToolButton>
#include <QtTest/QTest>
#include <QCoreApplication>
#include <gtest/gtest.h>

using namespace tv;
using tv::shell::TfrmMain;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

class MainWindow : public ::testing::Test {
protected:
    void SetUp() override
    {
        ui::appState().reset();
        shell::settings::setIdioma(0);
        window = std::make_unique<TfrmMain>(data.dm());
        window->setAutoStart(false);
        window->show();
        ASSERT_TRUE(window->arrancar());
    }
    void TearDown() override
    {
        window.reset();
        ui::appState().reset();
    }

    test::TestData data{false};
    test::ScriptedDialogs dialogs;
    std::unique_ptr<TfrmMain> window;
};

// A record screen over the agents, for the close sequence.
class AgentsScreen : public ui::RecordScreen {
public:
    explicit AgentsScreen(DataSet& ds)
    {
        setDataSet(&ds);
        name = new QLineEdit(body());
        bindText(name, QStringLiteral("APEYNOM"));
    }
    QLineEdit* name;
};

// Records the dialogs that appear (title and label texts) while it lives.
class ShownWindows : public QObject {
public:
    ShownWindows() { qApp->installEventFilter(this); }
    ~ShownWindows() override { qApp->removeEventFilter(this); }
    QStringList titles;
    QStringList texts;

protected:
    bool eventFilter(QObject* o, QEvent* e) override
    {
        if (e->type() == QEvent::Show) {
            if (auto* d = qobject_cast<QDialog*>(o)) {
                titles.append(d->windowTitle());
                for (const QLabel* l : d->findChildren<QLabel*>())
                    texts.append(l->text());
            }
        }
        return false;
    }
};

} // namespace

TEST_F(MainWindow, ExitAsksAndClosesOnlyOnYes)
{
    dialogs.answer(false);
    window->ribbon()->actionFor(QStringLiteral("salir"))->trigger();
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("¿Está seguro de salir de la aplicación?")});
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Confirmation);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(data.dm().datos.isOpen());

    dialogs.answer(true);
    window->salirDelPrograma();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(data.dm().datos.isOpen());
    EXPECT_FALSE(data.dm().Imagenes.isOpen());
    EXPECT_FALSE(data.dm().dbInformes.isOpen());
}

TEST_F(MainWindow, LanguageChangeAfterStartUpClosesTheProgram)
{
    window->ribbon()->languageBox()->setCurrentIndex(1);
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("La aplicación se cerrará para que el cambio se realice")});
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Information);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(shell::settings::idioma(), 1) << "kept for the next start";

    // The next start reads it: Catalan templates.
    data.dm().abrirConexiones();
    ui::appState().reset();
    TfrmMain next(data.dm());
    next.setAutoStart(false);
    EXPECT_EQ(next.ribbon()->languageBox()->currentIndex(), 1);
    ASSERT_TRUE(next.arrancar());
    EXPECT_EQ(ui::appState().idioma, 1);
    EXPECT_TRUE(ui::appState().templatesFolder.endsWith(QStringLiteral("/plantillas/cat")));
    shell::settings::setIdioma(0);
}

TEST_F(MainWindow, LanguageChangeDuringStartUpSaysNothing)
{
    ui::appState().iniciado = 0;
    window->ribbon()->languageBox()->setCurrentIndex(1);
    EXPECT_TRUE(dialogs.log().isEmpty());
    EXPECT_TRUE(window->isVisible());
    shell::settings::setIdioma(0);
}

TEST_F(MainWindow, PendingCommandsSayTheyAreNotAvailable)
{
    window->ribbon()->buttonFor(QStringLiteral("demandas"))->click();
    window->ribbon()->actionFor(QStringLiteral("promociones-fichero"))->trigger();
    window->ribbon()->actionFor(QStringLiteral("escanear"))->trigger();
    EXPECT_EQ(dialogs.texts(),
              (QStringList{QStringLiteral("La función «Demandas» todavía no está disponible en esta versión."),
                           QStringLiteral("La función «Fichero de Promociones» todavía no está disponible en esta versión."),
                           QStringLiteral("La función «Escanear documentación» todavía no está disponible en esta versión.")}));

    // A later version plugs its screen in by registering the command.
    int opened = 0;
    window->registrarComando(QStringLiteral("inmuebles"), [&] { ++opened; });
    dialogs.clear();
    window->ejecutar(QStringLiteral("inmuebles"));
    EXPECT_EQ(opened, 1);
    EXPECT_TRUE(dialogs.log().isEmpty());

    // A failure no screen handled is shown once, with the database's own text,
    // and never reaches the event loop; a refusal (Abort) says nothing.
    window->registrarComando(QStringLiteral("clientes"), [] {
        throw tv::DatabaseError(QStringLiteral("lock conflict on no wait transaction"), {335544345L});
    });
    window->registrarComando(QStringLiteral("demandas"), [] { throw tv::Abort(); });
    window->ejecutar(QStringLiteral("clientes"));
    window->ejecutar(QStringLiteral("demandas"));
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, tv::test::ScriptedDialogs::Kind::Error);
    EXPECT_EQ(dialogs.texts().at(0), QStringLiteral("lock conflict on no wait transaction"));
}

TEST_F(MainWindow, AScreenThatClosesItselfTakesItsFrameWithIt)
{
    auto* screen = new QWidget;
    window->abrirVentana(screen);
    ASSERT_EQ(window->mdiArea()->subWindowList().size(), 1);
    screen->close(); // what Salir and Escape do
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(window->mdiArea()->subWindowList().isEmpty());
}

TEST_F(MainWindow, ComputerNameAndBackground)
{
    window->ribbon()->buttonFor(QStringLiteral("nombre-ordenador"))->click();
    EXPECT_EQ(dialogs.texts(),
              QStringList{QStringLiteral("El nombre de este ordenador es: ") + QSysInfo::machineHostName()});

    window->aplicarFondo(QStringLiteral("arena.jpg"));
    EXPECT_EQ(shell::settings::fondo(), QStringLiteral("arena.jpg"));
    EXPECT_TRUE(window->mdiArea()->hasPicture()) << "fondos/arena.jpg ships with the program";
    window->aplicarFondo(QString());
    EXPECT_FALSE(window->mdiArea()->hasPicture());
    EXPECT_EQ(shell::settings::fondo(), QString());
    shell::settings::setFondo(QStringLiteral("azul.jpg"));
}

TEST_F(MainWindow, CloseShowsTheWaitWindowAndCommitsWhatTheTransactionHolds)
{
    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM) VALUES (77, 'SIN CONFIRMAR')"));
    ShownWindows shown;
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(data.dm().datos.isOpen());
    EXPECT_FALSE(data.dm().Imagenes.isOpen());
    EXPECT_FALSE(data.dm().dbInformes.isOpen());
    EXPECT_TRUE(shown.titles.contains(QStringLiteral("Espere...")));
    EXPECT_TRUE(shown.texts.contains(QStringLiteral("Cerrando Aplicación ...")));

    Database check(data.folder() + Tdm::kDatosFile);
    check.open();
    Transaction tr;
    EXPECT_EQ(Query::scalar(check, tr, QStringLiteral("SELECT APEYNOM FROM AGENTES WHERE CODIGO = 77")).toString(),
              QStringLiteral("SIN CONFIRMAR"));
    tr.commit();
    check.close();
}

TEST_F(MainWindow, ChildWindowWithChangesCanStopTheClose)
{
    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM) VALUES (1, 'ANA')"));
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setTable(QStringLiteral("AGENTES"), {QStringLiteral("CODIGO")});
    ds.open();
    auto* screen = new AgentsScreen(ds);
    window->abrirVentana(screen);
    ASSERT_EQ(window->mdiArea()->subWindowList().size(), 1);
    ds.edit();
    ds.fieldByName(QStringLiteral("APEYNOM")).setAsString(QStringLiteral("ANA MARÍA"));

    dialogs.answer(false); // keep the changes
    EXPECT_FALSE(window->close());
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("¿Está seguro de cancelar los cambios?")});
    EXPECT_TRUE(data.dm().datos.isOpen()) << "nothing closed while a window refuses";
    EXPECT_EQ(ds.state(), DataSet::State::Edit);

    dialogs.answer(true);
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(window->mdiArea()->subWindowList().isEmpty());
    EXPECT_FALSE(data.dm().datos.isOpen());
}
