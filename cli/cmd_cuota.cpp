#include "cli.h"

#include "instalment.h"
#include "money.h"

#include <iostream>

namespace tv::cli {

namespace {

int imprimirCuota(const std::string& interes, int anos, const std::string& importe)
{
    Money tipo;
    Money prestamo;
    if (!Money::parse(QString::fromStdString(interes), &tipo)) {
        std::cerr << "Tipo de interés no válido: " << interes << '\n';
        return 2;
    }
    if (!Money::parse(QString::fromStdString(importe), &prestamo)) {
        std::cerr << "Importe no válido: " << importe << '\n';
        return 2;
    }
    if (anos < 1) {
        std::cerr << "El plazo debe ser de al menos un año\n";
        return 2;
    }
    std::cout << calculaCuota(tipo, anos, prestamo).toPlainString(2).toStdString() << '\n';
    return 0;
}

} // namespace

void addCuotaCommand(CLI::App& app, int& exitCode)
{
    auto* cuota = app.add_subcommand(
        "cuota", "Cuota mensual de un préstamo: INTERES (anual, %), ANOS (años), IMPORTE (euros)");
    static std::string interes;
    static int anos = 0;
    static std::string importe;
    cuota->add_option("INTERES", interes, "Tipo de interés anual en %, p. ej. 3 o 3,25")->required();
    cuota->add_option("ANOS", anos, "Plazo en años")->required();
    cuota->add_option("IMPORTE", importe, "Importe del préstamo, p. ej. 100000 o 100.000,00")->required();
    cuota->callback([&exitCode] { exitCode = imprimirCuota(interes, anos, importe); });
}

} // namespace tv::cli
