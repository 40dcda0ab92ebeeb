#include "frmempresa.h"

#include "appstate.h"
#include "commands.h"
#include "dialogs.h"
#include "dm.h"
#include "fieldbinder.h"
#include "frmmunicipio.h"
#include "picturebinder.h"
#include "report.h"
#include "services.h"

#include <QDir>
#include <QFile>
#include <QAction>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

using ui::Column;
using ui::ColumnKind;

const QString kGenerales = QStringLiteral("Datos generales");
const QString kCuenta = QStringLiteral("Cuenta bancaria");
const QString kCorreo = QStringLiteral("Correo saliente");

// Kept exactly as the agency's screen has always asked it.
const QString kConfirmarGrabado = QStringLiteral("Esta seguro de grabar los cambios?");

// One record's form: no grid shows these columns and no search offers them.
Column columna(const char* campo, const char* titulo, const QString& pagina, ColumnKind kind = ColumnKind::Text,
               int longitud = 0)
{
    Column c{QString::fromLatin1(campo), QString::fromUtf8(titulo), kind};
    c.page = pagina;
    c.maxLength = longitud;
    c.inGrid = false;
    c.searchable = false;
    return c;
}

Column obligatoria(const char* campo, const char* titulo, const char* mensaje)
{
    Column c = columna(campo, titulo, kGenerales);
    c.required = QString::fromUtf8(mensaje);
    return c;
}

ui::Columns definirColumnas()
{
    // Two boxes a row on the first page: the address and the mail down the
    // left, the short codes down the right. The required ones keep the order
    // of the checks.
    return {
        obligatoria("NOMBRE", "Nombre", "Debe indicar el nombre de la empresa"),
        columna("CIF", "CIF", kGenerales),
        obligatoria("DIRECCION", "Dirección", "Debe indicar la dirección de la empresa"),
        columna("TELEFONO", "Teléfono", kGenerales),
        obligatoria("MUNICIPIO", "Municipio", "Debe indicar el municipio"),
        columna("FAX", "Fax", kGenerales),
        obligatoria("PROVINCIA", "Provincia", "Debe indicar la provincia"),
        columna("MONEDA", "Moneda", kGenerales),
        obligatoria("CODPOSTAL", "Código postal", "Debe indicar el código postal"),
        columna("TERMINALSERVER", "Terminal Server", kGenerales),
        columna("PAIS", "País", kGenerales),
        columna("VERSION", "Versión de los datos", kGenerales, ColumnKind::Integer, 9),
        columna("MAIL", "Correo electrónico", kGenerales),
        columna("LOGO", "Logotipo", kGenerales, ColumnKind::Picture),

        columna("BANCO", "Banco", kCuenta),
        columna("SUCURSAL", "Sucursal", kCuenta),
        columna("DC", "D.C.", kCuenta),
        columna("CUENTA", "Número de cuenta", kCuenta),
        columna("SUFIJO", "Sufijo", kCuenta),

        columna("M_HOST", "Servidor de correo (SMTP)", kCorreo),
        columna("M_PORT", "Puerto", kCorreo, ColumnKind::Integer, 5),
        columna("M_USERNAME", "Usuario", kCorreo),
        columna("M_CLAVE", "Contraseña", kCorreo),
    };
}

ui::Columns dePagina(const ui::Columns& todas, const QString& pagina, bool conLogo)
{
    ui::Columns out;
    for (const Column& c : todas)
        if (c.page == pagina && (c.kind == ColumnKind::Picture) == conLogo)
            out.append(c);
    return out;
}

// A box as wide as what it holds: short codes stay short, long texts stop
// at forty characters. Boxes left out fill their cell.
void ajustarAncho(QLineEdit* edit, QGridLayout* grid, int hasta)
{
    const int caracteres = edit->maxLength();
    if (caracteres <= 0 || caracteres > hasta)
        return;
    const int cifra = edit->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    edit->setFixedWidth(cifra * qBound(8, caracteres + 2, 42) + 12);
    grid->setAlignment(edit, Qt::AlignLeft | Qt::AlignVCenter);
}

