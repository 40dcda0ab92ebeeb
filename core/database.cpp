#include "database.h"

#include "fbapi.h"
#include "fbenvironment.h"
#include "transaction.h"

#include <algorithm>

using namespace Firebird;

namespace tv {

const QString Database::kDefaultPassword = QStringLiteral("qolvandre");

namespace {

IXpbBuilder* makeDpb(fb::Status& st, const QString& password, const QString& lcCtype)
{
    IXpbBuilder* dpb = fb::util()->getXpbBuilder(&st, IXpbBuilder::DPB, nullptr, 0);
    dpb->insertString(&st, isc_dpb_user_name, "SYSDBA");
    dpb->insertString(&st, isc_dpb_password, password.toUtf8().constData());
    dpb->insertInt(&st, isc_dpb_sql_dialect, 1);
    if (!lcCtype.isEmpty())
        dpb->insertString(&st, isc_dpb_lc_ctype, lcCtype.toUtf8().constData());
    return dpb;
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
    fb::guard([&] {
        fb::Status st;
        IXpbBuilder* dpb = makeDpb(st, mPassword, mLcCtype);
        const QByteArray name = mName.toUtf8();
        try {
            mAttachment = fb::provider()->attachDatabase(&st, name.constData(), dpb->getBufferLength(&st),
                                                         dpb->getBuffer(&st));
        } catch (...) {
            dpb->dispose();
            throw;
        }
        dpb->dispose();
    });
    reapplyTerminationHandler();
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

void Database::create(const QString& name, const QString& defaultCharset, const QString& password)
{
    fb::guard([&] {
        fb::Status st;
        IXpbBuilder* dpb = makeDpb(st, password, QStringLiteral("UTF8"));
        dpb->insertInt(&st, isc_dpb_page_size, 8192);
        dpb->insertString(&st, isc_dpb_set_db_charset, defaultCharset.toUtf8().constData());
        const QByteArray file = name.toUtf8();
        IAttachment* att = nullptr;
        try {
            att = fb::provider()->createDatabase(&st, file.constData(), dpb->getBufferLength(&st),
                                                 dpb->getBuffer(&st));
        } catch (...) {
            dpb->dispose();
            throw;
        }
        dpb->dispose();
        att->detach(&st);
    });
    reapplyTerminationHandler();
}

void Database::setForcedWrites(const QString& name, bool on, const QString& password)
{
    fb::guard([&] {
        fb::Status st;
        IXpbBuilder* dpb = makeDpb(st, password, QStringLiteral("UTF8"));
        dpb->insertInt(&st, isc_dpb_force_write, on ? 1 : 0);
        const QByteArray file = name.toUtf8();
        IAttachment* att = nullptr;
        try {
            att = fb::provider()->attachDatabase(&st, file.constData(), dpb->getBufferLength(&st),
                                                 dpb->getBuffer(&st));
        } catch (...) {
            dpb->dispose();
            throw;
        }
        dpb->dispose();
        att->detach(&st);
    });
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
