#pragma once

#include "column.h"
#include "recordscreen.h"

#include <QList>
#include <QString>

#include <memory>

class QComboBox;

namespace tv {
class Tdm;
}

namespace tv::ui {
class DataGrid;
}

namespace tv::lookups {

// One member of the family of code/description tables: everything that
// tells one from another, as data. A new member is one more row.
struct TablaDef {
    QString clase;         // TfrmEstados...
    QString comando;       // the ribbon's command
    QString titulo;        // window title
    QString tabla;
    QString procedimiento; // selectable procedure giving the new CODIGO
    QString generador;     // or a generator, drawn when the row is posted
    ui::Columns columnas;  // in the order of the checks on saving
    // Refused delete: the count (its parameters take the row's CODIGO), the
    // message, and whether it is an error rather than a warning.
    QString sqlBorrado = {};
    QString mensajeBorrado = {};
    bool borradoEsError = false;
    // Members that belong to a parent (zones of a municipality).
    QString columnaPadre = {};
    QString mensajeSinPadre = {};
    // Only administrators open it (unless the agency has none).
    bool soloAdministradores = false;
};

const QList<TablaDef>& tablasAuxiliares();
const TablaDef* tablaAuxiliar(const QString& claseOComando);

// The base screen of the family: the list on top, the record's boxes under
// it, the standard toolbar. Works on the shared transaction.
class TablaAuxiliar : public ui::RecordScreen {
    Q_OBJECT
public:
    TablaAuxiliar(Tdm& data, const TablaDef& def, QWidget* parent = nullptr);
    ~TablaAuxiliar() override;

    const TablaDef& definicion() const { return mDef; }
    ui::DataGrid* rejilla() const { return mGrid; }
    // Zones: the chosen municipality (its official code; invalid when none).
    QComboBox* cajaPadre() const { return mPadre; }
    QVariant padre() const;
    void setPadre(const QVariant& codigo);

protected:
    bool validar() override;
    bool puedeBorrar() override;
    QWidget* primerCampo() const override;

private:
    void nuevoRegistro(DataSet& ds);
    void antesDeInsertar(DataSet& ds);
    void alGrabar(DataSet& ds);
    void abrirPadre();

    Tdm& mData;
    TablaDef mDef;
    std::unique_ptr<DataSet> mDs;
    ui::DataGrid* mGrid = nullptr;
    QComboBox* mPadre = nullptr;
};

// "select count(*) from agentes a where a.administrador ='S' " is 0, or the
// current agent is an administrator; otherwise "No tiene privilegios para
// acceder a esta pantalla" and false.
bool puedeAbrirPantallaDeAdministrador(Tdm& data, QWidget* parent);

} // namespace tv::lookups