// A column of the current row, without its padding (empty without a row).
QString recortado(DataSet& ds, const char* campo)
{
    if (ds.recNo() < 0)
        return {};
    return ds.fieldByName(QString::fromLatin1(campo)).asString().trimmed();
}

} // namespace

const ui::Columns& TfrmEmpresa::columnas()
{
    static const ui::Columns l = definirColumnas();
    return l;
}

QString TfrmEmpresa::rutaEscudo()
{
    return reports::applicationFolder() + QStringLiteral("/bmp/escudoBlanco.bmp");
}

TfrmEmpresa::TfrmEmpresa(Tdm& datos, QWidget* parent)
    : RecordScreen(parent), mData(datos), mDs(std::make_unique<DataSet>(datos.datos, datos.Transacion))
{
    setObjectName(QStringLiteral("TfrmEmpresa"));
    setWindowTitle(QStringLiteral("Datos de la empresa"));
    mDs->setTable(QStringLiteral("EMPRESA"), {QStringLiteral("CODIGO")});
    mDs->beforePost += [this](DataSet& ds) { alGrabar(ds); };
    setDataSet(mDs.get());
    mDs->open();
    construirPaginas();
    connect(this, &RecordScreen::saved, this, &TfrmEmpresa::actualizarEstadoGlobal);
    updateActions();
}

TfrmEmpresa::~TfrmEmpresa() = default;

void TfrmEmpresa::construirPaginas()
{
    auto* layout = new QVBoxLayout(body());
    layout->setContentsMargins(10, 10, 10, 10);
    mPaginas = new QTabWidget(body());
    mPaginas->setObjectName(QStringLiteral("paginas"));
    layout->addWidget(mPaginas);

    const ui::Columns& todas = columnas();
    mPaginas->addTab(paginaGeneral(todas), kGenerales);
    mPaginas->addTab(paginaSencilla(dePagina(todas, kCuenta, false)), kCuenta);
    mPaginas->addTab(paginaSencilla(dePagina(todas, kCorreo, false)), kCorreo);

    // Account numbers are digits only.
    const QRegularExpression digitos(QStringLiteral("[0-9]*"));
    for (const char* campo : {"BANCO", "SUCURSAL", "DC", "CUENTA", "SUFIJO"})
        if (auto* e = qobject_cast<QLineEdit*>(controlFor(QString::fromLatin1(campo))))
            e->setValidator(new QRegularExpressionValidator(digitos, e));
    if (auto* clave = qobject_cast<QLineEdit*>(controlFor(QStringLiteral("M_CLAVE"))))
        clave->setEchoMode(QLineEdit::Password);
    // Written by the program's upgrades, never by hand.
    if (auto* version = qobject_cast<QLineEdit*>(controlFor(QStringLiteral("VERSION")))) {
        version->setReadOnly(true);
        version->setFocusPolicy(Qt::NoFocus);
        version->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        QPalette paleta = version->palette();
        paleta.setColor(QPalette::Base, paleta.color(QPalette::Window));
        version->setPalette(paleta);
    }
    resize(920, 440);
}

