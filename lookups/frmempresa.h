#pragma once

#include "column.h"
#include "recordscreen.h"

#include <memory>

class QPushButton;
class QTabWidget;

namespace tv {
class Tdm;
}

namespace tv::ui {
class PictureBinder;
}

namespace tv::lookups {

// "Configurar Empresa": the agency's own data, the one row of EMPRESA, on
// three pages (general data with the logo, bank account, outgoing mail).
// Only saving and cancelling apply: there is no second agency to move to or
// create. An empty table gets its row when the user first types, and its
// CODIGO from GEN_REMESAS when that row is stored. After a save the
// process-wide country, currency and tax code follow the stored row.
// Works on the shared transaction; lives on the interface thread.
class TfrmEmpresa : public ui::RecordScreen {
    Q_OBJECT
public:
    explicit TfrmEmpresa(Tdm& datos, QWidget* parent = nullptr);
    ~TfrmEmpresa() override;

    // Every column the screen shows, in the order of the checks on saving.
    static const ui::Columns& columnas();
    // The plain coat of arms offered as a logo: bmp/escudoBlanco.bmp of the
    // application folder.
    static QString rutaEscudo();

    QTabWidget* paginas() const { return mPaginas; }
    ui::PictureBinder* logo() const { return mLogo; }
    QPushButton* botonMunicipio() const { return mBotonMunicipio; }
    QPushButton* botonEscudo() const { return mBotonEscudo; }
    QPushButton* botonElegirImagen() const { return mBotonImagen; }

    // Writes a place chosen in the municipalities picker into the record
    // (putting it in edit); false when the edit was refused.
    bool ponerLugar(const QString& provincia, const QString& municipio, const QString& pais);

public Q_SLOTS:
    // The "…" beside the municipality: the municipalities picker.
    void elegirMunicipio();
    // "Escudo": the plain coat of arms as the logo.
    bool ponerEscudo();
    // "Elegir imagen…": any picture file as the logo.
    bool elegirImagen();

protected:
    Actions supportedActions() const override;
    bool validar() override;
    // This screen's own wording, kept as the agency has always read it.
    QString textoConfirmarGrabado() const override;

private:
    void construirPaginas();
    QWidget* paginaGeneral(const ui::Columns& todas);
    QWidget* paginaSencilla(const ui::Columns& propias);
    bool ponerImagen(const QString& ruta);
    void alGrabar(DataSet& ds);
    void actualizarEstadoGlobal();

    Tdm& mData;
    std::unique_ptr<DataSet> mDs;
    QTabWidget* mPaginas = nullptr;
    ui::PictureBinder* mLogo = nullptr;
    QPushButton* mBotonMunicipio = nullptr;
    QPushButton* mBotonEscudo = nullptr;
    QPushButton* mBotonImagen = nullptr;
};

// Adds "configurar-empresa" to the command table.
void registrarEmpresa();

} // namespace tv::lookups
