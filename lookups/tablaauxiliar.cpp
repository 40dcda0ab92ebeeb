#include "tablaauxiliar.h"

#include "datagrid.h"
#include "dialogs.h"
#include "dm.h"
#include "ownership.h"

#include <QComboBox>
#include <QCompleter>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tv::lookups {

namespace {

const QString kSinPrivilegios = QStringLiteral("No tiene privilegios para acceder a esta pantalla");

} // namespace

bool puedeAbrirPantallaDeAdministrador(Tdm& data, QWidget* parent)
{
    if (ui::currentAgent().administrador)
        return true;
    const QVariant n = Query::scalar(data.datos, data.Transacion,
                                     QStringLiteral("select count(*) from agentes a where a.administrador ='S' "));
    if (n.toLongLong() == 0)
        return true;
    ui::dialogs().information(kSinPrivilegios, parent);
    return false;
}

TablaAuxiliar::TablaAuxiliar(Tdm& data, const TablaDef& def, QWidget* parent)
    : RecordScreen(parent), mData(data), mDef(def), mDs(std::make_unique<DataSet>(data.datos, data.Transacion))
{
    setObjectName(def.clase);
    setWindowTitle(def.titulo);
    mDs->setTable(def.tabla, {QStringLiteral("CODIGO")});
    if (!def.columnaPadre.isEmpty())
        mDs->setSelectSQL(QStringLiteral("select * from ") + def.tabla + QStringLiteral(" where ") + def.columnaPadre +
                          QStringLiteral(" =:") + def.columnaPadre);
    mDs->onNewRecord += [this](DataSet& ds) { nuevoRegistro(ds); };
    mDs->beforeInsert += [this](DataSet& ds) { antesDeInsertar(ds); };
    mDs->beforePost += [this](DataSet& ds) { alGrabar(ds); };
    setDataSet(mDs.get());

    auto* layout = new QVBoxLayout(body());
    layout->setContentsMargins(10, 10, 10, 10);
    if (!def.columnaPadre.isEmpty()) {
        auto* row = new QHBoxLayout;
        auto* label = new QLabel(QStringLiteral("Municipio"), body());
        mPadre = new QComboBox(body());
        mPadre->setObjectName(QStringLiteral("cbMunicipio"));
        mPadre->setEditable(true);
        mPadre->setInsertPolicy(QComboBox::NoInsert);
        mPadre->setMinimumWidth(320);
        label->setBuddy(mPadre);
        row->addWidget(label);
        row->addWidget(mPadre, 1);
        layout->addLayout(row);
        Query q(data.datos, data.Transacion,
                QStringLiteral("SELECT CODIGOINE, DESMUNIINE, DESPROVINCIA FROM MUNICIPIOS "
                               "WHERE CODIGOINE IS NOT NULL ORDER BY DESMUNIINE, DESPROVINCIA"));
        mPadre->addItem(QString(), QVariant());
        for (q.open(); !q.eof(); q.next())
            mPadre->addItem(q.field(1).asString().trimmed() + QStringLiteral(" (") + q.field(2).asString().trimmed() +
                                QLatin1Char(')'),
                            q.field(0).value());
        q.close();
        mPadre->completer()->setFilterMode(Qt::MatchContains);
        mPadre->completer()->setCaseSensitivity(Qt::CaseInsensitive);
        mPadre->completer()->setCompletionMode(QCompleter::PopupCompletion);
        mPadre->setCurrentIndex(0);
        connect(mPadre, &QComboBox::currentIndexChanged, this, [this] { abrirPadre(); });
        // The list belongs to one municipality: it stays while a row is being edited.
        connect(mDs.get(), &DataSet::stateChanged, mPadre, [this] { mPadre->setEnabled(!mDs->isEditing()); });
    }

    mGrid = new ui::DataGrid(mDs.get(), def.columnas, def.clase, body());
    mGrid->setObjectName(QStringLiteral("rejilla"));
    mGrid->setSheetName(def.titulo);
    mGrid->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(mGrid, 1);

    // The record's boxes, on pages when some columns ask for one.
    ui::Columns first;
    QList<QPair<QString, ui::Columns>> pages;
    for (const ui::Column& c : def.columnas) {
        if (c.page.isEmpty()) {
            first.append(c);
            continue;
        }
        auto it = std::find_if(pages.begin(), pages.end(), [&](const auto& p) { return p.first == c.page; });
        if (it == pages.end())
            pages.append({c.page, {c}});
        else
            it->second.append(c);
    }
    if (def.columnaPadre.isEmpty())
        mDs->open();
    else
        abrirPadre();
    auto* form = new QWidget(body());
    auto* grid = new QGridLayout(form);
    grid->setContentsMargins(0, 6, 0, 0);
    buildFields(grid, first, 1);
    if (pages.isEmpty()) {
        layout->addWidget(form);
    } else {
        auto* tabs = new QTabWidget(body());
        tabs->addTab(form, QStringLiteral("General"));
        for (const auto& [title, cols] : pages) {
            auto* page = new QWidget(tabs);
            buildFields(new QGridLayout(page), cols, 1);
            tabs->addTab(page, title);
        }
        layout->addWidget(tabs);
    }
    if (QWidget* key = controlFor(QStringLiteral("CODIGO")))
        key->setEnabled(false); // drawn by the database, never typed
    resize(560, 460);
    updateActions();
}

