#include "frmagentes.h"

#include "appstate.h"
#include "commands.h"
#include "datagrid.h"
#include "dialogs.h"
#include "dm.h"
#include "fieldbinder.h"
#include "lookupcatalogue.h"
#include "nif.h"
#include "ownership.h"
#include "sqltext.h"
#include "tablaauxiliar.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

const QString kDatosPersonales = QStringLiteral("Datos personales");
const QString kAcceso = QStringLiteral("Acceso");
const QString kDepartamento = QStringLiteral("Departamento y comisiones");
const QString kPermisos = QStringLiteral("Permisos");

const QString kClaveIncorrecta =
    QStringLiteral("La contraseña para modificar los datos no es correcta, no tiene \r\npermiso para realizar esta acción");
const QString kUsuarioRepetido = QStringLiteral("Ya existe otro agente con ese nombre de usuario");
const QString kNifIncorrecto = QStringLiteral("El NIF del agente no es correcto");

const QString kCodigo = QStringLiteral("CODIGO");
const QString kAdministrador = QStringLiteral("ADMINISTRADOR");
const QString kNif = QStringLiteral("NIF");

struct Permiso {
    const char* columna;
    const char* titulo;
};

// The six restrictions, then the administrator flag that excludes them.
const Permiso kPermisosAgente[] = {
    {"OCULTARDATOSECONOMICOS", "Ocultar datos económicos"},
    {"VERSOLOSUSGESTIONES", "Ver solo sus gestiones"},
    {"VERSOLOSUAGENDA", "Ver solo su agenda"},
    {"OCULTARDATOSINTERNOS", "Ocultar datos internos del inmueble"},
    {"OCULTARCLIENTES", "Ocultar clientes no asignados"},
    {"OCULTASPROPIETARIOS", "Ocultar propietarios no asignados"},
    {"ADMINISTRADOR", "Agente Administrador"},
};

struct Porcentaje {
    const char* columna;
    const char* mensaje;
};

const Porcentaje kPorcentajes[] = {
    {"PORCENTAJE_OPERACIONES", "El porcentaje de operaciones debe estar entre 0 y 100"},
    {"PORCENTAJE_CAPTACION", "El porcentaje de captación debe estar entre 0 y 100"},
};

ui::Column columna(const char* nombre, const char* titulo, const QString& grupo,
                   ui::ColumnKind tipo = ui::ColumnKind::Text)
{
    ui::Column c{QString::fromLatin1(nombre), QString::fromUtf8(titulo), tipo};
    c.page = grupo;
    c.inGrid = false;
    return c;
}

ui::Columns definirColumnas()
{
    using K = ui::ColumnKind;
    ui::Columns l;

    ui::Column codigo = columna("CODIGO", "Código", kDatosPersonales, K::Integer);
    codigo.inGrid = true;
    codigo.width = 6;
    l.append(codigo);
    l.append(columna("FECHAALTA", "Fecha de alta", kDatosPersonales, K::Date));
    ui::Column nombre = columna("APEYNOM", "Nombre", kDatosPersonales);
    nombre.required = QStringLiteral("Debe indicar el nombre del agente");
    nombre.inGrid = true;
    nombre.width = 20;
    l.append(nombre);
    ui::Column nif = columna("NIF", "NIF", kDatosPersonales);
    // The country is read when the box is left: the shell settles it at start-up.
    nif.normaliser = [](const QString& t) { return normalizarNif(t, ui::appState().pais); };
    l.append(nif);
    l.append(columna("DIRSIGLA", "Tipo de vía", kDatosPersonales));
    l.append(columna("DIR", "Dirección", kDatosPersonales));
    l.append(columna("DIRNUM", "Número", kDatosPersonales));
    l.append(columna("DIRPISO", "Piso", kDatosPersonales));
    l.append(columna("DIRLETRA", "Puerta", kDatosPersonales));
    l.append(columna("CP", "Código postal", kDatosPersonales));
    l.append(columna("POB", "Población", kDatosPersonales));
    l.append(columna("PROVINCIA", "Provincia", kDatosPersonales));
    l.append(columna("PAIS", "País", kDatosPersonales));
    l.append(columna("TEL", "Teléfono", kDatosPersonales));
    l.append(columna("TEL2", "Teléfono 2", kDatosPersonales));
    l.append(columna("TEL_MOVIL", "Móvil", kDatosPersonales));
    l.append(columna("FAX", "Fax", kDatosPersonales));
    l.append(columna("OBSERVACIONES", "Observaciones", kDatosPersonales, K::Memo));

    ui::Column usuario = columna("USUARIO", "Usuario", kAcceso);
    usuario.inGrid = true;
    usuario.width = 10;
    l.append(usuario);
    ui::Column contrasena = columna("CONTRASENA", "Contraseña", kAcceso);
    contrasena.searchable = false;
    l.append(contrasena);
    ui::Column clave = columna("CLAVE_PERSONALES", "Clave de modificación", kAcceso);
    clave.searchable = false;
    l.append(clave);

    ui::Column departamento =
        columna("CODDEPARTAMENTO", "Departamento", kDepartamento, K::Lookup);
    departamento.lookup = QStringLiteral("departamentos");
    departamento.inGrid = true;
    departamento.width = 12;
    l.append(departamento);
    l.append(columna("PORCENTAJE_OPERACIONES", "% de operaciones", kDepartamento, K::Number));
    l.append(columna("PORCENTAJE_CAPTACION", "% de captación", kDepartamento, K::Number));

    for (const Permiso& p : kPermisosAgente)
        l.append(columna(p.columna, p.titulo, kPermisos, K::Flag));
    l.last().inGrid = true; // the administrator flag
    l.last().width = 6;
    return l;
}

