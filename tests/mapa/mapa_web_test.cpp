// The map page in the real web engine: it loads offscreen, a click or a drag
// on the map reaches C++ over the web channel, a fixed marker stays fixed,
// without tiles a drawn grid and a notice stand in for the map, and tiles
// from a server on the loopback cover it. Tiles never come from the internet
// here. Set TEJAVISTA_MAPA_CAPTURAS to a folder to keep the pictures taken.
#include "mapa.h"
#include "report.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineView>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace tv::registro;

namespace {

// Nothing listens on port 1 of the loopback: every tile fails at once.
const QString kSinTeselas = QStringLiteral("http://127.0.0.1:1/{z}/{x}/{y}.png");
const QColor kFondo(0xf4, 0xf2, 0xee);     // the grid's paper
const QColor kLinea(0xbd, 0xb6, 0xa8);     // its labelled lines
const QColor kTesela(0x6f, 0xa8, 0xdc);    // the loopback server's tiles

// Every request gets the same plain tile; the requests are kept.
class ServidorTeselas : public QObject {
public:
    ServidorTeselas()
    {
        QImage tesela(256, 256, QImage::Format_RGB32);
        tesela.fill(kTesela);
        QBuffer b(&mPng);
        b.open(QIODevice::WriteOnly);
        tesela.save(&b, "PNG");
        mServidor.listen(QHostAddress::LocalHost, 0);
        connect(&mServidor, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* s = mServidor.nextPendingConnection())
                atender(s);
        });
    }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/{z}/{x}/{y}.png").arg(mServidor.serverPort()); }

    QStringList peticiones;
    QStringList agentes;

private:
    void atender(QTcpSocket* s)
    {
        auto recibido = std::make_shared<QByteArray>();
        connect(s, &QTcpSocket::disconnected, s, &QObject::deleteLater);
        connect(s, &QTcpSocket::readyRead, s, [this, s, recibido] {
            recibido->append(s->readAll());
            const qsizetype fin = recibido->indexOf("\r\n\r\n");
            if (fin < 0)
                return;
            const QList<QByteArray> lineas = recibido->left(fin).split('\n');
            peticiones.append(QString::fromLatin1(lineas.value(0)).trimmed());
            for (const QByteArray& l : lineas)
                if (l.toLower().startsWith("user-agent:"))
                    agentes.append(QString::fromLatin1(l.mid(11)).trimmed());
            recibido->clear();
            s->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nCache-Control: no-store\r\nConnection: close\r\n"
                     "Content-Length: " + QByteArray::number(mPng.size()) + "\r\n\r\n" + mPng);
            s->disconnectFromHost();
        });
    }

    QTcpServer mServidor;
    QByteArray mPng;
};

bool parecido(QColor a, const QColor& b, int tolerancia)
{
    return qAbs(a.red() - b.red()) <= tolerancia && qAbs(a.green() - b.green()) <= tolerancia &&
           qAbs(a.blue() - b.blue()) <= tolerancia;
}

int contar(const QImage& img, QRect zona, const std::function<bool(QColor)>& cumple)
{
    zona &= img.rect();
    int n = 0;
    for (int y = zona.top(); y <= zona.bottom(); ++y)
        for (int x = zona.left(); x <= zona.right(); ++x)
            n += cumple(img.pixelColor(x, y)) ? 1 : 0;
    return n;
}

// Leaflet's marker is blue; nothing else on the grid is.
bool azulMarca(QColor c)
{
    return c.blue() > 150 && c.blue() - c.red() > 80;
}

void guardar(const QImage& img, const QString& nombre)
{
    const QString carpeta = qEnvironmentVariable("TEJAVISTA_MAPA_CAPTURAS");
    if (!carpeta.isEmpty() && QDir().mkpath(carpeta))
        img.save(QDir(carpeta).filePath(nombre));
}

