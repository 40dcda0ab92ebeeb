#pragma once

#include "dberror.h"
#include "query.h"
#include "rowbuffer.h"
#include "selectparts.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace tv {

class DataSet;

// A column of the data set's current row (or of the row being calculated).
class DataSetField {
public:
    DataSetField(DataSet* ds, int index) : mDs(ds), mIndex(index) {}

    QString name() const;
    int index() const { return mIndex; }
    // Blob contents are read here, on first use, not when the row is fetched.
    QVariant value() const;
    QVariant oldValue() const;
    bool isNull() const;
    QString asString() const { return asField().asString(); }
    int asInteger() const { return asField().asInteger(); }
    qlonglong asInt64() const { return asField().asInt64(); }
    double asDouble() const { return asField().asDouble(); }
    QDateTime asDateTime() const { return asField().asDateTime(); }
    QDate asDate() const { return asField().asDate(); }
    QByteArray asBytes() const { return asField().asBytes(); }
    bool isCalculated() const;
    FieldInfo info() const;

    void setValue(const QVariant& v);
    void setAsString(const QString& s) { setValue(s); }
    void setAsInteger(qlonglong i) { setValue(i); }
    void setAsDouble(double d) { setValue(d); }
    void setAsDateTime(const QDateTime& d) { setValue(d); }
    void clear() { setValue(QVariant()); }

private:
    Field asField() const { return Field(name(), value()); }
    DataSet* mDs;
    int mIndex;
};

// Subscribers of one data-set event, called in the order they were added, so
// a screen base and the screen each attach their own without replacing the
// other's. A subscriber may refuse by throwing Abort.
template <typename... Args>
class HookList {
public:
    using Fn = std::function<void(Args...)>;
    int add(Fn f)
    {
        mSubs.emplace_back(++mNext, std::move(f));
        return mNext;
    }
    HookList& operator+=(Fn f)
    {
        add(std::move(f));
        return *this;
    }
    void remove(int id)
    {
        std::erase_if(mSubs, [id](const auto& s) { return s.first == id; });
    }
    void clear() { mSubs.clear(); }
    explicit operator bool() const { return !mSubs.empty(); }
    void operator()(Args... args) const
    {
        if (mSubs.empty())
            return;
        // A subscriber may add or remove others; call the ones there now.
        const auto subs = mSubs;
        for (const auto& s : subs)
            s.second(args...);
    }

private:
    std::vector<std::pair<int, Fn>> mSubs;
    int mNext = 0;
};

// The record-screen engine over one select: a current row; the states
// browse / edit / insert; hooks that may refuse an operation by throwing
// Abort (the data set then stands exactly as before and re-throws); and
// cached updates, kept until applyUpdates() runs the table's fixed modify /
// insert / delete statements. In those statements ":NAME" is the field's new
// value and ":OLD_NAME" its value as read.
//
// Rows are held packed (see RowLayout) and blobs are read when a field is
// read. A select on one table whose key is known (setTable, setKeyFields, or
// the table's primary key) is read by keys: the whole result's keys come
// first, cheaply, and full rows are read a page at a time as they are shown,
// and dropped again when far from view; so the last row of 90,000 wide ones
// is reached in a second.
//
// Changes are never dropped silently: close, refresh, a new select and moving
// a master with pending detail changes all refuse with PendingChangesError.
// An apply runs inside a savepoint and lands whole or not at all; a modify or
// delete whose row another workstation changed or deleted since it was read
// fails with RecordChangedError and stays pending.
// Not thread-safe.
class DataSet : public QObject {
    Q_OBJECT
public:
    enum class State { Inactive, Browse, Edit, Insert };
    enum class RowStatus { Unmodified, Modified, Inserted };
    enum LocateOption { CaseInsensitive = 1, PartialKey = 2 };
    Q_DECLARE_FLAGS(LocateOptions, LocateOption)

    struct UpdateSql {
        QString refresh;
        QString modify;
        QString insert;
        QString remove;
    };

    DataSet(Database& db, Transaction& tr, QObject* parent = nullptr);
    ~DataSet() override;