bool vacio(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

} // namespace

const ui::Columns& columnasAgentes()
{
    static const ui::Columns columnas = definirColumnas();
    return columnas;
}

const QStringList& restriccionesAgente()
{
    static const QStringList lista = [] {
        QStringList l;
        for (const Permiso& p : kPermisosAgente)
            if (QLatin1String(p.columna) != kAdministrador)
                l.append(QString::fromLatin1(p.columna));
        return l;
    }();
    return lista;
}

bool validarContrasena(Database& db, Transaction& tr, int codigoAgente, const QString& tecleado, QWidget* parent)
{
    Query q(db, tr, QStringLiteral("SELECT CLAVE_PERSONALES FROM AGENTES WHERE CODIGO =:CODIGO "));
    q.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigoAgente);
    q.open();
    const QString guardada = q.eof() ? QString() : q.field(0).asString().trimmed();
    q.close();
    if (guardada.isEmpty())
        return true;
    if (guardada.toUpper() == tecleado.trimmed().toUpper())
        return true;
    ui::dialogs().information(kClaveIncorrecta, parent);
    return false;
}

bool usuarioEnUso(Database& db, Transaction& tr, const QString& usuario, int codigoAgente)
{
    const QString buscado = usuario.trimmed();
    if (buscado.isEmpty())
        return false;
    // Compared here rather than with UPPER in SQL: the column's character set
    // would fold accented letters differently from what the user typed.
    Query q(db, tr, QStringLiteral("SELECT USUARIO FROM AGENTES WHERE CODIGO <> :CODIGO AND USUARIO IS NOT NULL"));
    q.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigoAgente);
    bool enUso = false;
    for (q.open(); !q.eof() && !enUso; q.next())
        enUso = q.field(0).asString().trimmed().compare(buscado, Qt::CaseInsensitive) == 0;
    q.close();
    return enUso;
}

bool puedeAbrirAgentes(Tdm& data, QWidget* parent)
{
    return puedeAbrirPantallaDeAdministrador(data, parent);
}

void registrarAgentes()
{
    ui::Command c;
    c.id = QStringLiteral("agentes");
    c.factory = [](QWidget* parent) -> QWidget* { return new TfrmAgentes(*dm, parent); };
    c.openAs = ui::OpenAs::Modal;
    c.allowed = [](QWidget* parent) { return puedeAbrirAgentes(*dm, parent); };
    ui::commands().add(c);
}

// ------------------------------------------------------------------ screen