TablaAuxiliar::~TablaAuxiliar() = default;

QVariant TablaAuxiliar::padre() const
{
    if (!mPadre)
        return {};
    return mPadre->currentData();
}

void TablaAuxiliar::setPadre(const QVariant& codigo)
{
    if (!mPadre)
        return;
    const int i = codigo.isValid() ? mPadre->findData(codigo) : 0;
    mPadre->setCurrentIndex(i < 0 ? 0 : i);
}

void TablaAuxiliar::abrirPadre()
{
    const QVariant p = padre();
    mDs->close();
    if (p.isValid() && !p.isNull())
        mDs->paramByName(mDef.columnaPadre).setValue(p);
    else
        mDs->paramByName(mDef.columnaPadre).setValue(QVariant());
    mDs->open();
    updateActions();
}

void TablaAuxiliar::antesDeInsertar(DataSet&)
{
    if (mDef.columnaPadre.isEmpty())
        return;
    const QVariant p = padre();
    if (!p.isValid() || p.isNull()) {
        ui::dialogs().warning(mDef.mensajeSinPadre, this);
        throw Abort();
    }
}

void TablaAuxiliar::nuevoRegistro(DataSet& ds)
{
    if (!mDef.procedimiento.isEmpty())
        ds.fieldByName(QStringLiteral("CODIGO"))
            .setValue(Query::scalar(mData.datos, mData.Transacion,
                                    QStringLiteral("SELECT CODIGO FROM ") + mDef.procedimiento));
    if (!mDef.columnaPadre.isEmpty())
        ds.fieldByName(mDef.columnaPadre).setValue(padre());
}

void TablaAuxiliar::alGrabar(DataSet& ds)
{
    // The generator's value is drawn only for a row that really is stored.
    if (!mDef.generador.isEmpty() && ds.fieldByName(QStringLiteral("CODIGO")).value().isNull())
        ds.fieldByName(QStringLiteral("CODIGO")).setValue(Query::genId(mData.datos, mData.Transacion, mDef.generador));
}

bool TablaAuxiliar::validar()
{
    return checkColumns(mDef.columnas);
}

bool TablaAuxiliar::puedeBorrar()
{
    if (mDef.sqlBorrado.isEmpty())
        return true;
    Query q(mData.datos, mData.Transacion, mDef.sqlBorrado);
    const QVariant code = mDs->fieldByName(QStringLiteral("CODIGO")).value();
    for (const QString& name : q.paramNames())
        q.paramByName(name).setValue(code);
    q.open();
    const qlonglong n = q.eof() ? 0 : q.field(0).value().toLongLong();
    q.close();
    if (n <= 0)
        return true;
    if (mDef.borradoEsError)
        ui::dialogs().error(mDef.mensajeBorrado, this);
    else
        ui::dialogs().warning(mDef.mensajeBorrado, this);
    return false;
}

QWidget* TablaAuxiliar::primerCampo() const
{
    if (QWidget* w = controlFor(QStringLiteral("DESCRIPCION")))
        return w;
    return RecordScreen::primerCampo();
}

} // namespace tv::lookups
