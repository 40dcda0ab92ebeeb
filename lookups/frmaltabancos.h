#pragma once

#include "column.h"

#include <QDialog>
#include <QString>

#include <functional>

class QLineEdit;
class QPushButton;

namespace tv {
class DataSet;
class Tdm;
}

namespace tv::lookups {

// Why a bank or a branch cannot be stored: the message, the column whose box
// gets the focus, and whether it is shown as an error rather than a warning.
// An empty message means it may be stored.
struct Rechazo {
    QString mensaje;
    QString campo;
    bool esError = false;
    bool aceptado() const { return mensaje.isEmpty(); }
};

struct DatosBanco {
    QString codigo;
    QString nombre;
    QString swift;
};

// The checks of a bank before it is stored, in order: code, name and
// BIC-SWIFT given; the BIC-SWIFT at least 8 characters long once trimmed (8
// and 11 are the two lengths a BIC has); and, for a new bank only, a code
// not yet on file (`codigoExiste` asks the database).
Rechazo comprobarBanco(const DatosBanco& banco, bool nuevo, const std::function<bool(const QString&)>& codigoExiste);
// A numeric bank code padded to the four digits of a Spanish entity code
// ("49" -> "0049"); anything else as typed.
QString rellenarCodigoBanco(const QString& codigo);
bool existeBanco(Tdm& data, const QString& codigo);

// The new or modified bank: the current row of the banks list, which the
// list has put in insert or edit. Aceptar checks it and stores it (whole or
// not at all); Cancelar, Escape or closing cancel it. The code is typed only
// for a new bank: the branches hang from it.
class TfrmAltaBancos : public QDialog {
    Q_OBJECT
public:
    TfrmAltaBancos(Tdm& data, DataSet& bancos, bool nuevo, QWidget* parent = nullptr);
    ~TfrmAltaBancos() override;

    bool esNuevo() const { return mNuevo; }
    QLineEdit* edCodigo() const { return mCodigo; }
    QLineEdit* edNombre() const { return mNombre; }
    QLineEdit* edSwift() const { return mSwift; }
    QLineEdit* edSufijo() const { return mSufijo; }
    QPushButton* btnAceptar() const { return mAceptar; }
    QPushButton* btnCancelar() const { return mCancelar; }

    static const ui::Columns& columnas();

public Q_SLOTS:
    // False when a check or the database refused (after the message); the
    // record then stays in edit.
    bool aceptar();
    void cancelar();
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLineEdit* caja(const QString& campo) const;

    Tdm& mData;
    DataSet& mDs;
    bool mNuevo;
    QLineEdit* mCodigo = nullptr;
    QLineEdit* mNombre = nullptr;
    QLineEdit* mSwift = nullptr;
    QLineEdit* mSufijo = nullptr;
    QPushButton* mAceptar = nullptr;
    QPushButton* mCancelar = nullptr;
};

} // namespace tv::lookups
