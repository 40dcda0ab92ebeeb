// Cached updates: the apply that lands whole or not at all, the check that
// no other workstation changed the row, and taking changes back.
#include "dataset.h"

#include "database.h"
#include "datasetshared.h"
#include "transaction.h"

#include <algorithm>

namespace tv {

using namespace datasetshared;

void DataSet::retargetAnchors(const Row* gone, Row* successor)
{
    for (const auto& d : mDeleted)
        if (d->anchor == gone)
            d->anchor = successor;
}

void DataSet::markDirty(Row* r)
{
    if (std::find(mDirty.begin(), mDirty.end(), r) == mDirty.end())
        mDirty.push_back(r);
}

void DataSet::forgetDirty(Row* r)
{
    std::erase(mDirty, r);
}

void DataSet::bindUpdate(Query& q, const Row& r, bool oldFromCurrent) const
{
    for (const QString& p : q.paramNames()) {
        int col = -1;
        bool useOld = false;
        if (p.startsWith(QLatin1String("OLD_")) && (col = mNames.indexOf(p.mid(4))) >= 0)
            useOld = true;
        else
            col = mNames.indexOf(p);
        if (col < 0)
            throw DataSetError(QStringLiteral("Field '%1' not found").arg(p));
        QVariant v;
        if (useOld && !oldFromCurrent && col < mDbFieldCount)
            v = r.status == RowStatus::Inserted ? QVariant() : mLayout.value(r.data, col);
        else
            v = rawValue(r, col);
        q.paramByName(p).setValue(v);
    }
}

void DataSet::checkUnchanged(const Row& r)
{
    // The row as this workstation read it must still be there, unchanged,
    // and is locked for the rest of the transaction so nobody changes it
    // between this check and the update.
    if (mUpdate.refresh.isEmpty())
        return;
    const SelectParts parts = parseSelect(mUpdate.refresh);
    if (!mLockQ)
        mLockQ = std::make_unique<Query>(*mDb, *mTr);
    mLockQ->setRawRows(true);
    mLockQ->setReadBlobs(false);
    mLockQ->setSQL(parts.simple ? mUpdate.refresh + QStringLiteral(" WITH LOCK") : mUpdate.refresh);
    bindUpdate(*mLockQ, r, false);
    mLockQ->open();
    if (mLockQ->eof()) {
        mLockQ->close();
        throw RecordChangedError();
    }
    const QByteArray now = mLockQ->packedRow();
    const RowLayout& layout = mLockQ->layout();
    const QStringList names = mLockQ->fieldNames();
    mLockQ->close();
    for (int i = 0; i < names.size(); ++i) {
        const int col = mNames.indexOf(names[i]);
        if (col < 0 || col >= mDbFieldCount)
            continue;
        if (!sameValue(layout.value(now, i), mLayout.value(r.data, col)))
            throw RecordChangedError();
    }
}

void DataSet::runUpdate(Query& q, const Row& r)
{
    bindUpdate(q, r, false);
    q.exec();
    const Query::StatementType t = q.statementType();
    if ((t == Query::StatementType::Update || t == Query::StatementType::Delete) && q.rowsAffected() == 0)
        throw RecordChangedError();
}

QVector<QVariant> DataSet::readBack(const Row& r)
{
    // What the database now holds (triggers, defaults, conversions), so the
    // next save compares against the truth.
    QVector<QVariant> values = *r.cur;
    if (mUpdate.refresh.isEmpty())
        return values;
    if (!mRefreshQ)
        mRefreshQ = std::make_unique<Query>(*mDb, *mTr);
    mRefreshQ->setRawRows(true);
    mRefreshQ->setReadBlobs(false);
    mRefreshQ->setSQL(mUpdate.refresh);
    bindUpdate(*mRefreshQ, r, true);
    mRefreshQ->open();
    if (!mRefreshQ->eof()) {
        const QByteArray now = mRefreshQ->packedRow();
        const QStringList names = mRefreshQ->fieldNames();
        for (int i = 0; i < names.size(); ++i) {
            const int col = mNames.indexOf(names[i]);
            if (col >= 0 && col < mDbFieldCount)
                values[col] = mRefreshQ->layout().value(now, i);
        }
    }
    mRefreshQ->close();
    return values;
}

void DataSet::settle(Row& r, const QVector<QVariant>& values)
{
    if (r.status == RowStatus::Inserted && !mIdentityColumns.empty() && canFetchMore())
        mSavedInserts.insert(identity(values, false));
    r.data = mLayout.pack(values);
    if (mByKey)
        r.key = keyOf(values);
    r.loaded = true;
    r.written = true;
    r.cur.reset();
    r.status = RowStatus::Unmodified;
}

void DataSet::applyUpdates()
{
    if (isEditing())
        post();
    if (!updatesPending())
        return;
    auto statement = [this](std::unique_ptr<Query>& q, const QString& sql) -> Query& {
        if (sql.isEmpty())
            throw DataSetError(QStringLiteral("No hay sentencia de actualización para la tabla"));
        if (!q)
            q = std::make_unique<Query>(*mDb, *mTr);
        q->setReadBlobs(false);
        q->setSQL(sql);
        return *q;
    };
    // One savepoint per apply: a failure takes back every statement of it.
    if (!mSavepoint) {
        mSavepoint = std::make_unique<Query>(*mDb, *mTr, QStringLiteral("SAVEPOINT TV_APLICAR"));
        mRelease = std::make_unique<Query>(*mDb, *mTr, QStringLiteral("RELEASE SAVEPOINT TV_APLICAR"));
        mRollbackTo = std::make_unique<Query>(*mDb, *mTr, QStringLiteral("ROLLBACK TO SAVEPOINT TV_APLICAR"));
    }
    std::vector<QVector<QVariant>> fresh;
    fresh.reserve(mDirty.size());
    mSavepoint->exec();
    try {
        for (const auto& r : mDeleted) {
            checkUnchanged(*r);
            runUpdate(statement(mDeleteQ, mUpdate.remove), *r);
        }
        for (Row* r : mDirty) {
            if (r->status == RowStatus::Inserted) {
                runUpdate(statement(mInsertQ, mUpdate.insert), *r);
            } else {
                checkUnchanged(*r);
                runUpdate(statement(mModifyQ, mUpdate.modify), *r);
            }
        }
        for (Row* r : mDirty)
            fresh.push_back(readBack(*r));
        mRelease->exec();
    } catch (...) {
        try {
            mRollbackTo->exec();
            mRelease->exec();
        } catch (const DatabaseError&) {
            // The statement's own error is the one to report.
        }
        throw;
    }
    // Only now, with everything stored, do the rows become clean.
    const Row* current = mCurrent >= 0 && mCurrent < recordCount() ? mRows[static_cast<size_t>(mCurrent)].get() : nullptr;
    bool currentSaved = false;
    for (size_t i = 0; i < mDirty.size(); ++i) {
        currentSaved = currentSaved || mDirty[i] == current;
        settle(*mDirty[i], fresh[i]);
    }
    mDeleted.clear();
    mDirty.clear();
    mBlobs.clear();
    // Only with calculated fields is the list walked: an apply per row over a
    // long list (the migration) stays linear.
    if (onCalcFields && !mCalcNames.isEmpty())
        for (int i = 0; i < recordCount(); ++i)
            if (mRows[static_cast<size_t>(i)]->loaded)
                calc(i);
    // What the database made of the row (triggers, defaults) is shown, and
    // details follow a key it may have been given.
    if (currentSaved)
        Q_EMIT rowChanged(mCurrent);
    syncDetails();
}

void DataSet::cancelUpdates()
{
    refusePending(false);
    if (isEditing())
        cancel();
    // Deleted rows go back first, latest first, each before the row that
    // followed it when it went (pending inserts still in place, so that row
    // is there to be found); the current row becomes the one deleted last.
    Row* lastDeleted = nullptr;
    for (auto it = mDeleted.rbegin(); it != mDeleted.rend(); ++it) {
        std::unique_ptr<Row> r = std::move(*it);
        int at = r->anchor ? positionOf(r->anchor) : recordCount();
        if (at < 0)
            at = std::clamp(r->deletedAt, 0, recordCount());
        r->cur.reset();
        r->status = RowStatus::Unmodified;
        r->deletedAt = -1;
        r->anchor = nullptr;
        if (!lastDeleted)
            lastDeleted = r.get();
        mRows.insert(mRows.begin() + at, std::move(r));
    }
    mDeleted.clear();
    const Row* wasCurrent = mCurrent >= 0 && mCurrent < recordCount() ? mRows[static_cast<size_t>(mCurrent)].get() : nullptr;
    int current = mCurrent;
    std::vector<std::unique_ptr<Row>> kept;
    kept.reserve(mRows.size());
    for (auto& r : mRows) {
        if (r->status == RowStatus::Inserted)
            continue;
        if (r->status == RowStatus::Modified || r->cur) {
            r->cur.reset();
            r->status = RowStatus::Unmodified;
        }
        if (r.get() == lastDeleted || (!lastDeleted && r.get() == wasCurrent))
            current = static_cast<int>(kept.size());
        kept.push_back(std::move(r));
    }
    mDirty.clear();
    mRows = std::move(kept);
    mCurrent = mRows.empty() ? -1 : std::clamp(current, 0, recordCount() - 1);
    mBof = mCurrent <= 0;
    mEof = mRows.empty();
    for (int i = 0; i < recordCount(); ++i)
        if (mRows[static_cast<size_t>(i)]->loaded)
            calc(i);
    ensureLoaded(mCurrent);
    Q_EMIT reset();
    Q_EMIT currentChanged(mCurrent);
    afterScroll(*this);
    syncDetails();
}

void DataSet::refreshRecord()
{
    if (mUpdate.refresh.isEmpty() || mCurrent < 0)
        return;
    Query q(*mDb, *mTr, mUpdate.refresh);
    q.setRawRows(true);
    q.setReadBlobs(false);
    Row& r = *mRows[static_cast<size_t>(mCurrent)];
    ensureLoaded(mCurrent);
    bindUpdate(q, r, r.status == RowStatus::Inserted);
    q.open();
    if (q.eof())
        return;
    const QByteArray now = q.packedRow();
    QVector<QVariant> read = mLayout.values(r.data);
    QVector<QVariant>* cur = r.cur.get();
    for (int i = 0; i < q.fieldCount(); ++i) {
        const int col = mNames.indexOf(q.fieldNames().at(i));
        if (col >= 0 && col < mDbFieldCount) {
            const QVariant v = q.layout().value(now, i);
            if (cur)
                (*cur)[col] = v;
            if (r.status == RowStatus::Unmodified)
                read[col] = v;
        }
    }
    if (r.status == RowStatus::Unmodified)
        r.data = mLayout.pack(read);
    mBlobs.clear();
    calc(mCurrent);
    Q_EMIT rowChanged(mCurrent);
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
        for (int i = 0; i < mDbFieldCount; ++i)
            if (!mInfos.value(i).isBlob())
                where.append(QStringLiteral("(%1 = :OLD_%1 OR (%1 IS NULL AND :OLD_%1 IS NULL))").arg(cols[i]));
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
