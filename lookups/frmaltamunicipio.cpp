#include "frmaltamunicipio.h"

#include "botonesdialogo.h"
#include "dialogs.h"
#include "recordscreen.h"
#include "dm.h"
#include "fieldbinder.h"
#include "formbuilder.h"
#include "icons.h"
#include "report.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

using ui::Column;
using ui::ColumnKind;

const QString kPais = QStringLiteral("DESPAIS");
const QString kProvincia = QStringLiteral("DESPROVINCIA");
const QString kMunicipio = QStringLiteral("DESMUNIINE");
const QString kCodigo = QStringLiteral("CODIGOINE");

const char* const kAjusteCodigosIne = "municipios/codigosIne";

// Names compare as the duplicate test compares them: blanks around and
// case do not make another municipality.
bool mismoNombre(const QString& a, const QString& b)
{
    return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

Column columna(const QString& campo, const char* titulo, const char* requerido, ColumnKind kind = ColumnKind::Text)
{
    Column c{campo, QString::fromUtf8(titulo), kind};
    c.required = QString::fromUtf8(requerido);
    c.inGrid = false;
    return c;
}

} // namespace

const QString kCodigosIne = QStringLiteral("https://www.ine.es/daco/daco42/codmun/diccionario25.xlsx");

QString direccionCodigosIne()
{
    const QSettings ajustes(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("tejavista"),
                            QStringLiteral("tejavista"));
    const QString direccion = ajustes.value(QLatin1String(kAjusteCodigosIne)).toString().trimmed();
    return direccion.isEmpty() ? kCodigosIne : direccion;
}

FalloMunicipio comprobarMunicipio(const DatosMunicipio& nuevo, const DatosMunicipio* anterior,
                                  const std::function<bool(const DatosMunicipio&)>& existe)
{
    auto valor = [&nuevo](const QString& campo) {
        return campo == kPais ? nuevo.pais : campo == kProvincia ? nuevo.provincia : nuevo.municipio;
    };
    for (const Column& c : TfrmAltaMunicipio::columnas())
        if (!c.required.isEmpty() && valor(c.column).trimmed().isEmpty())
            return {c.required, c.column};
    const bool cambiado = !anterior || !mismoNombre(anterior->pais, nuevo.pais) ||
                          !mismoNombre(anterior->provincia, nuevo.provincia) ||
                          !mismoNombre(anterior->municipio, nuevo.municipio);
    if (cambiado && existe(nuevo))
        return {QStringLiteral("Ya existe ese municipio en esa provincia"), kMunicipio};
    return {};
}

bool existeMunicipio(Tdm& data, const DatosMunicipio& m)
{
    Query q(data.datos, data.Transacion,
            QStringLiteral("EXECUTE PROCEDURE SPEXISTE_MUNICIPIO(:PAIS, :PROVINCIA, :MUNICIPIO)"));
    q.paramByName(QStringLiteral("PAIS")).setValue(m.pais);
    q.paramByName(QStringLiteral("PROVINCIA")).setValue(m.provincia);
    q.paramByName(QStringLiteral("MUNICIPIO")).setValue(m.municipio);
    q.open();
    const bool existe = !q.eof() && q.fieldByName(QStringLiteral("EXISTE")).asString().trimmed() == QLatin1String("S");
    q.close();
    return existe;
}

const ui::Columns& TfrmAltaMunicipio::columnas()
{
    static const ui::Columns columns{columna(kPais, "País", "Debe indicar el país"),
                                     columna(kProvincia, "Provincia", "Debe indicar la provincia"),
                                     columna(kMunicipio, "Municipio", "Debe indicar el municipio"),
                                     columna(kCodigo, "Código INE", "", ColumnKind::Integer)};
    return columns;
}

