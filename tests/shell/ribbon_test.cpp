#include "comandos.h"
#include "commands.h"
#include "pendientes.h"
#include "ribbon.h"
#include "ribbontable.h"

#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QSignalSpy>
#include <QToolButton>
#include <gtest/gtest.h>

using namespace tv::shell;

namespace {

// The captions as the users know them, written out here on purpose: a typo
// in the ribbon's table must not pass because the test reads the same table.
const QStringList kPages = {QStringLiteral("FICHEROS"),          QStringLiteral("UTILIDADES"),
                            QStringLiteral("CAMPAÑAS DE MARKETING"), QStringLiteral("TABLAS AUXILIARES"),
                            QStringLiteral("TABLAS COMUNES"),    QStringLiteral("HERRAMIENTAS")};

const QStringList kGroups = {
    QStringLiteral("Datos Generales"), QStringLiteral("Portales"), QStringLiteral("Plantillas del escaparate"),
    QStringLiteral("Contratos"), QStringLiteral("Notas de encargo"), QStringLiteral("Más Herramientas"),
    QStringLiteral("Carrusel de imágenes"), QStringLiteral("Histórico telefónico"), QStringLiteral("Campañas"),
    QStringLiteral("Tablas auxiliares"), QStringLiteral("Tablas comunes"), QStringLiteral("Configurar agenda"),
    QStringLiteral("Configurar idioma"), QStringLiteral("Herramientas"), QStringLiteral("Financiación")};

const QStringList kCaptions = {
    // FICHEROS
    QStringLiteral("Inmuebles"), QStringLiteral("Demandas"), QStringLiteral("Operaciones"),
    QStringLiteral("Cruce-Automático"), QStringLiteral("Clientes"), QStringLiteral("Propietarios"),
    QStringLiteral("Agentes"), QStringLiteral("Contactos"), QStringLiteral("Agenda"), QStringLiteral("Gestiones"),
    QStringLiteral("Promociones"), QStringLiteral("Fichero de Promociones"), QStringLiteral("Estado de las promociones"),
    QStringLiteral("Mi-Web"), QStringLiteral("Fotocasa"), QStringLiteral("Idealista"), QStringLiteral("Yaencontre"),
    QStringLiteral("Pisos.com"), QStringLiteral("Habitaclia"), QStringLiteral("+Portales"),
    // UTILIDADES
    QStringLiteral("Diseñar Escaparate"), QStringLiteral("Generar Escaparate"), QStringLiteral("Diseñar Contrato"),
    QStringLiteral("Plantilla Operaciones"), QStringLiteral("Nota de Venta"), QStringLiteral("Nota de Compra"),
    QStringLiteral("Diseñar circular clientes interesados"), QStringLiteral("Imprimir documento recogida de información"),
    QStringLiteral("Calculadora"), QStringLiteral("Calculadora hipotecaria"), QStringLiteral("Cuadro de financiación"),
    QStringLiteral("Carrusel"), QStringLiteral("Estadísticas"), QStringLiteral("Telefonos"),
    // CAMPAÑAS DE MARKETING
    QStringLiteral("Generar Campaña"), QStringLiteral("Enviar Mail"), QStringLiteral("Enviar SMS"),
    // TABLAS AUXILIARES
    QStringLiteral("Tipos de Familias"), QStringLiteral("Tipos de Inmuebles"), QStringLiteral("Tipos de Operaciones"),
    QStringLiteral("Tipos de Estados"), QStringLiteral("Tipos de Zonas"), QStringLiteral("Orígenes Publicitarios"),
    QStringLiteral("Tipos de Gastos"), QStringLiteral("Tipos de Gestiones"), QStringLiteral("Tipos de Perfiles"),
    QStringLiteral("Departamentos"),
    // TABLAS COMUNES
    QStringLiteral("Configurar Empresa"), QStringLiteral("Bancos"), QStringLiteral("Tipos de Iva"),
    QStringLiteral("Municipios"), QStringLiteral("Configurar Agenda"), QStringLiteral("Tipos de Citas"),
    QStringLiteral("Histórico"), QStringLiteral("Idioma"),
    // HERRAMIENTAS
    QStringLiteral("Manual"), QStringLiteral("Fondo"), QStringLiteral("Configurar aplicacion"),
    QStringLiteral("Nombre del ordenador"), QStringLiteral("Configurar Red"), QStringLiteral("Actualizar"),
    QStringLiteral("Realizar Copia"), QStringLiteral("Restaurar Copia"),
    // Application menu
    QStringLiteral("Escanear documentación"), QStringLiteral("Salir del programa")};

const QStringList kPortalFeeds = {
    QStringLiteral("fotocasa"), QStringLiteral("idealista"), QStringLiteral("habitaclia"), QStringLiteral("indomio"),
    QStringLiteral("misviviendas"), QStringLiteral("yaencontre"), QStringLiteral("pisos"), QStringLiteral("globaliza"),
    QStringLiteral("vivados"), QStringLiteral("facilisimo"), QStringLiteral("thinkspain"), QStringLiteral("tucasa"),
    QStringLiteral("inzoco"), QStringLiteral("hogaria"), QStringLiteral("pisocasas"), QStringLiteral("spainhouses"),
    QStringLiteral("luxuryestate"), QStringLiteral("anuncialo"), QStringLiteral("1001portales"),
    QStringLiteral("trovimap"), QStringLiteral("kyero")};

} // namespace