class MapaWeb : public ::testing::Test {
protected:
    // The dialog shown, its page built and its channel connected.
    std::unique_ptr<TfrmMapa> abrir(const std::optional<Posicion>& p, bool manual, const QString& teselas = kSinTeselas)
    {
        OpcionesMapa o;
        o.teselas = teselas;
        auto dlg = std::make_unique<TfrmMapa>(p, manual, nullptr, o);
        QSignalSpy listo(dlg.get(), &TfrmMapa::listo);
        dlg->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(dlg.get()));
        if (!dlg->mapaListo() && !listo.wait(60000))
            ADD_FAILURE() << "the map page never reported itself ready";
        return dlg;
    }

    // Runs a script in the page and returns its value.
    static QVariant js(TfrmMapa& dlg, const QString& script)
    {
        auto estado = std::make_shared<std::pair<bool, QVariant>>(false, QVariant());
        dlg.vista()->page()->runJavaScript(script, [estado](const QVariant& v) {
            estado->first = true;
            estado->second = v;
        });
        if (!QTest::qWaitFor([&] { return estado->first; }, 20000))
            ADD_FAILURE() << "no answer from the page to: " << script.toStdString();
        return estado->second;
    }

    // Clicks the page (DOM mouse events) where (lat, lon) is; returns the
    // place Leaflet reads under that pixel.
    static QVariantList clicar(TfrmMapa& dlg, double lat, double lon)
    {
        return js(dlg, QStringLiteral(R"js((function (lat, lon) {
                var m = tv.mapa, p = m.latLngToContainerPoint([lat, lon]).round();
                var r = m.getContainer().getBoundingClientRect();
                var o = { bubbles: true, cancelable: true, view: window, button: 0,
                          clientX: r.left + p.x, clientY: r.top + p.y };
                var el = document.elementFromPoint(o.clientX, o.clientY);
                ['mousedown', 'mouseup', 'click'].forEach(function (t) { el.dispatchEvent(new MouseEvent(t, o)); });
                var ll = m.containerPointToLatLng(p).wrap();
                return [ll.lat, ll.lng];
            })(%1, %2))js")
                           .arg(lat, 0, 'f', 6)
                           .arg(lon, 0, 'f', 6))
            .toList();
    }

    // The page's messages may arrive while a script's answer is awaited,
    // before the caller starts waiting for them.
    static bool llega(QSignalSpy& spy) { return !spy.isEmpty() || spy.wait(20000); }

    static QVariantList marca(TfrmMapa& dlg)
    {
        return js(dlg, QStringLiteral("tv.marca() ? [tv.marca().getLatLng().lat, tv.marca().getLatLng().lng] : null"))
            .toList();
    }

    // The map as drawn, once `listo` holds for it (or the last try).
    static QImage captura(TfrmMapa& dlg, const std::function<bool(const QImage&)>& listo)
    {
        QImage img;
        // The caller's checks say what was missing when time ran out.
        static_cast<void>(QTest::qWaitFor([&] {
            img = dlg.vista()->grab().toImage();
            return listo(img);
        }, 20000));
        return img;
    }
};

} // namespace

