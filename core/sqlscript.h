#pragma once

#include <QString>
#include <QStringList>

namespace tv {

class Database;
class Transaction;

// Splits an isql-style script into statements: ";" ends a statement unless
// SET TERM changed the terminator; literals and comments are respected.
// SET TERM, SET SQL DIALECT, SET NAMES, SET AUTODDL are dropped, COMMIT is
// kept as the word "COMMIT".
QStringList splitSqlScript(const QString& script);

// Runs a script on db, committing after each DDL statement (the engine
// applies metadata at commit) and at the end.
void runSqlScript(Database& db, Transaction& tr, const QString& script);

} // namespace tv
