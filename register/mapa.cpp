#include "mapa.h"

#include "botonesdialogo.h"
#include "dialogs.h"
#include "report.h"

#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include <cmath>
#include <unistd.h>

namespace tv::registro {

namespace {

const QString kLatitud = QStringLiteral("LATITUDE");
const QString kLongitud = QStringLiteral("LONGITUDE");

// The page's script. It reads its settings from `tvConfig`, written before it.
// The grid layer sits under the tiles, so wherever a tile is missing (no
// network, a server refusing) the user sees coordinates instead of a blank.
const char* const kScript = R"js(
"use strict";
var tv = (function (cfg) {
    var mapa = L.map('mapa', { worldCopyJump: true, zoomSnap: 1 });
    L.control.scale({ imperial: false }).addTo(mapa);

    // Graticule step: the smallest round number of degrees at least 90 px apart.
    var PASOS = [45, 30, 20, 10, 5, 2, 1, 0.5, 0.2, 0.1, 0.05, 0.02, 0.01, 0.005, 0.002,
                 0.001, 0.0005, 0.0002, 0.0001, 0.00005, 0.00002, 0.00001];
    function paso(z) {
        var gradosPorPixel = 360 / (256 * Math.pow(2, z));
        for (var i = PASOS.length - 1; i >= 0; --i)
            if (PASOS[i] / gradosPorPixel >= 90) return PASOS[i];
        return PASOS[0];
    }
    function rotulo(v, eje, p) {
        if (eje === 'lon') v = ((v + 540) % 360) - 180;
        if (Math.abs(v) < p / 2) return '0°';
        var decimales = Math.max(0, Math.ceil(-Math.log10(p) - 1e-9));
        var lado = eje === 'lat' ? (v > 0 ? 'N' : 'S') : (v > 0 ? 'E' : 'O');
        return Math.abs(v).toFixed(decimales) + '° ' + lado;
    }

    // The grid: paper, minor lines every fifth of a step, the step's lines darker.
    function dibujar(ctx, c, ancho, alto) {
        var x0 = c.x * ancho, y0 = c.y * alto, z = c.z;
        var no = mapa.unproject([x0, y0], z), se = mapa.unproject([x0 + ancho, y0 + alto], z);
        var p = paso(z);
        ctx.fillStyle = '#f4f2ee';
        ctx.fillRect(0, 0, ancho, alto);
        ctx.lineWidth = 1;
        [[p / 5, '#e3dfd6'], [p, '#bdb6a8']].forEach(function (capa) {
            var s = capa[0];
            ctx.strokeStyle = capa[1];
            ctx.beginPath();
            for (var k = Math.ceil(no.lng / s); k * s <= se.lng; ++k) {
                var x = Math.round(mapa.project([no.lat, k * s], z).x - x0) + 0.5;
                ctx.moveTo(x, 0); ctx.lineTo(x, alto);
            }
            for (var j = Math.ceil(se.lat / s); j * s <= no.lat; ++j) {
                var y = Math.round(mapa.project([j * s, no.lng], z).y - y0) + 0.5;
                ctx.moveTo(0, y); ctx.lineTo(ancho, y);
            }
            ctx.stroke();
        });
    }
    var Cuadricula = L.GridLayer.extend({
        createTile: function (c) {
            var lienzo = L.DomUtil.create('canvas', 'leaflet-tile');
            var t = this.getTileSize();
            lienzo.width = t.x;
            lienzo.height = t.y;
            dibujar(lienzo.getContext('2d'), c, t.x, t.y);
            return lienzo;
        }
    });
    new Cuadricula({ maxZoom: 19, zIndex: 0 }).addTo(mapa);

    // The grid's labels ride the edges of the view (meridians along the top,
    // parallels along the left), never under a control; shown only while the
    // grid stands in for the map.
    var rotulos = L.DomUtil.create('div', 'tv-rotulos', mapa.getContainer());
    function solapa(a, b) {
        return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
    }
    function rotular() {
        rotulos.innerHTML = '';
        if (!avisado) return;
        var p = paso(mapa.getZoom()), b = mapa.getBounds(), tam = mapa.getSize();
        var controles = Array.prototype.map.call(mapa.getContainer().querySelectorAll('.leaflet-control'),
                                                 function (e) { return e.getBoundingClientRect(); });
        function poner(texto, x, y, clase) {
            var r = L.DomUtil.create('div', 'tv-rotulo ' + clase, rotulos);
            r.textContent = texto;
            r.style.left = x + 'px';
            r.style.top = y + 'px';
            var caja = r.getBoundingClientRect(), fuera = caja.left < 0 || caja.top < 0 ||
                caja.right > tam.x || caja.bottom > tam.y;
            if (fuera || controles.some(function (c) { return solapa(caja, c); })) rotulos.removeChild(r);
        }
        for (var k = Math.ceil(b.getWest() / p); k * p <= b.getEast(); ++k) {
            var x = mapa.latLngToContainerPoint([b.getNorth(), k * p]).x;
            poner(rotulo(k * p, 'lon', p), x, 4, 'tv-meridiano');
        }
        for (var j = Math.ceil(b.getSouth() / p); j * p <= b.getNorth(); ++j) {
            var y = mapa.latLngToContainerPoint([j * p, b.getWest()]).y;
            poner(rotulo(j * p, 'lat', p), 4, y, 'tv-paralelo');
        }
    }
    mapa.on('move zoomend resize', rotular);

    var puente = null, avisado = false, cargadas = 0, fallidas = 0;
    var aviso = L.control({ position: 'bottomleft' });
    aviso.onAdd = function () {
        var d = L.DomUtil.create('div', 'tv-aviso tv-sin-conexion');
        d.textContent = 'Sin conexión: se muestra una cuadrícula de coordenadas en lugar del mapa';
        return d;
    };
    var teselas = L.tileLayer(cfg.teselas, {
        maxZoom: 19, zIndex: 1,
        attribution: '&copy; colaboradores de ' +
                     '<a href="https://www.openstreetmap.org/copyright">OpenStreetMap</a>'
    });
    teselas.on('tileload', function () {
        ++cargadas;
        if (avisado) { avisado = false; aviso.remove(); rotular(); }
    });
    teselas.on('tileerror', function () {
        ++fallidas;
        if (cargadas === 0 && !avisado) {
            avisado = true;
            aviso.addTo(mapa);
            rotular();
            if (puente) puente.sinConexion();
        }
    });
    teselas.addTo(mapa);

    var marca = null, pista = null;
    function ponerMarca(ll) {
        if (marca) { marca.setLatLng(ll); return; }
        marca = L.marker(ll, { draggable: cfg.manual, keyboard: false, title: 'Situación del inmueble' });
        marca.addTo(mapa);
        if (cfg.manual)
            marca.on('dragend', function () { enviar(marca.getLatLng()); });
        if (pista) { pista.remove(); pista = null; rotular(); }
    }
    function enviar(ll) {
        ll = ll.wrap();
        if (puente) puente.posicion(ll.lat, ll.lng);
    }

    if (!cfg.posicion) {
        pista = L.control({ position: 'topright' });
        pista.onAdd = function () {
            var d = L.DomUtil.create('div', 'tv-aviso');
            d.textContent = cfg.manual ? 'Pulse en el mapa para situar el inmueble'
                                       : 'El inmueble no tiene coordenadas';
            return d;
        };
        pista.addTo(mapa);
        mapa.fitBounds(cfg.espana);
    } else {
        mapa.setView(cfg.posicion, cfg.zoom);
        ponerMarca(cfg.posicion);
    }
    if (cfg.manual) {
        mapa.getContainer().style.cursor = 'crosshair';
        mapa.on('click', function (e) {
            var ll = e.latlng.wrap();
            ponerMarca(ll);
            enviar(ll);
        });
    }

    if (typeof QWebChannel !== 'undefined' && typeof qt !== 'undefined' && qt.webChannelTransport) {
        new QWebChannel(qt.webChannelTransport, function (canal) {
            puente = canal.objects.puente;
            if (avisado) puente.sinConexion();
            puente.lista();
        });
    }

    return {
        mapa: mapa,
        marca: function () { return marca; },
        sinConexion: function () { return avisado; },
        teselas: function () { return { cargadas: cargadas, fallidas: fallidas }; }
    };
})(tvConfig);
)js";

const char* const kEstilo = R"css(
html, body, #mapa { height: 100%; margin: 0; }
#mapa { background: #f4f2ee; }
.tv-aviso { background: rgba(255, 255, 255, 0.92); color: #1f3b5c; padding: 4px 8px; border-radius: 4px;
            font: 12px/1.4 "DejaVu Sans", sans-serif; box-shadow: 0 1px 4px rgba(0, 0, 0, 0.3); }
.tv-sin-conexion { color: #7a4b00; }
.tv-rotulos { position: absolute; left: 0; top: 0; right: 0; bottom: 0; z-index: 450; pointer-events: none;
              overflow: hidden; }
.tv-rotulo { position: absolute; white-space: nowrap; padding: 0 3px; border-radius: 2px;
             background: rgba(244, 242, 238, 0.9); color: #4b5563;
             font: 11px/15px "DejaVu Sans", sans-serif; }
.tv-meridiano { transform: translateX(-50%); }
.tv-paralelo { transform: translateY(-50%); }
)css";

// Mainland Spain and the Balearic Islands: the view of a property with no place.
const double kEspana[2][2] = {{36.0, -9.4}, {43.8, 4.4}};

// The map loads its tiles from the network and refuses to navigate away
// from itself: a link in the attribution opens in the desktop's browser.
class PaginaMapa : public QWebEnginePage {
public:
    using QWebEnginePage::QWebEnginePage;

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override
    {
        if (type == NavigationTypeLinkClicked) {
            reports::openWithDesktop(url.toString(), QWebEngineView::forPage(this));
            return false;
        }
        return isMainFrame ? type != NavigationTypeFormSubmitted : true;
    }

    QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }

    // A fault in the page's script is the program's fault: say where.
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString&) override
    {
        if (level == ErrorMessageLevel)
            qWarning("map page: %s (line %d)", qPrintable(message), line);
    }
};

QString qwebchannelJs()
{
    QFile f(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

} // namespace

std::optional<Posicion> posicionGuardada(const QVariant& latitud, const QVariant& longitud)
{
    if (latitud.isNull() || longitud.isNull() || !latitud.isValid() || !longitud.isValid())
        return std::nullopt;
    bool okLat = false, okLon = false;
    const Posicion p{latitud.toDouble(&okLat), longitud.toDouble(&okLon)};
    if (!okLat || !okLon || (p.latitud == 0 && p.longitud == 0) || !posicionValida(p))
        return std::nullopt;
    return p;
}

bool posicionValida(const Posicion& p)
{
    return std::isfinite(p.latitud) && std::isfinite(p.longitud) && p.latitud >= -90 && p.latitud <= 90 &&
           p.longitud >= -180 && p.longitud <= 180;
}

double redondearCoordenada(double grados)
{
    const double r = std::round(grados * 1e6) / 1e6;
    return r == 0 ? 0.0 : r; // no "-0.000000"
}

QString textoCoordenada(double grados)
{
    // QString::number never follows the locale: always a dot, never grouping.
    return QString::number(redondearCoordenada(grados), 'f', 6);
}

LecturaPosicion leerPosicion(const QString& latitud, const QString& longitud)
{
    struct Eje {
        QString texto;
        const QString& campo;
        const char* nombre;
        double limite;
        const char* ejemplo;
    };
    const Eje ejes[2] = {{latitud.trimmed(), kLatitud, "latitud", 90, "40.416775"},
                         {longitud.trimmed(), kLongitud, "longitud", 180, "-3.703790"}};
    if (ejes[0].texto.isEmpty() && ejes[1].texto.isEmpty())
        return {};
    // Plain decimal degrees only: no exponent, no "inf", no thousands separators.
    static const QRegularExpression numero(QStringLiteral("^[+-]?(\\d+(\\.\\d*)?|\\.\\d+)$"));
    double valores[2] = {0, 0};
    for (int i = 0; i < 2; ++i) {
        const Eje& e = ejes[i];
        const QString nombre = QString::fromLatin1(e.nombre);
        auto fallo = [&](const QString& mensaje) { return LecturaPosicion{std::nullopt, mensaje, e.campo}; };
        if (e.texto.isEmpty())
            return fallo(QStringLiteral("Debe indicar la %1").arg(nombre));
        if (e.texto.contains(QLatin1Char(',')))
            return fallo(QStringLiteral("La %1 se escribe con punto decimal, no con coma (por ejemplo, %2)")
                             .arg(nombre, QLatin1String(e.ejemplo)));
        if (!numero.match(e.texto).hasMatch())
            return fallo(QStringLiteral("La %1 no es un número válido: %2").arg(nombre, e.texto));
        valores[i] = e.texto.toDouble();
        if (std::abs(valores[i]) > e.limite)
            return fallo(QStringLiteral("La %1 debe estar entre -%2 y %2 grados").arg(nombre).arg(e.limite));
    }
    return {Posicion{valores[0], valores[1]}, {}, {}};
}

QUrl baseMapa(const OpcionesMapa& opciones)
{
    QString carpeta = QFileInfo(opciones.carpetaLeaflet).absoluteFilePath();
    if (!carpeta.endsWith(QLatin1Char('/')))
        carpeta += QLatin1Char('/');
    return QUrl::fromLocalFile(carpeta);
}

bool leafletDisponible(const OpcionesMapa& opciones)
{
    const QString carpeta = baseMapa(opciones).toLocalFile();
    return QFileInfo(carpeta + QStringLiteral("leaflet.js")).isFile() &&
           QFileInfo(carpeta + QStringLiteral("leaflet.css")).isFile();
}

QString paginaMapa(const std::optional<Posicion>& posicion, bool manual, const OpcionesMapa& opciones)
{
    // Numbers are written by the JSON writer, which never follows the locale.
    auto punto = [](double lat, double lon) { return QJsonArray{lat, lon}; };
    QJsonObject cfg;
    cfg.insert(QStringLiteral("posicion"),
               posicion ? QJsonValue(punto(redondearCoordenada(posicion->latitud),
                                           redondearCoordenada(posicion->longitud)))
                        : QJsonValue(QJsonValue::Null));
    cfg.insert(QStringLiteral("manual"), manual);
    cfg.insert(QStringLiteral("zoom"), opciones.zoom);
    cfg.insert(QStringLiteral("teselas"), opciones.teselas);
    cfg.insert(QStringLiteral("espana"),
               QJsonArray{punto(kEspana[0][0], kEspana[0][1]), punto(kEspana[1][0], kEspana[1][1])});
    // "</" inside a string would end the script element early.
    const QString config = QString::fromUtf8(QJsonDocument(cfg).toJson(QJsonDocument::Compact))
                               .replace(QLatin1String("</"), QLatin1String("<\\/"));
    return QStringLiteral("<!DOCTYPE html>\n<html lang=\"es\"><head><meta charset=\"utf-8\">\n"
                          "<title>Situación del inmueble</title>\n"
                          "<link rel=\"stylesheet\" href=\"leaflet.css\">\n"
                          "<script src=\"leaflet.js\"></script>\n<style>") +
           QLatin1String(kEstilo) +
           QStringLiteral("</style>\n</head><body><div id=\"mapa\"></div>\n<script>\nvar tvConfig = ") +
           config + QStringLiteral(";\n</script>\n<script>") + QString::fromUtf8(kScript) +
           QStringLiteral("</script>\n</body></html>\n");
}

void prepararMotorWeb()
{
    // Chromium refuses to start as root with its sandbox (containers, kiosks).
    if (::geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

void PuenteMapa::posicion(double latitud, double longitud)
{
    const Posicion p{redondearCoordenada(latitud), redondearCoordenada(longitud)};
    if (posicionValida(p))
        Q_EMIT posicionElegida(p.latitud, p.longitud);
}

void PuenteMapa::lista()
{
    Q_EMIT paginaLista();
}

void PuenteMapa::sinConexion()
{
    Q_EMIT teselasNoDisponibles();
}

TfrmMapa::TfrmMapa(const std::optional<Posicion>& posicion, bool manual, QWidget* parent,
                   const OpcionesMapa& opciones)
    : QDialog(parent), mManual(manual)
{
    if (posicion && posicionValida(*posicion))
        mPosicion = posicion;
    setObjectName(QStringLiteral("TfrmMapa"));
    setWindowTitle(QStringLiteral("Situación del inmueble"));
    resize(900, 680);
    prepararMotorWeb();

    auto* layout = new QVBoxLayout(this);
    const QString textoPista =
        manual      ? QStringLiteral("Pulse en el mapa o arrastre la marca para situar el inmueble.")
        : mPosicion ? QStringLiteral("La marca está fija: el inmueble no tiene activada la situación manual.")
                    : QStringLiteral("El inmueble no tiene coordenadas.");
    auto* pista = new QLabel(textoPista, this);
    pista->setObjectName(QStringLiteral("lblPista"));
    layout->addWidget(pista);

    mHoja = new QStackedWidget(this);
    layout->addWidget(mHoja, 1);
    mFallo = new QLabel(mHoja);
    mFallo->setObjectName(QStringLiteral("lblFallo"));
    mFallo->setAlignment(Qt::AlignCenter);
    mFallo->setWordWrap(true);

    // A private, memory-only profile: nothing of the map stays on disk, and
    // the tile server sees which program asks (its usage policy wants that).
    mPerfil = new QWebEngineProfile(this);
    mPerfil->setHttpUserAgent(mPerfil->httpUserAgent() + QStringLiteral(" tejavista"));
    mVista = new QWebEngineView(mHoja);
    mVista->setObjectName(QStringLiteral("vistaMapa"));
    mVista->setContextMenuPolicy(Qt::NoContextMenu);
    auto* pagina = new PaginaMapa(mPerfil, mVista);
    pagina->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, true);
    pagina->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true);
    mVista->setPage(pagina);
    mHoja->addWidget(mVista);
    mHoja->addWidget(mFallo);

    mPuente = new PuenteMapa(this);
    auto* canal = new QWebChannel(this);
    canal->registerObject(QStringLiteral("puente"), mPuente);
    pagina->setWebChannel(canal);
    QWebEngineScript canalJs;
    canalJs.setName(QStringLiteral("qwebchannel"));
    canalJs.setSourceCode(qwebchannelJs());
    canalJs.setInjectionPoint(QWebEngineScript::DocumentCreation);
    canalJs.setWorldId(QWebEngineScript::MainWorld);
    pagina->scripts().insert(canalJs);

    connect(mPuente, &PuenteMapa::posicionElegida, this, &TfrmMapa::ponerPosicion);
    connect(mPuente, &PuenteMapa::paginaLista, this, [this] {
        mListo = true;
        Q_EMIT listo();
    });
    connect(mPuente, &PuenteMapa::teselasNoDisponibles, this, [this] { mSinConexion = true; });
    connect(pagina, &QWebEnginePage::loadFinished, this, [this](bool ok) {
        if (!ok)
            mostrarFallo(QStringLiteral("No se ha podido cargar el mapa."));
    });
    connect(pagina, &QWebEnginePage::renderProcessTerminated, this,
            [this](QWebEnginePage::RenderProcessTerminationStatus estado, int) {
                if (estado != QWebEnginePage::NormalTerminationStatus)
                    mostrarFallo(
                        QStringLiteral("No se ha podido mostrar el mapa: el motor web se ha detenido."));
            });

    auto* coordenadas = new QHBoxLayout;
    mLatitud = new QLineEdit(this);
    mLatitud->setObjectName(QStringLiteral("edLatitud"));
    mLongitud = new QLineEdit(this);
    mLongitud->setObjectName(QStringLiteral("edLongitud"));
    const QList<QPair<QString, QLineEdit*>> cajas{{QStringLiteral("&Latitud"), mLatitud},
                                                  {QStringLiteral("L&ongitud"), mLongitud}};
    for (const auto& [titulo, caja] : cajas) {
        caja->setReadOnly(true);
        caja->setFixedWidth(caja->fontMetrics().horizontalAdvance(QStringLiteral("-000.0000000")) + 24);
        auto* etiqueta = new QLabel(titulo, this);
        etiqueta->setBuddy(caja);
        coordenadas->addWidget(etiqueta);
        coordenadas->addWidget(caja);
        coordenadas->addSpacing(12);
    }
    coordenadas->addStretch(1);
    layout->addLayout(coordenadas);

    const ui::BotonesDialogo botones = ui::botonesAceptarCancelar(this, layout);
    mAceptar = botones.aceptar;
    mCancelar = botones.cancelar;
    if (!manual) {
        mAceptar->setText(QStringLiteral("Cerrar"));
        mAceptar->setIcon(QIcon());
        mCancelar->hide();
    }
    connect(mAceptar, &QPushButton::clicked, this, &TfrmMapa::aceptar);
    connect(mCancelar, &QPushButton::clicked, this, &TfrmMapa::cancelar);
    mostrarCoordenadas();

    if (!leafletDisponible(opciones)) {
        mostrarFallo(QStringLiteral("No se encuentra la biblioteca de mapas Leaflet en %1.")
                         .arg(baseMapa(opciones).toLocalFile()));
        return;
    }
    pagina->setHtml(paginaMapa(mPosicion, manual, opciones), baseMapa(opciones));
}

TfrmMapa::~TfrmMapa()
{
    // The page must go before its profile: not left to the order of the children.
    delete mVista;
    mVista = nullptr;
}

bool TfrmMapa::elegir(std::optional<Posicion>& posicion, bool manual, QWidget* parent,
                      const OpcionesMapa& opciones)
{
    if (!leafletDisponible(opciones)) {
        ui::dialogs().error(QStringLiteral("No se puede mostrar el mapa: no se encuentra la biblioteca Leaflet "
                                           "en %1 (paquete libjs-leaflet).")
                                .arg(baseMapa(opciones).toLocalFile()),
                            parent);
        return false;
    }
    TfrmMapa dlg(posicion, manual, parent, opciones);
    if (dlg.exec() != QDialog::Accepted || !manual || !dlg.posicion() || dlg.posicion() == posicion)
        return false;
    posicion = dlg.posicion();
    return true;
}

void TfrmMapa::ponerPosicion(double latitud, double longitud)
{
    const Posicion p{redondearCoordenada(latitud), redondearCoordenada(longitud)};
    if (!mManual || !posicionValida(p))
        return;
    mPosicion = p;
    mostrarCoordenadas();
    Q_EMIT posicionCambiada(p.latitud, p.longitud);
}

void TfrmMapa::mostrarCoordenadas()
{
    mLatitud->setText(mPosicion ? textoCoordenada(mPosicion->latitud) : QString());
    mLongitud->setText(mPosicion ? textoCoordenada(mPosicion->longitud) : QString());
    // Nothing to hand back until the user has placed the marker.
    mAceptar->setEnabled(!mManual || mPosicion.has_value());
}

void TfrmMapa::mostrarFallo(const QString& texto)
{
    mFallo->setText(texto);
    mHoja->setCurrentWidget(mFallo);
}

void TfrmMapa::aceptar()
{
    if (mManual && !mPosicion)
        return;
    accept();
}

void TfrmMapa::cancelar()
{
    QDialog::reject();
}

void TfrmMapa::reject()
{
    cancelar();
}

} // namespace tv::registro