TEST_F(MapaWeb, AClickOnTheMapPlacesTheMarkerAndReachesTheBoxes)
{
    auto dlg = abrir(std::nullopt, true);
    ASSERT_TRUE(dlg->mapaListo());
    EXPECT_TRUE(js(*dlg, "tv.marca() === null").toBool());
    EXPECT_TRUE(js(*dlg, "tv.mapa.getBounds().contains([40.4, -3.7]) && tv.mapa.getBounds().contains([41.4, 2.2])"
                         " && tv.mapa.getBounds().contains([36.7, -6.3])")
                    .toBool())
        << "Spain is not in view";
    EXPECT_EQ(js(*dlg, "document.querySelector('.leaflet-top.leaflet-right .tv-aviso').textContent").toString(),
              "Pulse en el mapa para situar el inmueble");
    guardar(captura(*dlg, [](const QImage& i) {
        return contar(i, i.rect(), [](QColor c) { return parecido(c, kLinea, 10); }) > 200;
    }), QStringLiteral("mapa-sin-posicion.png"));

    QSignalSpy cambios(dlg.get(), &TfrmMapa::posicionCambiada);
    const QVariantList leido = clicar(*dlg, 41.6488, -0.8891);
    ASSERT_EQ(leido.size(), 2);
    ASSERT_TRUE(llega(cambios)) << "the click never reached C++";
    const Posicion esperada{redondearCoordenada(leido.at(0).toDouble()), redondearCoordenada(leido.at(1).toDouble())};
    EXPECT_NEAR(esperada.latitud, 41.6488, 0.05);
    EXPECT_NEAR(esperada.longitud, -0.8891, 0.05);
    EXPECT_EQ(dlg->posicion(), esperada);
    EXPECT_EQ(dlg->edLatitud()->text(), textoCoordenada(esperada.latitud));
    EXPECT_EQ(dlg->edLongitud()->text(), textoCoordenada(esperada.longitud));
    const QVariantList m = marca(*dlg);
    ASSERT_EQ(m.size(), 2);
    EXPECT_NEAR(m.at(0).toDouble(), esperada.latitud, 1e-6);
    EXPECT_NEAR(m.at(1).toDouble(), esperada.longitud, 1e-6);
    EXPECT_TRUE(js(*dlg, "document.querySelector('.leaflet-top.leaflet-right .tv-aviso') === null").toBool())
        << "the hint stays once the marker is placed";

    dlg->btnAceptar()->click();
    EXPECT_EQ(dlg->result(), QDialog::Accepted);
    EXPECT_EQ(dlg->posicion(), esperada);
}

TEST_F(MapaWeb, AMouseClickOnTheViewReachesC)
{
    auto dlg = abrir(Posicion{37.3891, -5.9845}, true);
    ASSERT_TRUE(dlg->mapaListo());
    QWidget* superficie = dlg->vista()->focusProxy() ? dlg->vista()->focusProxy() : dlg->vista();
    const QPoint punto(superficie->width() / 4, superficie->height() / 3);
    QSignalSpy cambios(dlg.get(), &TfrmMapa::posicionCambiada);
    QTest::mouseClick(superficie, Qt::LeftButton, {}, punto);
    ASSERT_TRUE(llega(cambios)) << "a mouse click never reached C++";
    const QVariantList leido =
        js(*dlg, QStringLiteral("(function () { var ll = tv.mapa.containerPointToLatLng([%1, %2]).wrap();"
                                " return [ll.lat, ll.lng]; })()")
                     .arg(punto.x())
                     .arg(punto.y()))
            .toList();
    ASSERT_EQ(leido.size(), 2);
    // At zoom 17 a pixel is about a metre.
    EXPECT_NEAR(dlg->posicion()->latitud, leido.at(0).toDouble(), 2e-5);
    EXPECT_NEAR(dlg->posicion()->longitud, leido.at(1).toDouble(), 2e-5);
}

TEST_F(MapaWeb, DraggingTheMarkerMovesThePlace)
{
    const Posicion sevilla{37.3891, -5.9845};
    auto dlg = abrir(sevilla, true);
    ASSERT_TRUE(dlg->mapaListo());
    EXPECT_EQ(js(*dlg, "tv.mapa.getZoom()").toInt(), 17);
    const QVariantList antes = marca(*dlg);
    ASSERT_EQ(antes.size(), 2);
    EXPECT_DOUBLE_EQ(antes.at(0).toDouble(), sevilla.latitud);
    EXPECT_DOUBLE_EQ(antes.at(1).toDouble(), sevilla.longitud);
    EXPECT_TRUE(js(*dlg, "tv.marca().dragging.enabled()").toBool());

    QSignalSpy cambios(dlg.get(), &TfrmMapa::posicionCambiada);
    js(*dlg, "tv.marca().setLatLng([37.3900123, -5.9861987]); tv.marca().fire('dragend'); true");
    ASSERT_TRUE(llega(cambios)) << "the drag never reached C++";
    EXPECT_EQ(dlg->posicion(), (Posicion{37.390012, -5.986199}));
    EXPECT_EQ(dlg->edLatitud()->text(), "37.390012");
    EXPECT_EQ(dlg->edLongitud()->text(), "-5.986199");
}

