#include "frmbancos.h"

#include "commands.h"
#include "datagrid.h"
#include "dialogs.h"
#include "dm.h"
#include "frmaltabancos.h"
#include "frmsucursal.h"
#include "icons.h"
#include "locatebox.h"
#include "lookupcatalogue.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

using ui::Column;

const QString kBancos = QStringLiteral("COMUN_BANCOS");
const QString kSucursales = QStringLiteral("COMUN_SUCURSALES");
const QString kCodBanco = QStringLiteral("CODBANCO");
const QString kDesBanco = QStringLiteral("DESBANCO");
const QString kCodSucur = QStringLiteral("CODSUCUR");
const QString kDesSucur = QStringLiteral("DESSUCUR");

const QString kConfirmarBorrar = QStringLiteral("¿Está seguro de eliminar el registro actual? ");

TfrmBancos::ModalRunner& modalRunner()
{
    static TfrmBancos::ModalRunner runner;
    return runner;
}

bool hayFila(const DataSet& ds)
{
    return ds.isOpen() && !ds.isEmpty() && ds.recNo() >= 0;
}

QPushButton* boton(const char* icono, const char* texto, const char* nombre, QWidget* parent)
{
    auto* b = new QPushButton(ui::themeIcon(QLatin1String(icono)), QString::fromUtf8(texto), parent);
    b->setObjectName(QLatin1String(nombre));
    b->setAutoDefault(false);
    return b;
}

ui::LocateBox* cajaBuscar(DataSet& ds, const QString& campo, const char* nombre, const char* ayuda, QWidget* parent)
{
    auto* caja = new ui::LocateBox(ds, campo, parent);
    caja->setObjectName(QLatin1String(nombre));
    caja->setPlaceholderText(QString::fromUtf8(ayuda));
    caja->setToolTip(QStringLiteral("Se sitúa en la primera fila que empieza por lo escrito"));
    return caja;
}

// One list with its locate boxes over it and its buttons under it.
QGroupBox* panel(const QString& titulo, ui::LocateBox* codigo, ui::LocateBox* nombre, ui::DataGrid* rejilla,
                 const QList<QPushButton*>& botones, QWidget* parent)
{
    auto* grupo = new QGroupBox(titulo, parent);
    auto* layout = new QVBoxLayout(grupo);
    auto* buscar = new QHBoxLayout;
    auto* etiqueta = new QLabel(QStringLiteral("Buscar:"), grupo);
    etiqueta->setBuddy(codigo);
    codigo->setMaximumWidth(codigo->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 10 + 30);
    buscar->addWidget(etiqueta);
    buscar->addWidget(codigo);
    buscar->addWidget(nombre, 1);
    layout->addLayout(buscar);
    layout->addWidget(rejilla, 1);
    auto* fila = new QHBoxLayout;
    for (QPushButton* b : botones)
        fila->addWidget(b);
    fila->addStretch(1);
    layout->addLayout(fila);
    return grupo;
}

} // namespace

bool grabarRegistro(DataSet& ds, QWidget* parent)
{
    try {
        ds.post();
        ds.applyUpdates();
        ds.transaction().commitRetaining();
    } catch (const Abort&) {
        return false;
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), parent);
        // The apply took nothing: the row goes back to edit as it was typed.
        if (!ds.isEditing() && ds.updatesPending() && ds.recNo() >= 0)
            ds.edit();
        return false;
    }
    if (!ds.table().isEmpty())
        ui::lookups().changed(ds.table());
    return true;
}

const ui::Columns& TfrmBancos::columnasBancos()
{
    static const ui::Columns columns = [] {
        ui::Columns c = TfrmAltaBancos::columnas();
        // The suffix is the bank's own reference for remittances: not a list column.
        for (Column& col : c)
            if (col.column == QLatin1String("SUFIJO"))
                col.inGrid = false;
        return c;
    }();
    return columns;
}

const ui::Columns& TfrmBancos::columnasSucursales()
{
    return TfrmSucursal::columnas();
}

