#include "cli.h"

#include "nif.h"

#include <iostream>

namespace tv::cli {

namespace {

int imprimirNif(const std::string& texto, const std::string& pais)
{
    const QString nif = normalizarNif(QString::fromStdString(texto), QString::fromStdString(pais));
    std::cout << nif.toStdString() << '\n';
    // The marker is printed like any result; the status lets scripts tell it apart.
    return nif == kNifErroneo ? 1 : 0;
}

} // namespace

void addNifCommand(CLI::App& app, int& exitCode)
{
    auto* nif = app.add_subcommand("nif", "NIF, NIE o CIF normalizado (ERR. NIF y estado 1 si no es válido)");
    static std::string texto;
    static std::string pais = "España";
    nif->add_option("TEXTO", texto, "El número tal como se escribió, p. ej. 1234567-z")->required();
    nif->add_option("--pais", pais, "País del titular; solo los de España se comprueban")
        ->capture_default_str();
    nif->callback([&exitCode] { exitCode = imprimirNif(texto, pais); });
}

} // namespace tv::cli
