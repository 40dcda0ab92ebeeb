#pragma once

#include "inmuebles.h"

#include <QDialog>

class QCheckBox;
class QDateEdit;
class QLineEdit;

namespace tv {
class Tdm;
}
namespace tv::ui {
class CodeSearchBox;
}

namespace tv::registro {

// "Localiza un Inmueble": the boxes of the property search. Filled boxes
// narrow the register's list (see condicionBusqueda).
class TfrmBuscarInmueble : public QDialog {
    Q_OBJECT
public:
    explicit TfrmBuscarInmueble(Tdm& data, QWidget* parent = nullptr);

    FiltroInmuebles filtro() const;

    ui::CodeSearchBox* propietario() const { return mPropietario; }
    QLineEdit* calle() const { return mCalle; }
    QLineEdit* apartamento() const { return mApartamento; }
    QCheckBox* entreFechas() const { return mEntreFechas; }
    QDateEdit* desde() const { return mDesde; }
    QDateEdit* hasta() const { return mHasta; }
    QLineEdit* expediente() const { return mExpediente; }
    QCheckBox* soloExclusivas() const { return mExclusivas; }

private:
    ui::CodeSearchBox* mPropietario;
    QLineEdit* mCalle;
    QLineEdit* mApartamento;
    QCheckBox* mEntreFechas;
    QDateEdit* mDesde;
    QDateEdit* mHasta;
    QLineEdit* mExpediente;
    QCheckBox* mExclusivas;
};

} // namespace tv::registro