TfrmBancos::TfrmBancos(Tdm& datos, QWidget* parent)
    : QDialog(parent), mData(datos), mBancos(std::make_unique<DataSet>(datos.datos, datos.Transacion)),
      mSucursales(std::make_unique<DataSet>(datos.datos, datos.Transacion))
{
    setObjectName(QStringLiteral("TfrmBancos"));
    setWindowTitle(QStringLiteral("Bancos"));

    mBancos->setTable(kBancos, {kCodBanco});
    mBancos->setSelectSQL(QStringLiteral("SELECT * FROM COMUN_BANCOS ORDER BY CODBANCO"));
    // No primary key on the branches: the pair is unique. The bank's code
    // is compared as the banks' column, which is longer than the branches'.
    mSucursales->setTable(kSucursales, {kCodBanco, kCodSucur});
    mSucursales->setSelectSQL(QStringLiteral("SELECT * FROM COMUN_SUCURSALES "
                                             "WHERE CODBANCO = CAST(:CODBANCO AS VARCHAR(6)) ORDER BY CODSUCUR"));
    mSucursales->setMasterSource(mBancos.get(), {kCodBanco});
    mSucursales->onNewRecord += [this](DataSet& ds) {
        ds.fieldByName(kCodBanco).setValue(mBancos->fieldByName(kCodBanco).value());
    };

    mRejillaBancos = new ui::DataGrid(mBancos.get(), columnasBancos(), QStringLiteral("TfrmBancos.bancos"), this);
    mRejillaBancos->setSheetName(QStringLiteral("Bancos"));
    mRejillaSucursales =
        new ui::DataGrid(mSucursales.get(), columnasSucursales(), QStringLiteral("TfrmBancos.sucursales"), this);
    mRejillaSucursales->setSheetName(QStringLiteral("Sucursales"));
    // The names take the room the codes leave.
    mRejillaBancos->horizontalHeader()->setSectionResizeMode(mRejillaBancos->columnOf(kDesBanco), QHeaderView::Stretch);
    mRejillaSucursales->horizontalHeader()->setSectionResizeMode(mRejillaSucursales->columnOf(kDesSucur),
                                                                 QHeaderView::Stretch);

    mBuscarCodBanco = cajaBuscar(*mBancos, kCodBanco, "edCodBanco", "Código", this);
    mBuscarDesBanco = cajaBuscar(*mBancos, kDesBanco, "edDesBanco", "Nombre del banco", this);
    mBuscarCodSucur = cajaBuscar(*mSucursales, kCodSucur, "edCodSucur", "Código", this);
    mBuscarDesSucur = cajaBuscar(*mSucursales, kDesSucur, "edDesSucur", "Nombre de la sucursal", this);

    mNuevoBanco = boton("document-new", "Nuevo", "btnNuevoBanco", this);
    mModificarBanco = boton("document-edit", "Modificar", "btnModificarBanco", this);
    mBorrarBanco = boton("edit-delete", "Borrar", "btnBorrarBanco", this);
    mNuevaSucursal = boton("document-new", "Nueva", "btnNuevaSucursal", this);
    mModificarSucursal = boton("document-edit", "Modificar", "btnModificarSucursal", this);
    mBorrarSucursal = boton("edit-delete", "Borrar", "btnBorrarSucursal", this);
    mNuevoBanco->setToolTip(QStringLiteral("Añadir un banco"));
    mModificarBanco->setToolTip(QStringLiteral("Modificar el banco seleccionado"));
    mBorrarBanco->setToolTip(QStringLiteral("Eliminar el banco seleccionado y sus sucursales"));
    mNuevaSucursal->setToolTip(QStringLiteral("Añadir una sucursal al banco seleccionado"));
    mModificarSucursal->setToolTip(QStringLiteral("Modificar la sucursal seleccionada"));
    mBorrarSucursal->setToolTip(QStringLiteral("Eliminar la sucursal seleccionada"));

    auto* layout = new QVBoxLayout(this);
    auto* divisor = new QSplitter(Qt::Horizontal, this);
    divisor->setChildrenCollapsible(false);
    divisor->addWidget(panel(QStringLiteral("Bancos"), mBuscarCodBanco, mBuscarDesBanco, mRejillaBancos,
                             {mNuevoBanco, mModificarBanco, mBorrarBanco}, divisor));
    divisor->addWidget(panel(QStringLiteral("Sucursales del banco"), mBuscarCodSucur, mBuscarDesSucur,
                             mRejillaSucursales, {mNuevaSucursal, mModificarSucursal, mBorrarSucursal}, divisor));
    divisor->setStretchFactor(0, 1);
    divisor->setStretchFactor(1, 1);
    layout->addWidget(divisor, 1);
    auto* pie = new QHBoxLayout;
    auto* salir = boton("application-exit", "Salir", "btnSalir", this);
    pie->addStretch(1);
    pie->addWidget(salir);
    layout->addLayout(pie);

    connect(mNuevoBanco, &QPushButton::clicked, this, &TfrmBancos::nuevoBanco);
    connect(mModificarBanco, &QPushButton::clicked, this, &TfrmBancos::modificarBanco);
    connect(mBorrarBanco, &QPushButton::clicked, this, &TfrmBancos::borrarBanco);
    connect(mNuevaSucursal, &QPushButton::clicked, this, &TfrmBancos::nuevaSucursal);
    connect(mModificarSucursal, &QPushButton::clicked, this, &TfrmBancos::modificarSucursal);
    connect(mBorrarSucursal, &QPushButton::clicked, this, &TfrmBancos::borrarSucursal);
    connect(salir, &QPushButton::clicked, this, &QDialog::accept);
    connect(mRejillaBancos, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& i) {
        if (i.isValid())
            modificarBanco();
    });
    connect(mRejillaSucursales, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& i) {
        if (i.isValid())
            modificarSucursal();
    });
    for (DataSet* ds : {mBancos.get(), mSucursales.get()}) {
        connect(ds, &DataSet::reset, this, &TfrmBancos::actualizarBotones);
        connect(ds, &DataSet::currentChanged, this, &TfrmBancos::actualizarBotones);
        connect(ds, &DataSet::rowInserted, this, &TfrmBancos::actualizarBotones);
        connect(ds, &DataSet::rowRemoved, this, &TfrmBancos::actualizarBotones);
        connect(ds, &DataSet::stateChanged, this, &TfrmBancos::actualizarBotones);
    }

    mBancos->open();
    actualizarBotones();
    resize(1040, 580);
}

