#include "datasetmodel.h"

#include "money.h"
#include "query.h"

namespace tv::ui {

namespace {

// Grouped by thousands with a decimal comma, as Money prints amounts
// ("1.234.567,89"); QLocale's Spanish rules leave four-digit numbers ungrouped.
QString spanishNumber(double d, int decimals)
{
    return Money::fromDouble(d).toSpanish(decimals);
}

} // namespace

DataSetModel::DataSetModel(DataSet* dataSet, QObject* parent) : QAbstractTableModel(parent), mDs(dataSet)
{
    Q_ASSERT(dataSet);
    connect(dataSet, &DataSet::reset, this, &DataSetModel::onReset);
    connect(dataSet, &DataSet::rowsFetched, this, &DataSetModel::onRowsFetched);
    connect(dataSet, &DataSet::rowInserted, this, &DataSetModel::onRowInserted);
    connect(dataSet, &DataSet::rowRemoved, this, &DataSetModel::onRowRemoved);
    connect(dataSet, &DataSet::rowChanged, this, &DataSetModel::onRowChanged);
    rebuildColumns();
    mRows = dataSet->recordCount();
}

void DataSetModel::setColumns(const QList<Column>& columns)
{
    beginResetModel();
    mOrder.clear();
    for (const Column& c : columns) {
        const QString f = c.field.toUpper();
        mOrder.append(f);
        if (!c.title.isEmpty())
            mTitles.insert(f, c.title);
        mFormats.insert(f, c.format);
    }
    rebuildColumns();
    endResetModel();
}

void DataSetModel::setColumnTitle(const QString& field, const QString& title)
{
    mTitles.insert(field.toUpper(), title);
    const int c = columnOf(field);
    if (c >= 0)
        Q_EMIT headerDataChanged(Qt::Horizontal, c, c);
}

void DataSetModel::setColumnFormat(const QString& field, ColumnFormat format)
{
    mFormats.insert(field.toUpper(), format);
    const int c = columnOf(field);
    if (c >= 0 && mRows > 0)
        Q_EMIT dataChanged(index(0, c), index(mRows - 1, c));
}

void DataSetModel::rebuildColumns()
{
    mShown = mOrder.isEmpty() && mDs ? mDs->fieldNames() : mOrder;
    mFieldIndex.clear();
    for (const QString& f : mShown)
        mFieldIndex.append(mDs ? mDs->fieldIndex(f) : -1);
}

int DataSetModel::fieldIndex(int column) const
{
    return mFieldIndex.value(column, -1);
}

int DataSetModel::columnOf(const QString& field) const
{
    return mShown.indexOf(field.toUpper());
}

int DataSetModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : mRows;
}

int DataSetModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : mShown.size();
}

QString DataSetModel::displayText(const QVariant& v, ColumnFormat format)
{
    if (!v.isValid() || v.isNull())
        return {};
    try {
        return formatted(v, format);
    } catch (const MoneyOverflow&) {
        // A stored number beyond what an amount can hold is still shown, plainly.
        return QString::number(v.toDouble(), 'f', 2);
    }
}

QString DataSetModel::formatted(const QVariant& v, ColumnFormat format)
{
    switch (format) {
    case ColumnFormat::Text:
    case ColumnFormat::Flag:
        return v.toString();
    case ColumnFormat::Date:
        return v.toDateTime().date().toString(QStringLiteral("dd/MM/yyyy"));
    case ColumnFormat::DateTime:
        return v.toDateTime().toString(QStringLiteral("dd/MM/yyyy hh:mm"));
    case ColumnFormat::Money:
        return Money::fromDouble(v.toDouble()).toSpanish(2, true);
    case ColumnFormat::Number:
        return spanishNumber(v.toDouble(), 2);
    case ColumnFormat::Integer:
        return Money::fromUnits(v.toLongLong()).toSpanish(0);
    case ColumnFormat::Auto:
        break;
    }
    if (v.typeId() == QMetaType::QDateTime || v.typeId() == QMetaType::QDate) {
        const QDateTime dt = v.toDateTime();
        if (dt.time() == QTime(0, 0))
            return dt.date().toString(QStringLiteral("dd/MM/yyyy"));
        return dt.toString(QStringLiteral("dd/MM/yyyy hh:mm"));
    }
    if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float) {
        const double d = v.toDouble();
        return spanishNumber(d, d == static_cast<double>(static_cast<qlonglong>(d)) ? 0 : 2);
    }
    if (v.typeId() == QMetaType::QByteArray)
        return {}; // binary blobs (pictures) have no text
    return v.toString();
}

QVariant DataSetModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !mDs || index.row() >= mRows)
        return {};
    const int f = fieldIndex(index.column());
    if (f < 0)
        return {};
    const QVariant v = mDs->value(index.row(), f);
    const ColumnFormat format = mFormats.value(mShown.at(index.column()), ColumnFormat::Auto);
    switch (role) {
    case Qt::DisplayRole:
        if (format == ColumnFormat::Flag)
            return {};
        return displayText(v, format);
    case Qt::EditRole:
        return v;
    case Qt::CheckStateRole:
        if (format == ColumnFormat::Flag)
            return v.toString() == QLatin1String("S") ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::TextAlignmentRole:
        if (format == ColumnFormat::Money || format == ColumnFormat::Number || format == ColumnFormat::Integer ||
            (format == ColumnFormat::Auto && isNumberVariant(v)))
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    default:
        return {};
    }
}

QVariant DataSetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    const QString f = mShown.value(section);
    return mTitles.value(f, f);
}

bool DataSetModel::canFetchMore(const QModelIndex& parent) const
{
    return !parent.isValid() && mDs && mDs->canFetchMore();
}

void DataSetModel::fetchMore(const QModelIndex& parent)
{
    if (!parent.isValid() && mDs)
        mDs->fetchMore(mBatch); // rowsFetched brings the new rows in
}

void DataSetModel::onReset()
{
    beginResetModel();
    rebuildColumns();
    mRows = mDs ? mDs->recordCount() : 0;
    endResetModel();
}

void DataSetModel::onRowsFetched(int first, int last)
{
    // The data set may have grown since the model last looked (rows fetched
    // one by one while locating); announce everything that is new.
    const int now = mDs->recordCount();
    Q_UNUSED(first);
    Q_UNUSED(last);
    if (now <= mRows)
        return;
    beginInsertRows({}, mRows, now - 1);
    mRows = now;
    endInsertRows();
}

void DataSetModel::onRowInserted(int row)
{
    beginInsertRows({}, row, row);
    ++mRows;
    endInsertRows();
}

void DataSetModel::onRowRemoved(int row)
{
    beginRemoveRows({}, row, row);
    --mRows;
    endRemoveRows();
}

void DataSetModel::onRowChanged(int row)
{
    if (row >= 0 && row < mRows && !mShown.isEmpty())
        Q_EMIT dataChanged(index(row, 0), index(row, mShown.size() - 1));
}

} // namespace tv::ui
