// The map position of a property without the web engine: stored and typed
// coordinates, their text in any locale, the page built for them, the bridge
// from the page, and the dialog's Aceptar / Cancelar contract.
#include "mapa.h"
#include "scripteddialogs.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <ostream>

static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv::registro;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

// Runs with another default locale, as a Spanish desktop has.
class LocaleEspanol {
public:
    LocaleEspanol() { QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain)); }
    ~LocaleEspanol() { QLocale::setDefault(mAntes); }

private:
    QLocale mAntes;
};

// The settings object the page's script starts from.
QJsonObject configuracion(const QString& pagina)
{
    static const QRegularExpression re(QStringLiteral("var tvConfig = (\\{.*?\\});\\n"));
    const auto m = re.match(pagina);
    if (!m.hasMatch())
        return {};
    QString json = m.captured(1);
    json.replace(QLatin1String("<\\/"), QLatin1String("</"));
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

// Acts on the modal dialog once exec() has shown it.
void conElDialogo(std::function<void(TfrmMapa&)> accion)
{
    QTimer::singleShot(0, [accion] {
        auto* dlg = qobject_cast<TfrmMapa*>(QApplication::activeModalWidget());
        if (!dlg) {
            ADD_FAILURE() << "no map dialog is open";
            return;
        }
        accion(*dlg);
    });
}

} // namespace

TEST(MapaCoordenadas, StoredColumnsGiveAPlaceOnlyWhenBothAreReal)
{
    EXPECT_EQ(posicionGuardada(QVariant(40.4168), QVariant(-3.7038)), (Posicion{40.4168, -3.7038}));
    EXPECT_EQ(posicionGuardada(QVariant(28.1), QVariant(0.0)), (Posicion{28.1, 0.0}));
    EXPECT_FALSE(posicionGuardada(QVariant(), QVariant(-3.7)));
    EXPECT_FALSE(posicionGuardada(QVariant(40.4), QVariant(QMetaType::fromType<double>())));
    EXPECT_FALSE(posicionGuardada(QVariant(0.0), QVariant(0.0))) << "0/0 is a row never placed";
    EXPECT_FALSE(posicionGuardada(QVariant(95.0), QVariant(3.0)));
    EXPECT_FALSE(posicionGuardada(QVariant(40.0), QVariant(-181.0)));
    EXPECT_FALSE(posicionGuardada(QVariant(std::numeric_limits<double>::quiet_NaN()), QVariant(3.0)));

    EXPECT_TRUE(posicionValida({90, 180}));
    EXPECT_TRUE(posicionValida({-90, -180}));
    EXPECT_FALSE(posicionValida({90.000001, 0}));
    EXPECT_FALSE(posicionValida({0, -180.000001}));
    EXPECT_FALSE(posicionValida({0, std::numeric_limits<double>::infinity()}));
}

TEST(MapaCoordenadas, TextHasSixDecimalsAndADotInAnyLocale)
{
    const LocaleEspanol es;
    EXPECT_EQ(QLocale().toString(1.5), "1,5") << "the test needs a comma locale";
    EXPECT_EQ(textoCoordenada(40.4167754), "40.416775");
    EXPECT_EQ(textoCoordenada(-3.7037902), "-3.703790");
    EXPECT_EQ(textoCoordenada(2.17), "2.170000");
    EXPECT_EQ(textoCoordenada(-179.9999999), "-180.000000");
    EXPECT_EQ(textoCoordenada(-0.0000001), "0.000000");
    EXPECT_EQ(textoCoordenada(12345.5), "12345.500000") << "no thousands separator";
    EXPECT_DOUBLE_EQ(redondearCoordenada(41.38506389), 41.385064);
    EXPECT_DOUBLE_EQ(redondearCoordenada(-0.0000004), 0.0);
    EXPECT_FALSE(std::signbit(redondearCoordenada(-0.0000004)));
}

struct CasoLectura {
    const char* nombre;
    QString latitud;
    QString longitud;
    QString mensaje; // empty: accepted
    QString campo;
    std::optional<Posicion> posicion;
};

void PrintTo(const CasoLectura& c, std::ostream* os)
{
    *os << c.nombre;
}

class MapaLectura : public ::testing::TestWithParam<CasoLectura> {};

TEST_P(MapaLectura, TypedCoordinatesAreReadOrRefusedInSpanish)
{
    const CasoLectura& c = GetParam();
    const LocaleEspanol es;
    const LecturaPosicion l = leerPosicion(c.latitud, c.longitud);
    EXPECT_EQ(l.mensaje, c.mensaje);
    EXPECT_EQ(l.campo, c.campo);
    EXPECT_EQ(l.ok(), c.mensaje.isEmpty());
    EXPECT_EQ(l.posicion, c.posicion);
}

