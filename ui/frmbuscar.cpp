#include "frmbuscar.h"

#include "datasetmodel.h"
#include "dataset.h"
#include "dialogs.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QTableView>
#include <QVBoxLayout>

namespace tv::ui {

namespace {

// An integer's longest text, sign included.
constexpr int kLargoEntero = 12;
// QLineEdit's own "no limit".
constexpr int kSinLimite = 32767;

// The data set names a column without the table alias the select may use.
QString nombreCampo(const QString& campo)
{
    return campo.section(QLatin1Char('.'), -1).trimmed().toUpper();
}

// Characters a grid column needs for the values of this kind.
int caracteresPara(const FieldInfo& info)
{
    switch (info.type) {
    case FieldInfo::Type::Text:
        return qBound(4, info.size, 32);
    case FieldInfo::Type::Integer:
        return 8;
    case FieldInfo::Type::Numeric:
    case FieldInfo::Type::Float:
        return 12;
    case FieldInfo::Type::Date:
        return 10;
    case FieldInfo::Type::DateTime:
        return 16;
    case FieldInfo::Type::TextBlob:
        return 30;
    default:
        return 10;
    }
}

} // namespace

std::array<CampoBusqueda, 8>& camposBusqueda()
{
    static std::array<CampoBusqueda, 8> tabla;
    return tabla;
}

void llenarCamposBusqueda(const QList<CampoBusqueda>& campos)
{
    auto& tabla = camposBusqueda();
    for (qsizetype i = 0; i < qsizetype(tabla.size()); ++i)
        tabla[size_t(i)] = i < campos.size() ? campos.at(i) : CampoBusqueda{};
}

QList<CampoBusqueda> camposBusquedaDe(const Columns& columnas)
{
    QList<CampoBusqueda> out;
    for (const Column& c : columnas) {
        if (!c.searchable || c.kind == ColumnKind::Picture || c.caption.isEmpty())
            continue;
        out.append({c.column, c.caption});
        if (out.size() == qsizetype(camposBusqueda().size()))
            break;
    }
    return out;
}

TTfrmBuscar::TTfrmBuscar(Database& db, Transaction& tr, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("TTfrmBuscar"));
    setWindowTitle(QStringLiteral("Busqueda"));
    // A fresh dialog offers nothing until the caller names its columns again.
    for (CampoBusqueda& c : camposBusqueda())
        c.titulo.clear();

    mQry = new DataSet(db, tr, this);
    mQry->setObjectName(QStringLiteral("qrybuscar"));
    mModel = new DataSetModel(mQry, this);

    mCampos = new QComboBox(this);
    mCampos->setObjectName(QStringLiteral("cbCampos"));
    mCampos->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    mCampos->setMinimumContentsLength(16);
    mTexto = new QLineEdit(this);
    mTexto->setObjectName(QStringLiteral("edBuscar"));
    mTexto->installEventFilter(this);
    auto* lbCampos = new QLabel(QStringLiteral("Buscar en"), this);
    lbCampos->setBuddy(mCampos);
    auto* lbTexto = new QLabel(QStringLiteral("Texto"), this);
    lbTexto->setBuddy(mTexto);

    mGrid = new QTableView(this);
    mGrid->setObjectName(QStringLiteral("grid"));
    mGrid->setModel(mModel);
    mGrid->setSelectionBehavior(QAbstractItemView::SelectRows);
    mGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    mGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    mGrid->setAlternatingRowColors(true);
    mGrid->setWordWrap(false);
    mGrid->setTabKeyNavigation(false);
    mGrid->verticalHeader()->hide();
    mGrid->verticalHeader()->setDefaultSectionSize(mGrid->fontMetrics().height() + 6);
    mGrid->horizontalHeader()->setStretchLastSection(true);
    mGrid->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    mGrid->horizontalHeader()->setHighlightSections(false);

    mSeleccionar = new QPushButton(QStringLiteral("&Seleccionar"), this);
    mSeleccionar->setObjectName(QStringLiteral("FlatButton1"));
    // Enter on the grid or the field box chooses the row, as Enter in the text box does.
    mSeleccionar->setDefault(true);
    mCancelar = new QPushButton(QStringLiteral("&Cancelar"), this);
    mCancelar->setObjectName(QStringLiteral("FlatButton2"));
    mCancelar->setAutoDefault(false);