TfrmAgentes::TfrmAgentes(Tdm& modulo, QWidget* parent)
    : RecordScreen(parent), mData(modulo), mDs(std::make_unique<DataSet>(modulo.datos, modulo.Transacion))
{
    setObjectName(QStringLiteral("TfrmAgentes"));
    setWindowTitle(QStringLiteral("Agentes"));
    mDs->setTable(QStringLiteral("AGENTES"), {kCodigo});
    mDs->setSelectSQL(QStringLiteral("SELECT * FROM AGENTES ORDER BY CODIGO"));
    mDs->onNewRecord += [this](DataSet& ds) { nuevoRegistro(ds); };
    // A rule of the data, not of the box: however the flag becomes "S", an
    // administrator is left with no restriction.
    mDs->setOnChange(kAdministrador, [this](DataSetField f) {
        if (!sql::isSet(f.value()))
            return;
        for (const QString& c : restriccionesAgente())
            mDs->fieldByName(c).setValue(QStringLiteral("N"));
    });
    setDataSet(mDs.get());
    setOwnership(ui::Ownership::agentes());
    mDs->open();

    auto* layout = new QHBoxLayout(body());
    layout->setContentsMargins(8, 8, 8, 8);
    auto* splitter = new QSplitter(Qt::Horizontal, body());
    splitter->setChildrenCollapsible(false);
    layout->addWidget(splitter);

    // The list titles the administrator flag briefly: the form's caption
    // would make a column of ticks as wide as a name.
    ui::Columns lista = columnasAgentes();
    for (ui::Column& c : lista)
        if (c.column == kAdministrador)
            c.caption = QStringLiteral("Admin.");
    mGrid = new ui::DataGrid(mDs.get(), lista, QStringLiteral("agentes"), splitter);
    mGrid->setSheetName(QStringLiteral("Agentes"));
    mGrid->setDescriber([this](const QString& lookup, const QVariant& code) {
        return ui::lookups().description(mData.datos, mData.Transacion, lookup, code);
    });
    splitter->addWidget(mGrid);

    auto* scroll = new QScrollArea(splitter);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* form = new QWidget(scroll);
    construirFormulario(form);
    scroll->setWidget(form);
    splitter->addWidget(scroll);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({530, 750});

    connect(mDs.get(), &DataSet::currentChanged, this, [this] {
        // A password typed for one agent never unlocks another.
        mClaveModificacion->clear();
        seguirAdministrador();
    });
    connect(mDs.get(), &DataSet::rowChanged, this, &TfrmAgentes::seguirAdministrador);
    connect(mDs.get(), &DataSet::stateChanged, this, &TfrmAgentes::seguirAdministrador);
    connect(mDs.get(), &DataSet::reset, this, &TfrmAgentes::seguirAdministrador);
    connect(this, &RecordScreen::saved, mClaveModificacion, &QLineEdit::clear);

    mDs->last();
    seguirAdministrador();
    resize(1300, 720);
    updateActions();
}

TfrmAgentes::~TfrmAgentes()
{
    // Hiding moves the focus out of a box, whose leave handler reaches the
    // data set: let that happen while the data set still exists.
    hide();
}

void TfrmAgentes::construirFormulario(QWidget* form)
{
    // One group per page of the column table; a memo spans the group's width.
    auto grupo = [this, form](const QString& titulo, int porFila) {
        auto* box = new QGroupBox(titulo, form);
        auto* grid = new QGridLayout(box);
        grid->setHorizontalSpacing(10);
        ui::Columns campos;
        ui::Columns memos;
        for (const ui::Column& c : columnasAgentes())
            if (c.page == titulo)
                (c.kind == ui::ColumnKind::Memo ? memos : campos).append(c);
        buildFields(grid, campos, porFila);
        for (int i = 0; i < porFila; ++i)
            grid->setColumnStretch(2 * i + 1, 1);
        for (ui::FieldBinder* b : buildFields(grid, memos, 1)) {
            QWidget* memo = b->control();
            int row = 0, column = 0, rowSpan = 0, columnSpan = 0;
            grid->getItemPosition(grid->indexOf(memo), &row, &column, &rowSpan, &columnSpan);
            grid->removeWidget(memo);
            grid->addWidget(memo, row, column, 1, 2 * porFila - 1);
            grid->setRowStretch(row, 1);
        }
        return std::pair{box, grid};
    };

    auto [personales, gridPersonales] = grupo(kDatosPersonales, 2);
    auto [acceso, gridAcceso] = grupo(kAcceso, 1);
    auto [departamento, gridDepartamento] = grupo(kDepartamento, 1);
    auto [permisos, gridPermisos] = grupo(kPermisos, 1);
    Q_UNUSED(gridPersonales);
    gridPermisos->setRowStretch(gridPermisos->rowCount(), 1);

    // Typed by an agent who is not an administrator to save changes to a
    // record protected by a modification password.
    auto* etiqueta = new QLabel(QStringLiteral("Clave para grabar"), acceso);
    mClaveModificacion = new QLineEdit(acceso);
    mClaveModificacion->setObjectName(QStringLiteral("uClaveModificacion"));
    mClaveModificacion->setEchoMode(QLineEdit::Password);
    mClaveModificacion->setToolTip(
        QStringLiteral("Clave de modificación actual del agente, necesaria para grabar cambios en su ficha"));
    etiqueta->setBuddy(mClaveModificacion);
    const int fila = gridAcceso->rowCount();
    gridAcceso->addWidget(etiqueta, fila, 0);
    gridAcceso->addWidget(mClaveModificacion, fila, 1);
    // Administrators change any agent without it.
    const bool pedirClave = !ui::currentAgent().administrador;
    etiqueta->setVisible(pedirClave);
    mClaveModificacion->setVisible(pedirClave);

    // The two stacked groups share one caption width, so their boxes line up.
    int ancho = 0;
    for (QGridLayout* g : {gridAcceso, gridDepartamento})
        for (int r = 0; r < g->rowCount(); ++r)
            if (QLayoutItem* item = g->itemAtPosition(r, 0); item && item->widget())
                ancho = qMax(ancho, item->widget()->sizeHint().width());
    gridAcceso->setColumnMinimumWidth(0, ancho);
    gridDepartamento->setColumnMinimumWidth(0, ancho);

    for (const char* columna : {"CONTRASENA", "CLAVE_PERSONALES"})
        if (auto* e = qobject_cast<QLineEdit*>(controlFor(QLatin1String(columna))))
            e->setEchoMode(QLineEdit::Password);
    if (QWidget* key = controlFor(kCodigo))
        key->setEnabled(false); // drawn from CODAGENTE, never typed

    auto* v = new QVBoxLayout(form);
    v->setContentsMargins(0, 0, 0, 0);
    v->addWidget(personales, 1);
    auto* abajo = new QHBoxLayout;
    auto* izquierda = new QVBoxLayout;
    izquierda->addWidget(acceso);
    izquierda->addWidget(departamento);
    izquierda->addStretch();
    abajo->addLayout(izquierda, 1);
    abajo->addWidget(permisos, 1);
    v->addLayout(abajo);
}

