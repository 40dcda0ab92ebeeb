#include "datagrid.h"

#include "lookupcatalogue.h"

#include "appstate.h"
#include "dataset.h"
#include "dialogs.h"
#include "gridsettings.h"
#include "icons.h"
#include "query.h"
#include "selectorder.h"
#include "selectparts.h"
#include "services.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>
#include <QStyledItemDelegate>

#include <algorithm>
#include <vector>

namespace tv::ui {

namespace {

ColumnFormat formatOf(ColumnKind kind)
{
    switch (kind) {
    case ColumnKind::Text:
        return ColumnFormat::Text;
    case ColumnKind::Integer:
        // Codes and counts as typed: code 12345 is not "12.345".
        return ColumnFormat::Auto;
    case ColumnKind::Number:
        return ColumnFormat::Number;
    case ColumnKind::Money:
        return ColumnFormat::Money;
    case ColumnKind::Date:
        return ColumnFormat::Date;
    case ColumnKind::Flag:
        return ColumnFormat::Flag;
    case ColumnKind::Memo:
        return ColumnFormat::Memo;
    case ColumnKind::RichText:
        return ColumnFormat::RichText;
    case ColumnKind::Lookup:
        return ColumnFormat::Lookup;
    case ColumnKind::Picture:
        break;
    }
    return ColumnFormat::Auto;
}

// The wait cursor for as long as the database is at work.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

// Flags as a check box in the middle of the cell; a click on an editable one
// toggles it through the grid (on the data set's current row only).
class FlagDelegate : public QStyledItemDelegate {
public:
    explicit FlagDelegate(DataGrid* grid) : QStyledItemDelegate(grid), mGrid(grid) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        if (mGrid->dataModel()->columnFormat(index.column()) != ColumnFormat::Flag) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        QStyleOptionViewItem opt = option;
        initStyleOption(&opt, index);
        const Qt::CheckState state = opt.checkState;
        const QWidget* widget = opt.widget;
        QStyle* style = widget ? widget->style() : QApplication::style();
        // Background, selection and focus as any cell, then the box on its own.
        opt.features &= ~QStyleOptionViewItem::HasCheckIndicator;
        opt.text.clear();
        style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);
        QStyleOptionViewItem box = opt;
        box.rect = checkRect(option, index);
        box.state &= ~QStyle::State_HasFocus;
        box.state |= state == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
        style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, widget);
    }

    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override
    {
        if (mGrid->dataModel()->columnFormat(index.column()) != ColumnFormat::Flag)
            return QStyledItemDelegate::editorEvent(event, model, option, index);
        if (event->type() != QEvent::MouseButtonRelease && event->type() != QEvent::MouseButtonDblClick)
            return false; // keys are the grid's; a press selects the row
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() != Qt::LeftButton || !checkRect(option, index).contains(mouse->position().toPoint()))
            return false;
        if (!mGrid->dataModel()->isEditableFlag(index.column()))
            return false;
        if (event->type() == QEvent::MouseButtonDblClick)
            return true; // the second click of a double click is not a third toggle
        mGrid->toggleFlag(index);
        return true;
    }

private:
    QRect checkRect(const QStyleOptionViewItem& option, const QModelIndex& index) const
    {
        QStyleOptionViewItem opt = option;
        initStyleOption(&opt, index);
        opt.features |= QStyleOptionViewItem::HasCheckIndicator;
        const QWidget* widget = option.widget;
        const QStyle* style = widget ? widget->style() : QApplication::style();
        const QSize size = style->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &opt, widget).size();
        return QStyle::alignedRect(option.direction, Qt::AlignCenter, size, option.rect);
    }

    DataGrid* mGrid;
};

} // namespace

// Keeps the grid's selection on the data set's current row: a new current
// row is accepted only once the data set has moved there, and a selection
// of any other row is ignored, so the highlighted row is always the record.
class DataGridSelection : public QItemSelectionModel {
public:
    DataGridSelection(QAbstractItemModel* model, DataGrid* grid) : QItemSelectionModel(model, grid), mGrid(grid) {}