    auto* arriba = new QHBoxLayout;
    arriba->addWidget(lbCampos);
    arriba->addWidget(mCampos);
    arriba->addSpacing(12);
    arriba->addWidget(lbTexto);
    arriba->addWidget(mTexto, 1);
    auto* abajo = new QHBoxLayout;
    abajo->addStretch(1);
    abajo->addWidget(mSeleccionar);
    abajo->addWidget(mCancelar);
    auto* todo = new QVBoxLayout(this);
    todo->addLayout(arriba);
    todo->addWidget(mGrid, 1);
    todo->addLayout(abajo);
    setTabOrder(mCampos, mTexto);
    setTabOrder(mTexto, mGrid);
    setTabOrder(mGrid, mSeleccionar);
    setTabOrder(mSeleccionar, mCancelar);
    resize(640, 420);

    connect(mCampos, &QComboBox::currentIndexChanged, this, &TTfrmBuscar::cambiarCampo);
    connect(mTexto, &QLineEdit::textChanged, this, &TTfrmBuscar::buscarTexto);
    connect(mSeleccionar, &QPushButton::clicked, this, &TTfrmBuscar::seleccionar);
    connect(mCancelar, &QPushButton::clicked, this, &TTfrmBuscar::cancelar);
    connect(mGrid, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (!index.isValid())
            return;
        elegirFilaDeRejilla(index.row());
        seleccionar();
    });
    connect(mGrid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid())
                    elegirFilaDeRejilla(current.row());
            });
    // The model was connected first, so the grid has its new rows when these run.
    connect(mQry, &DataSet::reset, this, [this] {
        ajustarRejilla();
        seguirFilaActual();
    });
    connect(mQry, &DataSet::currentChanged, this, &TTfrmBuscar::seguirFilaActual);
    connect(mGrid->horizontalHeader(), &QHeaderView::sectionResized, this, [this](int section, int, int size) {
        if (mAjustando)
            return;
        const int f = mModel->fieldIndex(section);
        if (f >= 0)
            mAnchos.insert(mQry->fieldNames().value(f), size);
    });
}

TTfrmBuscar::~TTfrmBuscar() = default;

void TTfrmBuscar::setSql(const QString& sql)
{
    mQry->close();
    mQry->setSelectSQL(sql);
}

CampoBusqueda TTfrmBuscar::campoElegido() const
{
    return mCamposMostrados.value(mCampos->currentIndex());
}

int TTfrmBuscar::indiceCampo(const QString& campo) const
{
    return campo.isEmpty() ? -1 : mQry->fieldIndex(nombreCampo(campo));
}

int TTfrmBuscar::tamanoCampo() const
{
    const int i = indiceCampo(campoElegido().campo);
    if (i < 0)
        return 0;
    const FieldInfo info = mQry->fieldInfo(i);
    return info.type == FieldInfo::Type::Text ? info.size : 0;
}

bool TTfrmBuscar::campoEntero() const
{
    const int i = indiceCampo(campoElegido().campo);
    return i >= 0 && mQry->fieldInfo(i).type == FieldInfo::Type::Integer;
}

void TTfrmBuscar::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    // Restoring a minimised window is not a new search.
    if (event->spontaneous())
        return;
    mPartes = partirPorOrder(mQry->selectSQL());
    mCamposMostrados.clear();
    for (const CampoBusqueda& c : camposBusqueda())
        mCamposMostrados.append(c);
    for (const CampoBusqueda& c : std::as_const(mCamposMostrados))
        if (!c.campo.isEmpty() && !c.titulo.isEmpty())
            mModel->setColumnTitle(nombreCampo(c.campo), c.titulo);
    if (!mQry->isOpen())
        abrir();
    prepararCampos();
}

void TTfrmBuscar::prepararCampos()
{
    {
        const QSignalBlocker bloqueo(mCampos);
        mCampos->clear();
        for (const CampoBusqueda& c : std::as_const(mCamposMostrados))
            if (!c.titulo.isEmpty())
                mCampos->addItem(c.titulo);
        mCampos->setCurrentIndex(mCampos->count() > 0 ? 0 : -1);
    }
    cambiarCampo();
    mTexto->setFocus();
}

