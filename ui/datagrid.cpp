#include "datagrid.h"

#include "lookupcatalogue.h"

#include "appstate.h"
#include "dataset.h"
#include "dialogs.h"
#include "gridsettings.h"
#include "icons.h"
#include "query.h"
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

// ---- The ORDER BY of a select, found in its text -------------------------

struct SqlWord {
    QString upper;
    int start;
    int end;
};

// Words at parenthesis depth 0, outside literals and comments.
std::vector<SqlWord> topLevelWords(const QString& sql)
{
    std::vector<SqlWord> words;
    const int n = int(sql.size());
    int depth = 0;
    int i = 0;
    while (i < n) {
        const QChar c = sql[i];
        if (const int end = skipLiteralOrComment(sql, i); end > i) {
            i = end;
        } else if (c == QLatin1Char('(')) {
            ++depth;
            ++i;
        } else if (c == QLatin1Char(')')) {
            --depth;
            ++i;
        } else if (c.isLetter() || c == QLatin1Char('_')) {
            int j = i + 1;
            while (j < n && (sql[j].isLetterOrNumber() || sql[j] == QLatin1Char('_') || sql[j] == QLatin1Char('$') ||
                             sql[j] == QLatin1Char('.')))
                ++j;
            if (depth == 0)
                words.push_back({sql.mid(i, j - i).toUpper(), i, j});
            i = j;
        } else {
            ++i;
        }
    }
    return words;
}

// Where a select's ordering sits: "ORDER" at orderStart (-1 when none), its
// terms from termsStart, and what follows them (ROWS, FOR UPDATE...) from tailStart.
struct OrderSpan {
    int orderStart = -1;
    int termsStart = -1;
    int tailStart = -1;
};

OrderSpan findOrder(const QString& sql)
{
    static const QStringList tailWords = {QStringLiteral("ROWS"), QStringLiteral("OFFSET"), QStringLiteral("FETCH"),
                                          QStringLiteral("FOR"), QStringLiteral("WITH")};
    const std::vector<SqlWord> words = topLevelWords(sql);
    OrderSpan span;
    size_t searchFrom = 0;
    for (size_t k = 0; k < words.size(); ++k) {
        if (words[k].upper == QLatin1String("FROM"))
            searchFrom = k + 1;
        if (words[k].upper == QLatin1String("ORDER") && k + 1 < words.size() && words[k + 1].upper == QLatin1String("BY")) {
            span.orderStart = words[k].start;
            span.termsStart = words[k + 1].end;
            searchFrom = k + 2;
        }
    }
    span.tailStart = int(sql.size());
    for (size_t k = searchFrom; k < words.size(); ++k) {
        if (tailWords.contains(words[k].upper)) {
            span.tailStart = words[k].start;
            break;
        }
    }
    return span;
}

// True when the text's last characters are a "--" comment with no line end.
bool endsInLineComment(const QString& sql)
{
    const int n = int(sql.size());
    int i = 0;
    bool inComment = false;
    while (i < n) {
        const int end = skipLiteralOrComment(sql, i);
        if (end > i) {
            inComment = sql.mid(i, 2) == QLatin1String("--") && end >= n && !sql.endsWith(QLatin1Char('\n'));
            i = end;
        } else {
            inComment = false;
            ++i;
        }
    }
    return inComment;
}

QString withoutTrailingSemicolon(const QString& sql)
{
    QString s = sql.trimmed();
    while (s.endsWith(QLatin1Char(';')))
        s = s.left(s.size() - 1).trimmed();
    return s;
}

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

