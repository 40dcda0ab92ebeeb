#pragma once

#include <QDialog>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QWebEngineProfile;
class QWebEngineView;

namespace tv::registro {

// A property's place in degrees (WGS84), as INMUEBLES.LATITUDE / LONGITUDE.
struct Posicion {
    double latitud = 0;
    double longitud = 0;
    bool operator==(const Posicion&) const = default;
};

// The place kept in a property's columns: none when either is NULL, or when
// both are 0 (rows never placed carry 0/0, a point at sea off Africa).
std::optional<Posicion> posicionGuardada(const QVariant& latitud, const QVariant& longitud);

// Finite, latitude within -90..90 and longitude within -180..180.
bool posicionValida(const Posicion& p);

// Six decimals (about 10 cm on the ground), the precision kept from the map.
double redondearCoordenada(double grados);
// "40.416775": six decimals and always a dot, whatever the locale, as the
// boxes show it and as the page and SQL-minded tools read it.
QString textoCoordenada(double grados);

// Coordinates typed by the user (a dot as decimal separator). Both boxes
// empty is no place; otherwise both must be numbers within range. `mensaje`
// is the Spanish text of the first failure and `campo` the column to focus.
struct LecturaPosicion {
    std::optional<Posicion> posicion;
    QString mensaje;
    QString campo; // "LATITUDE" or "LONGITUDE"
    bool ok() const { return mensaje.isEmpty(); }
};
LecturaPosicion leerPosicion(const QString& latitud, const QString& longitud);

// Where the page takes its pieces from.
struct OpcionesMapa {
    // Leaflet as Debian installs it (libjs-leaflet); the page's base URL.
    QString carpetaLeaflet = QStringLiteral("/usr/share/javascript/leaflet");
    // The map tiles, fetched only while online; a drawn grid shows where
    // they fail.
    QString teselas = QStringLiteral("https://tile.openstreetmap.org/{z}/{x}/{y}.png");
    // Zoom of a placed property (street level).
    int zoom = 17;
};

// The file:// URL of the Leaflet folder, ending in "/".
QUrl baseMapa(const OpcionesMapa& opciones = {});
// leaflet.js and leaflet.css are there.
bool leafletDisponible(const OpcionesMapa& opciones = {});

// The map page: Leaflet from baseMapa(), the tiles over a drawn coordinate
// grid, the marker at `posicion` (none: Spain in view, no marker). With
// `manual` a click or a drag places the marker and the page calls
// puente.posicion(lat, lon) over the web channel; otherwise it is fixed.
// In the page, `tv` is the script's handle (tv.mapa, tv.marca(), ...).
QString paginaMapa(const std::optional<Posicion>& posicion, bool manual, const OpcionesMapa& opciones = {});

// Prepares the web engine of this process before its first page: Chromium
// will not start its sandbox as root, so it runs without one there. Safe to
// call many times; has no effect once the engine has started.
void prepararMotorWeb();

// What the page reports, over the web channel as object "puente". Lives on
// the interface thread; the page calls its slots asynchronously.
class PuenteMapa : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

public Q_SLOTS:
    // The marker was placed; a place off the Earth (a page fault) is dropped.
    void posicion(double latitud, double longitud);
    // The page is built and the channel connected.
    void lista();
    // No tile could be fetched: the grid stands in for the map.
    void sinConexion();

Q_SIGNALS:
    void posicionElegida(double latitud, double longitud); // rounded to six decimals
    void paginaLista();
    void teselasNoDisponibles();
};

// "Situación del inmueble": the property's place on a map, with the
// coordinates in two read-only boxes under it. With manual positioning the
// user places the marker (click or drag) and Aceptar hands the new place
// back; Cancelar, Escape and closing leave the caller's place as it was.
// Without it the marker is fixed and the only button is Cerrar.
class TfrmMapa : public QDialog {
    Q_OBJECT
public:
    TfrmMapa(const std::optional<Posicion>& posicion, bool manual, QWidget* parent = nullptr,
             const OpcionesMapa& opciones = {});
    ~TfrmMapa() override;

    // Shows the map modally. True when the user accepted a place other than
    // the one given, which `posicion` then holds; false (and `posicion`
    // untouched) otherwise, always without manual positioning. Without
    // Leaflet on the machine it says so through Dialogs and returns false.
    static bool elegir(std::optional<Posicion>& posicion, bool manual, QWidget* parent = nullptr,
                       const OpcionesMapa& opciones = {});

    std::optional<Posicion> posicion() const { return mPosicion; }
    bool esManual() const { return mManual; }
    // The page reported itself built (and its channel connected).
    bool mapaListo() const { return mListo; }
    // The page reported that no tile could be fetched.
    bool sinConexion() const { return mSinConexion; }

    QWebEngineView* vista() const { return mVista; }
    PuenteMapa* puente() const { return mPuente; }
    QLineEdit* edLatitud() const { return mLatitud; }
    QLineEdit* edLongitud() const { return mLongitud; }
    QPushButton* btnAceptar() const { return mAceptar; }
    QPushButton* btnCancelar() const { return mCancelar; }
    // The text shown instead of the map when the web engine failed.
    QLabel* lblFallo() const { return mFallo; }

public Q_SLOTS:
    // A place from the page; ignored without manual positioning or off the Earth.
    void ponerPosicion(double latitud, double longitud);
    void aceptar();
    void cancelar();
    void reject() override;

Q_SIGNALS:
    void posicionCambiada(double latitud, double longitud);
    void listo();

private:
    void mostrarFallo(const QString& texto);
    void mostrarCoordenadas();

    std::optional<Posicion> mPosicion;
    bool mManual = false;
    bool mListo = false;
    bool mSinConexion = false;
    QWebEngineProfile* mPerfil = nullptr;
    QWebEngineView* mVista = nullptr;
    PuenteMapa* mPuente = nullptr;
    QStackedWidget* mHoja = nullptr;
    QLabel* mFallo = nullptr;
    QLineEdit* mLatitud = nullptr;
    QLineEdit* mLongitud = nullptr;
    QPushButton* mAceptar = nullptr;
    QPushButton* mCancelar = nullptr;
};

} // namespace tv::registro
