#pragma once

#include "dm.h"

#include <CLI/CLI.hpp>

#include <QString>

#include <memory>
#include <string>

namespace tv::cli {

// --datos PATH: a folder or host:folder; when absent, the data path is found
// as the program finds it (morvanI.sys).
QString resolveDataPath(const std::string& option);
// A data module over that path with datos, Imagenes and dbInformes open; the
// Firebird environment is prepared for the path first (FirebirdEnvironmentError
// when it cannot be).
std::unique_ptr<Tdm> openData(const std::string& option);

// Each subcommand registers itself; the handler's result is the exit code.
void addDatosCommands(CLI::App& app, int& exitCode);
void addInformeCommand(CLI::App& app, int& exitCode);
void addCuotaCommand(CLI::App& app, int& exitCode);
void addNifCommand(CLI::App& app, int& exitCode);

} // namespace tv::cli