void TTfrmBuscar::cambiarCampo()
{
    // Emptying a box that held text searches again, over the new column.
    mTexto->clear();
    mTexto->setFocus();
    const int tamano = tamanoCampo();
    mTexto->setMaxLength(campoEntero() ? kLargoEntero : tamano > 0 ? tamano : kSinLimite);
}

void TTfrmBuscar::buscarTexto()
{
    const CampoBusqueda campo = campoElegido();
    if (campo.campo.isEmpty())
        return;
    // Read before closing: the size comes from the open query's metadata.
    const QString condicion = condicionBusqueda(campo.campo, mTexto->text(), tamanoCampo());
    const QString sql = sentenciaBusqueda(mPartes, condicion);
    try {
        mQry->close();
        mQry->setSelectSQL(sql);
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
        return;
    }
    abrir();
}

bool TTfrmBuscar::abrir()
{
    try {
        mQry->open();
        return true;
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
    }
    return false;
}

void TTfrmBuscar::seleccionar()
{
    if (!mQry->isOpen() || mQry->isEmpty())
        return;
    accept();
}

void TTfrmBuscar::cancelar()
{
    reject();
}

bool TTfrmBuscar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != mTexto || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        mSeleccionar->click();
        return true;
    }
    if (key->key() != Qt::Key_Backspace && campoEntero()) {
        // On an integer column a typed character that is not a digit rubs out
        // the previous one instead, as the agency is used to. Keys that type
        // nothing (arrows, Ctrl+C) keep their own meaning.
        const QString t = key->text();
        const bool tecleado = t.size() == 1 && t.at(0).isPrint();
        const bool digito = tecleado && t.at(0) >= QLatin1Char('0') && t.at(0) <= QLatin1Char('9');
        if (tecleado && !digito) {
            mTexto->backspace();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void TTfrmBuscar::ajustarRejilla()
{
    QHeaderView* header = mGrid->horizontalHeader();
    mAjustando = true;
    for (int c = 0; c < mModel->columnCount(); ++c) {
        const int f = mModel->fieldIndex(c);
        if (f < 0)
            continue;
        const QString nombre = mQry->fieldNames().value(f);
        if (!mAnchos.contains(nombre)) {
            const QString titulo = mModel->headerData(c, Qt::Horizontal).toString();
            const int porDatos = mGrid->fontMetrics().averageCharWidth() * caracteresPara(mQry->fieldInfo(f)) + 12;
            const int porTitulo = header->fontMetrics().horizontalAdvance(titulo) + 24;
            mAnchos.insert(nombre, qMax(porDatos, porTitulo));
        }
        header->resizeSection(c, mAnchos.value(nombre));
    }
    mAjustando = false;
}

void TTfrmBuscar::seguirFilaActual()
{
    if (mSiguiendo)
        return;
    const int row = mQry->recNo();
    if (row < 0 || row >= mModel->rowCount() || mModel->columnCount() == 0)
        return;
    mSiguiendo = true;
    const int column = qMax(0, mGrid->currentIndex().column());
    mGrid->setCurrentIndex(mModel->index(row, column));
    mGrid->scrollTo(mGrid->currentIndex());
    mSiguiendo = false;
}

void TTfrmBuscar::elegirFilaDeRejilla(int row)
{
    if (mSiguiendo || row < 0 || row == mQry->recNo())
        return;
    mSiguiendo = true;
    try {
        mQry->moveTo(row);
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
    }
    mSiguiendo = false;
}

QVariantMap filaActual(DataSet& ds)
{
    QVariantMap fila;
    if (!ds.isOpen() || ds.recNo() < 0)
        return fila;
    for (int i = 0; i < ds.fieldCount(); ++i)
        fila.insert(ds.fieldNames().at(i), ds.field(i).value());
    return fila;
}

bool buscar(QWidget* parent, Database& db, Transaction& tr, const QString& sql, const QList<CampoBusqueda>& campos,
            QVariantMap* fila)
{
    TTfrmBuscar dialogo(db, tr, parent);
    llenarCamposBusqueda(campos);
    dialogo.setSql(sql);
    if (dialogo.exec() != QDialog::Accepted)
        return false;
    if (fila)
        *fila = filaActual(*dialogo.qrybuscar());
    return true;
}

} // namespace tv::ui
