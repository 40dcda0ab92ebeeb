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

// Where the reference list of official municipality codes is read: the
// program's setting "municipios/codigosIne", else kCodigosIne.
extern const QString kCodigosIne;
QString direccionCodigosIne();

// The checks of a municipality before it is stored, in order: country,
// province, municipality, then no other one with those names (asked only
// for a new row or when the names changed; `existe` asks the database).
// The message of the first failure and the column to focus; empty when the
// row may be stored.
struct FalloMunicipio {
    QString mensaje;
    QString campo;
};
struct DatosMunicipio {
    QString pais;
    QString provincia;
    QString municipio;
};
FalloMunicipio comprobarMunicipio(const DatosMunicipio& nuevo, const DatosMunicipio* anterior,
                                  const std::function<bool(const DatosMunicipio&)>& existe);
// SPEXISTE_MUNICIPIO: the same names (case ignored) already on file.
bool existeMunicipio(Tdm& data, const DatosMunicipio& m);

// The new or modified municipality: country, province, municipality and
// official code of the picker's current row, which the picker has put in
// insert or edit. Aceptar checks and posts it; Cancelar (or closing) cancels it.
class TfrmAltaMunicipio : public QDialog {
    Q_OBJECT
public:
    TfrmAltaMunicipio(Tdm& data, DataSet& municipios, QWidget* parent = nullptr);
    ~TfrmAltaMunicipio() override;

    // Set for a new row (the duplicate test then always runs).
    void setNuevo(bool nuevo);
    bool esNuevo() const { return mNuevo; }

    QLineEdit* edPais() const { return mPais; }
    QLineEdit* edProvincia() const { return mProvincia; }
    QLineEdit* edMunicipio() const { return mMunicipio; }
    QLineEdit* edCodigoIne() const { return mCodigoIne; }
    QPushButton* btnAceptar() const { return mAceptar; }
    QPushButton* btnCancelar() const { return mCancelar; }
    QPushButton* btnCodigosIne() const { return mCodigosIne; }

    static const ui::Columns& columnas();

public Q_SLOTS:
    // False when a check refused (after its message) or the database did.
    bool aceptar();
    void cancelar();
    void verCodigosIne();

    // Escape and the window's close button cancel.
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    bool validar();

    Tdm& mData;
    DataSet& mDs;
    bool mNuevo = false;
    QLineEdit* mPais = nullptr;
    QLineEdit* mProvincia = nullptr;
    QLineEdit* mMunicipio = nullptr;
    QLineEdit* mCodigoIne = nullptr;
    QPushButton* mAceptar = nullptr;
    QPushButton* mCancelar = nullptr;
    QPushButton* mCodigosIne = nullptr;
};

} // namespace tv::lookups
