#include "datasetmodel.h"

#include "money.h"
#include "plaintext.h"
#include "query.h"

namespace tv::ui {

namespace {

bool isNullValue(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

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
        if (!c.lookup.isEmpty())
            mLookups.insert(f, c.lookup);
        if (c.editable)
            mEditable.insert(f);
        if (c.insertOnly)
            mInsertOnly.insert(f);
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

void DataSetModel::setDescriber(Describer describer)
{
    mDescriber = std::move(describer);
    if (mRows > 0 && !mShown.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(mRows - 1, int(mShown.size()) - 1));
}

void DataSetModel::setColumnEditable(const QString& field, bool editable)
{
    const QString f = field.toUpper();
    if (editable)
        mEditable.insert(f);
    else
        mEditable.remove(f);
    const int c = columnOf(f);
    if (c >= 0 && mRows > 0)
        Q_EMIT dataChanged(index(0, c), index(mRows - 1, c));
}

ColumnFormat DataSetModel::columnFormat(int column) const
{
    return mFormats.value(mShown.value(column), ColumnFormat::Auto);
}

bool DataSetModel::isEditableFlag(int column) const
{
    const QString f = mShown.value(column);
    if (!mDs || !mDs->isOpen() || columnFormat(column) != ColumnFormat::Flag || !mEditable.contains(f))
        return false;
    if (mInsertOnly.contains(f) && mDs->state() != DataSet::State::Insert)
        return false;
    // Calculated fields are the data set's to set.
    const int i = fieldIndex(column);
    return i >= 0 && i < mDs->fieldCount() && !mDs->field(i).isCalculated();
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
    case ColumnFormat::Memo:
        return firstLine(v.toString());
    case ColumnFormat::RichText:
        return firstLine(plainTextOf(v.toString()));
    case ColumnFormat::Lookup:
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

QString DataSetModel::firstLine(const QString& text)
{
    const QString t = text.trimmed();
    qsizetype end = 0;
    while (end < t.size() && t.at(end) != QLatin1Char('\n') && t.at(end) != QLatin1Char('\r'))
        ++end;
    if (end == t.size())
        return t;
    return t.left(end).trimmed() + QStringLiteral(" …");
}

QString DataSetModel::describe(int column, const QVariant& code) const
{
    if (!code.isValid() || code.isNull())
        return {};
    if (mDescriber) {
        const QString d = mDescriber(mLookups.value(mShown.value(column)), code);
        if (!d.isEmpty())
            return d;
    }
    return displayText(code, ColumnFormat::Auto);
}

QVariant DataSetModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !mDs || index.row() >= mRows)
        return {};
    const int f = fieldIndex(index.column());
    if (f < 0)
        return {};
    const ColumnFormat format = mFormats.value(mShown.at(index.column()), ColumnFormat::Auto);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case ValueRole:
    case Qt::CheckStateRole:
    case Qt::TextAlignmentRole:
    case Qt::ToolTipRole:
        break;
    default:
        return {};
    }
    const QVariant v = mDs->value(index.row(), f);
    switch (role) {
    case Qt::DisplayRole:
        if (format == ColumnFormat::Flag)
            return {};
        if (format == ColumnFormat::Lookup)
            return describe(index.column(), v);
        return displayText(v, format);
    case Qt::EditRole:
        if (format == ColumnFormat::Lookup)
            return isNullValue(v) ? QVariant() : QVariant(describe(index.column(), v));
        if (format == ColumnFormat::Memo || format == ColumnFormat::RichText) {
            if (isNullValue(v))
                return {};
            return format == ColumnFormat::Memo ? v.toString().trimmed() : plainTextOf(v.toString());
        }
        return v;
    case ValueRole:
        return v;
    case Qt::CheckStateRole:
        if (format == ColumnFormat::Flag)
            return v.toString() == QLatin1String("S") ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::TextAlignmentRole:
        if (format == ColumnFormat::Money || format == ColumnFormat::Number || format == ColumnFormat::Integer ||
            (format == ColumnFormat::Auto && isNumberVariant(v)))
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        if (format == ColumnFormat::Flag)
            return QVariant::fromValue(Qt::Alignment(Qt::AlignCenter));
        return {};
    case Qt::ToolTipRole: {
        // A memo cut to its first line shows the rest on hovering.
        if (format != ColumnFormat::Memo && format != ColumnFormat::RichText)
            return {};
        const QString full = format == ColumnFormat::Memo ? v.toString().trimmed() : plainTextOf(v.toString());
        if (full.isEmpty() || !full.contains(QLatin1Char('\n')))
            return {};
        return full.left(2000);
    }
    default:
        return {};
    }
}

Qt::ItemFlags DataSetModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (index.isValid() && isEditableFlag(index.column()))
        f |= Qt::ItemIsUserCheckable;
    return f;
}

bool DataSetModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !index.isValid() || !mDs || index.row() >= mRows)
        return false;
    if (!isEditableFlag(index.column()) || index.row() != mDs->recNo())
        return false;
    const int f = fieldIndex(index.column());
    const QString wanted = value.toInt() == Qt::Checked ? QStringLiteral("S") : QStringLiteral("N");
    const bool startsEdit = !mDs->isEditing();
    // A write that fails after this model put the record in edit takes the
    // edit back, so a refusal leaves the record exactly as it was.
    auto undo = [&] {
        if (startsEdit && mDs->isEditing()) {
            try {
                mDs->cancel();
            } catch (...) {
                // The cancel hook refused too; the record stays in edit, unchanged.
            }
        }
    };
    try {
        if (startsEdit)
            mDs->edit();
        mDs->field(f).setValue(wanted);
    } catch (const Abort&) {
        undo();
        return false;
    } catch (const DatabaseError& e) {
        undo();
        Q_EMIT editFailed(e.message());
        return false;
    } catch (const DataSetError& e) {
        undo();
        Q_EMIT editFailed(e.message());
        return false;
    }
    return true;
}

QVariant DataSetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole) {
        // Titles sit over their values: amounts on the right, flags in the middle.
        const ColumnFormat format = columnFormat(section);
        const int f = fieldIndex(section);
        const FieldInfo::Type type = mDs && f >= 0 ? mDs->fieldInfo(f).type : FieldInfo::Type::Text;
        const bool numeric = type == FieldInfo::Type::Integer || type == FieldInfo::Type::Float ||
                             type == FieldInfo::Type::Numeric;
        if (format == ColumnFormat::Money || format == ColumnFormat::Number || format == ColumnFormat::Integer ||
            (format == ColumnFormat::Auto && numeric))
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        if (format == ColumnFormat::Flag)
            return QVariant::fromValue(Qt::Alignment(Qt::AlignCenter));
        return QVariant::fromValue(Qt::AlignLeft | Qt::AlignVCenter);
    }
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
