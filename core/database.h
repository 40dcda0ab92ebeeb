#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace Firebird {
class IAttachment;
}

namespace tv {

class Transaction;

// One attachment to a database file. A plain path opens the file with the
// embedded engine (local mode); "host:path" or "host/port:path" goes through
// a server. Always SYSDBA, dialect 1, and an explicit connection charset
// (UTF8 unless told otherwise) so accented text is never garbled.
// Not thread-safe: one Database belongs to one thread.
class Database {
public:
    explicit Database(QString databaseName = {});
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void setDatabaseName(const QString& name) { mName = name; }
    QString databaseName() const { return mName; }
    void setLcCtype(const QString& charset) { mLcCtype = charset; }
    QString lcCtype() const { return mLcCtype; }
    void setPassword(const QString& password) { mPassword = password; }

    // Runs just before the attachment is made, to name the file.
    std::function<void(Database&)> beforeConnect;

    void open();
    // Commits what the transactions still hold on this attachment, then detaches.
    void close();
    bool isOpen() const { return mAttachment != nullptr; }

    // Creates a dialect-1 database file (page size 8192) and leaves it closed.
    static void create(const QString& name, const QString& defaultCharset = QStringLiteral("WIN1252"),
                       const QString& password = QStringLiteral("qolvandre"));

    // Switches the file's forced (synchronous) writes through an attachment
    // of its own; the engine applies it to the open ones at once.
    static void setForcedWrites(const QString& name, bool on, const QString& password = kDefaultPassword);

    Firebird::IAttachment* attachment() const { return mAttachment; }
    // Grows by one each time the attachment changes, so statements prepared
    // on an older attachment know to prepare again.
    quint64 generation() const { return mGeneration; }

    // Transactions that started work on this attachment register themselves
    // so close() can end that work first.
    void attachTransaction(Transaction* t);
    void detachTransaction(Transaction* t);

    static const QString kDefaultPassword;

private:
    QString mName;
    QString mLcCtype = QStringLiteral("UTF8");
    QString mPassword = kDefaultPassword;
    Firebird::IAttachment* mAttachment = nullptr;
    quint64 mGeneration = 0;
    std::vector<Transaction*> mTransactions;
};

} // namespace tv
