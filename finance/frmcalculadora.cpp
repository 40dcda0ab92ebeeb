#include "frmcalculadora.h"

#include "calculadora.h"
#include "campoimporte.h"
#include "dialogs.h"
#include "instalment.h"
#include "informefinanciacion.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSpinBox>
#include <QVBoxLayout>

namespace tv::finance {

int TfrmCalculadora::sAbiertas = 0;

namespace {

QPushButton* botonTeclado(const QString& texto, QWidget* parent)
{
    auto* b = new QPushButton(texto, parent);
    b->setAutoDefault(false);
    b->setFocusPolicy(Qt::NoFocus);
    b->setMinimumSize(56, 44);
    QFont f = b->font();
    f.setPointSizeF(f.pointSizeF() * 1.3);
    b->setFont(f);
    return b;
}

} // namespace

TfrmCalculadora::TfrmCalculadora(QWidget* parent) : QDialog(parent)
{
    ++sAbiertas;
    setObjectName(QStringLiteral("frmCalculadora"));
    setWindowTitle(QStringLiteral("Calculadora hipotecaria"));

    mImporte = new QLineEdit(this);
    mImporte->setObjectName(QStringLiteral("edImporte"));
    mImporte->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // Typing follows the keypad's rules: no leading zero, at most ten digits.
    mImporte->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("^([1-9]\\d{0,%1})?$").arg(kMaxDigitosImporte - 1)), mImporte));
    QFont grande = mImporte->font();
    grande.setPointSizeF(grande.pointSizeF() * 1.6);
    mImporte->setFont(grande);
    mImporte->setMinimumWidth(260);

    mAnos = new QSpinBox(this);
    mAnos->setObjectName(QStringLiteral("edAnos"));
    mAnos->setRange(0, 50);
    mAnos->setSuffix(QStringLiteral(" años"));
    mAnos->setAlignment(Qt::AlignRight);

    mInteres = new CampoImporte(2, QStringLiteral("%"), 3, this);
    mInteres->setObjectName(QStringLiteral("edInteres"));
    mInteres->setValue(Money());

    mCuota = new QLineEdit(this);
    mCuota->setObjectName(QStringLiteral("edCuota"));
    mCuota->setReadOnly(true);
    mCuota->setFocusPolicy(Qt::NoFocus);
    mCuota->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont negrita = grande;
    negrita.setBold(true);
    mCuota->setFont(negrita);

    // Keypad: 7 8 9 / 4 5 6 / 1 2 3 / 0 Borrar
    auto* teclado = new QGridLayout;
    teclado->setSpacing(6);
    for (int d = 0; d <= 9; ++d) {
        mDigitos[d] = botonTeclado(QString::number(d), this);
        mDigitos[d]->setObjectName(QStringLiteral("btn%1").arg(d));
        connect(mDigitos[d], &QPushButton::clicked, this, [this, d] { btnDigitoClick(d); });
        if (d > 0)
            teclado->addWidget(mDigitos[d], 2 - (d - 1) / 3, (d - 1) % 3);
    }
    teclado->addWidget(mDigitos[0], 3, 0);
    auto* btnBorrar = botonTeclado(QStringLiteral("Borrar"), this);
    btnBorrar->setObjectName(QStringLiteral("btnBorrar"));
    teclado->addWidget(btnBorrar, 3, 1, 1, 2);
    connect(btnBorrar, &QPushButton::clicked, this, &TfrmCalculadora::btnBorrarClick);

    auto* btnCalcular = new QPushButton(QStringLiteral("Calcular"), this);
    btnCalcular->setObjectName(QStringLiteral("btnCalcular"));
    btnCalcular->setDefault(true);
    btnCalcular->setMinimumHeight(40);
    connect(btnCalcular, &QPushButton::clicked, this, &TfrmCalculadora::btnCalcularClick);

    auto* btnSalir = new QPushButton(QStringLiteral("Salir"), this);
    btnSalir->setObjectName(QStringLiteral("btnSalir"));
    btnSalir->setAutoDefault(false);
    connect(btnSalir, &QPushButton::clicked, this, &TfrmCalculadora::btnSalirClick);

    auto* importe = new QGroupBox(QStringLiteral("Importe Solicitado"), this);
    auto* importeLayout = new QVBoxLayout(importe);
    importeLayout->addWidget(mImporte);
    importeLayout->addLayout(teclado);

    auto* prestamo = new QGroupBox(QStringLiteral("Préstamo"), this);
    auto* form = new QGridLayout(prestamo);
    form->setVerticalSpacing(10);
    form->addWidget(new QLabel(QStringLiteral("Plazo amortización"), this), 0, 0);
    form->addWidget(mAnos, 0, 1);
    form->addWidget(new QLabel(QStringLiteral("Tipo de Interes"), this), 1, 0);
    form->addWidget(mInteres, 1, 1);
    form->addWidget(btnCalcular, 2, 0, 1, 2);
    form->addWidget(new QLabel(QStringLiteral("Cuota mensual"), this), 3, 0);
    form->addWidget(mCuota, 3, 1);
    form->setColumnStretch(1, 1);
    form->setRowStretch(4, 1);

    auto* columnas = new QHBoxLayout;
    columnas->addWidget(importe);
    columnas->addWidget(prestamo, 1);

    auto* pie = new QHBoxLayout;
    pie->addStretch();
    pie->addWidget(btnSalir);

    auto* raiz = new QVBoxLayout(this);
    raiz->addLayout(columnas);
    raiz->addLayout(pie);

    // A result must not outlive the figures it came from.
    connect(mImporte, &QLineEdit::textChanged, this, &TfrmCalculadora::limpiarCuota);
    connect(mAnos, &QSpinBox::valueChanged, this, &TfrmCalculadora::limpiarCuota);
    connect(mInteres, &QLineEdit::textEdited, this, &TfrmCalculadora::limpiarCuota);

    mImporte->setFocus();
}

TfrmCalculadora::~TfrmCalculadora()
{
    --sAbiertas;
}

bool TfrmCalculadora::abierta()
{
    return sAbiertas > 0;
}

void TfrmCalculadora::btnDigitoClick(int digito)
{
    const QString texto = anadirDigito(mImporte->text(), digito);
    if (texto != mImporte->text())
        mImporte->setText(texto);
}

void TfrmCalculadora::btnBorrarClick()
{
    mImporte->clear();
}

void TfrmCalculadora::btnCalcularClick()
{
    const Money importe = importeTecleado(mImporte->text());
    const int anos = mAnos->value();
    const Money interes = mInteres->value();
    const DatoCalculadora falta = datoQueFalta(importe, anos, interes);
    if (falta != DatoCalculadora::Ninguno) {
        ui::dialogs().information(mensajeDatoQueFalta(falta), this);
        QWidget* campo = falta == DatoCalculadora::Importe ? static_cast<QWidget*>(mImporte)
                         : falta == DatoCalculadora::Plazo ? static_cast<QWidget*>(mAnos)
                                                           : static_cast<QWidget*>(mInteres);
        campo->setFocus();
        return;
    }
    mInteres->reformat();
    mCuota->setText(textoImporte(calculaCuota(interes, anos, importe)));
}

void TfrmCalculadora::btnSalirClick()
{
    reject();
}

void TfrmCalculadora::limpiarCuota()
{
    mCuota->clear();
}

} // namespace tv::finance
