#include "frmmunicipio.h"

#include "commands.h"
#include "datagrid.h"
#include "dialogs.h"
#include "dm.h"
#include "frmaltamunicipio.h"
#include "icons.h"
#include "lookupcatalogue.h"
#include "sqltext.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

using ui::Column;
using ui::ColumnKind;

const QString kTabla = QStringLiteral("MUNICIPIOS");
const QString kId = QStringLiteral("ID");

TfrmMunicipio::ModalRunner& modalRunner()
{
    static TfrmMunicipio::ModalRunner runner;
    return runner;
}

Column columna(const char* campo, const char* titulo, int ancho, ColumnKind kind = ColumnKind::Text)
{
    Column c{QString::fromLatin1(campo), QString::fromUtf8(titulo), kind};
    c.width = ancho;
    return c;
}

// Keys that move through a list, sent from the search box to the grid so
// the user can walk the results without leaving the box.
bool esTeclaDeLista(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

class PasarTeclasALista : public QObject {
public:
    PasarTeclasALista(QWidget* lista, QObject* parent) : QObject(parent), mLista(lista) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress) {
            auto* key = static_cast<QKeyEvent*>(event);
            if (esTeclaDeLista(key->key()) && key->modifiers() == Qt::NoModifier) {
                QKeyEvent copy(QEvent::KeyPress, key->key(), key->modifiers(), key->text());
                QApplication::sendEvent(mLista, &copy);
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget* mLista;
};

} // namespace

QString sqlBuscarMunicipios(const QString& texto)
{
    QString sql = QStringLiteral(" select DESMUNIINE,CODIGOINE, DESPROVINCIA, ID,DESPAIS from MUNICIPIOS ");
    if (!texto.trimmed().isEmpty())
        sql += QStringLiteral("WHERE DESMUNIINE STARTING WITH ") + sql::quote(texto);
    return sql;
}

Lugar lugarElegido(const QString& provincia, const QString& municipio, const QString& pais)
{
    return {provincia.left(35).trimmed(), municipio.left(30).trimmed(), pais.trimmed()};
}

const ui::Columns& TfrmMunicipio::columnas()
{
    static const ui::Columns columns = [] {
        ui::Columns c{columna("DESMUNIINE", "Municipio", 32), columna("CODIGOINE", "Código INE", 9, ColumnKind::Integer),
                      columna("DESPROVINCIA", "Provincia", 22), columna("DESPAIS", "País", 12),
                      columna("ID", "Id", 6, ColumnKind::Integer)};
        c.last().inGrid = false;
        return c;
    }();
    return columns;
}

TfrmMunicipio::TfrmMunicipio(Tdm& datos, QWidget* parent)
    : QDialog(parent), mData(datos), mDs(std::make_unique<DataSet>(datos.datos, datos.Transacion))
{
    setObjectName(QStringLiteral("TfrmMunicipio"));
    setWindowTitle(QStringLiteral("Municipios"));
    mDs->setTable(kTabla, {kId});
    mDs->setSelectSQL(sqlBuscarMunicipios(QString()));
    mDs->beforePost += [this](DataSet& ds) { asignarId(ds); };
    // Each post is stored at once, so what the dialog accepted is never
    // left waiting behind the list.
    mDs->afterPost += [this](DataSet& ds) { aplicar(ds); };

    auto* layout = new QVBoxLayout(this);
    auto* fila = new QHBoxLayout;
    auto* etiqueta = new QLabel(QStringLiteral("&Buscar:"), this);
    mBuscar = new QLineEdit(this);
    mBuscar->setObjectName(QStringLiteral("edBuscar"));
    mBuscar->setPlaceholderText(QStringLiteral("Comienzo del nombre del municipio"));
    mBuscar->setClearButtonEnabled(true);
    etiqueta->setBuddy(mBuscar);
    fila->addWidget(etiqueta);
    fila->addWidget(mBuscar, 1);
    layout->addLayout(fila);

    mGrid = new ui::DataGrid(mDs.get(), columnas(), QStringLiteral("TfrmMunicipio"), this);
    mGrid->setSheetName(QStringLiteral("Municipios"));
    // The name takes the room the other columns leave.
    mGrid->horizontalHeader()->setSectionResizeMode(mGrid->columnOf(QStringLiteral("DESMUNIINE")),
                                                    QHeaderView::Stretch);
    layout->addWidget(mGrid, 1);
    mBuscar->installEventFilter(new PasarTeclasALista(mGrid, this));

    auto* botones = new QHBoxLayout;
    mNuevo = new QPushButton(ui::themeIcon(QStringLiteral("document-new")), QStringLiteral("Nuevo"), this);
    mNuevo->setObjectName(QStringLiteral("cxButton2"));
    mModificar = new QPushButton(ui::themeIcon(QStringLiteral("document-edit")), QStringLiteral("Modificar"), this);
    mModificar->setObjectName(QStringLiteral("cxButton1"));
    mAceptar = new QPushButton(ui::themeIcon(QStringLiteral("dialog-ok")), QStringLiteral("Aceptar"), this);
    mAceptar->setObjectName(QStringLiteral("btnAceptar"));
    mCancelar = new QPushButton(ui::themeIcon(QStringLiteral("dialog-cancel")), QStringLiteral("Cancelar"), this);
    mCancelar->setObjectName(QStringLiteral("btnCancelar"));
    // Enter anywhere but on another button accepts: the search box leaves
    // Return to the dialog, which presses its one default button.
    for (QPushButton* b : {mNuevo, mModificar, mCancelar})
        b->setAutoDefault(false);
    mAceptar->setDefault(true);
    botones->addWidget(mNuevo);
    botones->addWidget(mModificar);
    botones->addStretch(1);
    botones->addWidget(mAceptar);
    botones->addWidget(mCancelar);
    layout->addLayout(botones);

    connect(mBuscar, &QLineEdit::textChanged, this, &TfrmMunicipio::buscar);
    connect(mAceptar, &QPushButton::clicked, this, &QDialog::accept);
    connect(mCancelar, &QPushButton::clicked, this, &QDialog::reject);
    connect(mModificar, &QPushButton::clicked, this, &TfrmMunicipio::modificar);
    connect(mNuevo, &QPushButton::clicked, this, &TfrmMunicipio::nuevo);
    connect(mGrid, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.isValid())
            mAceptar->click();
    });
    connect(mDs.get(), &DataSet::reset, this, &TfrmMunicipio::actualizarBotones);
    connect(mDs.get(), &DataSet::currentChanged, this, &TfrmMunicipio::actualizarBotones);
    connect(mDs.get(), &DataSet::rowInserted, this, &TfrmMunicipio::actualizarBotones);
    connect(mDs.get(), &DataSet::rowRemoved, this, &TfrmMunicipio::actualizarBotones);
    actualizarBotones();
    resize(760, 540);
}