TfrmBancos::~TfrmBancos() = default;

void TfrmBancos::setModalRunner(ModalRunner runner)
{
    modalRunner() = std::move(runner);
}

int TfrmBancos::runModal(QDialog& dialog)
{
    if (modalRunner())
        return modalRunner()(dialog);
    return dialog.exec();
}

void TfrmBancos::actualizarBotones()
{
    const bool libre = !mBancos->isEditing() && !mSucursales->isEditing();
    const bool banco = hayFila(*mBancos);
    const bool sucursal = hayFila(*mSucursales);
    mNuevoBanco->setEnabled(libre && mBancos->isOpen());
    mModificarBanco->setEnabled(libre && banco);
    mBorrarBanco->setEnabled(libre && banco);
    mNuevaSucursal->setEnabled(libre && banco);
    mModificarSucursal->setEnabled(libre && sucursal);
    mBorrarSucursal->setEnabled(libre && sucursal);
}

void TfrmBancos::descartar(DataSet& ds)
{
    try {
        if (ds.isEditing())
            ds.cancel();
        if (ds.updatesPending())
            ds.cancelUpdates();
    } catch (const Abort&) {
    }
}

void TfrmBancos::nuevoBanco()
{
    editarBanco(true);
}

void TfrmBancos::modificarBanco()
{
    editarBanco(false);
}

void TfrmBancos::nuevaSucursal()
{
    editarSucursal(true);
}

void TfrmBancos::modificarSucursal()
{
    editarSucursal(false);
}

