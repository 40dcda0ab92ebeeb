#pragma once

class QWidget;

namespace tv::finance {

// Entry points for the main window. Both screens run modally and are freed
// when they close.

// "Calculadora hipotecaria"; refused with a message while one is already open.
void abrirCalculadoraHipotecaria(QWidget* parent);
// "Cuadro de financiación".
void abrirCuadroFinanciacion(QWidget* parent);

// Adds the two screens to the program's command table.
void registrarComandos();

// The refusal shown when the calculator is opened twice.
inline constexpr const char* kVentanaAbierta = "La ventana ya está abierta, debe cerrar la ventana actual";

} // namespace tv::finance
