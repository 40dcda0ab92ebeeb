#include "dberror.h"

#include <firebird/Interface.h>
#include <ibase.h>

namespace tv {

DatabaseError::DatabaseError(const QString& message, QVector<long> gdsCodes, QString sqlState)
    : std::runtime_error(message.toStdString()), mMessage(message), mCodes(std::move(gdsCodes)),
      mSqlState(std::move(sqlState))
{
}

DatabaseError DatabaseError::fromStatus(const Firebird::IStatus* status)
{
    QVector<long> codes;
    const ISC_STATUS* v = status->getErrors();
    for (const ISC_STATUS* p = v; *p != isc_arg_end;) {
        const ISC_STATUS type = *p++;
        if (type == isc_arg_gds) {
            codes.append(static_cast<long>(*p++));
        } else if (type == isc_arg_cstring) {
            p += 2;
        } else {
            ++p;
        }
    }
    char text[2048];
    Firebird::IMaster* master = Firebird::fb_get_master_interface();
    master->getUtilInterface()->formatStatus(text, sizeof text, const_cast<Firebird::IStatus*>(status));
    char state[6] = {0};
    fb_sqlstate(state, v);
    return DatabaseError(QString::fromUtf8(text).trimmed(), codes, QString::fromLatin1(state, 5));
}

bool DatabaseError::isLockConflict() const
{
    return hasCode(isc_deadlock) || hasCode(isc_update_conflict) || hasCode(isc_lock_conflict);
}

bool DatabaseError::isUniqueViolation() const
{
    return hasCode(isc_unique_key_violation) || hasCode(isc_no_dup);
}

bool DatabaseError::isAlreadyExists() const
{
    // A metadata update refused because the object is there: either one of
    // the named duplicate codes or, for a column, a unique-key violation on
    // the system table of columns.
    if (!hasCode(isc_no_meta_update))
        return false;
    return isUniqueViolation() || hasCode(isc_dyn_dup_table) || hasCode(isc_dyn_dup_index) ||
           hasCode(isc_dyn_domain_name_exists) || hasCode(isc_dyn_field_name_exists) ||
           hasCode(isc_dyn_dup_sql_role) || hasCode(isc_dyn_duplicate_package_item);
}

const QString RecordChangedError::kText =
    QStringLiteral("El registro ha sido modificado o eliminado por otro usuario. Vuelva a cargar los datos.");

RecordChangedError::RecordChangedError() : DatabaseError(kText) {}

const QString PendingChangesError::kText =
    QStringLiteral("Hay cambios sin grabar. Grábelos o cancélelos antes de continuar.");

PendingChangesError::PendingChangesError() : DatabaseError(kText) {}

} // namespace tv
