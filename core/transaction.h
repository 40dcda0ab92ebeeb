#pragma once

#include <functional>
#include <map>
#include <vector>

namespace Firebird {
class ITransaction;
}

namespace tv {

class Database;

// The shared transaction: read committed, record versions, no wait. It spans
// every database it is used on (one engine transaction per attachment,
// started on first use) and ends them together.
// Not thread-safe.
class Transaction {
public:
    Transaction() = default;
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // Starts the engine transaction on db if none is running there yet.
    Firebird::ITransaction* handleFor(Database& db);
    bool inTransaction() const { return !mHandles.empty(); }

    void commit();
    // Makes the work visible to others and keeps the context (and open cursors).
    void commitRetaining();
    void rollback();

    // Used by Database::close(): commit (or roll back) the work on one attachment.
    void endWorkOn(Database& db, bool commitIt);

    // Cursors cannot outlive a hard commit or rollback; their owners are
    // told just before, to stop fetching.
    int addEndListener(std::function<void()> f);
    void removeEndListener(int id);

private:
    void notifyEnd();
    std::map<Database*, Firebird::ITransaction*> mHandles;
    std::map<int, std::function<void()>> mListeners;
    int mNextListener = 1;
};

// Commits on commit(), rolls back in its destructor otherwise: the guard for a
// unit of work that must land whole or not at all.
class TransactionGuard {
public:
    explicit TransactionGuard(Transaction& t) : mT(t) {}
    ~TransactionGuard();
    TransactionGuard(const TransactionGuard&) = delete;
    TransactionGuard& operator=(const TransactionGuard&) = delete;
    void commit();
    void commitRetaining();

private:
    Transaction& mT;
    bool mDone = false;
};

} // namespace tv
