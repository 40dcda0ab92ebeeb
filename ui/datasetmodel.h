#pragma once

#include "dataset.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QPointer>
#include <QSet>

#include <functional>

namespace tv::ui {

// How a grid column shows its values. Auto picks by the value's type:
// dates as dd/MM/yyyy (with the time when it is not midnight), numbers in
// Spanish notation, texts as they are. Flag is an "S"/"N" check box; Memo
// and RichText show their first line as plain text; Lookup shows the
// description of its code (see setDescriber).
enum class ColumnFormat { Auto, Text, Date, DateTime, Money, Number, Integer, Flag, Memo, RichText, Lookup };

// A grid model over a DataSet. Rows arrive as the view asks for them
// (canFetchMore / fetchMore of the data set), so a list of 100,000 rows
// opens at once. The model mirrors the data set's own signals: it never
// moves the current row and never keeps a copy of the values.
//
// Read-only but for Flag columns made editable: checking one on the data
// set's current row puts the data set in edit (running its beforeEdit hook)
// and writes "S" or "N"; the record stays in edit for the screen to save.
//
// Roles: DisplayRole the text shown; EditRole the value a spreadsheet
// receives (typed numbers and dates, a lookup's description, the whole plain
// text of a memo); ValueRole the value as stored.
// Lives on the interface thread, like its data set.
class DataSetModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int ValueRole = Qt::UserRole + 1;

    struct Column {
        QString field;
        QString title;
        ColumnFormat format = ColumnFormat::Auto;
        QString lookup = {};     // Lookup: the catalogue the describer is asked about
        bool editable = false;   // Flag: the user may check it
        bool insertOnly = false; // editable only while the row is being inserted
    };

    // The description of a lookup's code; an empty answer shows the code.
    using Describer = std::function<QString(const QString& lookup, const QVariant& code)>;

    explicit DataSetModel(DataSet* dataSet, QObject* parent = nullptr);

    DataSet* dataSet() const { return mDs; }
    // Shows only these columns, in this order; an empty list shows every field.
    void setColumns(const QList<Column>& columns);
    void setColumnTitle(const QString& field, const QString& title);
    void setColumnFormat(const QString& field, ColumnFormat format);
    // Rows read from the data set per fetchMore.
    void setBatchSize(int rows) { mBatch = qMax(1, rows); }
    // How Lookup columns find their descriptions (none: they show the code).
    void setDescriber(Describer describer);
    // A Flag column the user may check (on the current row only).
    void setColumnEditable(const QString& field, bool editable);
    // True when the cell's column is an editable flag and the data set's
    // state lets it change now (an insert-only flag only while inserting).
    bool isEditableFlag(int column) const;
    ColumnFormat columnFormat(int column) const;
    QString columnField(int column) const { return mShown.value(column); }

    // The data set's field index behind a grid column (-1 when unknown).
    int fieldIndex(int column) const;
    // The grid column that shows a field (-1 when hidden).
    int columnOf(const QString& field) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // CheckStateRole on an editable flag of the current row: edit and write
    // "S"/"N". False, with the record as it was, when a hook refused
    // (tv::Abort) or the row is not the current one; other failures are
    // reported through editFailed.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

    static QString displayText(const QVariant& value, ColumnFormat format);
    // A memo's or rich text's first line, as plain text ("…" when more follows).
    static QString firstLine(const QString& text);

Q_SIGNALS:
    // An edit failed for a reason the user must read (the engine's message).
    void editFailed(const QString& message);

private:
    static QString formatted(const QVariant& v, ColumnFormat format);
    QString describe(int column, const QVariant& code) const;
    void rebuildColumns();
    void onReset();
    void onRowsFetched(int first, int last);
    void onRowInserted(int row);
    void onRowRemoved(int row);
    void onRowChanged(int row);

    QPointer<DataSet> mDs;
    QStringList mOrder; // empty: every field of the data set
    QHash<QString, QString> mTitles;
    QHash<QString, ColumnFormat> mFormats;
    QHash<QString, QString> mLookups;
    QSet<QString> mEditable;
    QSet<QString> mInsertOnly;
    Describer mDescriber;
    QStringList mShown; // field names of the grid's columns
    QVector<int> mFieldIndex;
    int mRows = 0;
    int mBatch = 256;
};

} // namespace tv::ui