QWidget* TfrmEmpresa::paginaGeneral(const ui::Columns& todas)
{
    auto* pagina = new QWidget(mPaginas);
    auto* fila = new QHBoxLayout(pagina);
    fila->setContentsMargins(12, 12, 12, 12);
    fila->setSpacing(18);

    auto* campos = new QWidget(pagina);
    auto* grid = new QGridLayout(campos);
    grid->setContentsMargins(0, 0, 0, 0);
    buildFields(grid, dePagina(todas, kGenerales, false), 2);
    // The long texts on the left take the room; the codes on the right need little.
    grid->setColumnStretch(1, 1);
    grid->setHorizontalSpacing(10);
    grid->setRowStretch(grid->rowCount(), 1);
    const int cifra = campos->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    for (const Column& c : dePagina(todas, kGenerales, false))
        if (auto* e = qobject_cast<QLineEdit*>(controlFor(c.column))) {
            ajustarAncho(e, grid, 15);
            if (e->maxLength() > 15)
                e->setMinimumWidth(cifra * 30);
        }

    // The municipality: typed, or chosen with its province and country.
    if (QWidget* municipio = controlFor(QStringLiteral("MUNICIPIO"))) {
        int r = 0, c = 0, rs = 0, cs = 0;
        grid->getItemPosition(grid->indexOf(municipio), &r, &c, &rs, &cs);
        grid->removeWidget(municipio);
        mBotonMunicipio = new QPushButton(QStringLiteral("…"), campos);
        mBotonMunicipio->setObjectName(QStringLiteral("btnMunicipio"));
        mBotonMunicipio->setToolTip(QStringLiteral("Elegir el municipio, su provincia y su país"));
        mBotonMunicipio->setFixedWidth(mBotonMunicipio->fontMetrics().horizontalAdvance(QStringLiteral("…")) + 22);
        mBotonMunicipio->setFocusPolicy(Qt::TabFocus);
        auto* juntos = new QHBoxLayout;
        juntos->setSpacing(2);
        juntos->addWidget(municipio, 1);
        juntos->addWidget(mBotonMunicipio);
        grid->addLayout(juntos, r, c, rs, cs);
        setTabOrder(municipio, mBotonMunicipio);
        connect(mBotonMunicipio, &QPushButton::clicked, this, &TfrmEmpresa::elegirMunicipio);
    }
    fila->addWidget(campos, 1);

    // The logo, with the two ways of changing it under it.
    auto* grupo = new QGroupBox(QStringLiteral("Logotipo"), pagina);
    auto* lateral = new QVBoxLayout(grupo);
    auto* soporte = new QWidget(grupo);
    auto* gridLogo = new QGridLayout(soporte);
    gridLogo->setContentsMargins(0, 0, 0, 0);
    const QList<ui::FieldBinder*> logo = buildFields(gridLogo, dePagina(todas, kGenerales, true), 1);
    mLogo = logo.isEmpty() ? nullptr : qobject_cast<ui::PictureBinder*>(logo.first());
    if (mLogo) {
        // The group box carries the caption.
        for (QLabel* l : soporte->findChildren<QLabel*>())
            if (l->buddy() == mLogo->label())
                l->hide();
        mLogo->label()->setFixedSize(180, 200);
        mLogo->label()->setStyleSheet(QStringLiteral("background: white;"));
        mLogo->refresh();
    }
    lateral->addWidget(soporte, 0, Qt::AlignHCenter);
    auto* botones = new QHBoxLayout;
    mBotonEscudo = new QPushButton(QStringLiteral("Escudo"), grupo);
    mBotonEscudo->setObjectName(QStringLiteral("btnEscudo"));
    mBotonEscudo->setToolTip(QStringLiteral("Usar el escudo blanco como logotipo"));
    mBotonImagen = new QPushButton(QStringLiteral("Elegir imagen…"), grupo);
    mBotonImagen->setObjectName(QStringLiteral("btnElegirImagen"));
    mBotonImagen->setToolTip(QStringLiteral("Usar una imagen de un archivo como logotipo"));
    botones->addWidget(mBotonEscudo);
    botones->addWidget(mBotonImagen);
    lateral->addLayout(botones);
    lateral->addStretch(1);
    connect(mBotonEscudo, &QPushButton::clicked, this, &TfrmEmpresa::ponerEscudo);
    connect(mBotonImagen, &QPushButton::clicked, this, &TfrmEmpresa::elegirImagen);
    fila->addWidget(grupo, 0);
    return pagina;
}