TEST(Ribbon, PagesGroupsAndEveryCaption)
{
    Ribbon ribbon;
    EXPECT_EQ(ribbon.pageTitles(), kPages);
    EXPECT_EQ(ribbon.groupCaptions(), kGroups);
    const QStringList shown = ribbon.captions();
    for (const QString& caption : kCaptions)
        EXPECT_TRUE(shown.contains(caption)) << "missing: " << caption.toStdString();
    // Nothing else on the buttons than the captions above and the feeds.
    for (const QString& caption : shown)
        EXPECT_TRUE(kCaptions.contains(caption) || caption.startsWith(QStringLiteral("Exportar los inmuebles a ")))
            << "unexpected: " << caption.toStdString();
    ASSERT_NE(ribbon.languageBox(), nullptr);
    EXPECT_EQ(ribbon.languageBox()->count(), 2);
    EXPECT_EQ(ribbon.languageBox()->itemText(0), QStringLiteral("Castellano"));
    EXPECT_EQ(ribbon.languageBox()->itemText(1), QStringLiteral("Catalán"));
}

TEST(Ribbon, DropDownsAndThePortalsMenu)
{
    Ribbon ribbon;
    QToolButton* promociones = ribbon.buttonFor(QStringLiteral("promociones"));
    ASSERT_NE(promociones, nullptr);
    ASSERT_NE(promociones->menu(), nullptr);
    EXPECT_EQ(promociones->popupMode(), QToolButton::InstantPopup);
    QStringList entries;
    for (const QAction* a : promociones->menu()->actions())
        entries.append(a->text());
    EXPECT_EQ(entries, (QStringList{QStringLiteral("Fichero de Promociones"), QStringLiteral("Estado de las promociones")}));

    QToolButton* portales = ribbon.buttonFor(QStringLiteral("mas-portales"));
    ASSERT_NE(portales, nullptr);
    ASSERT_NE(portales->menu(), nullptr);
    const QList<QAction*> feeds = portales->menu()->actions();
    ASSERT_EQ(feeds.size(), kPortalFeeds.size() + 2) << "own web page, page generator, and every feed";
    for (const QAction* a : feeds)
        EXPECT_TRUE(a->text().startsWith(QStringLiteral("Exportar los inmuebles a "))) << a->text().toStdString();
    for (const QString& feed : kPortalFeeds) {
        bool found = false;
        for (const QAction* a : feeds)
            found = found || a->text().contains(QLatin1Char('.') + feed + QLatin1Char('.'), Qt::CaseInsensitive);
        EXPECT_TRUE(found) << "no entry for " << feed.toStdString();
    }
    EXPECT_EQ(feeds.at(2)->text(), QStringLiteral("Exportar los inmuebles a www.fotocasa.es"));
}

