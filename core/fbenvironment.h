#pragma once

#include <QString>

#include <stdexcept>

namespace tv {

// The Firebird client and the embedded engine read their environment once per
// process: the configuration root (FIREBIRD) when the client loads, the lock
// folder (FIREBIRD_LOCK) when the engine first works on a file. Both are
// therefore settled here before the first Firebird call.
//
// The lock table of a database lives in the lock folder, and two processes
// that open one file with different lock folders do not see each other's
// locks (both update the same row: corruption). So the lock folder belongs to
// the data folder, never to the user: "<data folder>/DATOS/bloqueos", the
// same for every process and user that opens those files, with the group and
// permissions of DATOS (setgid, so the engine's lock files keep that group).
//
// The engine's own configuration (ServerMode = SuperClassic, so the program
// and tejavista-cli can open the same local files at once) lives in a private
// folder: $XDG_RUNTIME_DIR/tejavista, or else a 0700 folder
// "<temp>/tejavista-<uid>" whose owner and mode are checked before use. A
// FIREBIRD root already set (the test server, an administrator's choice) is
// respected; an inherited FIREBIRD_LOCK is not.

// A refusal to prepare the environment; its message is for the user.
class FirebirdEnvironmentError : public std::runtime_error {
public:
    explicit FirebirdEnvironmentError(const QString& m) : std::runtime_error(m.toStdString()), mMessage(m) {}
    QString message() const { return mMessage; }

private:
    QString mMessage;
};

// Set in a process whose data folders are all private to it (the tests): one
// lock folder for every data folder it opens, inherited by the tools it
// starts on those folders so they share its lock table. Never for data that
// anyone else opens.
inline constexpr const char* kPrivateLockFolderVariable = "TEJAVISTA_BLOQUEOS_PRIVADOS";

// The private folder and the engine's configuration root in it; points
// XDG_RUNTIME_DIR at the private folder when it is not set (Qt warns about it
// otherwise). Makes no Firebird call, so it can run before the data folder is
// known. Throws FirebirdEnvironmentError for a folder that is not safe.
// Returns the configuration root in use.
QString preparePrivateFirebirdRoot();

// The lock folder every process uses for the data path: "<folder>/DATOS/bloqueos"
// for a local path, empty for a server ("host:folder").
QString lockFolderFor(const QString& dataPath);

enum class DataFolderUse {
    Existing,
    // The data folder is about to be created: its DATOS folder is made first.
    New,
};

// Settles the environment for the data path before its first attachment. A
// local path gets its lock folder; a server path needs none. The lock folder
// is fixed for the process from then on: a later local data path with another
// lock folder (or one after a server path) is refused with a
// FirebirdEnvironmentError, since the engine would silently keep the first
// one. Returns the lock folder in force (empty in server mode).
QString prepareFirebirdEnvironment(const QString& dataPath, DataFolderUse use = DataFolderUse::Existing);

// The desktop program's start: the data path found as the program finds it
// (morvanI.sys, the "libreria.dll" marker), then prepareFirebirdEnvironment.
// Returns that data path.
QString prepareFirebirdEnvironmentForProgram();

// For a process whose data folders are all private to it (the tests): one
// explicit lock folder for every data folder, also exported in
// kPrivateLockFolderVariable for the tools it starts.
void prepareFirebirdEnvironmentForPrivateFolders(const QString& lockFolder);

// The Firebird client and the embedded engine answer SIGINT and SIGTERM by
// shutting the engine down from a thread of their own, and install those
// handlers when they first load and attach. In a process that embeds the
// engine that shutdown can deadlock against the main thread and leave the
// process spinning while it holds the shared lock files, so that every other
// program on the same data waits. The process's own choice is therefore put
// back after every attachment: the default action (a terminated tool simply
// ends; the engine recovers a dead process's locks) unless a handler was set
// (the desktop program closes in order).
using TerminationHandler = void (*)(int);
void setTerminationHandler(TerminationHandler handler);
// Called by the data layer after each attachment.
void reapplyTerminationHandler();

} // namespace tv
