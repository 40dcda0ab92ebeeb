#pragma once

#include <QString>
#include <QStringList>

namespace tv {

// The parts of a select on one table, as a data set needs them to read a
// large result by its keys: "SELECT <fields> FROM <table> [<alias>]
// [WHERE <where>] [ORDER BY <orderBy>]". Anything else (joins, grouping,
// unions, FIRST/SKIP/DISTINCT, plans, locks, ordering by position) leaves
// `simple` false and the statement is read as it stands.
struct SelectParts {
    bool simple = false;
    QString fields;
    QString table; // upper case
    QString alias; // as written, empty when none
    QString where;
    QString orderBy;

    // The from-clause as written: table and alias.
    QString from() const { return alias.isEmpty() ? table : table + QLatin1Char(' ') + alias; }
    // A column of the table as the statement would name it.
    QString qualified(const QString& column) const
    {
        return alias.isEmpty() ? column : alias + QLatin1Char('.') + column;
    }
};

SelectParts parseSelect(const QString& sql);

} // namespace tv