TfrmMunicipio::~TfrmMunicipio() = default;

void TfrmMunicipio::setModalRunner(ModalRunner runner)
{
    modalRunner() = std::move(runner);
}

int TfrmMunicipio::runModal(QDialog& dialog)
{
    if (modalRunner())
        return modalRunner()(dialog);
    return dialog.exec();
}

void TfrmMunicipio::openQuery()
{
    buscar();
}

void TfrmMunicipio::closeQuery()
{
    if (!mDs->isOpen())
        return;
    // Anything still unsaved here was refused by the database and told.
    if (mDs->isEditing())
        mDs->cancel();
    if (mDs->updatesPending())
        mDs->cancelUpdates();
    mDs->close();
}

void TfrmMunicipio::buscar()
{
    const int columnaOrden = mGrid->sortColumn();
    const Qt::SortOrder orden = mGrid->sortOrder();
    // The grid is not repainted row by row while the list is read again.
    mGrid->setUpdatesEnabled(false);
    const auto reanudar = qScopeGuard([this] { mGrid->setUpdatesEnabled(true); });
    try {
        mDs->close();
        mDs->setSelectSQL(sqlBuscarMunicipios(mBuscar->text()));
        mDs->open();
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    // An order the user chose on a column header survives the new search.
    if (columnaOrden >= 0)
        mGrid->sortBy(columnaOrden, orden);
    actualizarBotones();
}

void TfrmMunicipio::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    mBuscar->setFocus(Qt::OtherFocusReason);
    mBuscar->selectAll();
}

void TfrmMunicipio::actualizarBotones()
{
    const bool hayFila = mDs->isOpen() && !mDs->isEmpty() && mDs->recNo() >= 0;
    mModificar->setEnabled(hayFila);
    mNuevo->setEnabled(mDs->isOpen());
}