    void setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags command) override
    {
        const DataSet* ds = mGrid->mDs;
        if (!mGrid->mFollowing && index.isValid() && ds->isOpen() && index.row() != ds->recNo() &&
            !mGrid->moveDataSetTo(index.row()))
            return;
        QItemSelectionModel::setCurrentIndex(index, command);
    }

    void select(const QItemSelection& selection, QItemSelectionModel::SelectionFlags command) override
    {
        const DataSet* ds = mGrid->mDs;
        if (!mGrid->mFollowing && ds->isOpen() && ds->recNo() >= 0) {
            for (const QItemSelectionRange& r : selection)
                if (r.top() != ds->recNo() || r.bottom() != ds->recNo())
                    return;
        }
        QItemSelectionModel::select(selection, command);
    }
    using QItemSelectionModel::select;

private:
    DataGrid* mGrid;
};

DataGrid::DataGrid(DataSet* ds, const Columns& columns, const QString& screenKey, QWidget* parent)
    : QTableView(parent), mDs(ds), mModel(new DataSetModel(ds, this)), mScreenKey(screenKey),
      mSettings(std::make_unique<GridSettings>(screenKey, appState().agentUser))
{
    Q_ASSERT(ds);
    setObjectName(QStringLiteral("grid_") + screenKey);
    QList<DataSetModel::Column> modelColumns;
    for (const Column& c : columns) {
        if (!c.inGrid || c.kind == ColumnKind::Picture)
            continue;
        mColumns.append(c);
        modelColumns.append({c.column, c.caption.isEmpty() ? c.column : c.caption, formatOf(c.kind), c.lookup, false,
                             c.insertOnly});
    }
    mModel->setColumns(modelColumns);
    // Named lookups show their catalogue's description; a select given as
    // the lookup (or a screen's own describer) is the screen's business.
    mModel->setDescriber([db = &ds->database(), tr = &ds->transaction()](const QString& lookup, const QVariant& code) {
        if (!lookups().definition(lookup))
            return code.isValid() && !code.isNull() ? code.toString().trimmed() : QString();
        return lookups().description(*db, *tr, lookup, code);
    });
    setModel(mModel);
    // The view's own selection model gives way to the one that follows the data set.
    QItemSelectionModel* own = selectionModel();
    setSelectionModel(new DataGridSelection(mModel, this));
    delete own;

    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setItemDelegate(new FlagDelegate(this));

    QHeaderView* rows = verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(fontMetrics().height() + 8);

    QHeaderView* header = horizontalHeader();
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    header->setHighlightSections(false);
    header->setStretchLastSection(false);
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setMinimumSectionSize(fontMetrics().horizontalAdvance(QLatin1Char('0')) * 3);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QHeaderView::sectionClicked, this, &DataGrid::onHeaderClicked);
    connect(header, &QHeaderView::sectionResized, this, &DataGrid::onSectionResized);
    connect(header, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        std::unique_ptr<QMenu> menu(createHeaderMenu(this));
        menu->exec(horizontalHeader()->viewport()->mapToGlobal(pos));
    });

    connect(mDs, &DataSet::currentChanged, this, &DataGrid::followDataSet);
    connect(mModel, &QAbstractItemModel::modelReset, this, &DataGrid::onModelReset);
    connect(mModel, &DataSetModel::editFailed, this, [this](const QString& message) { dialogs().error(message, this); });

    applyLayout();
    detectSort();
    showSortIndicator();
    followDataSet();
}

DataGrid::~DataGrid() = default;

int DataGrid::columnOf(const QString& field) const
{
    return mModel->columnOf(field);
}

void DataGrid::setDescriber(DataSetModel::Describer describer)
{
    mModel->setDescriber(std::move(describer));
}

void DataGrid::setEditableFlags(bool editable)
{
    for (const Column& c : mColumns)
        if (c.kind == ColumnKind::Flag)
            mModel->setColumnEditable(c.column, editable);
}

void DataGrid::setFlagEditable(const QString& column, bool editable)
{
    const int c = columnOf(column);
    if (c >= 0 && mColumns.at(c).kind == ColumnKind::Flag)
        mModel->setColumnEditable(column, editable);
}

