#include "transaction.h"

#include "database.h"
#include "fbapi.h"

#include <optional>

using namespace Firebird;

namespace tv {

Transaction::~Transaction()
{
    try {
        if (inTransaction())
            commit();
    } catch (const DatabaseError&) {
        // Nothing to report to from a destructor; the engine rolls back.
    }
}

ITransaction* Transaction::handleFor(Database& db)
{
    if (!db.isOpen())
        throw DatabaseError(QStringLiteral("La base de datos '%1' no está conectada").arg(db.databaseName()));
    auto it = mHandles.find(&db);
    if (it != mHandles.end())
        return it->second;
    ITransaction* tra = fb::guard([&] {
        fb::Status st;
        IXpbBuilder* tpb = fb::util()->getXpbBuilder(&st, IXpbBuilder::TPB, nullptr, 0);
        tpb->insertTag(&st, isc_tpb_read_committed);
        tpb->insertTag(&st, isc_tpb_rec_version);
        tpb->insertTag(&st, isc_tpb_nowait);
        tpb->insertTag(&st, isc_tpb_write);
        ITransaction* t = nullptr;
        try {
            t = db.attachment()->startTransaction(&st, tpb->getBufferLength(&st), tpb->getBuffer(&st));
        } catch (...) {
            tpb->dispose();
            throw;
        }
        tpb->dispose();
        return t;
    });
    mHandles[&db] = tra;
    db.attachTransaction(this);
    return tra;
}

void Transaction::notifyEnd()
{
    const auto listeners = mListeners;
    for (const auto& [id, f] : listeners)
        f();
}

void Transaction::commit()
{
    if (mHandles.empty())
        return;
    notifyEnd();
    // Commit every attachment's part even if one fails; report the first failure.
    std::optional<DatabaseError> first;
    auto handles = std::move(mHandles);
    mHandles.clear();
    for (auto& [db, tra] : handles) {
        db->detachTransaction(this);
        try {
            fb::guard([&] {
                fb::Status st;
                tra->commit(&st);
            });
        } catch (const DatabaseError& e) {
            if (!first)
                first = e;
            try {
                fb::guard([&] {
                    fb::Status st;
                    tra->rollback(&st);
                });
            } catch (const DatabaseError&) {
                tra->release();
            }
        }
    }
    if (first)
        throw *first;
}

void Transaction::commitRetaining()
{
    for (auto& [db, tra] : mHandles) {
        fb::guard([&] {
            fb::Status st;
            tra->commitRetaining(&st);
        });
    }
}

void Transaction::rollback()
{
    if (mHandles.empty())
        return;
    notifyEnd();
    auto handles = std::move(mHandles);
    mHandles.clear();
    std::optional<DatabaseError> first;
    for (auto& [db, tra] : handles) {
        db->detachTransaction(this);
        try {
            fb::guard([&] {
                fb::Status st;
                tra->rollback(&st);
            });
        } catch (const DatabaseError& e) {
            if (!first)
                first = e;
            tra->release();
        }
    }
    if (first)
        throw *first;
}

void Transaction::endWorkOn(Database& db, bool commitIt)
{
    auto it = mHandles.find(&db);
    if (it == mHandles.end())
        return;
    notifyEnd();
    ITransaction* tra = it->second;
    mHandles.erase(it);
    db.detachTransaction(this);
    fb::guard([&] {
        fb::Status st;
        if (commitIt)
            tra->commit(&st);
        else
            tra->rollback(&st);
    });
}

int Transaction::addEndListener(std::function<void()> f)
{
    const int id = mNextListener++;
    mListeners.emplace(id, std::move(f));
    return id;
}

void Transaction::removeEndListener(int id)
{
    mListeners.erase(id);
}

TransactionGuard::~TransactionGuard()
{
    if (!mDone) {
        try {
            mT.rollback();
        } catch (const DatabaseError&) {
        }
    }
}

void TransactionGuard::commit()
{
    mT.commit();
    mDone = true;
}

void TransactionGuard::commitRetaining()
{
    mT.commitRetaining();
    mDone = true;
}

} // namespace tv
