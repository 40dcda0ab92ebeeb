// The grid's columns as the user arranges them: widths, visibility, the
// header's menus and the export of what is shown.
#include "datagrid.h"

#include "gridsettings.h"
#include "icons.h"
#include "services.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>

namespace tv::ui {

namespace {

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

} // namespace

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