TEST_F(MapaWeb, WithoutManualPlacingClicksAndDragsDoNothing)
{
    const Posicion malaga{36.7213, -4.4214};
    auto dlg = abrir(malaga, false);
    ASSERT_TRUE(dlg->mapaListo());
    EXPECT_FALSE(js(*dlg, "tv.marca().dragging.enabled()").toBool());
    EXPECT_FALSE(js(*dlg, "tv.mapa.listens('click')").toBool());
    QSignalSpy cambios(dlg.get(), &TfrmMapa::posicionCambiada);
    clicar(*dlg, 36.7220, -4.4200);
    const QVariantList m = marca(*dlg);
    ASSERT_EQ(m.size(), 2);
    EXPECT_DOUBLE_EQ(m.at(0).toDouble(), malaga.latitud);
    EXPECT_DOUBLE_EQ(m.at(1).toDouble(), malaga.longitud);
    EXPECT_TRUE(cambios.isEmpty());
    EXPECT_EQ(dlg->posicion(), malaga);

    auto sinCoordenadas = abrir(std::nullopt, false);
    EXPECT_EQ(js(*sinCoordenadas, "document.querySelector('.tv-aviso').textContent").toString(),
              "El inmueble no tiene coordenadas");
    clicar(*sinCoordenadas, 40.0, -3.7);
    EXPECT_TRUE(js(*sinCoordenadas, "tv.marca() === null").toBool());
}

TEST_F(MapaWeb, OfflineAGridWithLabelsAndTheMarkerStandInForTheMap)
{
    auto dlg = abrir(Posicion{40.416775, -3.70379}, true);
    ASSERT_TRUE(dlg->mapaListo());
    ASSERT_TRUE(QTest::qWaitFor([&] { return dlg->sinConexion(); }, 20000)) << "no tile failure was reported";
    EXPECT_EQ(js(*dlg, "document.querySelector('.tv-sin-conexion').textContent").toString(),
              "Sin conexión: se muestra una cuadrícula de coordenadas en lugar del mapa");
    EXPECT_GT(js(*dlg, "document.querySelectorAll('canvas.leaflet-tile').length").toInt(), 0);
    EXPECT_TRUE(js(*dlg, "document.querySelector('.leaflet-control-attribution').textContent")
                    .toString()
                    .contains("OpenStreetMap"));

    const QVariantList punta = js(*dlg, "(function () { var p = tv.mapa.latLngToContainerPoint(tv.marca().getLatLng());"
                                        " return [p.x, p.y]; })()")
                                   .toList();
    ASSERT_EQ(punta.size(), 2);
    // The marker's icon stands 41 px high over its point, 25 px wide.
    const QRect icono(punta.at(0).toInt() - 12, punta.at(1).toInt() - 41, 25, 41);
    const QImage img = captura(*dlg, [&](const QImage& i) {
        return contar(i, icono, azulMarca) > 150 &&
               contar(i, i.rect(), [](QColor c) { return parecido(c, kLinea, 10); }) > 200;
    });
    guardar(img, QStringLiteral("mapa-sin-conexion.png"));
    guardar(dlg->grab().toImage(), QStringLiteral("dialogo-sin-conexion.png"));
    const int total = img.width() * img.height();
    EXPECT_GT(contar(img, img.rect(), [](QColor c) { return parecido(c, kFondo, 4); }), total / 2)
        << "the grid's paper does not fill the map";
    EXPECT_GT(contar(img, img.rect(), [](QColor c) { return parecido(c, kLinea, 10); }), 200) << "no grid lines";
    // Labels along the top (meridians) and the left (parallels), none under a control.
    const QVariantList rotulos = js(*dlg, R"js(Array.prototype.map.call(document.querySelectorAll('.tv-rotulo'),
            function (r) { return r.textContent; }))js")
                                     .toList();
    QStringList textos;
    for (const QVariant& r : rotulos)
        textos.append(r.toString());
    EXPECT_TRUE(textos.contains("3.704° O")) << textos.join(" | ").toStdString();
    EXPECT_TRUE(textos.contains("40.417° N")) << textos.join(" | ").toStdString();
    EXPECT_EQ(js(*dlg, R"js((function () {
            var c = Array.prototype.map.call(document.querySelectorAll('.leaflet-control'),
                                             function (e) { return e.getBoundingClientRect(); });
            return Array.prototype.filter.call(document.querySelectorAll('.tv-rotulo'), function (r) {
                var a = r.getBoundingClientRect();
                return c.some(function (b) {
                    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
                });
            }).length; })())js")
                  .toInt(),
              0)
        << "a label lies under a control";
    const QRect arriba(60, 0, img.width() - 120, 22);
    EXPECT_GT(contar(img, arriba, [](QColor c) { return c.lightness() < 140; }), 40) << "no meridian labels drawn";
    EXPECT_GT(contar(img, icono, azulMarca), 150) << "no marker where the property is";
    EXPECT_LT(contar(img, icono.translated(150, 0), azulMarca), 5);
}