INSTANTIATE_TEST_SUITE_P(
    Casos, MapaLectura,
    ::testing::Values(
        CasoLectura{"madrid", "40.416775", "-3.703790", {}, {}, Posicion{40.416775, -3.70379}},
        CasoLectura{"con_blancos_y_signo", " +28.1 ", " -.5", {}, {}, Posicion{28.1, -0.5}},
        CasoLectura{"enteros_en_el_limite", "-90", "180", {}, {}, Posicion{-90, 180}},
        CasoLectura{"ninguna", " ", "", {}, {}, std::nullopt},
        CasoLectura{"latitud_con_coma", "40,416775", "-3.703790",
                    "La latitud se escribe con punto decimal, no con coma (por ejemplo, 40.416775)", "LATITUDE",
                    std::nullopt},
        CasoLectura{"longitud_con_coma", "40.416775", "-3,703790",
                    "La longitud se escribe con punto decimal, no con coma (por ejemplo, -3.703790)", "LONGITUDE",
                    std::nullopt},
        CasoLectura{"par_pegado_en_una", "40.416775, -3.703790", "",
                    "La latitud se escribe con punto decimal, no con coma (por ejemplo, 40.416775)", "LATITUDE",
                    std::nullopt},
        CasoLectura{"falta_longitud", "40.4", "", "Debe indicar la longitud", "LONGITUDE", std::nullopt},
        CasoLectura{"falta_latitud", "", "-3.7", "Debe indicar la latitud", "LATITUDE", std::nullopt},
        CasoLectura{"letras", "norte", "-3.7", "La latitud no es un número válido: norte", "LATITUDE",
                    std::nullopt},
        CasoLectura{"exponente", "40.4", "1e2", "La longitud no es un número válido: 1e2", "LONGITUDE",
                    std::nullopt},
        CasoLectura{"infinito", "inf", "0", "La latitud no es un número válido: inf", "LATITUDE", std::nullopt},
        CasoLectura{"grados", "40.4°", "0", "La latitud no es un número válido: 40.4°", "LATITUDE", std::nullopt},
        CasoLectura{"latitud_fuera", "90.5", "0", "La latitud debe estar entre -90 y 90 grados", "LATITUDE",
                    std::nullopt},
        CasoLectura{"longitud_fuera", "0", "-180.01", "La longitud debe estar entre -180 y 180 grados",
                    "LONGITUDE", std::nullopt}),
    [](const ::testing::TestParamInfo<CasoLectura>& caso) { return std::string(caso.param.nombre); });

TEST(MapaPagina, CarriesThePlaceAndModeAsJsonWithDots)
{
    const LocaleEspanol es;
    const QString pagina = paginaMapa(Posicion{40.4167754, -3.7037902}, true);
    const QJsonObject cfg = configuracion(pagina);
    ASSERT_FALSE(cfg.isEmpty()) << pagina.left(600).toStdString();
    EXPECT_EQ(cfg.value("posicion").toArray(), (QJsonArray{40.416775, -3.70379}));
    EXPECT_TRUE(cfg.value("manual").toBool());
    EXPECT_EQ(cfg.value("zoom").toInt(), 17);
    EXPECT_EQ(cfg.value("teselas").toString(), "https://tile.openstreetmap.org/{z}/{x}/{y}.png");
    EXPECT_TRUE(pagina.contains("[40.416775,-3.70379]"));
    EXPECT_FALSE(pagina.contains("40,416775"));

    const QJsonObject fija =
        configuracion(paginaMapa(std::nullopt, false, OpcionesMapa{"/x", "http://t/{z}/{x}/{y}", 12}));
    EXPECT_TRUE(fija.value("posicion").isNull());
    EXPECT_FALSE(fija.value("manual").toBool());
    EXPECT_EQ(fija.value("zoom").toInt(), 12);
    // Without a place, mainland Spain is in view.
    const QJsonArray espana = fija.value("espana").toArray();
    ASSERT_EQ(espana.size(), 2);
    EXPECT_LT(espana[0].toArray()[0].toDouble(), 36.5);
    EXPECT_GT(espana[1].toArray()[0].toDouble(), 43.5);
    EXPECT_LT(espana[0].toArray()[1].toDouble(), -9.0);
    EXPECT_GT(espana[1].toArray()[1].toDouble(), 3.0);
}