void TfrmMunicipio::modificar()
{
    editar(false);
}

void TfrmMunicipio::nuevo()
{
    editar(true);
}

void TfrmMunicipio::asignarId(DataSet& ds)
{
    // Drawn only for a row that is really stored.
    if (ds.state() == DataSet::State::Insert && ds.fieldByName(kId).isNull())
        ds.fieldByName(kId).setValue(Query::genId(mData.datos, mData.Transacion, QStringLiteral("GEN_MUNIINE")));
}

void TfrmMunicipio::aplicar(DataSet& ds)
{
    ds.applyUpdates();
}

void TfrmMunicipio::editar(bool esNuevo)
{
    if (!mDs->isOpen() || mDs->isEditing())
        return;
    if (!esNuevo && (mDs->isEmpty() || mDs->recNo() < 0))
        return;
    try {
        if (esNuevo)
            mDs->insert();
        else
            mDs->edit();
    } catch (const Abort&) {
        return;
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    int resultado = QDialog::Rejected;
    {
        TfrmAltaMunicipio dialogo(mData, *mDs, this);
        dialogo.setNuevo(esNuevo);
        resultado = runModal(dialogo);
        // However the dialog went, nothing is left half typed.
        if (mDs->isEditing())
            mDs->cancel();
    }
    bool guardado = resultado == QDialog::Accepted;
    if (mDs->updatesPending()) {
        try {
            mDs->applyUpdates();
            guardado = true;
        } catch (const DatabaseError& e) {
            ui::dialogs().error(e.message(), this);
            mDs->cancelUpdates();
            return;
        }
    }
    if (!guardado)
        return;
    try {
        mDs->transaction().commitRetaining();
        ui::lookups().changed(kTabla);
        mGrid->setUpdatesEnabled(false);
        const auto reanudar = qScopeGuard([this] { mGrid->setUpdatesEnabled(true); });
        mDs->refreshKeepingPosition(kId);
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
    }
    actualizarBotones();
}

// ---------------------------------------------------------------- operations

namespace {

// Creates the picker, opens its list, runs it modally, reads what the caller
// wants from it while it is still open, then closes the list and frees it.
template <typename Resultado, typename Leer>
Resultado conSelector(QWidget* parent, Leer leer)
{
    Q_ASSERT(dm);
    try {
        TfrmMunicipio selector(*dm, parent);
        selector.openQuery();
        const bool aceptado = TfrmMunicipio::runModal(selector) == QDialog::Accepted;
        Resultado r = leer(selector, aceptado);
        selector.closeQuery();
        return r;
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), parent);
    }
    return Resultado{};
}

bool hayFilaActual(const DataSet& ds)
{
    return ds.isOpen() && !ds.isEmpty() && ds.recNo() >= 0;
}

} // namespace

void verMunicipios(QWidget* parent)
{
    conSelector<bool>(parent, [](TfrmMunicipio&, bool) { return true; });
}

QString elegirMunicipio(QWidget* parent)
{
    return conSelector<QString>(parent, [](TfrmMunicipio& selector, bool aceptado) {
        DataSet& ds = selector.municipios();
        if (!aceptado)
            return QString();
        ds.transaction().commitRetaining();
        return hayFilaActual(ds) ? ds.fieldByName(QStringLiteral("DESMUNIINE")).asString() : QString();
    });
}

bool elegirLugar(QWidget* parent, QString* provincia, QString* municipio, QString* pais)
{
    return conSelector<bool>(parent, [&](TfrmMunicipio& selector, bool aceptado) {
        DataSet& ds = selector.municipios();
        if (!aceptado || !hayFilaActual(ds))
            return false;
        const Lugar l = lugarElegido(ds.fieldByName(QStringLiteral("DESPROVINCIA")).asString(),
                                     ds.fieldByName(QStringLiteral("DESMUNIINE")).asString(),
                                     ds.fieldByName(QStringLiteral("DESPAIS")).asString());
        if (provincia)
            *provincia = l.provincia;
        if (municipio)
            *municipio = l.municipio;
        if (pais)
            *pais = l.pais;
        return true;
    });
}

void registrarMunicipios()
{
    ui::Command c;
    c.id = QStringLiteral("municipios");
    c.action = [](QWidget* parent) { verMunicipios(parent); };
    ui::commands().add(c);
}

} // namespace tv::lookups