    void setSelectSQL(const QString& sql);
    QString selectSQL() const { return mSelect.sql(); }
    Param paramByName(const QString& name) { return mSelect.paramByName(name); }
    void setUpdateSql(const UpdateSql& sql) { mUpdate = sql; }
    const UpdateSql& updateSql() const { return mUpdate; }
    // "SELECT * FROM table" with statements generated from its columns; with
    // no key, rows are found by comparing every non-blob column.
    void setTable(const QString& table, const QStringList& keyFields = {});
    // The columns that identify a row of the select's table.
    void setKeyFields(const QStringList& keyFields);
    QStringList keyFields() const { return mKeys; }
    // The table the update statements write (empty for a read-only select).
    QString table() const { return mTable; }
    // A calculated field, recomputed by onCalcFields when a row is read, on
    // post, and while editing whenever one of dependsOn changes (any field
    // when dependsOn is empty).
    void addCalculatedField(const QString& name, const QStringList& dependsOn = {});
    // This data set's parameters named like the master's fields (or only
    // `fields`) follow the master's current row: it reopens when the master
    // moves, and the master refuses to move while this one has pending changes.
    void setMasterSource(DataSet* master, const QStringList& fields = {});
    DataSet* masterSource() const { return mMaster; }
    Database& database() const { return *mDb; }
    Transaction& transaction() const { return *mTr; }

    void open();
    void close();
    bool isOpen() const { return mState != State::Inactive; }
    State state() const { return mState; }
    bool isEditing() const { return mState == State::Edit || mState == State::Insert; }
    // True when the result is read by keys (large single-table selects).
    bool readsByKey() const { return mByKey; }

    // Rows known so far (the select may hold more).
    int recordCount() const { return static_cast<int>(mRows.size()); }
    bool isEmpty() const;
    int recNo() const { return mCurrent; }
    bool eof() const { return mEof; }
    bool bof() const { return mBof; }
    bool canFetchMore() const;
    void fetchMore(int count);
    void fetchAll();

    void first();
    void prior();
    void next();
    void last();
    void moveTo(int row);
    // The first row, in the data set's order, whose fields hold the values;
    // with PartialKey a text field need only start with its value. Pending
    // changes count as the row's values.
    bool locate(const QString& fieldName, const QVariant& value, LocateOptions options = {});
    bool locate(const QStringList& fieldNames, const QVariantList& values, LocateOptions options = {});
    // Reopens the select and returns to the row with the same key.
    void refresh();
    void refreshKeepingPosition(const QString& keyField);

    void insert();
    void append();
    void edit();
    void post();
    void cancel();
    void remove();

    bool updatesPending() const { return !mDirty.empty() || !mDeleted.empty(); }
    // Runs the pending statements, deletions first, then the other changes in
    // the order they were made; all of them or none.
    void applyUpdates();
    void cancelUpdates();
    // Re-reads the current row with the refresh statement.
    void refreshRecord();

    int fieldCount() const { return mNames.size(); }
    QStringList fieldNames() const { return mNames; }
    int fieldIndex(const QString& name) const { return mNames.indexOf(name.toUpper()); }
    DataSetField fieldByName(const QString& name);
    DataSetField field(int index);
    FieldInfo fieldInfo(int index) const { return mInfos.value(index); }
    // Direct read for grids, without moving the current row.
    QVariant value(int row, int column) const;
    RowStatus rowStatus(int row) const { return mRows.at(static_cast<size_t>(row))->status; }

    using Hook = HookList<DataSet&>;
    Hook beforeOpen, afterOpen, onNewRecord, beforeInsert, beforeEdit, beforePost, afterPost, beforeCancel,
        afterCancel, beforeDelete, afterDelete, beforeScroll, afterScroll, onCalcFields;
    void setOnChange(const QString& fieldName, std::function<void(DataSetField)> f);

Q_SIGNALS:
    void stateChanged(tv::DataSet::State state);
    void currentChanged(int row);
    void rowChanged(int row);
    void rowsFetched(int first, int last);
    void rowInserted(int row);
    void rowRemoved(int row);
    void reset();

private:
    friend class DataSetField;
    struct Row {
        QByteArray data;                         // packed as read or last saved
        QByteArray key;                          // packed key values (read by keys)
        std::unique_ptr<QVector<QVariant>> cur;  // the values while edited or pending
        std::unique_ptr<QVector<QVariant>> calc; // calculated fields
        RowStatus status = RowStatus::Unmodified;
        bool loaded = true;
        bool written = false; // saved by this data set since the select was read
        int deletedAt = -1;    // where a deleted row stood, to put it back there
        Row* anchor = nullptr; // the row that followed it then
    };
    struct Snapshot {
        std::unique_ptr<QVector<QVariant>> cur;
        RowStatus status = RowStatus::Unmodified;
    };

