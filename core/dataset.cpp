#include "dataset.h"

#include "database.h"
#include "transaction.h"

#include <QMutex>

#include <algorithm>

namespace tv {

namespace {

// Rows read together when a row is shown; one statement with this many keys.
constexpr int kPage = 50;
// Full rows kept in memory while reading by keys; beyond this the ones far
// from the current row are dropped and read again when shown.
constexpr int kKeepLoaded = 10000;

bool isNullValue(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

bool sameValue(const QVariant& a, const QVariant& b)
{
    const bool an = isNullValue(a);
    const bool bn = isNullValue(b);
    if (an || bn)
        return an == bn;
    return a == b;
}

QString trimmedRight(const QString& s)
{
    qsizetype end = s.size();
    while (end > 0 && s.at(end - 1).isSpace())
        --end;
    return s.left(end);
}

// The table's primary key columns, read once per database file and table.
QStringList primaryKeyOf(Database& db, Transaction& tr, const QString& table)
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

} // namespace

// ------------------------------------------------------------- DataSetField

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

// ------------------------------------------------------------------ DataSet

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

void DataSet::setOnChange(const QString& fieldName, std::function<void(DataSetField)> f)
{
    mPendingOnChange[fieldName.toUpper()] = std::move(f);
    const int i = fieldIndex(fieldName);
    if (i >= 0)
        mOnChange[i] = mPendingOnChange[fieldName.toUpper()];
}

void DataSet::refusePending(bool includingOwn) const
{
    if (includingOwn && (isEditing() || updatesPending()))
        throw PendingChangesError();
    for (const QPointer<DataSet>& d : mDetails)
        if (d)
            d->refusePending(true);
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
            case FieldInfo::Type::Date: {
                for (const char* f : {"dd/MM/yyyy", "dd.MM.yyyy", "yyyy-MM-dd", "dd/MM/yyyy hh:mm", "dd.MM.yyyy hh:mm:ss"}) {
                    const QDateTime dt = QDateTime::fromString(t, QLatin1String(f));
                    if (dt.isValid()) {
                        v = dt;
                        ok = true;
                        break;
                    }
                }
                break;
            }
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

void DataSet::insert()
{
    if (!isOpen())
        throw DataSetError(QStringLiteral("Cannot perform this operation on a closed dataset"));
    refusePending(false);
    if (isEditing())
        post();
    beforeInsert(*this);
    const int savedCurrent = mCurrent;
    const int at = mCurrent < 0 ? 0 : mCurrent;
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

void DataSet::append()
{
    if (!isOpen())
        throw DataSetError(QStringLiteral("Cannot perform this operation on a closed dataset"));
    refusePending(false);
    if (isEditing())
        post();
    fetchAll();
    beforeInsert(*this);
    const int savedCurrent = mCurrent;
    const int at = recordCount();
    auto r = std::make_unique<Row>();
    r->cur = std::make_unique<QVector<QVariant>>(mDbFieldCount);
    r->status = RowStatus::Inserted;
    mRows.push_back(std::move(r));
    mCurrent = at;
    mState = State::Insert;
    try {
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
