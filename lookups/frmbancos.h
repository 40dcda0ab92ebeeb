#pragma once

#include "column.h"

#include <QDialog>
#include <QString>

#include <functional>
#include <memory>

class QPushButton;

namespace tv {
class DataSet;
class Tdm;
}

namespace tv::ui {
class DataGrid;
class LocateBox;
}

namespace tv::lookups {

// "Bancos": the shared directory of banks (COMUN_BANCOS) and, beside it, the
// branches of the bank selected (COMUN_SUCURSALES), each list with boxes that
// find the first row starting with what is typed and buttons to add, modify
// and delete. Every change is stored and committed (context retained) as
// soon as its dialog accepts it.
//
// Deleting a bank that has branches deletes its branches too, after the same
// question, in one unit of work: the bank and all its branches go, or none.
// Works on the shared transaction; lives on the interface thread.
class TfrmBancos : public QDialog {
    Q_OBJECT
public:
    explicit TfrmBancos(Tdm& data, QWidget* parent = nullptr);
    ~TfrmBancos() override;

    DataSet& bancos() const { return *mBancos; }
    DataSet& sucursales() const { return *mSucursales; }
    ui::DataGrid* rejillaBancos() const { return mRejillaBancos; }
    ui::DataGrid* rejillaSucursales() const { return mRejillaSucursales; }
    // The four locate boxes: bank code and name, branch code and name.
    ui::LocateBox* buscarCodigoBanco() const { return mBuscarCodBanco; }
    ui::LocateBox* buscarNombreBanco() const { return mBuscarDesBanco; }
    ui::LocateBox* buscarCodigoSucursal() const { return mBuscarCodSucur; }
    ui::LocateBox* buscarNombreSucursal() const { return mBuscarDesSucur; }
    QPushButton* btnNuevoBanco() const { return mNuevoBanco; }
    QPushButton* btnModificarBanco() const { return mModificarBanco; }
    QPushButton* btnBorrarBanco() const { return mBorrarBanco; }
    QPushButton* btnNuevaSucursal() const { return mNuevaSucursal; }
    QPushButton* btnModificarSucursal() const { return mModificarSucursal; }
    QPushButton* btnBorrarSucursal() const { return mBorrarSucursal; }

    static const ui::Columns& columnasBancos();
    static const ui::Columns& columnasSucursales();

    // How the bank and branch dialogs run modally: exec() unless replaced
    // (tests drive them without blocking). An empty function restores exec().
    using ModalRunner = std::function<int(QDialog&)>;
    static void setModalRunner(ModalRunner runner);
    static int runModal(QDialog& dialog);

public Q_SLOTS:
    void nuevoBanco();
    void modificarBanco();
    // True when the bank (and its branches) left the database.
    bool borrarBanco();
    void nuevaSucursal();
    void modificarSucursal();
    bool borrarSucursal();

private:
    void editarBanco(bool nuevo);
    void editarSucursal(bool nuevo);
    // Closes the edit a dialog left open and drops what it did not store.
    static void descartar(DataSet& ds);
    void actualizarBotones();

    Tdm& mData;
    std::unique_ptr<DataSet> mBancos;
    std::unique_ptr<DataSet> mSucursales;
    ui::DataGrid* mRejillaBancos = nullptr;
    ui::DataGrid* mRejillaSucursales = nullptr;
    ui::LocateBox* mBuscarCodBanco = nullptr;
    ui::LocateBox* mBuscarDesBanco = nullptr;
    ui::LocateBox* mBuscarCodSucur = nullptr;
    ui::LocateBox* mBuscarDesSucur = nullptr;
    QPushButton* mNuevoBanco = nullptr;
    QPushButton* mModificarBanco = nullptr;
    QPushButton* mBorrarBanco = nullptr;
    QPushButton* mNuevaSucursal = nullptr;
    QPushButton* mModificarSucursal = nullptr;
    QPushButton* mBorrarSucursal = nullptr;
};

// Stores the row a bank or branch dialog has in edit: post, apply and commit
// with the context kept. False after the engine's message, with the row back
// in edit as typed and the database as it was.
bool grabarRegistro(DataSet& ds, QWidget* parent);

// Adds the ribbon's "bancos" command.
void registrarBancos();

} // namespace tv::lookups
