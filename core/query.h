#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include "rowbuffer.h"

#include <memory>

namespace tv {

class Database;
class Transaction;

// What a result column is, for binders (maximum lengths), the search dialog
// (each column's kind) and grids.
struct FieldInfo {
    enum class Type { Text, Integer, Float, Numeric, DateTime, Date, Time, Boolean, TextBlob, BinaryBlob, Bytes };
    QString name;     // alias as the select names it, upper case
    QString relation; // table it comes from, empty for expressions
    QString origin;   // column of that table
    Type type = Type::Text;
    int size = 0;     // characters for texts, bytes otherwise
    int scale = 0;    // digits after the point for scaled numbers (positive)
    bool nullable = true;
    int blobSubType = 0;
    bool isBlob() const { return type == Type::TextBlob || type == Type::BinaryBlob; }
    bool isText() const { return type == Type::Text || type == Type::TextBlob; }
};

// Turns ":NAME" parameters into "?" outside string literals and comments and
// returns the names in order of appearance (upper case, one per occurrence).
// PSQL bodies (CREATE/ALTER/RECREATE PROCEDURE|TRIGGER, EXECUTE BLOCK) use
// ":var" for their variables and are returned untouched.
QString convertParameters(const QString& sql, QStringList* names);
// Where the string literal or comment starting at i ends (one past it); i
// itself when none starts there.
int skipLiteralOrComment(const QString& sql, int i);
// Integer and floating values (not texts that look like numbers).
bool isIntegerVariant(const QVariant& v);
bool isNumberVariant(const QVariant& v);

// One column of a result row. Values: invalid QVariant for NULL; QString for
// text (CHAR trailing blanks trimmed) and text blobs; int / qlonglong for
// integers; double for floating and scaled numbers; QDateTime for dialect-1
// DATE; QByteArray for binary blobs (a BlobId when the query was told not to
// read blobs).
class Field {
public:
    Field() = default;
    Field(QString name, QVariant value) : mName(std::move(name)), mValue(std::move(value)) {}

    QString name() const { return mName; }
    QVariant value() const { return mValue; }
    bool isNull() const { return !mValue.isValid() || mValue.isNull(); }
    QString asString() const;
    int asInteger() const;
    qlonglong asInt64() const;
    double asDouble() const;
    QDateTime asDateTime() const;
    QDate asDate() const { return asDateTime().date(); }
    QByteArray asBytes() const;

private:
    QString mName;
    QVariant mValue;
};

// A named input value; setting it sets every occurrence of the name.
class Param {
public:
    void setValue(const QVariant& v) { *mValue = v; }
    void setAsString(const QString& s) { *mValue = s; }
    void setAsInteger(qlonglong i) { *mValue = i; }
    void setAsDouble(double d) { *mValue = d; }
    void setAsDateTime(const QDateTime& d) { *mValue = d; }
    void setAsDate(const QDate& d) { *mValue = d.startOfDay(); }
    void setAsBytes(const QByteArray& b) { *mValue = b; }
    void clear() { *mValue = QVariant(); }
    QVariant value() const { return *mValue; }

private:
    friend class Query;
    explicit Param(QVariant* v) : mValue(v) {}
    QVariant* mValue;
};

// An SQL statement with parameters on one database and the shared
// transaction. open() runs a select (or EXECUTE PROCEDURE) and positions on
// the first row; next() moves on; eof() tells when rows are exhausted.
// exec() runs anything else. The statement stays prepared until the SQL
// changes or the attachment does. Not thread-safe.
class Query {
public:
    Query();
    Query(Database& db, Transaction& tr, const QString& sql = {});
    ~Query();
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    void setDatabase(Database& db);
    void setTransaction(Transaction& tr);
    Database* database() const;
    Transaction* transaction() const;

    void setSQL(const QString& sql);
    QString sql() const;
    QStringList paramNames() const; // distinct, in order of first use

    Param paramByName(const QString& name);
    bool hasParam(const QString& name) const;

    enum class StatementType { Select, Insert, Update, Delete, Procedure, Other };
    // Prepares now (it happens anyway on open/exec); metadata is then known.
    void prepare();
    StatementType statementType();

    // Blob columns come back as BlobId instead of their contents.
    void setReadBlobs(bool read);
    // Rows are left in the engine's message, to be packed by the caller
    // (packedRow); field()/values() then read nothing. For data sets.
    void setRawRows(bool raw);
    QByteArray packedRow() const;
    const RowLayout& layout() const;

    void open();
    void exec();
    void close();
    bool isOpen() const;
    bool eof() const;
    void next();
    // Rows changed by the last exec().
    int rowsAffected() const;

    int fieldCount() const;
    Field field(int i) const;
    Field fieldByName(const QString& name) const;
    int fieldIndex(const QString& name) const; // -1 when absent
    QStringList fieldNames() const;
    FieldInfo fieldInfo(int i) const;
    QVector<FieldInfo> fieldInfos() const;
    // The current row's values, in column order.
    QVector<QVariant> values() const;

    // Releases engine handles; called when the attachment goes away.
    void unprepare();

    // "SELECT GEN_ID(%s, %d) FROM RDB$DATABASE"
    static qlonglong genId(Database& db, Transaction& tr, const QString& generator, int increment = 1);
    // Runs one statement without parameters.
    static void execute(Database& db, Transaction& tr, const QString& sql);
    // Runs a select and returns the first column of its first row (invalid when no rows).
    static QVariant scalar(Database& db, Transaction& tr, const QString& sql);
    // The contents of a blob fetched earlier (QString for text blobs).
    static QVariant readBlob(Database& db, Transaction& tr, const BlobId& id);

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace tv
