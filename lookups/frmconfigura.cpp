#include "frmconfigura.h"

#include "commands.h"
#include "dateeditbinder.h"
#include "dialogs.h"
#include "dm.h"
#include "services.h"
#include "sqltext.h"

#include <QAction>
#include <QDateEdit>
#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

using ui::Column;
using ui::ColumnKind;

const QString kCarpetas = QStringLiteral("Carpetas y documentos");
const QString kPortales = QStringLiteral("Portales y FTP");
const QString kSincronizacion = QStringLiteral("Sincronización");
const QString kMensajes = QStringLiteral("Mensajes y carrusel");

const QString kDiasNegativos = QStringLiteral("Los días entre actualizaciones no pueden ser negativos");
const QString kSinDias =
    QStringLiteral("Debe indicar cada cuántos días se hace la actualización automática (un número mayor que cero)");
const QString kCarrusel = QStringLiteral("El intervalo del carrusel debe ser un número de segundos mayor que cero");

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

ui::Columns definirColumnas()
{
    return {
        columna("DIRECTORIO_FOTOS", "Carpeta de fotos", kCarpetas),
        columna("DOCU_RED", "Guardar los documentos en la carpeta de red", kCarpetas, ColumnKind::Flag),

        columna("PORTALINMO", "Código en Portalinmo", kPortales),
        columna("FTP_HOST", "Servidor FTP", kPortales),
        columna("FTP_USUARIO", "Usuario FTP", kPortales),
        columna("FTP_PASSWORD", "Contraseña FTP", kPortales),
        columna("ACTUALIZA_AUTOMATICA", "Actualización automática", kPortales, ColumnKind::Flag),
        columna("DIASACTUALIZACION", "Días entre actualizaciones", kPortales, ColumnKind::Integer, 4),
        columna("ULTACTUALIZACION", "Última actualización", kPortales, ColumnKind::Date),

        columna("SERVIDOR_HOST", "Servidor central", kSincronizacion),
        columna("SERVIDOR_DATABASE", "Base de datos del servidor", kSincronizacion),
        columna("SERVIDOR_USUARIO", "Usuario del servidor", kSincronizacion),
        columna("SERVIDOR_PASSWORD", "Contraseña del servidor", kSincronizacion),
        columna("SINCRONIZACION_OFICINA", "Oficina de sincronización", kSincronizacion),
        columna("SINCRONIZACION_USUARIO", "Usuario de sincronización", kSincronizacion),
        columna("SINCRONIZACION_CLAVE", "Clave de sincronización", kSincronizacion),
        columna("OFICINA", "Número de oficina", kSincronizacion, ColumnKind::Integer, 9),
        columna("EMPRESA", "Número de empresa", kSincronizacion, ColumnKind::Integer, 9),

        columna("CARRUSEL_TIEMPO", "Intervalo del carrusel (segundos)", kMensajes, ColumnKind::Integer, 4),
        columna("VER_DIRECCION", "Mostrar la dirección en el carrusel", kMensajes, ColumnKind::Flag),
        columna("VER_FECHA", "Mostrar la fecha en el carrusel", kMensajes, ColumnKind::Flag),
        columna("DESACTIVAR_MENSAJES", "Desactivar los avisos de la agenda", kMensajes, ColumnKind::Flag),
    };
}

// What the user should know about a page: settings read only at start-up.
QString notaDe(const QString& pagina)
{
    if (pagina == kCarpetas)
        return QStringLiteral("La carpeta de los documentos se decide al entrar en el programa: el cambio se "
                              "aplica la próxima vez que se entre.");
    if (pagina == kMensajes)
        return QStringLiteral("Los avisos de la agenda se activan o se desactivan la próxima vez que se entre en "
                              "el programa.");
    return {};
}

bool esClave(const QString& campo)
{
    return campo == QLatin1String("FTP_PASSWORD") || campo == QLatin1String("SERVIDOR_PASSWORD") ||
           campo == QLatin1String("SINCRONIZACION_CLAVE");
}

} // namespace

