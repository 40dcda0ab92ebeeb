#pragma once

#include "column.h"
#include "frmaltabancos.h"

#include <QDialog>
#include <QString>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace tv {
class DataSet;
class Tdm;
}

namespace tv::lookups {

struct DatosSucursal {
    QString codigo;
    QString nombre;
};

// The checks of a branch before it is stored, in order: code and name given
// and, for a new branch only, no branch of the same bank with that code
// (`codigoExiste` asks the database).
Rechazo comprobarSucursal(const DatosSucursal& sucursal, bool nuevo,
                          const std::function<bool(const QString&)>& codigoExiste);
bool existeSucursal(Tdm& data, const QString& banco, const QString& sucursal);

// The new or modified branch of a bank: the current row of the branches
// list, which the list has put in insert or edit. Aceptar checks it and
// stores it (whole or not at all); Cancelar, Escape or closing cancel it.
// The branch code is typed only for a new branch.
class TfrmSucursal : public QDialog {
    Q_OBJECT
public:
    TfrmSucursal(Tdm& data, DataSet& sucursales, bool nuevo, const QString& nombreBanco, QWidget* parent = nullptr);
    ~TfrmSucursal() override;

    bool esNuevo() const { return mNuevo; }
    QLineEdit* edCodigo() const { return mCodigo; }
    QLineEdit* edNombre() const { return mNombre; }
    QLineEdit* edCodigoPostal() const { return mCodigoPostal; }
    QPushButton* btnAceptar() const { return mAceptar; }
    QPushButton* btnCancelar() const { return mCancelar; }

    static const ui::Columns& columnas();

public Q_SLOTS:
    bool aceptar();
    void cancelar();
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    Tdm& mData;
    DataSet& mDs;
    bool mNuevo;
    QLineEdit* mCodigo = nullptr;
    QLineEdit* mNombre = nullptr;
    QLineEdit* mCodigoPostal = nullptr;
    QPushButton* mAceptar = nullptr;
    QPushButton* mCancelar = nullptr;
};

} // namespace tv::lookups
