#include "database.h"

#include "fbapi.h"
#include "fbenvironment.h"
#include "transaction.h"

#include <algorithm>
#include <functional>

using namespace Firebird;

namespace tv {

const QString Database::kDefaultPassword = QStringLiteral("qolvandre");

namespace {

enum class Mode { Attach, Create };

// Every attachment goes through here: SYSDBA, dialect 1, an explicit
// connection charset, plus what the caller adds to the parameter block.
// The handlers the engine installs on attach are replaced by the process's own.
IAttachment* connect(const QString& name, Mode mode, const QString& password, const QString& lcCtype,
                     const std::function<void(fb::Status&, IXpbBuilder*)>& extra = {})
{
    IAttachment* att = fb::guard([&] {
        fb::Status st;
        IXpbBuilder* dpb = fb::util()->getXpbBuilder(&st, IXpbBuilder::DPB, nullptr, 0);
        try {
            dpb->insertString(&st, isc_dpb_user_name, "SYSDBA");
            dpb->insertString(&st, isc_dpb_password, password.toUtf8().constData());
            dpb->insertInt(&st, isc_dpb_sql_dialect, 1);
            dpb->insertString(&st, isc_dpb_lc_ctype, lcCtype.toUtf8().constData());
            if (extra)
                extra(st, dpb);
            const QByteArray file = name.toUtf8();
            IAttachment* a = mode == Mode::Create
                                 ? fb::provider()->createDatabase(&st, file.constData(), dpb->getBufferLength(&st),
                                                                  dpb->getBuffer(&st))
                                 : fb::provider()->attachDatabase(&st, file.constData(), dpb->getBufferLength(&st),
                                                                  dpb->getBuffer(&st));
            dpb->dispose();
            return a;
        } catch (...) {
            dpb->dispose();
            throw;
        }
    });
    reapplyTerminationHandler();
    return att;
}

void detach(IAttachment* att)
{
    fb::guard([&] {
        fb::Status st;
        try {
            att->detach(&st);
        } catch (...) {
            att->release();
            throw;
        }
    });
}

} // namespace

Database::Database(QString databaseName) : mName(std::move(databaseName)) {}

Database::~Database()
{
    try {
        close();
    } catch (const DatabaseError&) {
        // A destructor has nobody to tell; the engine rolls back on detach.
    }
}

void Database::open()
{
    if (mAttachment)
        return;
    if (beforeConnect)
        beforeConnect(*this);
    mAttachment = connect(mName, Mode::Attach, mPassword, mLcCtype.isEmpty() ? QStringLiteral("UTF8") : mLcCtype);
    ++mGeneration;
}

void Database::close()
{
    if (!mAttachment)
        return;
    // Copy: ending a transaction's work detaches it from this list.
    const std::vector<Transaction*> txs = mTransactions;
    for (Transaction* t : txs)
        t->endWorkOn(*this, true);
    mTransactions.clear();
    IAttachment* att = mAttachment;
    mAttachment = nullptr;
    ++mGeneration;
    detach(att);
}

void Database::create(const QString& name, const QString& defaultCharset, const QString& password)
{
    detach(connect(name, Mode::Create, password, QStringLiteral("UTF8"), [&](fb::Status& st, IXpbBuilder* dpb) {
        dpb->insertInt(&st, isc_dpb_page_size, 8192);
        dpb->insertString(&st, isc_dpb_set_db_charset, defaultCharset.toUtf8().constData());
    }));
}

void Database::setForcedWrites(const QString& name, bool on, const QString& password)
{
    detach(connect(name, Mode::Attach, password, QStringLiteral("UTF8"),
                   [on](fb::Status& st, IXpbBuilder* dpb) { dpb->insertInt(&st, isc_dpb_force_write, on ? 1 : 0); }));
}

void Database::attachTransaction(Transaction* t)
{
    if (std::find(mTransactions.begin(), mTransactions.end(), t) == mTransactions.end())
        mTransactions.push_back(t);
}

void Database::detachTransaction(Transaction* t)
{
    mTransactions.erase(std::remove(mTransactions.begin(), mTransactions.end(), t), mTransactions.end());
}

} // namespace tv
