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

} // namespace tv