TEST_F(MapaWeb, TilesFromAServerCoverTheGridAndNameTheProgram)
{
    ServidorTeselas servidor;
    auto dlg = abrir(Posicion{39.4699, -0.3763}, false, servidor.url());
    ASSERT_TRUE(dlg->mapaListo());
    ASSERT_TRUE(QTest::qWaitFor([&] { return js(*dlg, "tv.teselas().cargadas").toInt() > 0; }, 20000))
        << "no tile was loaded from the loopback";
    EXPECT_FALSE(dlg->sinConexion());
    EXPECT_TRUE(js(*dlg, "document.querySelector('.tv-sin-conexion') === null").toBool());
    ASSERT_FALSE(servidor.peticiones.isEmpty());
    EXPECT_TRUE(servidor.peticiones.first().startsWith("GET /17/")) << servidor.peticiones.first().toStdString();
    ASSERT_FALSE(servidor.agentes.isEmpty());
    EXPECT_TRUE(servidor.agentes.first().contains("tejavista")) << servidor.agentes.first().toStdString();

    const QImage img = captura(*dlg, [](const QImage& i) {
        return contar(i, i.rect(), [](QColor c) { return parecido(c, kTesela, 6); }) > i.width() * i.height() / 2;
    });
    guardar(img, QStringLiteral("mapa-con-teselas.png"));
    EXPECT_GT(contar(img, img.rect(), [](QColor c) { return parecido(c, kTesela, 6); }),
              img.width() * img.height() / 2);
}

TEST_F(MapaWeb, ALinkOnTheMapOpensOutsideAndTheMapStays)
{
    QList<QUrl> abiertas;
    tv::reports::setUrlOpener([&](const QUrl& u) {
        abiertas.append(u);
        return true;
    });
    auto dlg = abrir(Posicion{43.2630, -2.9350}, false);
    ASSERT_TRUE(dlg->mapaListo());
    js(*dlg, "document.querySelector('.leaflet-control-attribution a[href*=\"openstreetmap\"]').click(); true");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !abiertas.isEmpty(); }, 20000));
    tv::reports::setUrlOpener({});
    ASSERT_EQ(abiertas.size(), 1);
    EXPECT_EQ(abiertas.first(), QUrl("https://www.openstreetmap.org/copyright"));
    EXPECT_EQ(js(*dlg, "typeof tv").toString(), "object") << "the page navigated away";
}
