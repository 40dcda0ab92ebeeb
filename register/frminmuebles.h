#pragma once

#include "carteles.h"
#include "inmuebles.h"
#include "recordscreen.h"

#include <QHash>
#include <QPointer>

#include <memory>

class QAction;
class QLabel;
class QPlainTextEdit;
class QGridLayout;
class QSplitter;
class QTabWidget;
class QToolBar;

namespace tv {
class Tdm;
}

namespace tv::ui {
class CodeSearchBox;
class DataGrid;
}

namespace tv::registro {

class FotoPrincipal;

// "Cartera de Inmuebles": the property register. The list of the active
// stock above, the record's pages below, and a side bar of what hangs from
// a property (owners, photos, map, posters, video, documents, copies,
// printing), usable only while browsing.
class TfrmInmuebles : public ui::RecordScreen {
    Q_OBJECT
public:
    // `propietario` (> 0): new properties start with that owner.
    explicit TfrmInmuebles(Tdm& data, QWidget* parent = nullptr, int propietario = 0);
    ~TfrmInmuebles() override;

    Actions supportedActions() const override;
    ui::DataGrid* grid() const { return mGrid; }
    QTabWidget* paginas() const { return mPaginas; }
    QWidget* barraLateral() const { return mLateral; }
    QAction* accion(const QString& nombre) const { return mAcciones.value(nombre); }
    FotoPrincipal* fotoPrincipal() const { return mFoto; }
    // The Russian poster boxes: information, header, footer.
    QPlainTextEdit* rusoInformacion() const { return mRusoInformacion; }
    QPlainTextEdit* rusoCabecera() const { return mRusoCabecera; }
    QPlainTextEdit* rusoPie() const { return mRusoPie; }
    bool filtrado() const { return mFiltrado; }
    // The sheet template of a property type (FAMILIA.CODPLANTILLA; 0 unknown).
    int plantillaDeTipo(const QVariant& tipo);

public Q_SLOTS:
    // Search: the dialog's condition (or a filter built by the caller).
    void btnBuscarClick();
    void aplicarFiltro(const FiltroInmuebles& filtro);
    void eliminarFiltro();
    void btnpropietarioClick();
    void btnPropietario2Click();
    void elegirPoblacion();
    void bCasacionClick();
    void FlaTcxButton222Click(); // copy
    void generarCartel();
    void generarCartelesCartera();
    void verVideo();
    void publicarEnWeb();
    void quitarDeWeb();
    void verDocumentos();
    void verFotos();
    void verMapa();
    void verGestiones();
    void verGastos();
    void verDescartes();
    void imprimirFicha();
    void exportarFichaPdf();
    void imprimirCartera();
    void imprimirGestiones();

Q_SIGNALS:
    // The video page written and about to be shown (its path).
    void videoMostrado(const QString& pagina);

protected:
    bool validar() override;
    void onBuscar() override;
    void onImprimir() override;
    QString textoConfirmarBorrado() const override;
    QWidget* primerCampo() const override;
    void aplicarCambios() override;

private:
    void construir();
    void construirBarraLateral();
    QWidget* construirPagina(const QString& pagina);
    QWidget* construirCarteles();
    void construirPropietarios(QGridLayout* grid);
    void separadorLateral();
    void aplicarRestricciones();
    void nuevoRegistro(DataSet& ds);
    void antesDeGrabar(DataSet& ds);
    void calcular(DataSet& ds);
    void seguirRegistro();
    void seguirEstado();
    void seguirFamilia();
    void leerTextosRusos();
    void rusoTecleado();
    TextosRusos rusoTecleados() const;
    // False, after saying why, when the current property is another agent's.
    bool puedoModificar();
    // False, after saying why, while the record has changes not yet saved.
    bool sinCambiosPendientes();
    void abrirPropietario(const QVariant& codigo);
    bool hayRegistro() const;
    QString codigoActual() const;
    void releerRegistro();
    void reabrir(const QString& sqlText, const QString& codigo);
    bool ejecutarPendiente(const QString& comando, const QString& titulo);
    QAction* nuevaAccion(const QString& nombre, const QString& icono, void (TfrmInmuebles::*slot)());
    QVariant codMuniIne(const QString& municipio, const QString& provincia);

    Tdm& mData;
    std::unique_ptr<DataSet> mDs;
    int mPropietarioInicial = 0;
    ui::DataGrid* mGrid = nullptr;
    QTabWidget* mPaginas = nullptr;
    QWidget* mLateral = nullptr;
    class QVBoxLayout* mLateralLayout = nullptr;
    QHash<QString, QAction*> mAcciones;
    FotoPrincipal* mFoto = nullptr;
    ui::CodeSearchBox* mPropietario = nullptr;
    ui::CodeSearchBox* mPropietario2 = nullptr;
    QPlainTextEdit* mRusoInformacion = nullptr;
    QPlainTextEdit* mRusoCabecera = nullptr;
    QPlainTextEdit* mRusoPie = nullptr;
    QList<QPlainTextEdit*> mCajasCartel;
    bool mRusoCambiado = false;
    bool mRusoEnAlta = false;
    TextosRusos mRusoLeido;
    bool mLeyendoRuso = false;
    bool mFiltrado = false;
    QString mCodigoBorrado;
    QHash<int, int> mPlantillas;
    bool mPlantillasLeidas = false;
    QHash<QString, QVariant> mMuniIne;
    int mPlantillaMostrada = -1;
};

void registrarInmuebles();

} // namespace tv::registro