void TfrmBancos::editarBanco(bool nuevo)
{
    if (!mBancos->isOpen() || mBancos->isEditing() || mSucursales->isEditing())
        return;
    if (!nuevo && !hayFila(*mBancos))
        return;
    try {
        if (nuevo)
            mBancos->insert();
        else
            mBancos->edit();
    } catch (const Abort&) {
        return;
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    int resultado = QDialog::Rejected;
    {
        TfrmAltaBancos dialogo(mData, *mBancos, nuevo, this);
        resultado = runModal(dialogo);
    }
    descartar(*mBancos);
    if (resultado == QDialog::Accepted) {
        // A new bank takes its place in the list's order.
        try {
            mBancos->refreshKeepingPosition(kCodBanco);
        } catch (const DatabaseError& e) {
            ui::dialogs().error(e.message(), this);
        }
    }
    actualizarBotones();
}

void TfrmBancos::editarSucursal(bool nuevo)
{
    if (!mSucursales->isOpen() || mBancos->isEditing() || mSucursales->isEditing() || !hayFila(*mBancos))
        return;
    if (!nuevo && !hayFila(*mSucursales))
        return;
    try {
        if (nuevo)
            mSucursales->insert();
        else
            mSucursales->edit();
    } catch (const Abort&) {
        return;
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return;
    }
    int resultado = QDialog::Rejected;
    {
        TfrmSucursal dialogo(mData, *mSucursales, nuevo, mBancos->fieldByName(kDesBanco).asString(), this);
        resultado = runModal(dialogo);
    }
    descartar(*mSucursales);
    if (resultado == QDialog::Accepted) {
        try {
            mSucursales->refresh();
        } catch (const DatabaseError& e) {
            ui::dialogs().error(e.message(), this);
        }
    }
    actualizarBotones();
}

bool TfrmBancos::borrarBanco()
{
    if (!hayFila(*mBancos) || mBancos->isEditing() || mSucursales->isEditing())
        return false;
    if (!ui::dialogs().confirmation(kConfirmarBorrar, this))
        return false;
    const QVariant codigo = mBancos->fieldByName(kCodBanco).value();
    Database& db = mData.datos;
    Transaction& tr = mData.Transacion;
    // The branches and the bank in one unit: a savepoint around both, so a
    // refusal of either takes back the other.
    try {
        Query::execute(db, tr, QStringLiteral("SAVEPOINT TV_BORRAR_BANCO"));
    } catch (const DatabaseError& e) {
        ui::dialogs().error(e.message(), this);
        return false;
    }
    try {
        Query ramas(db, tr,
                    QStringLiteral("DELETE FROM COMUN_SUCURSALES WHERE CODBANCO = CAST(:CODBANCO AS VARCHAR(6))"));
        ramas.paramByName(kCodBanco).setValue(codigo);
        ramas.exec();
        mBancos->remove();
        // Fails, and so takes the branches back, when another workstation
        // changed or deleted the bank since it was read.
        mBancos->applyUpdates();
        Query::execute(db, tr, QStringLiteral("RELEASE SAVEPOINT TV_BORRAR_BANCO"));
        tr.commitRetaining();
    } catch (const DatabaseError& e) {
        try {
            Query::execute(db, tr, QStringLiteral("ROLLBACK TO SAVEPOINT TV_BORRAR_BANCO"));
            Query::execute(db, tr, QStringLiteral("RELEASE SAVEPOINT TV_BORRAR_BANCO"));
        } catch (const DatabaseError&) {
            // The first failure is the one the user must read.
        }
        descartar(*mBancos);
        ui::dialogs().error(e.message(), this);
        return false;
    } catch (const Abort&) {
        try {
            Query::execute(db, tr, QStringLiteral("ROLLBACK TO SAVEPOINT TV_BORRAR_BANCO"));
            Query::execute(db, tr, QStringLiteral("RELEASE SAVEPOINT TV_BORRAR_BANCO"));
        } catch (const DatabaseError&) {
        }
        descartar(*mBancos);
        return false;
    }
    ui::lookups().changed(kBancos);
    ui::lookups().changed(kSucursales);
    actualizarBotones();
    return true;
}

bool TfrmBancos::borrarSucursal()
{
    if (!hayFila(*mSucursales) || mBancos->isEditing() || mSucursales->isEditing())
        return false;
    if (!ui::dialogs().confirmation(kConfirmarBorrar, this))
        return false;
    try {
        mSucursales->remove();
        mSucursales->applyUpdates();
        mSucursales->transaction().commitRetaining();
    } catch (const Abort&) {
        descartar(*mSucursales);
        return false;
    } catch (const DatabaseError& e) {
        // The branch is still in the database: it shows again.
        descartar(*mSucursales);
        ui::dialogs().error(e.message(), this);
        return false;
    }
    ui::lookups().changed(kSucursales);
    actualizarBotones();
    return true;
}

void registrarBancos()
{
    ui::Command c;
    c.id = QStringLiteral("bancos");
    c.factory = [](QWidget* parent) -> QWidget* { return new TfrmBancos(*dm, parent); };
    c.openAs = ui::OpenAs::Modal;
    ui::commands().add(c);
}

} // namespace tv::lookups
