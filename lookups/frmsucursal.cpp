#include "frmsucursal.h"

#include "botonesdialogo.h"
#include "dialogs.h"
#include "recordscreen.h"
#include "dataset.h"
#include "dm.h"
#include "formbuilder.h"
#include "frmbancos.h"
#include "icons.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

using ui::Column;

const QString kBanco = QStringLiteral("CODBANCO");
const QString kCodigo = QStringLiteral("CODSUCUR");
const QString kNombre = QStringLiteral("DESSUCUR");
const QString kCodigoPostal = QStringLiteral("CODPOSTAL");

Column columna(const QString& campo, const char* titulo, int ancho)
{
    Column c{campo, QString::fromUtf8(titulo)};
    c.width = ancho;
    return c;
}

} // namespace

Rechazo comprobarSucursal(const DatosSucursal& sucursal, bool nuevo,
                          const std::function<bool(const QString&)>& codigoExiste)
{
    if (sucursal.codigo.trimmed().isEmpty())
        return {QStringLiteral("Debe indicar el código de la sucursal"), kCodigo};
    if (sucursal.nombre.trimmed().isEmpty())
        return {QStringLiteral("Debe indicar el nombre de la sucursal"), kNombre};
    if (nuevo && codigoExiste(sucursal.codigo))
        return {QStringLiteral("El código de la sucursal ya existe"), kCodigo};
    return {};
}

bool existeSucursal(Tdm& data, const QString& banco, const QString& sucursal)
{
    // The bank's code is typed as the banks' column (longer than the branches' one).
    Query q(data.datos, data.Transacion,
            QStringLiteral("SELECT COUNT(*) FROM COMUN_SUCURSALES WHERE CODBANCO = CAST(:CODBANCO AS VARCHAR(6)) "
                           "AND CODSUCUR = :CODSUCUR"));
    q.paramByName(QStringLiteral("CODBANCO")).setValue(banco);
    q.paramByName(QStringLiteral("CODSUCUR")).setValue(sucursal);
    q.open();
    const bool existe = !q.eof() && q.field(0).asInt64() > 0;
    q.close();
    return existe;
}

const ui::Columns& TfrmSucursal::columnas()
{
    static const ui::Columns columns = [] {
        Column codigo = columna(kCodigo, "Código", 7);
        codigo.insertOnly = true;
        return ui::Columns{codigo, columna(kNombre, "Nombre", 30), columna(kCodigoPostal, "Código postal", 8)};
    }();
    return columns;
}

TfrmSucursal::TfrmSucursal(Tdm& datos, DataSet& sucursales, bool nuevo, const QString& nombreBanco, QWidget* parent)
    : QDialog(parent), mData(datos), mDs(sucursales), mNuevo(nuevo)
{
    setObjectName(QStringLiteral("TfrmSucursal"));
    setMinimumWidth(420);
    setWindowTitle(nuevo ? QStringLiteral("Nueva sucursal") : QStringLiteral("Modificar sucursal"));

    auto* layout = new QVBoxLayout(this);
    auto* banco = new QLabel(this);
    banco->setObjectName(QStringLiteral("lbBanco"));
    banco->setTextFormat(Qt::PlainText);
    banco->setText(QStringLiteral("Banco: ") + sucursales.fieldByName(kBanco).asString() +
                   (nombreBanco.trimmed().isEmpty() ? QString() : QStringLiteral(" - ") + nombreBanco.trimmed()));
    layout->addWidget(banco);
    auto* grid = new QGridLayout;
    layout->addLayout(grid);
    ui::FormBuilder(mDs).build(grid, columnas());
    mCodigo = findChild<QLineEdit*>(kCodigo);
    mNombre = findChild<QLineEdit*>(kNombre);
    mCodigoPostal = findChild<QLineEdit*>(kCodigoPostal);
    mCodigoPostal->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,5}")), mCodigoPostal));
    const int cifra = mCodigo->fontMetrics().horizontalAdvance(QLatin1Char('M'));
    mCodigo->setMaximumWidth(cifra * 6);
    mCodigoPostal->setMaximumWidth(cifra * 7);
    mNombre->setMinimumWidth(cifra * 22);
    layout->addStretch(1);

    const ui::BotonesDialogo botones = ui::botonesAceptarCancelar(this, layout);
    mAceptar = botones.aceptar;
    mCancelar = botones.cancelar;

    connect(mAceptar, &QPushButton::clicked, this, &TfrmSucursal::aceptar);
    connect(mCancelar, &QPushButton::clicked, this, &TfrmSucursal::cancelar);
}

TfrmSucursal::~TfrmSucursal() = default;

void TfrmSucursal::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    (mCodigo->isEnabled() ? mCodigo : mNombre)->setFocus(Qt::OtherFocusReason);
}

bool TfrmSucursal::aceptar()
{
    if (!mDs.isEditing())
        return false;
    const QString banco = mDs.fieldByName(kBanco).asString();
    const DatosSucursal sucursal{mDs.fieldByName(kCodigo).asString(), mDs.fieldByName(kNombre).asString()};
    Rechazo r;
    try {
        r = comprobarSucursal(sucursal, mNuevo,
                              [&](const QString& codigo) { return existeSucursal(mData, banco, codigo); });
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return false;
    }
    if (!r.aceptado()) {
        ui::dialogs().warning(r.mensaje, this);
        if (auto* foco = findChild<QLineEdit*>(r.campo))
            foco->setFocus(Qt::OtherFocusReason);
        return false;
    }
    if (!grabarRegistro(mDs, this))
        return false;
    accept();
    return true;
}

void TfrmSucursal::cancelar()
{
    if (ui::discardChanges(mDs))
        QDialog::reject();
}

void TfrmSucursal::reject()
{
    cancelar();
}

} // namespace tv::lookups
