#pragma once

#include <QString>
#include <QVector>
#include <stdexcept>

namespace Firebird {
class IStatus;
}

namespace tv {

// Every connection and SQL failure arrives as one of these, carrying the
// engine's own text so a screen can show the database's message unchanged.
class DatabaseError : public std::runtime_error {
public:
    DatabaseError(const QString& message, QVector<long> gdsCodes = {}, QString sqlState = {});

    static DatabaseError fromStatus(const Firebird::IStatus* status);

    QString message() const { return mMessage; }
    const QVector<long>& gdsCodes() const { return mCodes; }
    long gdsCode() const { return mCodes.isEmpty() ? 0 : mCodes.first(); }
    QString sqlState() const { return mSqlState; }
    bool hasCode(long code) const { return mCodes.contains(code); }

    // Update conflict under nowait: another transaction holds the row.
    bool isLockConflict() const;
    bool isUniqueViolation() const;
    // DDL that adds an object which is already there.
    bool isAlreadyExists() const;

private:
    QString mMessage;
    QVector<long> mCodes;
    QString mSqlState;
};

// A save that found its row gone or changed by another workstation since it
// was read; the change stays pending.
class RecordChangedError : public DatabaseError {
public:
    RecordChangedError();
    static const QString kText;
};

// Closing, refreshing or re-querying a data set that holds changes not yet
// saved; refused so nothing typed is lost.
class PendingChangesError : public DatabaseError {
public:
    PendingChangesError();
    static const QString kText;
};

// Thrown by data-set hooks to refuse an operation; the data set restores its
// state and re-throws so the caller knows nothing happened.
class Abort : public std::exception {
public:
    const char* what() const noexcept override { return "Operación cancelada"; }
};

// Misuse of a data set or query (unknown field, wrong state); a program fault.
class DataSetError : public std::logic_error {
public:
    explicit DataSetError(const QString& message) : std::logic_error(message.toStdString()) {}
    QString message() const { return QString::fromStdString(what()); }
};

} // namespace tv