QWidget* TfrmEmpresa::paginaSencilla(const ui::Columns& propias)
{
    auto* pagina = new QWidget(mPaginas);
    auto* grid = new QGridLayout(pagina);
    grid->setContentsMargins(12, 12, 12, 12);
    grid->setHorizontalSpacing(8);
    buildFields(grid, propias, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(grid->rowCount(), 1);
    for (const Column& c : propias)
        if (auto* e = qobject_cast<QLineEdit*>(controlFor(c.column)))
            ajustarAncho(e, grid, 32767);
    return pagina;
}

ui::RecordScreen::Actions TfrmEmpresa::supportedActions() const
{
    return Action::Grabar | Action::Cancelar | Action::Salir;
}

bool TfrmEmpresa::validar()
{
    return checkColumns(columnas());
}

QString TfrmEmpresa::textoConfirmarGrabado() const
{
    return kConfirmarGrabado;
}

void TfrmEmpresa::alGrabar(DataSet& ds)
{
    // Drawn only for the row that really is stored, so a cancelled first
    // record costs no number.
    DataSetField codigo = ds.fieldByName(QStringLiteral("CODIGO"));
    if (codigo.isNull())
        codigo.setValue(Query::genId(mData.datos, mData.Transacion, QStringLiteral("GEN_REMESAS")));
}

void TfrmEmpresa::actualizarEstadoGlobal()
{
    if (mDs->isEmpty() || mDs->recNo() < 0)
        return;
    ui::AppState& estado = ui::appState();
    estado.pais = recortado(*mDs, "PAIS");
    estado.moneda = recortado(*mDs, "MONEDA");
    estado.cif = recortado(*mDs, "CIF");
}

bool TfrmEmpresa::ponerLugar(const QString& provincia, const QString& municipio, const QString& pais)
{
    try {
        if (!mDs->isEditing())
            mDs->edit();
        mDs->fieldByName(QStringLiteral("MUNICIPIO")).setValue(municipio.trimmed());
        mDs->fieldByName(QStringLiteral("PROVINCIA")).setValue(provincia.trimmed());
        mDs->fieldByName(QStringLiteral("PAIS")).setValue(pais.trimmed());
    } catch (const Abort&) {
        return false;
    }
    return true;
}

void TfrmEmpresa::elegirMunicipio()
{
    QString provincia, municipio, pais;
    if (!elegirLugar(this, &provincia, &municipio, &pais))
        return;
    if (ponerLugar(provincia, municipio, pais))
        if (QWidget* siguiente = controlFor(QStringLiteral("CODPOSTAL")))
            siguiente->setFocus(Qt::OtherFocusReason);
}

bool TfrmEmpresa::ponerImagen(const QString& ruta)
{
    if (!mLogo)
        return false;
    const QString nombre = QDir::toNativeSeparators(ruta);
    QFile archivo(ruta);
    if (!archivo.exists()) {
        ui::dialogs().warning(QStringLiteral("No se encuentra el archivo de imagen: ") + nombre, this);
        return false;
    }
    if (!archivo.open(QIODevice::ReadOnly)) {
        ui::dialogs().warning(QStringLiteral("No se puede leer el archivo de imagen: ") + nombre, this);
        return false;
    }
    const QByteArray bytes = archivo.readAll();
    if (QImage::fromData(bytes).isNull()) {
        ui::dialogs().warning(QStringLiteral("El archivo no contiene una imagen válida: ") + nombre, this);
        return false;
    }
    // False only when the record refused the edit, which said so itself.
    return mLogo->setPicture(bytes);
}

bool TfrmEmpresa::ponerEscudo()
{
    return ponerImagen(rutaEscudo());
}

bool TfrmEmpresa::elegirImagen()
{
    const QString ruta = ui::services().chooseOpenFile(
        QStringLiteral("Elegir el logotipo"), QString(),
        QStringLiteral("Imágenes (*.bmp *.png *.jpg *.jpeg *.gif);;Todos los archivos (*)"), this);
    if (ruta.isEmpty())
        return false;
    return ponerImagen(ruta);
}

void registrarEmpresa()
{
    ui::Command c;
    c.id = QStringLiteral("configurar-empresa");
    c.factory = [](QWidget* parent) -> QWidget* { return new TfrmEmpresa(*dm, parent); };
    c.openAs = ui::OpenAs::Modal;
    ui::commands().add(c);
}

} // namespace tv::lookups