TEST(MapaPagina, LoadsOnlyLocalScriptsAndCannotBeBrokenByItsSettings)
{
    OpcionesMapa o;
    o.teselas = QStringLiteral("http://a/</script><script>alert(1)</script>/{z}/{x}/{y}.png");
    const QString pagina = paginaMapa(Posicion{1, 2}, false, o);
    EXPECT_TRUE(pagina.contains("<link rel=\"stylesheet\" href=\"leaflet.css\">"));
    EXPECT_TRUE(pagina.contains("<script src=\"leaflet.js\"></script>"));
    static const QRegularExpression externo(QStringLiteral("<(script|link)[^>]+(src|href)=\"[a-z]+:"));
    EXPECT_FALSE(externo.match(pagina).hasMatch());
    EXPECT_EQ(pagina.count("</script>"), 3) << "a setting closed a script element";
    EXPECT_EQ(configuracion(pagina).value("teselas").toString(), o.teselas);
}

TEST(MapaPagina, LeafletComesFromItsFolderAsTheBaseUrl)
{
    const QUrl base = baseMapa();
    EXPECT_EQ(base, QUrl("file:///usr/share/javascript/leaflet/"));
    EXPECT_TRUE(leafletDisponible());
    EXPECT_EQ(baseMapa(OpcionesMapa{"/opt/mapas/", {}, 17}), QUrl("file:///opt/mapas/"));
    QTemporaryDir vacia;
    EXPECT_FALSE(leafletDisponible(OpcionesMapa{vacia.path(), {}, 17}));
}

TEST(MapaPuente, PassesPlacesRoundedAndDropsThoseOffTheEarth)
{
    PuenteMapa puente;
    QSignalSpy posiciones(&puente, &PuenteMapa::posicionElegida);
    QSignalSpy lista(&puente, &PuenteMapa::paginaLista);
    QSignalSpy sinRed(&puente, &PuenteMapa::teselasNoDisponibles);
    puente.posicion(41.38506389, 2.17340347);
    puente.posicion(std::numeric_limits<double>::quiet_NaN(), 2.0);
    puente.posicion(91.0, 2.0);
    puente.posicion(40.0, 200.0);
    puente.lista();
    puente.sinConexion();
    ASSERT_EQ(posiciones.size(), 1);
    EXPECT_DOUBLE_EQ(posiciones.at(0).at(0).toDouble(), 41.385064);
    EXPECT_DOUBLE_EQ(posiciones.at(0).at(1).toDouble(), 2.173403);
    EXPECT_EQ(lista.size(), 1);
    EXPECT_EQ(sinRed.size(), 1);
}

TEST(MapaDialogo, ManualPlacingFillsTheBoxesAndAceptarHandsItBack)
{
    TfrmMapa dlg(std::nullopt, true);
    EXPECT_EQ(dlg.windowTitle(), "Situación del inmueble");
    EXPECT_TRUE(dlg.edLatitud()->isReadOnly());
    EXPECT_TRUE(dlg.edLongitud()->isReadOnly());
    EXPECT_TRUE(dlg.edLatitud()->text().isEmpty());
    EXPECT_FALSE(dlg.btnAceptar()->isEnabled()) << "nothing placed yet";
    EXPECT_FALSE(dlg.btnCancelar()->isHidden());
    EXPECT_EQ(dlg.findChild<QLabel*>("lblPista")->text(),
              "Pulse en el mapa o arrastre la marca para situar el inmueble.");

    QSignalSpy cambios(&dlg, &TfrmMapa::posicionCambiada);
    const LocaleEspanol es;
    dlg.puente()->posicion(41.38506389, 2.1734);
    ASSERT_EQ(cambios.size(), 1);
    EXPECT_EQ(dlg.edLatitud()->text(), "41.385064");
    EXPECT_EQ(dlg.edLongitud()->text(), "2.173400");
    EXPECT_TRUE(dlg.btnAceptar()->isEnabled());
    dlg.puente()->posicion(95.0, 2.0);
    EXPECT_EQ(cambios.size(), 1);
    EXPECT_EQ(dlg.edLatitud()->text(), "41.385064");

    dlg.btnAceptar()->click();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(dlg.posicion(), (Posicion{41.385064, 2.1734}));
}

