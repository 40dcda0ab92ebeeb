// Master-detail links and the refusals that keep pending changes.
#include "dataset.h"

#include "database.h"
#include "datasetshared.h"
#include "transaction.h"

#include <algorithm>

namespace tv {

using namespace datasetshared;

void DataSet::setMasterSource(DataSet* master, const QStringList& fields)
{
    if (mMaster)
        std::erase_if(mMaster->mDetails, [this](const QPointer<DataSet>& d) { return d.data() == this || !d; });
    mMaster = master;
    mMasterFields.clear();
    for (const QString& f : fields)
        mMasterFields.append(f.toUpper());
    if (master)
        master->mDetails.emplace_back(this);
}

void DataSet::refusePending(bool includingOwn) const
{
    if (includingOwn && (isEditing() || updatesPending()))
        throw PendingChangesError();
    for (const QPointer<DataSet>& d : mDetails)
        if (d)
            d->refusePending(true);
}

std::vector<std::pair<QString, QVariant>> DataSet::detailParams(const DataSet& d) const
{
    std::vector<std::pair<QString, QVariant>> out;
    const QStringList names = d.mMasterFields.isEmpty() ? d.mSelect.paramNames() : d.mMasterFields;
    for (const QString& p : names) {
        const int col = fieldIndex(p);
        if (col < 0 || !d.mSelect.hasParam(p))
            continue;
        out.emplace_back(p, mCurrent >= 0 && !isEmpty() ? rawValue(*mRows[static_cast<size_t>(mCurrent)], col)
                                                         : QVariant());
    }
    return out;
}

bool DataSet::detailMustFollow(DataSet& d) const
{
    if (!d.isOpen())
        return true;
    for (const auto& [p, v] : detailParams(d)) {
        const QVariant now = d.mSelect.paramByName(p).value();
        if (!sameValue(now, v) || now.typeId() != v.typeId())
            return true;
    }
    return false;
}

void DataSet::refuseIfDetailsCannotFollow() const
{
    // Checked before anything moves, so a refusal leaves master and details
    // exactly as they were.
    for (const QPointer<DataSet>& d : mDetails)
        if (d && (d->isEditing() || d->updatesPending()) && detailMustFollow(*d))
            throw PendingChangesError();
}

void DataSet::syncDetails()
{
    for (const QPointer<DataSet>& d : mDetails) {
        if (!d)
            continue;
        if (!isOpen()) {
            d->close();
            continue;
        }
        if (!detailMustFollow(*d))
            continue;
        d->refusePending(true);
        for (const auto& [p, v] : detailParams(*d))
            d->mSelect.paramByName(p).setValue(v);
        d->close();
        d->open();
    }
}

} // namespace tv
