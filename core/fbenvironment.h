#pragma once

#include <QString>

namespace tv {

// Prepares the process environment for the Firebird client before its first
// call: a private configuration root with ServerMode = SuperClassic, so that
// the program and tejavista-cli can open the same local files at once, and a
// lock folder the current user can write. A FIREBIRD variable already set
// (the test server, an administrator's choice) is respected.
// Returns the configuration root in use.
QString prepareFirebirdEnvironment();

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