void TfrmAgentes::nuevoRegistro(DataSet& ds)
{
    ds.fieldByName(kCodigo).setValue(
        Query::scalar(mData.datos, mData.Transacion, QStringLiteral("SELECT CODIGO FROM CODAGENTE")));
    ds.fieldByName(QStringLiteral("FECHAALTA")).setValue(QDate::currentDate().startOfDay());
    for (const Permiso& p : kPermisosAgente)
        ds.fieldByName(QLatin1String(p.columna)).setValue(QStringLiteral("N"));
    if (!ui::appState().pais.isEmpty())
        ds.fieldByName(QStringLiteral("PAIS")).setValue(ui::appState().pais);
}

void TfrmAgentes::seguirAdministrador()
{
    const bool hayFila = mDs->isOpen() && mDs->recNo() >= 0;
    const bool administrador = hayFila && sql::isSet(mDs->fieldByName(kAdministrador).value());
    for (const QString& c : restriccionesAgente())
        if (QWidget* box = controlFor(c))
            box->setEnabled(!administrador);
}

bool TfrmAgentes::ValidarContrasena(const QString& tecleado)
{
    const bool hayFila = mDs->isOpen() && mDs->recNo() >= 0;
    const int codigo = hayFila ? mDs->fieldByName(kCodigo).asInteger() : 0;
    return validarContrasena(mData.datos, mData.Transacion, codigo, tecleado, this);
}

void TfrmAgentes::edNifExit()
{
    // The column's normaliser is wired to the box's editingFinished: leaving
    // the box is exactly that signal, so both paths run the same code.
    if (auto* box = qobject_cast<QLineEdit*>(controlFor(kNif)))
        Q_EMIT box->editingFinished();
}

bool TfrmAgentes::validar()
{
    if (!checkColumns(columnasAgentes()))
        return false;

    // Saving from the toolbar does not leave the NIF box, so its rule runs
    // here too.
    const ui::Column* nif = ui::find(columnasAgentes(), kNif);
    DataSetField campoNif = mDs->fieldByName(kNif);
    const QString tecleado = campoNif.asString();
    if (nif && nif->normaliser && !tecleado.trimmed().isEmpty()) {
        const QString normal = nif->normaliser(tecleado);
        if (normal != tecleado)
            campoNif.setValue(normal.isEmpty() ? QVariant() : QVariant(normal));
        if (normal == kNifErroneo)
            return fail(kNifIncorrecto, controlFor(kNif));
    }

    const int codigo = mDs->fieldByName(kCodigo).asInteger();
    if (usuarioEnUso(mData.datos, mData.Transacion, mDs->fieldByName(QStringLiteral("USUARIO")).asString(), codigo))
        return fail(kUsuarioRepetido, controlFor(QStringLiteral("USUARIO")));

    for (const Porcentaje& p : kPorcentajes) {
        const QVariant v = mDs->fieldByName(QLatin1String(p.columna)).value();
        if (!vacio(v) && (v.toDouble() < 0 || v.toDouble() > 100))
            return fail(QString::fromUtf8(p.mensaje), controlFor(QLatin1String(p.columna)));
    }

    if (!ui::currentAgent().administrador && mDs->state() == DataSet::State::Edit &&
        !ValidarContrasena(mClaveModificacion->text())) {
        mClaveModificacion->setFocus(Qt::OtherFocusReason);
        mClaveModificacion->selectAll();
        return false;
    }
    return true;
}

QWidget* TfrmAgentes::primerCampo() const
{
    return controlFor(QStringLiteral("APEYNOM"));
}

void TfrmAgentes::closeEvent(QCloseEvent* event)
{
    RecordScreen::closeEvent(event);
    if (event->isAccepted())
        recargarAgenteActual();
}

void TfrmAgentes::recargarAgenteActual()
{
    try {
        mData.cargarAgente(mData.agente.codigo);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
    }
}

} // namespace tv::lookups
