#pragma once

#include "column.h"

#include <QDialog>
#include <QString>

#include <functional>
#include <memory>

class QLineEdit;
class QPushButton;

namespace tv {
class DataSet;
class Tdm;
}

namespace tv::ui {
class DataGrid;
}

namespace tv::lookups {

// The picker's select: every municipality, or with a non-blank search those
// whose name starts with the text exactly as typed (blanks and case kept,
// as STARTING WITH compares them).
QString sqlBuscarMunicipios(const QString& texto);

// A chosen place as the screens that store it receive it: the province cut
// to its first 35 characters and the municipality to its first 30 (the
// widths of the columns they are copied into), each trimmed after the cut;
// the country trimmed.
struct Lugar {
    QString provincia;
    QString municipio;
    QString pais;
};
Lugar lugarElegido(const QString& provincia, const QString& municipio, const QString& pais);

// "Municipios": the municipalities list (MUNICIPIOS) with a search box that
// filters by the beginning of the name on every change, used to browse the
// list and to pick a municipality or a place. "Modificar" and "Nuevo" edit
// the current row or a new one in TfrmAltaMunicipio; what it posts is
// applied at once, committed (context retained) when the dialog closes and
// the list read again, staying on the same ID.
// Works on the shared transaction; lives on the interface thread.
class TfrmMunicipio : public QDialog {
    Q_OBJECT
public:
    explicit TfrmMunicipio(Tdm& data, QWidget* parent = nullptr);
    ~TfrmMunicipio() override;

    DataSet& municipios() const { return *mDs; }
    ui::DataGrid* rejilla() const { return mGrid; }
    QLineEdit* edBuscar() const { return mBuscar; }
    QPushButton* btnAceptar() const { return mAceptar; }
    QPushButton* btnModificar() const { return mModificar; }
    QPushButton* btnNuevo() const { return mNuevo; }

    // Opens the list with the search box's text; closeQuery() drops any
    // change the database refused and closes it.
    void openQuery();
    void closeQuery();

    // The grid's columns.
    static const ui::Columns& columnas();

    // How the picker and its dialog run modally: exec() unless replaced
    // (tests drive them without blocking). An empty function restores exec().
    using ModalRunner = std::function<int(QDialog&)>;
    static void setModalRunner(ModalRunner runner);
    static int runModal(QDialog& dialog);

public Q_SLOTS:
    // Reopens the list for the search box's text.
    void buscar();
    void modificar();
    void nuevo();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void editar(bool esNuevo);
    void asignarId(DataSet& ds);
    void aplicar(DataSet& ds);
    void actualizarBotones();

    Tdm& mData;
    std::unique_ptr<DataSet> mDs;
    ui::DataGrid* mGrid = nullptr;
    QLineEdit* mBuscar = nullptr;
    QPushButton* mAceptar = nullptr;
    QPushButton* mCancelar = nullptr;
    QPushButton* mModificar = nullptr;
    QPushButton* mNuevo = nullptr;
};

// Shows the list to browse and maintain it.
void verMunicipios(QWidget* parent);
// The name (DESMUNIINE) of the municipality chosen; empty when cancelled.
QString elegirMunicipio(QWidget* parent);
// The place chosen (see lugarElegido); false, and nothing written, when cancelled.
bool elegirLugar(QWidget* parent, QString* provincia, QString* municipio, QString* pais);

// Adds the ribbon's "municipios" command.
void registrarMunicipios();

} // namespace tv::lookups
