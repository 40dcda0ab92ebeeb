#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <memory>

namespace tv {

class Database;
class Transaction;

// Turns ":NAME" parameters into "?" outside string literals and comments and
// returns the names in order of appearance (upper case, one per occurrence).
// PSQL bodies (CREATE/ALTER/RECREATE PROCEDURE|TRIGGER, EXECUTE BLOCK) use
// ":var" for their variables and are returned untouched.
QString convertParameters(const QString& sql, QStringList* names);

// One column of a result row. Values: invalid QVariant for NULL; QString for
// text (CHAR trailing blanks trimmed) and text blobs; int / qlonglong for
// integers; double for floating and scaled numbers; QDateTime for dialect-1
// DATE; QByteArray for binary blobs.
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

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace tv
