// Editing: new rows, edits, posting, cancelling and removing, each refusable
// by a hook with the data set left as it was.
#include "dataset.h"

#include "datasetshared.h"

#include <algorithm>

namespace tv {

using namespace datasetshared;

void DataSet::insert()
{
    insertRow(false);
}

void DataSet::append()
{
    insertRow(true);
}

void DataSet::insertRow(bool atEnd)
{
    if (!isOpen())
        throw DataSetError(QStringLiteral("Cannot perform this operation on a closed dataset"));
    refusePending(false);
    if (isEditing())
        post();
    if (atEnd)
        fetchAll();
    beforeInsert(*this);
    const int savedCurrent = mCurrent;
    const int at = atEnd ? recordCount() : std::max(mCurrent, 0);
    auto r = std::make_unique<Row>();
    r->cur = std::make_unique<QVector<QVariant>>(mDbFieldCount);
    r->status = RowStatus::Inserted;
    mRows.insert(mRows.begin() + at, std::move(r));
    mCurrent = at;
    mState = State::Insert;
    try {
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
    syncDetails();
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
    beforeEdit(*this);
    Row& r = *mRows[static_cast<size_t>(mCurrent)];
    ensureLoaded(mCurrent);
    mSnapshot.cur = r.cur ? std::make_unique<QVector<QVariant>>(*r.cur) : nullptr;
    mSnapshot.status = r.status;
    editableValues(r);
    setState(State::Edit);
}

void DataSet::post()
{
    if (!isEditing())
        return;
    refuseIfDetailsCannotFollow();
    beforePost(*this);
    Row& r = *mRows[static_cast<size_t>(mCurrent)];
    if (mState == State::Insert) {
        markDirty(&r);
    } else if (r.status == RowStatus::Unmodified) {
        const QVector<QVariant> before = mLayout.values(r.data);
        bool changed = false;
        for (int i = 0; i < mDbFieldCount && !changed; ++i)
            changed = !sameValue(r.cur->at(i), before.at(i));
        if (changed) {
            r.status = RowStatus::Modified;
            markDirty(&r);
        } else {
            r.cur.reset(); // nothing to keep beyond the row as read
        }
    }
    mSnapshot = {};
    calc(mCurrent);
    setState(State::Browse);
    Q_EMIT rowChanged(mCurrent);
    afterPost(*this);
    syncDetails();
}

void DataSet::cancel()
{
    if (!isEditing())
        return;
    if (mState == State::Insert)
        refusePending(false);
    beforeCancel(*this);
    if (mState == State::Insert) {
        const int at = mCurrent;
        forgetDirty(mRows[static_cast<size_t>(at)].get());
        retargetAnchors(mRows[static_cast<size_t>(at)].get(),
                        at + 1 < recordCount() ? mRows[static_cast<size_t>(at + 1)].get() : nullptr);
        mRows.erase(mRows.begin() + at);
        mState = State::Browse;
        Q_EMIT rowRemoved(at);
        mCurrent = -1;
        setCurrent(mRows.empty() ? -1 : std::min<int>(at, recordCount() - 1));
    } else {
        Row& r = *mRows[static_cast<size_t>(mCurrent)];
        r.cur = std::move(mSnapshot.cur);
        r.status = mSnapshot.status;
        mState = State::Browse;
        calc(mCurrent);
        Q_EMIT rowChanged(mCurrent);
    }
    mSnapshot = {};
    Q_EMIT stateChanged(mState);
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
    refusePending(false);
    beforeDelete(*this);
    const int at = mCurrent;
    Row* row = mRows[static_cast<size_t>(at)].get();
    if (mState == State::Edit) {
        row->cur = std::move(mSnapshot.cur);
        row->status = mSnapshot.status;
        mSnapshot = {};
    }
    forgetDirty(row);
    std::unique_ptr<Row> r = std::move(mRows[static_cast<size_t>(at)]);
    mRows.erase(mRows.begin() + at);
    mState = State::Browse;
    Q_EMIT rowRemoved(at);
    ensureRow(at);
    Row* successor = at < recordCount() ? mRows[static_cast<size_t>(at)].get() : nullptr;
    if (r->status != RowStatus::Inserted) {
        r->deletedAt = at;
        r->anchor = successor;
        mDeleted.push_back(std::move(r));
    } else {
        retargetAnchors(r.get(), successor);
    }
    mCurrent = -1;
    setCurrent(mRows.empty() ? -1 : std::min<int>(at, recordCount() - 1));
    mEof = mRows.empty();
    Q_EMIT stateChanged(mState);
    afterDelete(*this);
}

} // namespace tv
