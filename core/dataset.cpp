#include "dataset.h"

#include "database.h"
#include "datasetshared.h"
#include "transaction.h"

#include <algorithm>

namespace tv {

using namespace datasetshared;

QString DataSetField::name() const
{
    return mDs->mNames.value(mIndex);
}

QVariant DataSetField::value() const
{
    const DataSet::Row* r = mDs->accessRow();
    return r ? mDs->resolved(mDs->rawValue(*r, mIndex)) : QVariant();
}

QVariant DataSetField::oldValue() const
{
    const DataSet::Row* r = mDs->accessRow();
    if (!r || mIndex >= mDs->mDbFieldCount)
        return value();
    if (r->status == DataSet::RowStatus::Inserted)
        return {};
    return mDs->resolved(mDs->mLayout.value(r->data, mIndex));
}

bool DataSetField::isNull() const
{
    const DataSet::Row* r = mDs->accessRow();
    return !r || isNullValue(mDs->rawValue(*r, mIndex));
}

bool DataSetField::isCalculated() const
{
    return mIndex >= mDs->mDbFieldCount;
}

FieldInfo DataSetField::info() const
{
    return mDs->fieldInfo(mIndex);
}

void DataSetField::setValue(const QVariant& v)
{
    mDs->setFieldValue(mIndex, v);
}

DataSet::DataSet(Database& db, Transaction& tr, QObject* parent)
    : QObject(parent), mDb(&db), mTr(&tr), mSelect(db, tr)
{
    mSelect.setRawRows(true);
    mSelect.setReadBlobs(false);
}

DataSet::~DataSet()
{
    if (mMaster)
        std::erase_if(mMaster->mDetails, [this](const QPointer<DataSet>& d) { return d.data() == this || !d; });
}

void DataSet::setSelectSQL(const QString& sql)
{
    if (sql == mSelect.sql())
        return;
    refusePending(true);
    if (isOpen())
        close();
    mSelect.setSQL(sql);
}

void DataSet::setTable(const QString& table, const QStringList& keyFields)
{
    refusePending(true);
    mTable = table.toUpper();
    setKeyFields(keyFields);
    setSelectSQL(QStringLiteral("SELECT * FROM ") + mTable);
}

void DataSet::setKeyFields(const QStringList& keyFields)
{
    mKeys.clear();
    for (const QString& k : keyFields)
        mKeys.append(k.toUpper());
}

void DataSet::addCalculatedField(const QString& name, const QStringList& dependsOn)
{
    const QString n = name.toUpper();
    if (!mCalcNames.contains(n))
        mCalcNames.append(n);
    QStringList deps;
    for (const QString& d : dependsOn)
        deps.append(d.toUpper());
    mCalcDeps[n] = deps;
}

void DataSet::setOnChange(const QString& fieldName, std::function<void(DataSetField)> f)
{
    mPendingOnChange[fieldName.toUpper()] = std::move(f);
    const int i = fieldIndex(fieldName);
    if (i >= 0)
        mOnChange[i] = mPendingOnChange[fieldName.toUpper()];
}

void DataSet::resetRows()
{
    mRows.clear();
    mDeleted.clear();
    mDirty.clear();
    mBlobs.clear();
    mSavedInserts.clear();
    mLoadedRows = 0;
    mCurrent = -1;
    mSnapshot = {};
}

void DataSet::open()
{
    if (isOpen())
        return;
    beforeOpen(*this);

    openByKey();
    if (!mByKey) {
        mKeyQuery.reset();
        mSelect.open();
        mNames = mSelect.fieldNames();
        mInfos = mSelect.fieldInfos();
        mLayout = mSelect.layout();
    }
    mDbFieldCount = mNames.size();
    for (const QString& c : mCalcNames) {
        FieldInfo f;
        f.name = c;
        mInfos.append(f);
    }
    mNames += mCalcNames;
    mOnChange.clear();
    for (const auto& [name, f] : mPendingOnChange) {
        const int i = mNames.indexOf(name);
        if (i >= 0)
            mOnChange[i] = f;
    }
    if (!mTable.isEmpty())
        generateTableSql();
    chooseIdentityColumns();
    resetRows();
    mState = State::Browse;
    // By key the first page of keys comes at once, so the first page of rows
    // is read with one statement.
    for (int i = 0; i < (mByKey ? kPage : 1); ++i)
        fetchOne();
    mCurrent = mRows.empty() ? -1 : 0;
    mBof = true;
    mEof = mRows.empty();
    if (mCurrent >= 0)
        ensureLoaded(0);
    Q_EMIT reset();
    Q_EMIT stateChanged(mState);
    afterOpen(*this);
    afterScroll(*this);
    syncDetails();
}

void DataSet::close()
{
    if (!isOpen())
        return;
    refusePending(true);
    mSelect.close();
    if (mKeyQuery)
        mKeyQuery->close();
    resetRows();
    mEof = mBof = true;
    mState = State::Inactive;
    Q_EMIT reset();
    Q_EMIT stateChanged(mState);
    for (const QPointer<DataSet>& d : mDetails)
        if (d)
            d->close();
}

bool DataSet::isEmpty() const
{
    return mRows.empty();
}

bool DataSet::canFetchMore() const
{
    if (!isOpen())
        return false;
    const Query& q = mByKey ? *mKeyQuery : mSelect;
    return q.isOpen() && !q.eof();
}

void DataSet::fetchMore(int count)
{
    const int before = recordCount();
    for (int i = 0; i < count && canFetchMore(); ++i)
        fetchOne();
    if (recordCount() > before)
        Q_EMIT rowsFetched(before, recordCount() - 1);
}

void DataSet::fetchAll()
{
    const int before = recordCount();
    while (canFetchMore())
        fetchOne();
    if (recordCount() > before)
        Q_EMIT rowsFetched(before, recordCount() - 1);
}

bool DataSet::ensureRow(int row)
{
    if (row < 0)
        return false;
    if (row >= recordCount() && canFetchMore())
        fetchMore(row - recordCount() + 1);
    return row < recordCount();
}

void DataSet::calc(int row)
{
    if (!onCalcFields || mCalcNames.isEmpty() || row < 0 || row >= recordCount())
        return;
    Row& r = *mRows[static_cast<size_t>(row)];
    // Each calculation starts from nothing: a value the hook leaves unset is empty, not stale.
    r.calc = std::make_unique<QVector<QVariant>>(mCalcNames.size());
    const int saved = mCalcRow;
    mCalcRow = row;
    try {
        onCalcFields(*this);
    } catch (...) {
        mCalcRow = saved;
        throw;
    }
    mCalcRow = saved;
}

DataSet::Row* DataSet::accessRow() const
{
    const int r = mCalcRow >= 0 ? mCalcRow : mCurrent;
    if (r < 0 || r >= recordCount())
        return nullptr;
    ensureLoaded(r);
    return mRows[static_cast<size_t>(r)].get();
}

QVariant DataSet::rawValue(const Row& r, int column) const
{
    if (column >= mDbFieldCount) {
        const int c = column - mDbFieldCount;
        return r.calc && c < r.calc->size() ? r.calc->at(c) : QVariant();
    }
    if (r.cur)
        return r.cur->value(column);
    return mLayout.value(r.data, column);
}

QVariant DataSet::resolved(const QVariant& v) const
{
    if (v.typeId() != qMetaTypeId<BlobId>())
        return v;
    const BlobId id = v.value<BlobId>();
    const auto k = qMakePair(id.high, id.low);
    auto it = mBlobs.constFind(k);
    if (it != mBlobs.constEnd())
        return *it;
    if (mBlobs.size() > 256)
        mBlobs.clear();
    const QVariant contents = Query::readBlob(*mDb, *mTr, id);
    mBlobs.insert(k, contents);
    return contents;
}

QVector<QVariant>& DataSet::editableValues(Row& r)
{
    if (!r.cur)
        r.cur = std::make_unique<QVector<QVariant>>(mLayout.values(r.data));
    return *r.cur;
}

void DataSet::setState(State s)
{
    if (mState != s) {
        mState = s;
        Q_EMIT stateChanged(s);
    }
}

void DataSet::setCurrent(int row)
{
    if (row == mCurrent)
        return;
    mCurrent = row;
    ensureLoaded(row);
    Q_EMIT currentChanged(row);
    afterScroll(*this);
    syncDetails();
}

void DataSet::checkBrowseForMove()
{
    if (!isOpen())
        throw DataSetError(QStringLiteral("Cannot perform this operation on a closed dataset"));
    refusePending(false);
    // As the classic record engines do: leaving a row in edit posts it first.
    if (isEditing())
        post();
    beforeScroll(*this);
}

void DataSet::first()
{
    checkBrowseForMove();
    mBof = true;
    mEof = mRows.empty();
    if (!mRows.empty())
        setCurrent(0);
}

void DataSet::prior()
{
    checkBrowseForMove();
    if (mCurrent <= 0) {
        mBof = true;
        return;
    }
    mEof = false;
    mBof = false;
    setCurrent(mCurrent - 1);
}

void DataSet::next()
{
    checkBrowseForMove();
    // Walking forward by key, keys are read a page ahead: the rows to come
    // are then read a page per statement, not one each.
    if (mByKey && mCurrent + 1 >= recordCount() && canFetchMore())
        fetchMore(kPage);
    if (!ensureRow(mCurrent + 1)) {
        mEof = true;
        return;
    }
    mBof = false;
    mEof = false;
    setCurrent(mCurrent + 1);
}

void DataSet::last()
{
    checkBrowseForMove();
    fetchAll();
    mEof = true;
    mBof = mRows.empty();
    if (!mRows.empty())
        setCurrent(recordCount() - 1);
}

void DataSet::moveTo(int row)
{
    checkBrowseForMove();
    if (!ensureRow(row))
        return;
    mBof = row == 0;
    mEof = false;
    setCurrent(row);
}

DataSetField DataSet::fieldByName(const QString& name)
{
    const int i = fieldIndex(name);
    if (i < 0)
        throw DataSetError(QStringLiteral("Field '%1' not found").arg(name));
    return DataSetField(this, i);
}

DataSetField DataSet::field(int index)
{
    if (index < 0 || index >= fieldCount())
        throw DataSetError(QStringLiteral("Field index %1 out of range").arg(index));
    return DataSetField(this, index);
}

QVariant DataSet::value(int row, int column) const
{
    if (row < 0 || row >= recordCount() || column < 0 || column >= fieldCount())
        return {};
    ensureLoaded(row);
    return resolved(rawValue(*mRows[static_cast<size_t>(row)], column));
}

void DataSet::setFieldValue(int index, const QVariant& v)
{
    Row* r = accessRow();
    if (!r)
        throw DataSetError(QStringLiteral("Dataset not in edit or insert mode"));
    const bool calcField = index >= mDbFieldCount;
    if (mCalcRow < 0 && !isEditing())
        throw DataSetError(QStringLiteral("Dataset not in edit or insert mode"));
    if (mCalcRow >= 0 && !calcField && !isEditing())
        throw DataSetError(QStringLiteral("Dataset not in edit or insert mode"));
    if (calcField) {
        if (!r->calc)
            r->calc = std::make_unique<QVector<QVariant>>(mCalcNames.size());
        (*r->calc)[index - mDbFieldCount] = v;
        if (mCalcRow < 0)
            Q_EMIT rowChanged(mCurrent);
        return;
    }
    QVector<QVariant>& cur = editableValues(*r);
    const QVariant before = cur[index];
    cur[index] = v;
    if (mCalcRow >= 0)
        return;
    auto it = mOnChange.find(index);
    if (it != mOnChange.end()) {
        try {
            it->second(DataSetField(this, index));
        } catch (...) {
            cur[index] = before;
            throw;
        }
    }
    // Calculated fields that read this one follow it while it is typed.
    const QString name = mNames.value(index);
    for (const QString& c : mCalcNames) {
        const QStringList& deps = mCalcDeps[c];
        if (deps.isEmpty() || deps.contains(name)) {
            calc(mCurrent);
            break;
        }
    }
    Q_EMIT rowChanged(mCurrent);
}

} // namespace tv
