// Finding rows: in memory, or by the database when the result is read by key.
#include "dataset.h"

#include "database.h"
#include "datasetshared.h"
#include "transaction.h"

#include <algorithm>

namespace tv {

using namespace datasetshared;

bool DataSet::rowMatches(const Row& r, const std::vector<int>& columns, const QVariantList& values,
                         LocateOptions options) const
{
    for (size_t k = 0; k < columns.size(); ++k) {
        const int col = columns[k];
        const QVariant& wanted = values[static_cast<int>(k)];
        const QVariant v = resolved(rawValue(r, col));
        if (isNullValue(wanted) || isNullValue(v)) {
            if (isNullValue(wanted) != isNullValue(v))
                return false;
            continue;
        }
        const FieldInfo info = mInfos.value(col);
        if (info.isText() || info.type == FieldInfo::Type::Bytes || v.typeId() == QMetaType::QString) {
            const Qt::CaseSensitivity cs = options & CaseInsensitive ? Qt::CaseInsensitive : Qt::CaseSensitive;
            // Texts compare as the engine compares them: trailing blanks do not count.
            const QString a = trimmedRight(v.toString());
            const QString b = options & PartialKey ? wanted.toString() : trimmedRight(wanted.toString());
            if (options & PartialKey ? !a.startsWith(b, cs) : a.compare(b, cs) != 0)
                return false;
        } else if (isNumberVariant(v) && (isNumberVariant(wanted) || wanted.typeId() == QMetaType::QString)) {
            bool ok = true;
            const double w = wanted.typeId() == QMetaType::QString ? wanted.toString().trimmed().toDouble(&ok)
                                                                     : wanted.toDouble();
            if (!ok || v.toDouble() != w)
                return false;
        } else if (v.typeId() == QMetaType::QDateTime) {
            const QDateTime w = wanted.typeId() == QMetaType::QDate ? wanted.toDate().startOfDay()
                                                                     : wanted.toDateTime();
            if (v.toDateTime() != w)
                return false;
        } else if (!sameValue(v, wanted) && v.toString().trimmed() != wanted.toString().trimmed()) {
            return false;
        }
    }
    return true;
}

int DataSet::positionOf(const Row* r) const
{
    for (size_t i = 0; i < mRows.size(); ++i)
        if (mRows[i].get() == r)
            return static_cast<int>(i);
    return -1;
}

int DataSet::locateByKey(const std::vector<int>& columns, const QVariantList& values, LocateOptions options)
{
    // Rows changed here, pending or saved since the select was read (they may
    // no longer meet its WHERE), are judged by what they hold here.
    auto judgedHere = [](const Row& r) { return r.cur || r.written; };
    int best = -1;
    for (size_t i = 0; i < mRows.size(); ++i) {
        const Row& r = *mRows[i];
        if (judgedHere(r) && rowMatches(r, columns, values, options)) {
            best = static_cast<int>(i);
            break;
        }
    }
    // The rest by the database, in the data set's order.
    QStringList conditions;
    QVariantList params;
    for (size_t k = 0; k < columns.size(); ++k) {
        const FieldInfo info = mInfos.value(columns[k]);
        const QString col = mParts.qualified(info.origin);
        QVariant v = values[static_cast<int>(k)];
        if (isNullValue(v)) {
            conditions.append(col + QStringLiteral(" IS NULL"));
            continue;
        }
        // A value the column cannot hold matches no stored row.
        if (!info.isText() && v.typeId() == QMetaType::QString) {
            bool ok = false;
            const QString t = v.toString().trimmed();
            switch (info.type) {
            case FieldInfo::Type::Integer:
                v = t.toLongLong(&ok);
                break;
            case FieldInfo::Type::Numeric:
            case FieldInfo::Type::Float:
                v = t.toDouble(&ok);
                break;
            case FieldInfo::Type::DateTime:
            case FieldInfo::Type::Date:
                v = dateTimeFromText(t);
                ok = v.toDateTime().isValid();
                break;
            default:
                ok = true;
            }
            if (!ok)
                return best;
        }
        const bool text = info.type == FieldInfo::Type::Text;
        const bool ci = text && (options & CaseInsensitive);
        const QString lhs = ci ? QStringLiteral("UPPER(%1)").arg(col) : col;
        const QString rhs = ci ? QStringLiteral("UPPER(:TVLOC%1)").arg(k) : QStringLiteral(":TVLOC%1").arg(k);
        if (text && (options & PartialKey))
            conditions.append(QStringLiteral("%1 STARTING WITH %2").arg(lhs, rhs));
        else
            conditions.append(QStringLiteral("%1 = %2").arg(lhs, rhs));
        params.append(text ? QVariant(v.toString()) : v);
    }
    QStringList keys;
    for (int c : mKeyColumns)
        keys.append(mParts.qualified(mInfos.value(c).origin));
    QString sql = QStringLiteral("SELECT %1 FROM %2 WHERE ").arg(keys.join(QStringLiteral(", ")), mParts.from());
    if (!mParts.where.isEmpty())
        sql += QLatin1Char('(') + mParts.where + QStringLiteral(") AND ");
    sql += QLatin1Char('(') + conditions.join(QStringLiteral(" AND ")) + QLatin1Char(')');
    if (!mParts.orderBy.isEmpty())
        sql += QStringLiteral(" ORDER BY ") + mParts.orderBy;
    if (!mLocateQuery)
        mLocateQuery = std::make_unique<Query>(*mDb, *mTr);
    Query& q = *mLocateQuery;
    q.setRawRows(true);
    q.setSQL(sql);
    for (const QString& p : q.paramNames()) {
        if (p.startsWith(QLatin1String("TVLOC")))
            q.paramByName(p).setValue(params.value(p.mid(5).toInt()));
        else
            q.paramByName(p).setValue(mSelect.paramByName(p).value());
    }
    for (q.open(); !q.eof(); q.next()) {
        const int at = positionOfKey(q.packedRow());
        if (at < 0)
            continue; // deleted here, or added by another workstation since the keys were read
        if (best >= 0 && at >= best)
            break;
        const Row& r = *mRows[static_cast<size_t>(at)];
        if (judgedHere(r))
            continue; // already judged by the values it holds here
        best = at;
        break;
    }
    q.close();
    return best;
}

bool DataSet::locate(const QString& fieldName, const QVariant& value, LocateOptions options)
{
    return locate(QStringList{fieldName}, QVariantList{value}, options);
}

bool DataSet::locate(const QStringList& fieldNames, const QVariantList& values, LocateOptions options)
{
    checkBrowseForMove();
    if (fieldNames.isEmpty() || fieldNames.size() != values.size())
        throw DataSetError(QStringLiteral("locate: fields and values differ in number"));
    std::vector<int> columns;
    bool byDatabase = mByKey;
    for (const QString& f : fieldNames) {
        const int col = fieldIndex(f);
        if (col < 0)
            throw DataSetError(QStringLiteral("Field '%1' not found").arg(f));
        columns.push_back(col);
        const FieldInfo info = mInfos.value(col);
        // Only the table's own columns can be searched by the database.
        if (col >= mDbFieldCount || info.isBlob() || info.origin.isEmpty() ||
            (!info.relation.isEmpty() && info.relation != mParts.table))
            byDatabase = false;
    }
    int found = -1;
    if (byDatabase) {
        found = locateByKey(columns, values, options);
    } else {
        for (int r = 0; ensureRow(r); ++r) {
            ensureLoaded(r);
            if (rowMatches(*mRows[static_cast<size_t>(r)], columns, values, options)) {
                found = r;
                break;
            }
        }
    }
    if (found < 0)
        return false;
    mBof = found == 0;
    mEof = false;
    setCurrent(found);
    return true;
}

void DataSet::refresh()
{
    if (!isOpen()) {
        open();
        return;
    }
    refusePending(true);
    QStringList keys = mKeys;
    if (keys.isEmpty())
        for (int c : mKeyColumns)
            keys.append(mNames.value(c));
    QVariantList key;
    std::vector<int> columns;
    if (mCurrent >= 0) {
        for (const QString& k : keys) {
            const int c = fieldIndex(k);
            if (c >= 0) {
                columns.push_back(c);
                key.append(rawValue(*mRows[static_cast<size_t>(mCurrent)], c));
            }
        }
    }
    const int at = mCurrent;
    close();
    open();
    if (!columns.empty() && !isEmpty()) {
        if (!locate(keys, key))
            moveTo(std::min(at, recordCount() - 1));
    }
}

void DataSet::refreshKeepingPosition(const QString& keyField)
{
    refusePending(true);
    const QVariant key = (mCurrent >= 0 && isOpen()) ? fieldByName(keyField).value() : QVariant();
    close();
    open();
    if (key.isValid())
        locate(keyField, key);
}

} // namespace tv