const ui::Columns& TfrmConfigura::columnas()
{
    static const ui::Columns l = definirColumnas();
    return l;
}

QStringList TfrmConfigura::paginasDeLaPantalla()
{
    return {kCarpetas, kPortales, kSincronizacion, kMensajes};
}

TfrmConfigura::TfrmConfigura(Tdm& datos, QWidget* parent)
    : RecordScreen(parent), mDs(std::make_unique<DataSet>(datos.datos, datos.Transacion))
{
    setObjectName(QStringLiteral("TfrmConfigura"));
    setWindowTitle(QStringLiteral("Configuración de la aplicación"));
    mDs->setTable(QStringLiteral("CONFIGURACION"));
    mDs->onNewRecord += [this](DataSet& ds) { valoresIniciales(ds); };
    setDataSet(mDs.get());
    mDs->open();

    auto* layout = new QVBoxLayout(body());
    layout->setContentsMargins(10, 10, 10, 10);
    mPaginas = new QTabWidget(body());
    mPaginas->setObjectName(QStringLiteral("paginas"));
    layout->addWidget(mPaginas);
    for (const QString& titulo : paginasDeLaPantalla())
        mPaginas->addTab(pagina(titulo), titulo);
    resize(640, 430);
    updateActions();
}

TfrmConfigura::~TfrmConfigura() = default;

QWidget* TfrmConfigura::pagina(const QString& titulo)
{
    ui::Columns propias;
    for (const Column& c : columnas())
        if (c.page == titulo)
            propias.append(c);

    auto* pagina = new QWidget(mPaginas);
    auto* vertical = new QVBoxLayout(pagina);
    vertical->setContentsMargins(12, 12, 12, 12);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    vertical->addLayout(grid);
    buildFields(grid, propias, 1);
    grid->setColumnStretch(1, 1);

    // Each box as wide as what it holds, up to forty characters.
    const int cifra = pagina->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    for (const Column& c : propias) {
        QWidget* control = controlFor(c.column);
        if (auto* e = qobject_cast<QLineEdit*>(control)) {
            if (e->maxLength() > 0 && e->maxLength() < 32767) {
                e->setFixedWidth(cifra * qBound(8, e->maxLength() + 2, 42) + 12);
                grid->setAlignment(e, Qt::AlignLeft | Qt::AlignVCenter);
            }
            if (esClave(c.column))
                e->setEchoMode(QLineEdit::Password);
        } else if (auto* d = qobject_cast<QDateEdit*>(control)) {
            // Written by the updates themselves, never by hand: shown as text.
            d->setReadOnly(true);
            d->setCalendarPopup(false);
            d->setButtonSymbols(QAbstractSpinBox::NoButtons);
            d->setFocusPolicy(Qt::NoFocus);
            d->setFixedWidth(cifra * 12 + 12);
            QPalette paleta = d->palette();
            paleta.setColor(QPalette::Base, paleta.color(QPalette::Window));
            d->setPalette(paleta);
            grid->setAlignment(d, Qt::AlignLeft | Qt::AlignVCenter);
        }
    }

    // The photo folder: typed, or chosen on disk.
    if (QWidget* carpeta = titulo == kCarpetas ? controlFor(QStringLiteral("DIRECTORIO_FOTOS")) : nullptr) {
        int r = 0, c = 0, rs = 0, cs = 0;
        grid->getItemPosition(grid->indexOf(carpeta), &r, &c, &rs, &cs);
        grid->removeWidget(carpeta);
        carpeta->setMinimumWidth(0);
        carpeta->setMaximumWidth(QWIDGETSIZE_MAX);
        mBotonCarpeta = new QPushButton(QStringLiteral("…"), pagina);
        mBotonCarpeta->setObjectName(QStringLiteral("btnCarpetaFotos"));
        mBotonCarpeta->setToolTip(QStringLiteral("Elegir la carpeta de fotos"));
        mBotonCarpeta->setFixedWidth(mBotonCarpeta->fontMetrics().horizontalAdvance(QStringLiteral("…")) + 22);
        mBotonCarpeta->setFocusPolicy(Qt::TabFocus);
        auto* juntos = new QHBoxLayout;
        juntos->setSpacing(2);
        juntos->addWidget(carpeta, 1);
        juntos->addWidget(mBotonCarpeta);
        grid->addLayout(juntos, r, c, rs, cs);
        setTabOrder(carpeta, mBotonCarpeta);
        connect(mBotonCarpeta, &QPushButton::clicked, this, &TfrmConfigura::elegirCarpetaFotos);
    }

    const QString nota = notaDe(titulo);
    if (!nota.isEmpty()) {
        auto* etiqueta = new QLabel(nota, pagina);
        etiqueta->setWordWrap(true);
        etiqueta->setForegroundRole(QPalette::PlaceholderText);
        vertical->addSpacing(10);
        vertical->addWidget(etiqueta);
    }
    vertical->addStretch(1);
    return pagina;
}