TfrmAltaMunicipio::TfrmAltaMunicipio(Tdm& datos, DataSet& municipios, QWidget* parent)
    : QDialog(parent), mData(datos), mDs(municipios)
{
    setObjectName(QStringLiteral("TfrmAltaMunicipio"));
    setMinimumWidth(460);
    setNuevo(false);

    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    layout->addLayout(grid);
    const QList<ui::FieldBinder*> campos = ui::FormBuilder(mDs).build(grid, columnas());
    auto control = [&](const QString& campo, const char* nombre) {
        for (ui::FieldBinder* b : campos) {
            if (b->fieldName() == campo) {
                auto* edit = qobject_cast<QLineEdit*>(b->control());
                edit->setObjectName(QLatin1String(nombre));
                return edit;
            }
        }
        return static_cast<QLineEdit*>(nullptr);
    };
    mPais = control(kPais, "edPais");
    mProvincia = control(kProvincia, "edProvincia");
    mMunicipio = control(kMunicipio, "edMunicipio");
    mCodigoIne = control(kCodigo, "edCodigoIne");
    // Official codes are five digits at most (province and municipality).
    mCodigoIne->setValidator(new QIntValidator(0, 99999, mCodigoIne));
    mCodigoIne->setMaxLength(5);
    mCodigoIne->setMaximumWidth(mCodigoIne->fontMetrics().horizontalAdvance(QStringLiteral("000000")) + 24);
    mMunicipio->setMinimumWidth(mMunicipio->fontMetrics().horizontalAdvance(QLatin1Char('M')) * 28);
    layout->addStretch(1);

    mCodigosIne = new QPushButton(ui::themeIcon(QStringLiteral("help-browser")), QStringLiteral("Códigos INE"), this);
    mCodigosIne->setObjectName(QStringLiteral("btnCodigosIne"));
    mCodigosIne->setToolTip(QStringLiteral("Abre la relación oficial de códigos de municipios del INE"));
    const ui::BotonesDialogo botones = ui::botonesAceptarCancelar(this, layout, mCodigosIne);
    mAceptar = botones.aceptar;
    mCancelar = botones.cancelar;

    connect(mAceptar, &QPushButton::clicked, this, &TfrmAltaMunicipio::aceptar);
    connect(mCancelar, &QPushButton::clicked, this, &TfrmAltaMunicipio::cancelar);
    connect(mCodigosIne, &QPushButton::clicked, this, &TfrmAltaMunicipio::verCodigosIne);
}

TfrmAltaMunicipio::~TfrmAltaMunicipio() = default;

void TfrmAltaMunicipio::setNuevo(bool nuevo)
{
    mNuevo = nuevo;
    setWindowTitle(nuevo ? QStringLiteral("Nuevo municipio") : QStringLiteral("Modificar municipio"));
}

void TfrmAltaMunicipio::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    mPais->setFocus(Qt::OtherFocusReason);
}

bool TfrmAltaMunicipio::validar()
{
    auto valor = [this](const QString& campo, bool anterior) {
        const DataSetField f = mDs.fieldByName(campo);
        return (anterior ? f.oldValue() : f.value()).toString();
    };
    const DatosMunicipio ahora{valor(kPais, false), valor(kProvincia, false), valor(kMunicipio, false)};
    const DatosMunicipio antes{valor(kPais, true), valor(kProvincia, true), valor(kMunicipio, true)};
    FalloMunicipio fallo;
    try {
        fallo = comprobarMunicipio(ahora, mNuevo ? nullptr : &antes,
                                   [this](const DatosMunicipio& m) { return existeMunicipio(mData, m); });
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return false;
    }
    if (fallo.mensaje.isEmpty())
        return true;
    ui::dialogs().warning(fallo.mensaje, this);
    QLineEdit* foco = fallo.campo == kPais ? mPais : fallo.campo == kProvincia ? mProvincia : mMunicipio;
    foco->setFocus(Qt::OtherFocusReason);
    return false;
}

bool TfrmAltaMunicipio::aceptar()
{
    if (!mDs.isEditing())
        return false;
    if (!validar())
        return false;
    try {
        mDs.post();
    } catch (const Abort&) {
        return false;
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        // The row the database refused stays typed, for the user to correct or cancel.
        if (!mDs.isEditing() && mDs.updatesPending() && mDs.recNo() >= 0)
            mDs.edit();
        return false;
    }
    accept();
    return true;
}

void TfrmAltaMunicipio::cancelar()
{
    if (ui::discardChanges(mDs))
        QDialog::reject();
}

void TfrmAltaMunicipio::reject()
{
    cancelar();
}

void TfrmAltaMunicipio::verCodigosIne()
{
    reports::openWithDesktop(direccionCodigosIne(), this);
}

} // namespace tv::lookups