// The grid's visible columns, for the export: what the user hid is not exported.
class VisibleColumns : public QSortFilterProxyModel {
public:
    explicit VisibleColumns(const DataGrid* grid) : mGrid(grid) { setSourceModel(grid->model()); }

protected:
    bool filterAcceptsColumn(int sourceColumn, const QModelIndex&) const override
    {
        return mGrid->isColumnVisible(sourceColumn);
    }

private:
    const DataGrid* mGrid;
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

QString selectOrderedBy(const QString& sql, const QString& orderBy)
{
    const QString s = withoutTrailingSemicolon(sql);
    const OrderSpan span = findOrder(s);
    const int headEnd = span.orderStart >= 0 ? span.orderStart : span.tailStart;
    QString head = s.left(headEnd);
    // Blanks go, line ends stay: a "--" comment must not swallow the ordering.
    while (!head.isEmpty() && (head.back() == QLatin1Char(' ') || head.back() == QLatin1Char('\t')))
        head.chop(1);
    if (endsInLineComment(head))
        head += QLatin1Char('\n');
    QString out = head + QStringLiteral(" ORDER BY ") + orderBy.trimmed();
    const QString tail = s.mid(span.tailStart).trimmed();
    if (!tail.isEmpty())
        out += QLatin1Char(' ') + tail;
    return out;
}

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

// ---- Columns: widths, visibility ------------------------------------------

int DataGrid::defaultWidth(int column) const
{
    const Column& c = mColumns.at(column);
    const QFontMetrics fm(font());
    const int digit = fm.horizontalAdvance(QLatin1Char('0'));
    int chars = c.width;
    if (chars <= 0) {
        switch (c.kind) {
        case ColumnKind::Integer:
            chars = 8;
            break;
        case ColumnKind::Number:
            chars = 12;
            break;
        case ColumnKind::Money:
            chars = 14;
            break;
        case ColumnKind::Date:
            chars = 10;
            break;
        case ColumnKind::Flag:
        case ColumnKind::Picture:
            chars = 2;
            break;
        case ColumnKind::Memo:
        case ColumnKind::RichText:
            chars = 40;
            break;
        case ColumnKind::Lookup:
            chars = 24;
            break;
        case ColumnKind::Text: {
            int size = c.maxLength;
            const int f = mDs->fieldIndex(c.column);
            if (size <= 0 && f >= 0)
                size = mDs->fieldInfo(f).size;
            chars = size > 0 ? std::clamp(size, 6, 32) : 20;
            break;
        }
        }
    }
    // Room for the title and its sort arrow.
    const int title = QFontMetrics(horizontalHeader()->font()).horizontalAdvance(c.caption) + 30;
    return std::max(chars * digit + 12, title);
}

void DataGrid::applyLayout()
{
    QScopedValueRollback applying(mApplyingLayout, true);
    for (int c = 0; c < mModel->columnCount(); ++c) {
        const QString field = mColumns.at(c).column;
        setColumnWidth(c, mSettings->width(field).value_or(defaultWidth(c)));
        setColumnHidden(c, mSettings->hidden(field).value_or(false));
    }
    if (visibleCount() == 0 && mModel->columnCount() > 0)
        setColumnHidden(0, false);
}

void DataGrid::onSectionResized(int section, int, int newSize)
{
    if (mApplyingLayout || newSize <= 0 || section < 0 || section >= mColumns.size() || isColumnHidden(section))
        return;
    mSettings->setWidth(mColumns.at(section).column, newSize);
}

int DataGrid::visibleCount() const
{
    int n = 0;
    for (int c = 0; c < mModel->columnCount(); ++c)
        if (!isColumnHidden(c))
            ++n;
    return n;
}

bool DataGrid::setColumnVisible(int column, bool visible)
{
    if (column < 0 || column >= mModel->columnCount())
        return false;
    if (!visible && !isColumnHidden(column) && visibleCount() <= 1)
        return false;
    setColumnHidden(column, !visible);
    mSettings->setHidden(mColumns.at(column).column, !visible);
    return true;
}

void DataGrid::fitColumnWidths()
{
    // A memo's first line may be a paragraph; no column wider than this.
    const int widest = fontMetrics().horizontalAdvance(QLatin1Char('0')) * 50;
    for (int c = 0; c < mModel->columnCount(); ++c) {
        if (isColumnHidden(c))
            continue;
        resizeColumnToContents(c);
        if (columnWidth(c) > widest)
            setColumnWidth(c, widest);
    }
}

void DataGrid::resetLayout()
{
    mSettings->clear();
    applyLayout();
}

// ---- Menus and export ------------------------------------------------------

QString DataGrid::sheetName() const
{
    if (!mSheetName.isEmpty())
        return mSheetName;
    const QString title = window() && window() != this ? window()->windowTitle() : QString();
    return title.isEmpty() ? mScreenKey : title;
}

void DataGrid::exportToSpreadsheet()
{
    VisibleColumns visible(this);
    services().exportGrid(visible, sheetName(), this);
}

QMenu* DataGrid::createHeaderMenu(QWidget* parent)
{
    auto* menu = new QMenu(parent);
    menu->addSection(QStringLiteral("Columnas visibles"));
    const bool lastOne = visibleCount() <= 1;
    for (int c = 0; c < mModel->columnCount(); ++c) {
        QAction* a = menu->addAction(mModel->headerData(c, Qt::Horizontal).toString());
        a->setCheckable(true);
        a->setChecked(!isColumnHidden(c));
        a->setData(c);
        // At least one column stays: its entry cannot be unchecked.
        a->setEnabled(!(lastOne && !isColumnHidden(c)));
        connect(a, &QAction::toggled, this, [this, c](bool on) { setColumnVisible(c, on); });
    }
    menu->addSeparator();
    connect(menu->addAction(QStringLiteral("Ajustar anchos")), &QAction::triggered, this, &DataGrid::fitColumnWidths);
    connect(menu->addAction(QStringLiteral("Restablecer columnas")), &QAction::triggered, this,
            &DataGrid::resetLayout);
    menu->addSeparator();
    connect(menu->addAction(themeIcon(QStringLiteral("x-office-spreadsheet")), QStringLiteral("Exportar a Excel…")),
            &QAction::triggered, this, &DataGrid::exportToSpreadsheet);
    return menu;
}

QMenu* DataGrid::createContextMenu(QWidget* parent)
{
    auto* menu = new QMenu(parent);
    connect(menu->addAction(themeIcon(QStringLiteral("x-office-spreadsheet")), QStringLiteral("Exportar a Excel…")),
            &QAction::triggered, this, &DataGrid::exportToSpreadsheet);
    return menu;
}

void DataGrid::contextMenuEvent(QContextMenuEvent* event)
{
    std::unique_ptr<QMenu> menu(createContextMenu(this));
    menu->exec(event->globalPos());
    event->accept();
}

} // namespace tv::ui