    void insertRow(bool atEnd);
    void openByKey();
    void chooseIdentityColumns();
    void fetchOne();
    bool ensureRow(int row);
    void ensureLoaded(int row) const;
    void loadPage(int row);
    void evictFarRows(int keepFrom, int keepTo);
    void setCurrent(int row);
    void calc(int row);
    void setState(State s);
    void checkBrowseForMove();
    void refusePending(bool includingOwn) const;
    void syncDetails();
    std::vector<std::pair<QString, QVariant>> detailParams(const DataSet& d) const;
    bool detailMustFollow(DataSet& d) const;
    void refuseIfDetailsCannotFollow() const;
    void markDirty(Row* r);
    void retargetAnchors(const Row* gone, Row* successor);
    QString identity(const QVector<QVariant>& values, bool keysOnly) const;
    void forgetDirty(Row* r);
    QVector<QVariant>& editableValues(Row& r);
    QVariant rawValue(const Row& r, int column) const;
    QVariant resolved(const QVariant& v) const;
    bool rowMatches(const Row& r, const std::vector<int>& columns, const QVariantList& values,
                    LocateOptions options) const;
    int locateByKey(const std::vector<int>& columns, const QVariantList& values, LocateOptions options);
    int positionOfKey(const QByteArray& key);
    int positionOf(const Row* r) const;
    QByteArray keyOf(const QVector<QVariant>& values) const;
    void bindUpdate(Query& q, const Row& r, bool oldFromCurrent) const;
    void checkUnchanged(const Row& r);
    void runUpdate(Query& q, const Row& r);
    QVector<QVariant> readBack(const Row& r);
    void settle(Row& r, const QVector<QVariant>& values);
    void generateTableSql();
    Row* accessRow() const;
    void setFieldValue(int index, const QVariant& v);
    void resetRows();

    Database* mDb;
    Transaction* mTr;
    Query mSelect;
    UpdateSql mUpdate;
    QString mTable;
    QStringList mKeys;
    QStringList mCalcNames;
    std::map<QString, QStringList> mCalcDeps;
    QStringList mNames;
    QVector<FieldInfo> mInfos;
    RowLayout mLayout;
    int mDbFieldCount = 0;
    std::vector<std::unique_ptr<Row>> mRows;
    std::vector<std::unique_ptr<Row>> mDeleted;
    std::vector<Row*> mDirty;
    int mCurrent = -1;
    bool mEof = true;
    bool mBof = true;
    State mState = State::Inactive;
    Snapshot mSnapshot;
    int mCalcRow = -1;
    std::map<int, std::function<void(DataSetField)>> mOnChange;
    std::map<QString, std::function<void(DataSetField)>> mPendingOnChange;

    // Reading by keys.
    bool mByKey = false;
    SelectParts mParts;
    std::unique_ptr<Query> mKeyQuery;
    std::unique_ptr<Query> mPageQuery;
    std::unique_ptr<Query> mLocateQuery;
    RowLayout mKeyLayout;
    std::vector<int> mKeyColumns; // key fields' columns in the full row
    int mLoadedRows = 0;
    std::vector<int> mIdentityColumns;
    QSet<QString> mSavedInserts;

    // Prepared once and reused by every apply.
    std::unique_ptr<Query> mModifyQ, mInsertQ, mDeleteQ, mRefreshQ, mLockQ;
    std::unique_ptr<Query> mSavepoint, mRelease, mRollbackTo;

    mutable QHash<QPair<quint32, quint32>, QVariant> mBlobs;

    QPointer<DataSet> mMaster;
    QStringList mMasterFields;
    std::vector<QPointer<DataSet>> mDetails;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(DataSet::LocateOptions)

} // namespace tv
