#include "frmaltabancos.h"

#include "botonesdialogo.h"
#include "dialogs.h"
#include "recordscreen.h"
#include "dm.h"
#include "fieldbinder.h"
#include "formbuilder.h"
#include "frmbancos.h"
#include "icons.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

using ui::Column;

const QString kCodigo = QStringLiteral("CODBANCO");
const QString kNombre = QStringLiteral("DESBANCO");
const QString kSwift = QStringLiteral("SWIFT");
const QString kSufijo = QStringLiteral("SUFIJO");

// A BIC is eight characters, or eleven with its branch part.
constexpr int kLongitudMinimaSwift = 8;

bool soloDigitos(const QString& s)
{
    if (s.isEmpty())
        return false;
    for (const QChar c : s)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    return true;
}

// BICs are written in capitals; blanks around are never part of one.
QString normalizarSwift(const QString& swift)
{
    return swift.trimmed().toUpper();
}

Column columna(const QString& campo, const char* titulo, int ancho)
{
    Column c{campo, QString::fromUtf8(titulo)};
    c.width = ancho;
    return c;
}

} // namespace

Rechazo comprobarBanco(const DatosBanco& banco, bool nuevo, const std::function<bool(const QString&)>& codigoExiste)
{
    if (banco.codigo.trimmed().isEmpty())
        return {QStringLiteral("Debe indicar el código del banco"), kCodigo};
    if (banco.nombre.trimmed().isEmpty())
        return {QStringLiteral("Debe indicar el nombre del banco"), kNombre};
    if (banco.swift.trimmed().isEmpty())
        return {QStringLiteral("Debe indicar el código BIC-SWIFT del banco"), kSwift};
    // The message has always said "mayor de 8" while eight is accepted.
    if (banco.swift.trimmed().size() < kLongitudMinimaSwift)
        return {QStringLiteral("La longitud del BIC-SWIFT debe ser mayor de 8 caracteres"), kSwift, true};
    if (nuevo && codigoExiste(banco.codigo))
        return {QStringLiteral("El código del banco ya existe"), kCodigo};
    return {};
}

QString rellenarCodigoBanco(const QString& codigo)
{
    const QString limpio = codigo.trimmed();
    if (!soloDigitos(limpio) || limpio.size() >= 4)
        return codigo;
    return limpio.rightJustified(4, QLatin1Char('0'));
}

bool existeBanco(Tdm& data, const QString& codigo)
{
    Query q(data.datos, data.Transacion, QStringLiteral("SELECT COUNT(*) FROM COMUN_BANCOS WHERE CODBANCO = :CODBANCO"));
    q.paramByName(QStringLiteral("CODBANCO")).setValue(codigo);
    q.open();
    const bool existe = !q.eof() && q.field(0).asInt64() > 0;
    q.close();
    return existe;
}

const ui::Columns& TfrmAltaBancos::columnas()
{
    static const ui::Columns columns = [] {
        Column codigo = columna(kCodigo, "Código", 7);
        codigo.insertOnly = true;
        codigo.normaliser = rellenarCodigoBanco;
        Column swift = columna(kSwift, "BIC-SWIFT", 12);
        swift.normaliser = normalizarSwift;
        return ui::Columns{codigo, columna(kNombre, "Nombre", 32), swift, columna(kSufijo, "Sufijo", 7)};
    }();
    return columns;
}

TfrmAltaBancos::TfrmAltaBancos(Tdm& datos, DataSet& bancos, bool nuevo, QWidget* parent)
    : QDialog(parent), mData(datos), mDs(bancos), mNuevo(nuevo)
{
    setObjectName(QStringLiteral("TfrmAltaBancos"));
    setMinimumWidth(420);
    setWindowTitle(nuevo ? QStringLiteral("Nuevo banco") : QStringLiteral("Modificar banco"));

    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    layout->addLayout(grid);
    ui::FormBuilder(mDs).build(grid, columnas());
    mCodigo = caja(kCodigo);
    mNombre = caja(kNombre);
    mSwift = caja(kSwift);
    mSufijo = caja(kSufijo);
    const int cifra = mCodigo->fontMetrics().horizontalAdvance(QLatin1Char('M'));
    mCodigo->setMaximumWidth(cifra * 8);
    mSwift->setMaximumWidth(cifra * 13);
    mSufijo->setMaximumWidth(cifra * 7);
    mNombre->setMinimumWidth(cifra * 22);
    layout->addStretch(1);

    const ui::BotonesDialogo botones = ui::botonesAceptarCancelar(this, layout);
    mAceptar = botones.aceptar;
    mCancelar = botones.cancelar;

    connect(mAceptar, &QPushButton::clicked, this, &TfrmAltaBancos::aceptar);
    connect(mCancelar, &QPushButton::clicked, this, &TfrmAltaBancos::cancelar);
}

TfrmAltaBancos::~TfrmAltaBancos() = default;

QLineEdit* TfrmAltaBancos::caja(const QString& campo) const
{
    return findChild<QLineEdit*>(campo);
}

void TfrmAltaBancos::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    (mCodigo->isEnabled() ? mCodigo : mNombre)->setFocus(Qt::OtherFocusReason);
}

bool TfrmAltaBancos::aceptar()
{
    if (!mDs.isEditing())
        return false;
    // The last box typed in may not have been left yet: its rule applies now.
    for (const Column& c : columnas()) {
        QLineEdit* box = caja(c.column);
        if (!c.normaliser || !box || !box->isEnabled())
            continue;
        const QString escrito = mDs.fieldByName(c.column).asString();
        const QString normal = c.normaliser(escrito);
        if (normal != escrito)
            mDs.fieldByName(c.column).setValue(normal.isEmpty() ? QVariant() : QVariant(normal));
    }
    const DatosBanco banco{mDs.fieldByName(kCodigo).asString(), mDs.fieldByName(kNombre).asString(),
                           mDs.fieldByName(kSwift).asString()};
    Rechazo r;
    try {
        r = comprobarBanco(banco, mNuevo, [this](const QString& codigo) { return existeBanco(mData, codigo); });
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return false;
    }
    if (!r.aceptado()) {
        if (r.esError)
            ui::dialogs().error(r.mensaje, this);
        else
            ui::dialogs().warning(r.mensaje, this);
        if (QLineEdit* foco = caja(r.campo))
            foco->setFocus(Qt::OtherFocusReason);
        return false;
    }
    if (!grabarRegistro(mDs, this))
        return false;
    accept();
    return true;
}

void TfrmAltaBancos::cancelar()
{
    if (ui::discardChanges(mDs))
        QDialog::reject();
}

void TfrmAltaBancos::reject()
{
    cancelar();
}

} // namespace tv::lookups
