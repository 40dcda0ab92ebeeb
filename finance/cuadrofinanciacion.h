#pragma once

#include "money.h"

#include <array>

namespace tv::finance {

// The financing table's figures and their recalculation, apart from the
// window: the purchase costs are added to the price, the down payment taken
// off, and the loan's instalment worked out for the chosen rate and term and
// for a grid of five rates by seven terms.
class CuadroFinanciacion {
public:
    static constexpr int kFilas = 5;
    static constexpr int kColumnas = 7;
    // Terms of the grid's columns, in years.
    static constexpr std::array<int, kColumnas> kPlazos{10, 15, 20, 25, 30, 35, 40};
    // Offsets of the grid's rows from the chosen rate, in ten-thousandths of a point.
    static constexpr std::array<int64_t, kFilas> kDesviosInteres{-10000, -5000, 0, 5000, 10000};

    // What the agent types.
    Money importeInmueble;    // price
    Money variable;           // variable costs, percent of the price
    Money importeFijo;        // fixed costs
    Money importeEntrada;     // down payment
    int anos = 0;
    Money intereses;          // annual rate, percent

    // What the recalculation fills.
    Money importeVariable;
    Money totalOperacion;
    Money importeHipoteca;
    Money cuota;
    std::array<Money, kFilas> interes{};                       // grid rates
    std::array<std::array<Money, kColumnas>, kFilas> celdas{}; // [rate row][term column]

    // The seven steps in order. importeVacio: the price box holds only
    // blanks, which zeroes the price, both costs, the total and the down
    // payment (their boxes must show it).
    void recalcular(bool importeVacio);

    // The chosen loan has an instalment: a positive loan and at least a year.
    bool hayCuota() const;
};

} // namespace tv::finance
