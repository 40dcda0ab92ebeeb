#include "frmbuscarinmueble.h"

#include "botonesdialogo.h"
#include "codesearchbinder.h"
#include "dm.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tv::registro {

TfrmBuscarInmueble::TfrmBuscarInmueble(Tdm& data, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("TfrmBuscarInmueble"));
    setWindowTitle(QStringLiteral("Localiza un Inmueble"));
    auto* v = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    v->addLayout(form);

    mPropietario = new ui::CodeSearchBox(data.datos, data.Transacion, ui::CodeTarget::propietarios(), this);
    mPropietario->setObjectName(QStringLiteral("propietario"));
    form->addRow(QStringLiteral("Propietario"), mPropietario);
    mCalle = new QLineEdit(this);
    mCalle->setObjectName(QStringLiteral("calle"));
    mCalle->setPlaceholderText(QStringLiteral("Parte del nombre de la calle"));
    form->addRow(QStringLiteral("Calle"), mCalle);
    mApartamento = new QLineEdit(this);
    mApartamento->setObjectName(QStringLiteral("apartamento"));
    form->addRow(QStringLiteral("Nombre del apartamento"), mApartamento);

    // Dates only count when asked for: an empty date box cannot be shown.
    mEntreFechas = new QCheckBox(QStringLiteral("Dados de alta entre"), this);
    mEntreFechas->setObjectName(QStringLiteral("entreFechas"));
    mDesde = new QDateEdit(QDate::currentDate().addMonths(-1), this);
    mHasta = new QDateEdit(QDate::currentDate(), this);
    for (QDateEdit* d : {mDesde, mHasta}) {
        d->setCalendarPopup(true);
        d->setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
        d->setEnabled(false);
        connect(mEntreFechas, &QCheckBox::toggled, d, &QWidget::setEnabled);
    }
    mDesde->setObjectName(QStringLiteral("desde"));
    mHasta->setObjectName(QStringLiteral("hasta"));
    auto* fechas = new QHBoxLayout;
    fechas->addWidget(mDesde);
    fechas->addWidget(new QLabel(QStringLiteral("y"), this));
    fechas->addWidget(mHasta);
    fechas->addStretch();
    form->addRow(mEntreFechas, fechas);

    mExpediente = new QLineEdit(this);
    mExpediente->setObjectName(QStringLiteral("expediente"));
    mExpediente->setMaxLength(5);
    mExpediente->setMaximumWidth(90);
    form->addRow(QStringLiteral("Expediente"), mExpediente);
    mExclusivas = new QCheckBox(QStringLiteral("Solo inmuebles en exclusiva"), this);
    mExclusivas->setObjectName(QStringLiteral("soloExclusivas"));
    form->addRow(QString(), mExclusivas);

    const ui::BotonesDialogo botones = ui::botonesAceptarCancelar(this, v);
    connect(botones.aceptar, &QPushButton::clicked, this, &QDialog::accept);
    connect(botones.cancelar, &QPushButton::clicked, this, &QDialog::reject);
    resize(520, sizeHint().height());
}

FiltroInmuebles TfrmBuscarInmueble::filtro() const
{
    FiltroInmuebles f;
    f.propietario = mPropietario->code();
    f.calle = mCalle->text();
    f.apartamento = mApartamento->text();
    if (mEntreFechas->isChecked()) {
        f.desde = mDesde->date();
        f.hasta = mHasta->date();
    }
    f.expediente = mExpediente->text();
    f.soloExclusivas = mExclusivas->isChecked();
    return f;
}

} // namespace tv::registro
