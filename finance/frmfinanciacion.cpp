#include "frmfinanciacion.h"

#include "campoimporte.h"
#include "informefinanciacion.h"
#include "services.h"

#include <QDate>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

namespace tv::finance {

namespace {

QLabel* etiqueta(const QString& texto, QWidget* parent)
{
    auto* l = new QLabel(texto, parent);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return l;
}

} // namespace

TfrmFinanciacion::TfrmFinanciacion(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmFinanciacion"));
    setWindowTitle(QStringLiteral("Cuadro de financiación"));

    mImporteInmueble = new CampoImporte(2, QStringLiteral("€"), 10, this);
    mImporteInmueble->setObjectName(QStringLiteral("edImporteInmueble"));
    mVariable = new CampoImporte(2, QStringLiteral("%"), 3, this);
    mVariable->setObjectName(QStringLiteral("edVariable"));
    mVariable->setMaximumWidth(90);
    mImporteFijo = new CampoImporte(2, QStringLiteral("€"), 10, this);
    mImporteFijo->setObjectName(QStringLiteral("edImporteFijo"));
    mImporteEntrada = new CampoImporte(2, QStringLiteral("€"), 10, this);
    mImporteEntrada->setObjectName(QStringLiteral("edImporteEntrada"));
    mAnos = new QSpinBox(this);
    mAnos->setObjectName(QStringLiteral("edAnos"));
    mAnos->setRange(0, 50);
    mAnos->setAlignment(Qt::AlignRight);
    mIntereses = new CampoImporte(2, QStringLiteral("%"), 2, this);
    mIntereses->setObjectName(QStringLiteral("edIntereses"));

    mImporteVariable = salida(QStringLiteral("edImporteVariable"));
    mTotalOperacion = salida(QStringLiteral("edTotalOperacion"), true);
    mImporteHipoteca = salida(QStringLiteral("edImporteHipoteca"), true);
    mCuota = salida(QStringLiteral("edCuota"), true);

    // What one usually starts from: a tenth in costs, a 25-year loan at 3 %.
    mVariable->setValue(Money::fromUnits(10));
    mAnos->setValue(25);
    mIntereses->setValue(Money::fromUnits(3));

    auto* operacion = new QGroupBox(QStringLiteral("Operación"), this);
    auto* op = new QGridLayout(operacion);
    op->addWidget(etiqueta(QStringLiteral("Importe de la operación"), this), 0, 0);
    op->addWidget(mImporteInmueble, 0, 1, 1, 2);
    op->addWidget(etiqueta(QStringLiteral("Gastos variables"), this), 1, 0);
    op->addWidget(mVariable, 1, 1);
    op->addWidget(mImporteVariable, 1, 2);
    op->addWidget(etiqueta(QStringLiteral("Gastos fijos"), this), 2, 0);
    op->addWidget(mImporteFijo, 2, 1, 1, 2);
    op->addWidget(etiqueta(QStringLiteral("Total de la operación"), this), 3, 0);
    op->addWidget(mTotalOperacion, 3, 1, 1, 2);
    op->setColumnStretch(2, 1);

    auto* hipoteca = new QGroupBox(QStringLiteral("Hipoteca"), this);
    auto* hi = new QGridLayout(hipoteca);
    hi->addWidget(etiqueta(QStringLiteral("Entrada"), this), 0, 0);
    hi->addWidget(mImporteEntrada, 0, 1);
    hi->addWidget(etiqueta(QStringLiteral("Hipoteca"), this), 1, 0);
    hi->addWidget(mImporteHipoteca, 1, 1);
    hi->addWidget(etiqueta(QStringLiteral("Años"), this), 2, 0);
    hi->addWidget(mAnos, 2, 1);
    hi->addWidget(etiqueta(QStringLiteral("Intereses"), this), 3, 0);
    hi->addWidget(mIntereses, 3, 1);
    hi->addWidget(etiqueta(QStringLiteral("Cuota"), this), 4, 0);
    hi->addWidget(mCuota, 4, 1);
    hi->setColumnStretch(1, 1);

    auto* tabla = new QGroupBox(QStringLiteral("Tabla comparativa dependiendo del típo de interés y plazo"), this);
    auto* grid = new QGridLayout(tabla);
    grid->setHorizontalSpacing(4);
    auto* cabecera = new QLabel(QStringLiteral("Interés"), this);
    QFont negrita = cabecera->font();
    negrita.setBold(true);
    cabecera->setFont(negrita);
    grid->addWidget(cabecera, 0, 0, Qt::AlignCenter);
    for (int c = 0; c < CuadroFinanciacion::kColumnas; ++c) {
        auto* titulo = new QLabel(tituloPlazo(CuadroFinanciacion::kPlazos[c]), this);
        titulo->setAlignment(Qt::AlignCenter);
        titulo->setFont(negrita);
        grid->addWidget(titulo, 0, c + 1);
        grid->setColumnStretch(c + 1, 1);
    }
    for (int f = 0; f < CuadroFinanciacion::kFilas; ++f) {
        const bool actual = CuadroFinanciacion::kDesviosInteres[f] == 0;
        mInteres[f] = salida(QStringLiteral("edInteres%1").arg(f + 1), actual);
        mInteres[f]->setMaximumWidth(90);
        grid->addWidget(mInteres[f], f + 1, 0);
        for (int c = 0; c < CuadroFinanciacion::kColumnas; ++c) {
            mCeldas[f][c] = salida(QStringLiteral("c%1%2").arg(f + 1).arg(c + 1), actual);
            mCeldas[f][c]->setMinimumWidth(96);
            grid->addWidget(mCeldas[f][c], f + 1, c + 1);
        }
    }

    auto* btnImprimir = new QPushButton(QStringLiteral("Imprimir"), this);
    btnImprimir->setObjectName(QStringLiteral("btnImprimir"));
    btnImprimir->setAutoDefault(false);
    connect(btnImprimir, &QPushButton::clicked, this, &TfrmFinanciacion::btnImprimirClick);
    auto* btnSalir = new QPushButton(QStringLiteral("Salir"), this);
    btnSalir->setObjectName(QStringLiteral("btnSalir"));
    btnSalir->setAutoDefault(false);
    connect(btnSalir, &QPushButton::clicked, this, &TfrmFinanciacion::btnSalirClick);

    auto* arriba = new QHBoxLayout;
    arriba->addWidget(operacion, 3);
    arriba->addWidget(hipoteca, 2);
    auto* pie = new QHBoxLayout;
    pie->addStretch();
    pie->addWidget(btnImprimir);
    pie->addWidget(btnSalir);
    auto* raiz = new QVBoxLayout(this);
    raiz->addLayout(arriba);
    raiz->addWidget(tabla);
    raiz->addLayout(pie);

    for (CampoImporte* campo : {mImporteInmueble, mVariable, mImporteFijo, mImporteEntrada, mIntereses})
        connect(campo, &QLineEdit::textChanged, this, &TfrmFinanciacion::recalcular);
    // A price left blank shows its zero once the agent leaves the box.
    connect(mImporteInmueble, &QLineEdit::editingFinished, this, &TfrmFinanciacion::recalcular);
    connect(mAnos, &QSpinBox::valueChanged, this, &TfrmFinanciacion::recalcular);

    const QList<QWidget*> orden{mImporteInmueble, mVariable, mImporteFijo, mImporteEntrada, mAnos, mIntereses,
                                btnImprimir, btnSalir};
    for (qsizetype i = 1; i < orden.size(); ++i)
        setTabOrder(orden[i - 1], orden[i]);
    mImporteInmueble->setFocus();
}

QLineEdit* TfrmFinanciacion::salida(const QString& nombre, bool destacada)
{
    auto* e = new QLineEdit(this);
    e->setObjectName(nombre);
    e->setReadOnly(true);
    e->setFocusPolicy(Qt::NoFocus);
    e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QPalette p = e->palette();
    p.setColor(QPalette::Base, destacada ? QColor(0xfff4d6) : p.color(QPalette::Window));
    e->setPalette(p);
    if (destacada) {
        QFont f = e->font();
        f.setBold(true);
        e->setFont(f);
    }
    return e;
}

void TfrmFinanciacion::recalcular()
{
    if (mRecalculando)
        return;
    mRecalculando = true;
    CuadroFinanciacion& c = mCuadro;
    c.importeInmueble = mImporteInmueble->value();
    c.variable = mVariable->value();
    c.importeFijo = mImporteFijo->value();
    c.importeEntrada = mImporteEntrada->value();
    c.anos = mAnos->value();
    c.intereses = mIntereses->value();
    const bool vacio = mImporteInmueble->isBlank();
    c.recalcular(vacio);

    if (vacio) {
        // While the agent is clearing the price to type a new one its box stays blank.
        if (!mImporteInmueble->hasFocus())
            mImporteInmueble->setValue(c.importeInmueble);
        mImporteFijo->setValue(c.importeFijo);
        mImporteEntrada->setValue(c.importeEntrada);
    }
    mImporteVariable->setText(textoImporte(c.importeVariable));
    mTotalOperacion->setText(textoImporte(c.totalOperacion));
    mImporteHipoteca->setText(textoImporte(c.importeHipoteca));
    mCuota->setText(textoImporte(c.cuota));
    for (int f = 0; f < CuadroFinanciacion::kFilas; ++f) {
        mInteres[f]->setText(textoPorcentaje(c.interes[f]));
        for (int col = 0; col < CuadroFinanciacion::kColumnas; ++col)
            mCeldas[f][col]->setText(textoImporte(c.celdas[f][col]));
    }
    mRecalculando = false;
}

void TfrmFinanciacion::btnImprimirClick()
{
    recalcular();
    // The report service adds the agency's letterhead and the date.
    const QVariantMap datos = datosInformeFinanciacion(mCuadro, QDate::currentDate());
    ui::services().print(QString::fromLatin1(kPlantillaFinanciacion), datos, this);
}

void TfrmFinanciacion::btnSalirClick()
{
    reject();
}

void TfrmFinanciacion::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    recalcular();
}

} // namespace tv::finance