bool DataGrid::toggleFlag(const QModelIndex& index)
{
    if (!index.isValid() || index.model() != mModel || index.row() != mDs->recNo() ||
        !mModel->isEditableFlag(index.column()))
        return false;
    const bool on = mModel->data(index, Qt::CheckStateRole).toInt() == Qt::Checked;
    return mModel->setData(index, on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

// ---- Following the data set -----------------------------------------------

bool DataGrid::moveDataSetTo(int row)
{
    // Moving posts an edit as the classic engines do; the user has not said so.
    if (mDs->isEditing()) {
        dialogs().warning(PendingChangesError::kText, this);
        return false;
    }
    try {
        mDs->moveTo(row);
    } catch (const Abort&) {
        return false; // a scroll hook refused, and said why itself
    } catch (const PendingChangesError& e) {
        dialogs().warning(e.message(), this);
        return false;
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
        return false;
    } catch (const DataSetError& e) {
        dialogs().error(e.message(), this);
        return false;
    }
    return mDs->recNo() == row;
}

void DataGrid::followDataSet()
{
    const int row = mDs->isOpen() ? mDs->recNo() : -1;
    if (row < 0 || row >= mModel->rowCount())
        return;
    int column = currentIndex().isValid() ? currentIndex().column() : -1;
    if (column < 0 || isColumnHidden(column)) {
        column = 0;
        while (column < mModel->columnCount() - 1 && isColumnHidden(column))
            ++column;
    }
    const QModelIndex target = mModel->index(row, column);
    QScopedValueRollback following(mFollowing, true);
    if (currentIndex() != target)
        selectionModel()->setCurrentIndex(target, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    else if (!selectionModel()->isRowSelected(row, {}))
        selectionModel()->select(target, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(target);
}

void DataGrid::onModelReset()
{
    // The screen may have given the data set a select of its own.
    if (mDs->selectSQL() != mSortedSql) {
        detectSort();
        showSortIndicator();
    }
    followDataSet();
}

void DataGrid::keyPressEvent(QKeyEvent* event)
{
    const bool space = event->key() == Qt::Key_Space || event->key() == Qt::Key_Select;
    if (space && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier && currentIndex().isValid()) {
        // The flag under the cursor, else the row's first editable one.
        int column = mModel->isEditableFlag(currentIndex().column()) ? currentIndex().column() : -1;
        for (int c = 0; column < 0 && c < mModel->columnCount(); ++c)
            if (!isColumnHidden(c) && mModel->isEditableFlag(c))
                column = c;
        if (column >= 0) {
            toggleFlag(mModel->index(currentIndex().row(), column));
            event->accept();
            return;
        }
    }
    QTableView::keyPressEvent(event);
}

// ---- Sorting ---------------------------------------------------------------

bool DataGrid::isSortable(int column) const
{
    if (column < 0 || column >= mModel->columnCount())
        return false;
    const ColumnFormat format = mModel->columnFormat(column);
    if (format == ColumnFormat::Memo || format == ColumnFormat::RichText)
        return false;
    const int f = mDs->fieldIndex(mModel->columnField(column));
    if (f < 0)
        return false;
    if (mDs->field(f).isCalculated() || mDs->fieldInfo(f).isBlob())
        return false;
    return true;
}

QString DataGrid::orderTerm(int column, Qt::SortOrder order) const
{
    const QString field = mModel->columnField(column);
    const int f = mDs->fieldIndex(field);
    const FieldInfo info = mDs->fieldInfo(f);
    const SelectParts parts = parseSelect(mDs->selectSQL());
    QString term;
    QString origin;
    if (parts.simple && !info.origin.isEmpty() && (info.relation.isEmpty() || info.relation == parts.table)) {
        // By the column's name, so a large single-table list is still read by keys.
        origin = info.origin.toUpper();
        term = parts.qualified(info.origin);
    } else {
        // Joins, unions and expressions: by its place in the select list.
        term = QString::number(f + 1);
    }
    if (order == Qt::DescendingOrder)
        term += QStringLiteral(" DESC");
    // Equal values keep one order, so the same record is found again.
    if (parts.simple)
        for (const QString& k : mDs->keyFields())
            if (k.toUpper() != origin)
                term += QStringLiteral(", ") + parts.qualified(k);
    return term;
}

bool DataGrid::sortBy(int column, Qt::SortOrder order)
{
    if (!isSortable(column))
        return false;
    if (mDs->isEditing() || mDs->updatesPending()) {
        dialogs().warning(PendingChangesError::kText, this);
        return false;
    }
    const QString before = mDs->selectSQL();
    const QString after = selectOrderedBy(before, orderTerm(column, order));
    const bool wasOpen = mDs->isOpen();

    // The record to stay on: by its key, else by every column of its table.
    QStringList keyFields;
    QVariantList keyValues;
    if (wasOpen && !mDs->isEmpty() && mDs->recNo() >= 0) {
        keyFields = mDs->keyFields();
        if (keyFields.isEmpty())
            for (int f = 0; f < mDs->fieldCount(); ++f) {
                const FieldInfo info = mDs->fieldInfo(f);
                if (!mDs->field(f).isCalculated() && !info.isBlob() && !info.origin.isEmpty())
                    keyFields.append(mDs->fieldNames().at(f));
            }
        for (const QString& k : keyFields)
            keyValues.append(mDs->fieldByName(k).value());
    }

    auto restore = [&] {
        try {
            if (mDs->isOpen())
                mDs->close();
            mDs->setSelectSQL(before);
            if (wasOpen)
                mDs->open();
        } catch (...) {
            // The first failure is the one the user reads.
        }
    };
    {
        WaitCursor wait;
        try {
            mDs->setSelectSQL(after);
            if (wasOpen)
                mDs->open();
        } catch (const PendingChangesError& e) {
            // A detail data set holds changes; nothing was touched.
            dialogs().warning(e.message(), this);
            return false;
        } catch (const DatabaseError& e) {
            restore();
            dialogs().error(e.message(), this);
            return false;
        } catch (const DataSetError& e) {
            restore();
            dialogs().error(e.message(), this);
            return false;
        } catch (const Abort&) {
            restore();
            return false;
        }
        if (!keyFields.isEmpty() && !mDs->isEmpty()) {
            try {
                mDs->locate(keyFields, keyValues);
            } catch (const Abort&) {
                // A scroll hook kept the first row; the list is sorted all the same.
            } catch (const DatabaseError&) {
            }
        }
    }
    mSortColumn = column;
    mSortOrder = order;
    mSortedSql = mDs->selectSQL();
    showSortIndicator();
    followDataSet();
    Q_EMIT sortChanged(column, order);
    return true;
}

void DataGrid::onHeaderClicked(int section)
{
    const Qt::SortOrder order = section == mSortColumn && mSortOrder == Qt::AscendingOrder ? Qt::DescendingOrder
                                                                                           : Qt::AscendingOrder;
    sortBy(section, order);
    // The header turned its own arrow already; show the order the list really has.
    showSortIndicator();
}

void DataGrid::showSortIndicator()
{
    horizontalHeader()->setSortIndicator(mSortColumn, mSortOrder);
}

void DataGrid::detectSort()
{
    mSortColumn = -1;
    mSortOrder = Qt::AscendingOrder;
    const QString sql = withoutTrailingSemicolon(mDs->selectSQL());
    mSortedSql = mDs->selectSQL();
    const OrderSpan span = findOrder(sql);
    if (span.orderStart < 0)
        return;
    QString first = sql.mid(span.termsStart, span.tailStart - span.termsStart).trimmed();
    first = first.section(QLatin1Char(','), 0, 0).trimmed();
    const QStringList tokens = first.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (tokens.isEmpty())
        return;
    const QString name = tokens.first().section(QLatin1Char('.'), -1).toUpper();
    bool positional = false;
    const int position = name.toInt(&positional);
    for (int c = 0; c < mModel->columnCount(); ++c) {
        const QString field = mModel->columnField(c);
        const int f = mDs->fieldIndex(field);
        const bool match = positional ? f == position - 1
                                      : field == name || (f >= 0 && mDs->fieldInfo(f).origin.toUpper() == name);
        if (match) {
            mSortColumn = c;
            mSortOrder = tokens.size() > 1 && tokens.at(1).toUpper().startsWith(QLatin1String("DESC"))
                             ? Qt::DescendingOrder
                             : Qt::AscendingOrder;
            return;
        }
    }
}

} // namespace tv::ui
