#pragma once

#include "dataset.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QPointer>

namespace tv::ui {

// How a grid column shows its values. Auto picks by the value's type:
// dates as dd/MM/yyyy (with the time when it is not midnight), numbers in
// Spanish notation, texts as they are.
enum class ColumnFormat { Auto, Text, Date, DateTime, Money, Number, Integer, Flag };

// A read-only grid model over a DataSet. Rows arrive as the view asks for
// them (canFetchMore / fetchMore of the data set), so a list of 100,000 rows
// opens at once. The model mirrors the data set's own signals: it never
// moves the current row and never keeps a copy of the values.
// Lives on the interface thread, like its data set.
class DataSetModel : public QAbstractTableModel {
    Q_OBJECT
public:
    struct Column {
        QString field;
        QString title;
        ColumnFormat format = ColumnFormat::Auto;
    };

    explicit DataSetModel(DataSet* dataSet, QObject* parent = nullptr);

    DataSet* dataSet() const { return mDs; }
    // Shows only these columns, in this order; an empty list shows every field.
    void setColumns(const QList<Column>& columns);
    void setColumnTitle(const QString& field, const QString& title);
    void setColumnFormat(const QString& field, ColumnFormat format);
    // Rows read from the data set per fetchMore.
    void setBatchSize(int rows) { mBatch = qMax(1, rows); }

    // The data set's field index behind a grid column (-1 when unknown).
    int fieldIndex(int column) const;
    // The grid column that shows a field (-1 when hidden).
    int columnOf(const QString& field) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

    static QString displayText(const QVariant& value, ColumnFormat format);

private:
    static QString formatted(const QVariant& v, ColumnFormat format);
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
    QStringList mShown; // field names of the grid's columns
    QVector<int> mFieldIndex;
    int mRows = 0;
    int mBatch = 256;
};

} // namespace tv::ui
