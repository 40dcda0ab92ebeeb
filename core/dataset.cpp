#include "dataset.h"

#include "database.h"
#include "transaction.h"

#include <algorithm>

namespace tv {

namespace {

bool sameValue(const QVariant& a, const QVariant& b)
{
    const bool an = !a.isValid() || a.isNull();
    const bool bn = !b.isValid() || b.isNull();
    if (an || bn)
        return an == bn;
    return a == b;
}

} // namespace

// ------------------------------------------------------------- DataSetField

QString DataSetField::name() const
{
    return mDs->mNames.value(mIndex);
}

QVariant DataSetField::value() const
{
    const DataSet::Row* r = mDs->accessRow();
    return r ? r->cur.value(mIndex) : QVariant();
}

QVariant DataSetField::oldValue() const
{
    const DataSet::Row* r = mDs->accessRow();
    return r ? r->orig.value(mIndex) : QVariant();
}

bool DataSetField::isNull() const
{
    const QVariant v = value();
    return !v.isValid() || v.isNull();
}

bool DataSetField::isCalculated() const
{
    return mIndex >= mDs->mDbFieldCount;
}

void DataSetField::setValue(const QVariant& v)
{
    mDs->setFieldValue(mIndex, v);
}

// ------------------------------------------------------------------ DataSet

DataSet::DataSet(Database& db, Transaction& tr, QObject* parent)
    : QObject(parent), mDb(&db), mTr(&tr), mSelect(db, tr)
{
}

DataSet::~DataSet() = default;

void DataSet::setSelectSQL(const QString& sql)
{
    if (isOpen())
        close();
    mSelect.setSQL(sql);
}

void DataSet::setTable(const QString& table, const QStringList& keyFields)
{
    mTable = table.toUpper();
    mKeys.clear();
    for (const QString& k : keyFields)
        mKeys.append(k.toUpper());
    setSelectSQL(QStringLiteral("SELECT * FROM ") + mTable);
}

void DataSet::addCalculatedField(const QString& name)
{
    if (!mCalcNames.contains(name.toUpper()))
        mCalcNames.append(name.toUpper());
}

void DataSet::setOnChange(const QString& fieldName, std::function<void(DataSetField)> f)
{
    mPendingOnChange[fieldName.toUpper()] = std::move(f);
    const int i = fieldIndex(fieldName);
    if (i >= 0)
        mOnChange[i] = mPendingOnChange[fieldName.toUpper()];
}

void DataSet::open()
{
    if (isOpen())
        return;
    if (beforeOpen)
        beforeOpen(*this);
    mSelect.open();
    mNames = mSelect.fieldNames();
    mDbFieldCount = mNames.size();
    mNames += mCalcNames;
    mOnChange.clear();
    for (const auto& [name, f] : mPendingOnChange) {
        const int i = mNames.indexOf(name);
        if (i >= 0)
            mOnChange[i] = f;
    }
    if (!mTable.isEmpty())
        generateTableSql();
    mRows.clear();
    mDeleted.clear();
    mCurrent = -1;
    mState = State::Browse;
    fetchOne();
    mCurrent = mRows.empty() ? -1 : 0;
    mBof = true;
    mEof = mRows.empty();
    Q_EMIT reset();
    Q_EMIT stateChanged(mState);
    if (afterOpen)
        afterOpen(*this);
    if (afterScroll)
        afterScroll(*this);
}

void DataSet::close()
{
    if (!isOpen())
        return;
    mSelect.close();
    mRows.clear();
    mDeleted.clear();
    mCurrent = -1;
    mEof = mBof = true;
    mState = State::Inactive;
    Q_EMIT reset();
    Q_EMIT stateChanged(mState);
}

bool DataSet::isEmpty() const
{
    return mRows.empty();
}

bool DataSet::canFetchMore() const
{
    return isOpen() && mSelect.isOpen() && !mSelect.eof();
}

void DataSet::fetchOne()
{
    if (!mSelect.isOpen() || mSelect.eof())
        return;
    Row r;
    r.cur = mSelect.values();
    r.cur.resize(mNames.size());
    r.orig = r.cur;
    mRows.push_back(std::move(r));
    mSelect.next();
    calc(static_cast<int>(mRows.size()) - 1);
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
    if (!onCalcFields || mCalcNames.isEmpty())
        return;
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

const DataSet::Row* DataSet::accessRow() const
{
    const int r = mCalcRow >= 0 ? mCalcRow : mCurrent;
    if (r < 0 || r >= recordCount())
        return nullptr;
    return &mRows[r];
}

DataSet::Row* DataSet::accessRow()
{
    return const_cast<Row*>(static_cast<const DataSet*>(this)->accessRow());
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
    Q_EMIT currentChanged(row);
    if (afterScroll)
        afterScroll(*this);
}

void DataSet::checkBrowseForMove()
{
    if (!isOpen())
        throw DataSetError(QStringLiteral("Cannot perform this operation on a closed dataset"));
    // As the classic record engines do: leaving a row in edit posts it first.
    if (isEditing())
        post();
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

bool DataSet::locate(const QString& fieldName, const QVariant& value)
{
    checkBrowseForMove();
    const int col = fieldIndex(fieldName);
    if (col < 0)
        throw DataSetError(QStringLiteral("Field '%1' not found").arg(fieldName));
    const QString wanted = value.toString().trimmed();
    for (int r = 0; ensureRow(r); ++r) {
        const QVariant& v = mRows[r].cur[col];
        if (sameValue(v, value) || (!v.isNull() && v.isValid() && v.toString().trimmed() == wanted)) {
            mBof = r == 0;
            mEof = false;
            setCurrent(r);
            return true;
        }
    }
    return false;
}

void DataSet::refreshKeepingPosition(const QString& keyField)
{
    const QVariant key = (mCurrent >= 0 && isOpen()) ? fieldByName(keyField).value() : QVariant();
    close();
    open();
    if (key.isValid())
        locate(keyField, key);
}

void DataSet::insert()
{
    if (!isOpen())
        throw DataSetError(QStringLiteral("Cannot perform this operation on a closed dataset"));
    if (isEditing())
        post();
    if (beforeInsert)
        beforeInsert(*this);
    const int savedCurrent = mCurrent;
    const int at = mCurrent < 0 ? 0 : mCurrent;
    Row r;
    r.cur.resize(mNames.size());
    r.orig = r.cur;
    r.status = RowStatus::Inserted;
    mRows.insert(mRows.begin() + at, std::move(r));
    mCurrent = at;
    mState = State::Insert;
    try {
        if (onNewRecord)
            onNewRecord(*this);
    } catch (...) {
        mRows.erase(mRows.begin() + at);
        mCurrent = savedCurrent;
        mState = State::Browse;
        throw;
    }
    Q_EMIT rowInserted(at);
    Q_EMIT currentChanged(at);
    Q_EMIT stateChanged(mState);
}

void DataSet::append()
{
    if (!isOpen())
        throw DataSetError(QStringLiteral("Cannot perform this operation on a closed dataset"));
    if (isEditing())
        post();
    fetchAll();
    if (beforeInsert)
        beforeInsert(*this);
    const int savedCurrent = mCurrent;
    const int at = recordCount();
    Row r;
    r.cur.resize(mNames.size());
    r.orig = r.cur;
    r.status = RowStatus::Inserted;
    mRows.push_back(std::move(r));
    mCurrent = at;
    mState = State::Insert;
    try {
        if (onNewRecord)
            onNewRecord(*this);
    } catch (...) {
        mRows.pop_back();
        mCurrent = savedCurrent;
        mState = State::Browse;
        throw;
    }
    Q_EMIT rowInserted(at);
    Q_EMIT currentChanged(at);
    Q_EMIT stateChanged(mState);
}

void DataSet::edit()
{
    if (!isOpen())
        throw DataSetError(QStringLiteral("Cannot perform this operation on a closed dataset"));
    if (isEditing())
        return;
    if (mRows.empty()) {
        insert();
        return;
    }
    if (beforeEdit)
        beforeEdit(*this);
    mSnapshot = mRows[mCurrent];
    setState(State::Edit);
}

void DataSet::post()
{
    if (!isEditing())
        return;
    if (beforePost)
        beforePost(*this);
    Row& r = mRows[mCurrent];
    if (mState == State::Edit && r.status == RowStatus::Unmodified) {
        bool changed = false;
        for (int i = 0; i < mDbFieldCount && !changed; ++i)
            changed = !sameValue(r.cur[i], mSnapshot.cur[i]);
        if (changed)
            r.status = RowStatus::Modified;
    }
    calc(mCurrent);
    setState(State::Browse);
    Q_EMIT rowChanged(mCurrent);
    if (afterPost)
        afterPost(*this);
}

void DataSet::cancel()
{
    if (!isEditing())
        return;
    if (beforeCancel)
        beforeCancel(*this);
    if (mState == State::Insert) {
        const int at = mCurrent;
        mRows.erase(mRows.begin() + at);
        mState = State::Browse;
        Q_EMIT rowRemoved(at);
        mCurrent = -1;
        setCurrent(mRows.empty() ? -1 : std::min<int>(at, recordCount() - 1));
    } else {
        mRows[mCurrent] = mSnapshot;
        mState = State::Browse;
        Q_EMIT rowChanged(mCurrent);
    }
    Q_EMIT stateChanged(mState);
    if (afterCancel)
        afterCancel(*this);
}

void DataSet::remove()
{
    if (!isOpen() || mRows.empty())
        throw DataSetError(QStringLiteral("Cannot perform this operation on an empty dataset"));
    if (mState == State::Insert) {
        cancel();
        return;
    }
    if (beforeDelete)
        beforeDelete(*this);
    if (mState == State::Edit)
        mRows[mCurrent] = mSnapshot;
    const int at = mCurrent;
    Row r = mRows[at];
    r.deletedAt = at;
    if (r.status != RowStatus::Inserted)
        mDeleted.push_back(std::move(r));
    mRows.erase(mRows.begin() + at);
    mState = State::Browse;
    Q_EMIT rowRemoved(at);
    ensureRow(at);
    mCurrent = -1;
    setCurrent(mRows.empty() ? -1 : std::min<int>(at, recordCount() - 1));
    mEof = mRows.empty();
    Q_EMIT stateChanged(mState);
    if (afterDelete)
        afterDelete(*this);
}

bool DataSet::updatesPending() const
{
    if (!mDeleted.empty())
        return true;
    for (const Row& r : mRows)
        if (r.status != RowStatus::Unmodified)
            return true;
    return false;
}

void DataSet::runUpdate(const QString& sql, const Row& row)
{
    if (sql.isEmpty())
        throw DataSetError(QStringLiteral("No hay sentencia de actualización para la tabla"));
    Query q(*mDb, *mTr, sql);
    for (const QString& p : q.paramNames()) {
        int col = -1;
        bool useOld = false;
        if (p.startsWith(QLatin1String("OLD_")) && (col = mNames.indexOf(p.mid(4))) >= 0)
            useOld = true;
        else
            col = mNames.indexOf(p);
        if (col < 0)
            throw DataSetError(QStringLiteral("Field '%1' not found").arg(p));
        q.paramByName(p).setValue(useOld ? row.orig[col] : row.cur[col]);
    }
    q.exec();
}

void DataSet::applyUpdates()
{
    if (isEditing())
        post();
    while (!mDeleted.empty()) {
        runUpdate(mUpdate.remove, mDeleted.front());
        mDeleted.erase(mDeleted.begin());
    }
    for (Row& r : mRows) {
        if (r.status == RowStatus::Unmodified)
            continue;
        runUpdate(r.status == RowStatus::Inserted ? mUpdate.insert : mUpdate.modify, r);
        r.status = RowStatus::Unmodified;
        r.orig = r.cur;
    }
}

void DataSet::cancelUpdates()
{
    if (isEditing())
        cancel();
    std::vector<Row> kept;
    for (Row& r : mRows) {
        if (r.status == RowStatus::Inserted)
            continue;
        r.cur = r.orig;
        r.status = RowStatus::Unmodified;
        kept.push_back(std::move(r));
    }
    int current = kept.empty() ? -1 : std::clamp(mCurrent, 0, int(kept.size()) - 1);
    bool latest = true;
    // Latest deletion first, so every row returns to the place it left; the
    // current row becomes the one deleted last (the one the user saw go).
    for (auto it = mDeleted.rbegin(); it != mDeleted.rend(); ++it) {
        Row r = std::move(*it);
        const int at = std::clamp(r.deletedAt, 0, int(kept.size()));
        r.cur = r.orig;
        r.status = RowStatus::Unmodified;
        r.deletedAt = -1;
        if (!latest && at <= current)
            ++current;
        kept.insert(kept.begin() + at, std::move(r));
        if (latest) {
            current = at;
            latest = false;
        }
    }
    mDeleted.clear();
    mRows = std::move(kept);
    mCurrent = mRows.empty() ? -1 : current;
    mBof = mCurrent <= 0;
    mEof = mRows.empty();
    Q_EMIT reset();
    Q_EMIT currentChanged(mCurrent);
    if (afterScroll)
        afterScroll(*this);
}

void DataSet::refreshRecord()
{
    if (mUpdate.refresh.isEmpty() || mCurrent < 0)
        return;
    Query q(*mDb, *mTr, mUpdate.refresh);
    Row& r = mRows[mCurrent];
    for (const QString& p : q.paramNames()) {
        const bool old = p.startsWith(QLatin1String("OLD_"));
        const int col = mNames.indexOf(old ? p.mid(4) : p);
        if (col < 0)
            throw DataSetError(QStringLiteral("Field '%1' not found").arg(p));
        q.paramByName(p).setValue(old ? r.orig[col] : r.cur[col]);
    }
    q.open();
    if (q.eof())
        return;
    for (int i = 0; i < q.fieldCount(); ++i) {
        const int col = mNames.indexOf(q.fieldNames().at(i));
        if (col >= 0 && col < mDbFieldCount) {
            r.cur[col] = q.values().at(i);
            if (r.status == RowStatus::Unmodified)
                r.orig[col] = r.cur[col];
        }
    }
    calc(mCurrent);
    Q_EMIT rowChanged(mCurrent);
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
    return mRows[row].cur[column];
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
    const QVariant before = r->cur[index];
    r->cur[index] = v;
    if (mCalcRow < 0) {
        auto it = mOnChange.find(index);
        if (it != mOnChange.end()) {
            try {
                it->second(DataSetField(this, index));
            } catch (...) {
                r->cur[index] = before;
                throw;
            }
        }
        Q_EMIT rowChanged(mCurrent);
    }
}

void DataSet::generateTableSql()
{
    QStringList cols;
    for (int i = 0; i < mDbFieldCount; ++i)
        cols.append(mNames[i]);
    QStringList sets, params;
    for (const QString& c : cols) {
        sets.append(c + QStringLiteral(" = :") + c);
        params.append(QLatin1Char(':') + c);
    }
    QStringList where;
    if (!mKeys.isEmpty()) {
        for (const QString& k : mKeys)
            where.append(k + QStringLiteral(" = :OLD_") + k);
    } else {
        // No key: the row is the one whose every comparable column still
        // holds what was read. Blob columns cannot be compared.
        Query probe(*mDb, *mTr,
                    QStringLiteral("SELECT TRIM(RF.RDB$FIELD_NAME), F.RDB$FIELD_TYPE FROM RDB$RELATION_FIELDS RF "
                                   "JOIN RDB$FIELDS F ON F.RDB$FIELD_NAME = RF.RDB$FIELD_SOURCE "
                                   "WHERE RF.RDB$RELATION_NAME = :T"));
        probe.paramByName(QStringLiteral("T")).setAsString(mTable);
        QStringList blobs;
        for (probe.open(); !probe.eof(); probe.next())
            if (probe.field(1).asInteger() == 261)
                blobs.append(probe.field(0).asString());
        for (const QString& c : cols)
            if (!blobs.contains(c))
                where.append(QStringLiteral("(%1 = :OLD_%1 OR (%1 IS NULL AND :OLD_%1 IS NULL))").arg(c));
    }
    const QString w = where.join(QStringLiteral(" AND "));
    mUpdate.modify = QStringLiteral("UPDATE %1 SET %2 WHERE %3").arg(mTable, sets.join(QStringLiteral(", ")), w);
    mUpdate.insert = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                         .arg(mTable, cols.join(QStringLiteral(", ")), params.join(QStringLiteral(", ")));
    mUpdate.remove = QStringLiteral("DELETE FROM %1 WHERE %2").arg(mTable, w);
    if (!mKeys.isEmpty())
        mUpdate.refresh = QStringLiteral("SELECT * FROM %1 WHERE %2").arg(mTable, w);
}

} // namespace tv