ui::RecordScreen::Actions TfrmConfigura::supportedActions() const
{
    return Action::Grabar | Action::Cancelar | Action::Salir;
}

void TfrmConfigura::valoresIniciales(DataSet& ds)
{
    // The settings of a new data folder. The start-up markers stay empty:
    // they say "not done yet" to the start-up that owns them.
    const std::pair<const char*, QVariant> valores[] = {
        {"ACTUALIZA_AUTOMATICA", sql::flag(false)}, {"CARRUSEL_TIEMPO", 5}, {"DIASACTUALIZACION", 7},
        {"DOCU_RED", sql::flag(false)}, {"VER_DIRECCION", sql::flag(true)}, {"VER_FECHA", sql::flag(true)},
        {"DESACTIVAR_MENSAJES", sql::flag(false)}, {"OFICINA", 0}, {"EMPRESA", 0},
    };
    for (const auto& [campo, valor] : valores)
        ds.fieldByName(QString::fromLatin1(campo)).setValue(valor);
}

bool TfrmConfigura::validar()
{
    const DataSetField dias = mDs->fieldByName(QStringLiteral("DIASACTUALIZACION"));
    if (!dias.isNull() && dias.asInteger() < 0)
        return fail(kDiasNegativos, controlFor(dias.name()));
    if (sql::isSet(mDs->fieldByName(QStringLiteral("ACTUALIZA_AUTOMATICA")).value()) &&
        (dias.isNull() || dias.asInteger() <= 0))
        return fail(kSinDias, controlFor(dias.name()));
    const DataSetField carrusel = mDs->fieldByName(QStringLiteral("CARRUSEL_TIEMPO"));
    if (!carrusel.isNull() && carrusel.asInteger() <= 0)
        return fail(kCarrusel, controlFor(carrusel.name()));
    return true;
}

bool TfrmConfigura::elegirCarpetaFotos()
{
    const QString actual = mDs->fieldByName(QStringLiteral("DIRECTORIO_FOTOS")).asString().trimmed();
    const QString elegida = ui::services().chooseFolder(QStringLiteral("Elegir la carpeta de fotos"), actual, this);
    if (elegida.isEmpty())
        return false;
    const QString ruta = QDir::toNativeSeparators(elegida);
    const int cabe = mDs->fieldInfo(mDs->fieldIndex(QStringLiteral("DIRECTORIO_FOTOS"))).size;
    if (cabe > 0 && ruta.size() > cabe) {
        ui::dialogs().warning(QStringLiteral("La ruta de la carpeta es demasiado larga: caben %1 caracteres").arg(cabe),
                              this);
        return false;
    }
    try {
        if (!mDs->isEditing())
            mDs->edit();
        mDs->fieldByName(QStringLiteral("DIRECTORIO_FOTOS")).setValue(ruta);
    } catch (const Abort&) {
        return false;
    }
    return true;
}

void registrarConfiguracion()
{
    ui::Command c;
    c.id = QStringLiteral("configurar-aplicacion");
    c.factory = [](QWidget* parent) -> QWidget* { return new TfrmConfigura(*dm, parent); };
    c.openAs = ui::OpenAs::Modal;
    ui::commands().add(c);
}

} // namespace tv::lookups