TEST(Ribbon, ButtonsAndEntriesSendTheirCommand)
{
    Ribbon ribbon;
    QSignalSpy spy(&ribbon, &Ribbon::commandTriggered);
    ribbon.buttonFor(QStringLiteral("inmuebles"))->click();
    ribbon.actionFor(QStringLiteral("promociones-estado"))->trigger();
    ribbon.actionFor(QStringLiteral("salir"))->trigger();
    ASSERT_EQ(spy.count(), 3);
    EXPECT_EQ(spy.at(0).at(0).toString(), QStringLiteral("inmuebles"));
    EXPECT_EQ(spy.at(1).at(0).toString(), QStringLiteral("promociones-estado"));
    EXPECT_EQ(spy.at(2).at(0).toString(), QStringLiteral("salir"));

    ribbon.setCommandVisible(QStringLiteral("configurar-red"), false);
    EXPECT_FALSE(ribbon.isCommandVisible(QStringLiteral("configurar-red")));
    EXPECT_TRUE(ribbon.isCommandVisible(QStringLiteral("actualizar")));
}

TEST(Ribbon, EveryButtonHasAnIconAndACommandThatIsHandledOrPending)
{
    Ribbon ribbon;
    const QStringList handledByTheShell = {QStringLiteral("calculadora"), QStringLiteral("manual"),
                                           QStringLiteral("fondo"), QStringLiteral("nombre-ordenador"),
                                           QStringLiteral("salir"), QStringLiteral("idioma")};
    for (const RibbonItem& item : ribbonItems()) {
        if (item.kind == RibbonKind::Menu || item.kind == RibbonKind::LanguageBox)
            continue;
        EXPECT_FALSE(ribbon.actionFor(item.command)->icon().isNull()) << item.command.toStdString();
        EXPECT_TRUE(handledByTheShell.contains(item.command) || tv::ui::commands().contains(item.command) ||
                    esPendiente(item.command))
            << item.command.toStdString();
    }
    for (const RibbonMenuItem& item : ribbonMenuItems())
        EXPECT_TRUE(tv::ui::commands().contains(item.command) || esPendiente(item.command)) << item.command.toStdString();
    EXPECT_EQ(mensajePendiente(QStringLiteral("inmuebles")),
              QStringLiteral("La función «Inmuebles» todavía no está disponible en esta versión."));
    EXPECT_EQ(mensajePendiente(QStringLiteral("portal-kyero")),
              QStringLiteral("La función «Exportar los inmuebles a www.kyero.com» todavía no está disponible en esta versión."));
}

TEST(Ribbon, TheBuiltScreensAreNoLongerPending)
{
    tv::shell::registrarComandosDeLasPantallas();
    const QStringList built = {
        QStringLiteral("agentes"), QStringLiteral("tipos-familias"), QStringLiteral("tipos-inmuebles"),
        QStringLiteral("tipos-operaciones"), QStringLiteral("tipos-estados"), QStringLiteral("tipos-zonas"),
        QStringLiteral("origenes-publicitarios"), QStringLiteral("tipos-gastos"), QStringLiteral("tipos-gestiones"),
        QStringLiteral("tipos-perfiles"), QStringLiteral("departamentos"), QStringLiteral("configurar-empresa"),
        QStringLiteral("bancos"), QStringLiteral("tipos-iva"), QStringLiteral("municipios"),
        QStringLiteral("tipos-citas"), QStringLiteral("configurar-aplicacion"),
        QStringLiteral("calculadora-hipotecaria"), QStringLiteral("cuadro-financiacion"), QStringLiteral("inmuebles")};
    for (const QString& c : built) {
        EXPECT_TRUE(tv::ui::commands().contains(c)) << c.toStdString();
        EXPECT_FALSE(esPendiente(c)) << c.toStdString();
        EXPECT_FALSE(comandosPendientes().contains(c)) << c.toStdString();
    }
    for (const QString& c : {QStringLiteral("demandas"), QStringLiteral("configurar-agenda"),
                             QStringLiteral("historico-agenda"), QStringLiteral("escanear")})
        EXPECT_TRUE(esPendiente(c)) << c.toStdString();
    EXPECT_FALSE(esPendiente(QStringLiteral("salir")));
    EXPECT_FALSE(esPendiente(QStringLiteral("no-existe")));
}
