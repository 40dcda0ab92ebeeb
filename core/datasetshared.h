#pragma once

// What the data set's implementation files share; not part of core's interface.

#include "query.h"

#include <QString>
#include <QStringList>
#include <QVariant>

namespace tv {

class Database;
class Transaction;

namespace datasetshared {

// Rows read together when a row is shown; one statement with this many keys.
constexpr int kPage = 50;
// Full rows kept in memory while reading by keys; beyond this the ones far
// from the current row are dropped and read again when shown.
constexpr int kKeepLoaded = 10000;

inline bool isNullValue(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

inline bool sameValue(const QVariant& a, const QVariant& b)
{
    const bool an = isNullValue(a);
    const bool bn = isNullValue(b);
    if (an || bn)
        return an == bn;
    return a == b;
}

inline QString trimmedRight(const QString& s)
{
    qsizetype end = s.size();
    while (end > 0 && s.at(end - 1).isSpace())
        --end;
    return s.left(end);
}

// The table's primary key columns, read once per database file and table.
QStringList primaryKeyOf(Database& db, Transaction& tr, const QString& table);

} // namespace datasetshared

} // namespace tv
