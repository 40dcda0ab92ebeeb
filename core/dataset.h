#pragma once

#include "dberror.h"
#include "query.h"

#include <QObject>

#include <functional>
#include <map>
#include <vector>

namespace tv {

class DataSet;

// A column of the data set's current row (or of the row being calculated).
class DataSetField {
public:
    DataSetField(DataSet* ds, int index) : mDs(ds), mIndex(index) {}

    QString name() const;
    int index() const { return mIndex; }
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

// The record-screen engine: the rows of a select, buffered as they are
// fetched; a current row; the states browse / edit / insert; hooks that may
// refuse an operation by throwing Abort (the data set then stands exactly as
// before and re-throws); and cached updates, kept until applyUpdates() runs
// the table's fixed modify / insert / delete statements. In those statements
// ":NAME" is the field's new value and ":OLD_NAME" its value as read.
// Not thread-safe.
class DataSet : public QObject {
    Q_OBJECT
public:
    enum class State { Inactive, Browse, Edit, Insert };
    enum class RowStatus { Unmodified, Modified, Inserted };

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
    void addCalculatedField(const QString& name);
    Database& database() const { return *mDb; }
    Transaction& transaction() const { return *mTr; }

    void open();
    void close();
    bool isOpen() const { return mState != State::Inactive; }
    State state() const { return mState; }
    bool isEditing() const { return mState == State::Edit || mState == State::Insert; }

    // Rows fetched so far (the select may hold more).
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
    bool locate(const QString& fieldName, const QVariant& value);
    // Reopens the select and returns to the row with the same key.
    void refreshKeepingPosition(const QString& keyField);

    void insert();
    void append();
    void edit();
    void post();
    void cancel();
    void remove();

    bool updatesPending() const;
    // Runs the pending statements in row order (deletions first); each row
    // applied is marked clean at once, so a failure leaves only the rest pending.
    void applyUpdates();
    void cancelUpdates();
    // Re-reads the current row with the refresh statement.
    void refreshRecord();

    int fieldCount() const { return mNames.size(); }
    QStringList fieldNames() const { return mNames; }
    int fieldIndex(const QString& name) const { return mNames.indexOf(name.toUpper()); }
    DataSetField fieldByName(const QString& name);
    DataSetField field(int index);
    // Direct read for grids, without moving the current row.
    QVariant value(int row, int column) const;
    RowStatus rowStatus(int row) const { return mRows.at(row).status; }

    using Hook = std::function<void(DataSet&)>;
    Hook beforeOpen, afterOpen, onNewRecord, beforeInsert, beforeEdit, beforePost, afterPost, beforeCancel,
        afterCancel, beforeDelete, afterDelete, afterScroll, onCalcFields;
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
        QVector<QVariant> cur;
        QVector<QVariant> orig;
        RowStatus status = RowStatus::Unmodified;
        int deletedAt = -1; // where a deleted row stood, to put it back there
    };

    void fetchOne();
    bool ensureRow(int row);
    void setCurrent(int row);
    void calc(int row);
    void setState(State s);
    void checkBrowseForMove();
    void runUpdate(const QString& sql, const Row& row);
    void generateTableSql();
    const Row* accessRow() const;
    Row* accessRow();
    void setFieldValue(int index, const QVariant& v);

    Database* mDb;
    Transaction* mTr;
    Query mSelect;
    UpdateSql mUpdate;
    QString mTable;
    QStringList mKeys;
    QStringList mCalcNames;
    QStringList mNames;
    int mDbFieldCount = 0;
    std::vector<Row> mRows;
    std::vector<Row> mDeleted;
    int mCurrent = -1;
    bool mEof = true;
    bool mBof = true;
    State mState = State::Inactive;
    Row mSnapshot;
    int mCalcRow = -1;
    std::map<int, std::function<void(DataSetField)>> mOnChange;
    std::map<QString, std::function<void(DataSetField)>> mPendingOnChange;
};

} // namespace tv
