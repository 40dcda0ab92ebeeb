#pragma once

#include "column.h"
#include "datasetmodel.h"

#include <QTableView>

#include <memory>

class QMenu;

namespace tv {
class DataSet;
}

namespace tv::ui {

class GridSettings;

// The select `sql` with its ordering replaced by `orderBy` (or given one
// when it had none); anything after the ordering (ROWS, FOR UPDATE, WITH
// LOCK) is kept. Literals and comments are never read as words.
QString selectOrderedBy(const QString& sql, const QString& orderBy);

// A list of a DataSet's rows described by the screen's column table: each
// row is a record, the grid's current row is the data set's current row
// and back.
//
// - Moving the grid moves the data set (running its scroll hooks). While the
//   data set is in edit the grid refuses to leave the row, with the pending
//   changes message, because moving would post the edit behind the user.
// - A header click sorts by that column (ascending, then descending) by
//   reopening the select with a new ORDER BY, so a long list is sorted by
//   the database and still read lazily; refused while changes are pending.
// - Flag columns show a centred check box; made editable they toggle "S"/"N"
//   on click or Space, putting the record in edit (never posting it).
// - Column widths and hidden columns are kept per screen and user
//   (GridSettings). Right click on the header chooses the visible columns,
//   fits the widths or exports; right click on the rows exports.
// Lives on the interface thread, like its data set.
class DataGrid : public QTableView {
    Q_OBJECT
public:
    // Shows the columns with inGrid (pictures never); `screenKey` names the
    // screen for the kept widths. The data set must outlive the grid.
    DataGrid(DataSet* ds, const Columns& columns, const QString& screenKey, QWidget* parent = nullptr);
    ~DataGrid() override;

    DataSet* dataSet() const { return mDs; }
    DataSetModel* dataModel() const { return mModel; }
    // The columns shown, in the model's order.
    const Columns& gridColumns() const { return mColumns; }
    QString screenKey() const { return mScreenKey; }
    // The model column showing a field (-1 when not in the grid).
    int columnOf(const QString& field) const;

    // How Lookup columns get their descriptions (default: the named
    // catalogue of lookupcatalogue.h, or the code when the name is unknown).
    void setDescriber(DataSetModel::Describer describer);
    // Every Flag column, or one, may be checked by the user.
    void setEditableFlags(bool editable);
    void setFlagEditable(const QString& column, bool editable);
    // Checks or unchecks an editable flag, moving to its row first; false
    // when the move or the edit was refused (the record then stays as it was).
    bool toggleFlag(const QModelIndex& index);

    // Reopens the data set ordered by a column, staying on the same record
    // when it can be found again; false (and nothing changed) when refused.
    bool sortBy(int column, Qt::SortOrder order);
    // -1 when the order is not one of the grid's columns.
    int sortColumn() const { return mSortColumn; }
    Qt::SortOrder sortOrder() const { return mSortOrder; }
    // Columns the database can order by (not memos, pictures or calculations).
    bool isSortable(int column) const;

    bool isColumnVisible(int column) const { return !isColumnHidden(column); }
    // False when it would hide the last visible column; the choice is kept.
    bool setColumnVisible(int column, bool visible);
    // Every visible column as wide as what it shows (kept as the user's widths).
    void fitColumnWidths();
    // Back to the widths and columns the screen describes; forgets the user's.
    void resetLayout();

    // The worksheet's name when exported (default: the window's title).
    void setSheetName(const QString& name) { mSheetName = name; }
    QString sheetName() const;
    // The visible columns, every row, through ui::services().
    void exportToSpreadsheet();

    // The menus the grid opens on a right click; the caller owns them.
    QMenu* createHeaderMenu(QWidget* parent = nullptr);
    QMenu* createContextMenu(QWidget* parent = nullptr);

Q_SIGNALS:
    void sortChanged(int column, Qt::SortOrder order);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    friend class DataGridSelection;

    bool moveDataSetTo(int row);
    void followDataSet();
    void onHeaderClicked(int section);
    void onSectionResized(int section, int oldSize, int newSize);
    void onModelReset();
    void showSortIndicator();
    void detectSort();
    QString orderTerm(int column, Qt::SortOrder order) const;
    int defaultWidth(int column) const;
    void applyLayout();
    int visibleCount() const;

    DataSet* mDs;
    DataSetModel* mModel;
    Columns mColumns;
    QString mScreenKey;
    QString mSheetName;
    std::unique_ptr<GridSettings> mSettings;
    bool mFollowing = false;
    bool mApplyingLayout = false;
    int mSortColumn = -1;
    Qt::SortOrder mSortOrder = Qt::AscendingOrder;
    QString mSortedSql; // the select as the last sort left it
};

} // namespace tv::ui
