// Reading a large single-table select by its keys: keys first, full rows a
// page at a time as they are shown, dropped again when far from view.
#include "dataset.h"

#include "database.h"
#include "datasetshared.h"
#include "transaction.h"

#include <QHash>
#include <QMutex>

#include <algorithm>

namespace tv {

QStringList datasetshared::primaryKeyOf(Database& db, Transaction& tr, const QString& table)
{
    static QMutex lock;
    static QHash<QString, QStringList> known;
    const QString id = db.databaseName() + QLatin1Char('|') + table;
    {
        QMutexLocker guard(&lock);
        auto it = known.constFind(id);
        if (it != known.constEnd())
            return *it;
    }
    Query q(db, tr,
            QStringLiteral("SELECT TRIM(S.RDB$FIELD_NAME) FROM RDB$RELATION_CONSTRAINTS C "
                           "JOIN RDB$INDEX_SEGMENTS S ON S.RDB$INDEX_NAME = C.RDB$INDEX_NAME "
                           "WHERE C.RDB$RELATION_NAME = :T AND C.RDB$CONSTRAINT_TYPE = 'PRIMARY KEY' "
                           "ORDER BY S.RDB$FIELD_POSITION"));
    q.paramByName(QStringLiteral("T")).setAsString(table);
    QStringList keys;
    for (q.open(); !q.eof(); q.next())
        keys.append(q.field(0).asString().toUpper());
    QMutexLocker guard(&lock);
    known.insert(id, keys);
    return keys;
}

using namespace datasetshared;

void DataSet::fetchOne()
{
    // A row this data set inserted and saved is already in place: the open
    // cursor, which now sees it too, must not bring it a second time.
    for (;;) {
        auto r = std::make_unique<Row>();
        if (mByKey) {
            if (!mKeyQuery->isOpen() || mKeyQuery->eof())
                return;
            r->key = mKeyQuery->packedRow();
            r->loaded = false;
            mKeyQuery->next();
            if (!mSavedInserts.isEmpty() && mSavedInserts.remove(identity(mKeyLayout.values(r->key), true)))
                continue;
            mRows.push_back(std::move(r));
            return;
        }
        if (!mSelect.isOpen() || mSelect.eof())
            return;
        r->data = mSelect.packedRow();
        mSelect.next();
        if (!mSavedInserts.isEmpty() && mSavedInserts.remove(identity(mLayout.values(r->data), false)))
            continue;
        mRows.push_back(std::move(r));
        calc(static_cast<int>(mRows.size()) - 1);
        return;
    }
}

QString DataSet::identity(const QVector<QVariant>& values, bool keysOnly) const
{
    QStringList parts;
    for (size_t k = 0; k < mIdentityColumns.size(); ++k)
        parts.append(values.value(keysOnly ? static_cast<int>(k) : mIdentityColumns[k]).toString());
    return parts.join(QChar(0x1F));
}

void DataSet::ensureLoaded(int row) const
{
    if (row < 0 || row >= recordCount())
        return;
    const Row& r = *mRows[static_cast<size_t>(row)];
    if (!r.loaded && !r.cur)
        const_cast<DataSet*>(this)->loadPage(row);
}

QByteArray DataSet::keyOf(const QVector<QVariant>& values) const
{
    QVector<QVariant> k;
    for (int c : mKeyColumns)
        k.append(values.value(c));
    return mKeyLayout.pack(k);
}

void DataSet::openByKey()
{
    // A select on one table whose key is known is read by keys.
    mByKey = false;
    mKeyColumns.clear();
    mParts = parseSelect(mSelect.sql());
    QStringList fieldParams;
    if (mParts.simple)
        convertParameters(mParts.fields, &fieldParams);
    QStringList keys = mKeys;
    if (mParts.simple && fieldParams.isEmpty() && keys.isEmpty())
        keys = primaryKeyOf(*mDb, *mTr, mParts.table);
    if (mParts.simple && fieldParams.isEmpty() && !keys.isEmpty() &&
        (mTable.isEmpty() || mTable == mParts.table)) {
        QStringList in;
        if (keys.size() == 1) {
            QStringList marks;
            for (int i = 0; i < kPage; ++i)
                marks.append(QStringLiteral(":K%1_0").arg(i));
            in.append(QStringLiteral("%1 IN (%2)").arg(mParts.qualified(keys.front()), marks.join(QStringLiteral(", "))));
        } else {
            for (int i = 0; i < kPage; ++i) {
                QStringList parts;
                for (int k = 0; k < keys.size(); ++k)
                    parts.append(QStringLiteral("%1 = :K%2_%3").arg(mParts.qualified(keys[k])).arg(i).arg(k));
                in.append(QLatin1Char('(') + parts.join(QStringLiteral(" AND ")) + QLatin1Char(')'));
            }
        }
        mPageQuery = std::make_unique<Query>(*mDb, *mTr);
        mPageQuery->setRawRows(true);
        mPageQuery->setReadBlobs(false);
        mPageQuery->setSQL(QStringLiteral("SELECT %1 FROM %2 WHERE %3")
                               .arg(mParts.fields, mParts.from(), in.join(QStringLiteral(" OR "))));
        mPageQuery->prepare();
        mKeyColumns.clear();
        for (const QString& k : keys)
            mKeyColumns.push_back(static_cast<int>(mPageQuery->fieldNames().indexOf(k)));
        mByKey = std::none_of(mKeyColumns.begin(), mKeyColumns.end(), [](int c) { return c < 0; });
        if (mByKey) {
            QStringList qualified;
            for (const QString& k : keys)
                qualified.append(mParts.qualified(k));
            QString sql = QStringLiteral("SELECT %1 FROM %2").arg(qualified.join(QStringLiteral(", ")), mParts.from());
            if (!mParts.where.isEmpty())
                sql += QStringLiteral(" WHERE ") + mParts.where;
            if (!mParts.orderBy.isEmpty())
                sql += QStringLiteral(" ORDER BY ") + mParts.orderBy;
            mKeyQuery = std::make_unique<Query>(*mDb, *mTr, sql);
            mKeyQuery->setRawRows(true);
            try {
                mKeyQuery->prepare();
            } catch (const DatabaseError&) {
                // Ordered by something only the full select names (an alias,
                // an expression of its list): read as it stands.
                mByKey = false;
            }
        }
        if (mByKey) {
            for (const QString& p : mKeyQuery->paramNames())
                mKeyQuery->paramByName(p).setValue(mSelect.paramByName(p).value());
            mKeyQuery->open();
            mKeyLayout = mKeyQuery->layout();
            mNames = mPageQuery->fieldNames();
            mInfos = mPageQuery->fieldInfos();
            mLayout = mPageQuery->layout();
        } else {
            mPageQuery.reset();
        }
    }
}

void DataSet::chooseIdentityColumns()
{
    // The columns that tell one row from another, to recognise saved inserts.
    mIdentityColumns.clear();
    if (mByKey) {
        mIdentityColumns = mKeyColumns;
    } else {
        QStringList keys = mKeys;
        if (keys.isEmpty() && !mTable.isEmpty())
            keys = primaryKeyOf(*mDb, *mTr, mTable);
        for (const QString& k : keys) {
            const int c = static_cast<int>(mNames.indexOf(k));
            if (c < 0 || c >= mDbFieldCount) {
                mIdentityColumns.clear();
                break;
            }
            mIdentityColumns.push_back(c);
        }
        // No key known: a row is told by everything it holds but its blobs.
        if (mIdentityColumns.empty())
            for (int c = 0; c < mDbFieldCount; ++c)
                if (!mInfos.value(c).isBlob())
                    mIdentityColumns.push_back(c);
    }
}

void DataSet::loadPage(int row)
{
    // The page around the row: the rows after it, as a list is read down,
    // and those before it when it is near the end.
    const int n = recordCount();
    int from = std::max(0, std::min(row, n - kPage));
    // Read upwards (the row after is there already): the page ends at the row.
    if (row + 1 < n && mRows[static_cast<size_t>(row + 1)]->loaded)
        from = std::max(0, row - kPage + 1);
    std::vector<Row*> wanted;
    for (int i = from; i < n && static_cast<int>(wanted.size()) < kPage; ++i) {
        Row* r = mRows[static_cast<size_t>(i)].get();
        if (!r->loaded && !r->cur)
            wanted.push_back(r);
    }
    if (wanted.empty())
        return;
    QHash<QByteArray, Row*> byKey;
    const int keyCount = static_cast<int>(mKeyColumns.size());
    for (int i = 0; i < kPage; ++i) {
        Row* r = wanted[static_cast<size_t>(std::min<int>(i, static_cast<int>(wanted.size()) - 1))];
        byKey.insert(r->key, r);
        const QVector<QVariant> kv = mKeyLayout.values(r->key);
        for (int k = 0; k < keyCount; ++k)
            mPageQuery->paramByName(QStringLiteral("K%1_%2").arg(i).arg(k)).setValue(kv.value(k));
    }
    for (mPageQuery->open(); !mPageQuery->eof(); mPageQuery->next()) {
        const QByteArray data = mPageQuery->packedRow();
        QVector<QVariant> kv;
        for (int c : mKeyColumns)
            kv.append(mLayout.value(data, c));
        Row* r = byKey.value(mKeyLayout.pack(kv));
        if (!r || r->loaded)
            continue;
        r->data = data;
        r->loaded = true;
    }
    mPageQuery->close();
    // A row another workstation deleted since its key was read: only its key
    // is left to show, and saving it will say so.
    for (Row* r : wanted) {
        if (!r->loaded) {
            QVector<QVariant> values(mDbFieldCount);
            const QVector<QVariant> kv = mKeyLayout.values(r->key);
            for (int k = 0; k < keyCount; ++k)
                values[mKeyColumns[static_cast<size_t>(k)]] = kv.value(k);
            r->data = mLayout.pack(values);
            r->loaded = true;
        }
    }
    mLoadedRows += static_cast<int>(wanted.size());
    for (int i = from; i < n && i < from + kPage + static_cast<int>(wanted.size()); ++i)
        if (mRows[static_cast<size_t>(i)]->loaded && !mRows[static_cast<size_t>(i)]->calc)
            calc(i);
    if (mLoadedRows > kKeepLoaded)
        evictFarRows(from, from + kPage);
}

void DataSet::evictFarRows(int keepFrom, int keepTo)
{
    // Down to a quarter of the budget around the current row, so the scan
    // over every row runs once per thousands of rows read, not per page.
    const int window = kKeepLoaded / 8;
    const int n = recordCount();
    int loaded = 0;
    for (int i = 0; i < n; ++i) {
        Row& r = *mRows[static_cast<size_t>(i)];
        if (!r.loaded)
            continue;
        const bool near = (i >= keepFrom && i < keepTo) || std::abs(i - mCurrent) < window;
        if (near || r.cur || r.written || r.status != RowStatus::Unmodified) {
            ++loaded;
            continue;
        }
        r.data = QByteArray();
        r.calc.reset();
        r.loaded = false;
    }
    mLoadedRows = loaded;
}

int DataSet::positionOfKey(const QByteArray& key)
{
    for (int i = 0;; ++i) {
        if (!ensureRow(i))
            return -1;
        const Row& r = *mRows[static_cast<size_t>(i)];
        if (r.status != RowStatus::Inserted && r.key == key)
            return i;
    }
}

} // namespace tv