TEST(MapaDialogo, WithoutManualPlacingTheMarkerIsFixedAndTheOnlyButtonCloses)
{
    TfrmMapa dlg(Posicion{36.7213, -4.4214}, false);
    EXPECT_EQ(dlg.edLatitud()->text(), "36.721300");
    EXPECT_EQ(dlg.edLongitud()->text(), "-4.421400");
    EXPECT_EQ(dlg.btnAceptar()->text(), "Cerrar");
    EXPECT_TRUE(dlg.btnAceptar()->isEnabled());
    EXPECT_TRUE(dlg.btnCancelar()->isHidden());
    EXPECT_EQ(dlg.findChild<QLabel*>("lblPista")->text(),
              "La marca está fija: el inmueble no tiene activada la situación manual.");
    EXPECT_EQ(TfrmMapa(std::nullopt, false).findChild<QLabel*>("lblPista")->text(),
              "El inmueble no tiene coordenadas.");
    QSignalSpy cambios(&dlg, &TfrmMapa::posicionCambiada);
    dlg.puente()->posicion(37.0, -4.0);
    dlg.ponerPosicion(37.0, -4.0);
    EXPECT_TRUE(cambios.isEmpty());
    EXPECT_EQ(dlg.posicion(), (Posicion{36.7213, -4.4214}));
    EXPECT_EQ(dlg.edLatitud()->text(), "36.721300");
}

TEST(MapaDialogo, ElegirReturnsAMovedPlaceOnlyOnAceptar)
{
    std::optional<Posicion> p = Posicion{36.7213, -4.4214};
    conElDialogo([](TfrmMapa& d) {
        d.puente()->posicion(36.7300, -4.4300);
        d.btnAceptar()->click();
    });
    EXPECT_TRUE(TfrmMapa::elegir(p, true));
    EXPECT_EQ(p, (Posicion{36.73, -4.43}));

    conElDialogo([](TfrmMapa& d) {
        d.puente()->posicion(10.0, 10.0);
        d.btnCancelar()->click();
    });
    EXPECT_FALSE(TfrmMapa::elegir(p, true));
    EXPECT_EQ(p, (Posicion{36.73, -4.43}));

    conElDialogo([](TfrmMapa& d) {
        d.puente()->posicion(10.0, 10.0);
        QTest::keyClick(&d, Qt::Key_Escape);
    });
    EXPECT_FALSE(TfrmMapa::elegir(p, true));
    EXPECT_EQ(p, (Posicion{36.73, -4.43}));

    // Accepted where it already was: nothing for the caller to store.
    conElDialogo([](TfrmMapa& d) { d.btnAceptar()->click(); });
    EXPECT_FALSE(TfrmMapa::elegir(p, true));

    std::optional<Posicion> ninguna;
    conElDialogo([](TfrmMapa& d) {
        EXPECT_TRUE(d.edLatitud()->text().isEmpty());
        d.puente()->posicion(28.4636, -16.2518);
        d.btnAceptar()->click();
    });
    EXPECT_TRUE(TfrmMapa::elegir(ninguna, true));
    EXPECT_EQ(ninguna, (Posicion{28.4636, -16.2518}));

    std::optional<Posicion> fija = Posicion{40.0, -3.0};
    conElDialogo([](TfrmMapa& d) {
        d.puente()->posicion(41.0, -3.0);
        d.btnAceptar()->click();
    });
    EXPECT_FALSE(TfrmMapa::elegir(fija, false));
    EXPECT_EQ(fija, (Posicion{40.0, -3.0}));
}

TEST(MapaDialogo, WithoutLeafletTheUserIsToldAndNothingChanges)
{
    QTemporaryDir vacia;
    const OpcionesMapa sinLeaflet{vacia.path(), {}, 17};
    {
        tv::test::ScriptedDialogs dialogs;
        std::optional<Posicion> p = Posicion{40.0, -3.0};
        EXPECT_FALSE(TfrmMapa::elegir(p, true, nullptr, sinLeaflet));
        EXPECT_EQ(p, (Posicion{40.0, -3.0}));
        ASSERT_EQ(dialogs.log().size(), 1);
        EXPECT_EQ(dialogs.log().at(0).kind, Kind::Error);
        EXPECT_EQ(dialogs.log().at(0).text, "No se puede mostrar el mapa: no se encuentra la biblioteca Leaflet en " +
                                                vacia.path() + "/ (paquete libjs-leaflet).");
    }
    // Built anyway, the dialog says so where the map would be.
    TfrmMapa dlg(Posicion{40.0, -3.0}, false, nullptr, sinLeaflet);
    auto* hoja = dlg.findChild<QStackedWidget*>();
    ASSERT_NE(hoja, nullptr);
    EXPECT_EQ(hoja->currentWidget(), dlg.lblFallo());
    EXPECT_EQ(dlg.lblFallo()->text(), "No se encuentra la biblioteca de mapas Leaflet en " + vacia.path() + "/.");
    EXPECT_EQ(dlg.edLatitud()->text(), "40.000000");
}
