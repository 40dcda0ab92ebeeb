#pragma once

#include "money.h"

#include <QString>

namespace tv::finance {

// Rules of the mortgage calculator, apart from its window.

// The longest amount the keypad builds: ten digits.
constexpr int kMaxDigitosImporte = 10;

// The amount's text after pressing a digit button: the digit is appended
// while the text is shorter than ten characters, and a "0" only once the
// amount is above zero, so the amount never starts with a zero.
QString anadirDigito(const QString& texto, int digito);

// The amount typed so far (whole euros; blank is zero).
Money importeTecleado(const QString& texto);

// The first of amount, term and rate that is not above zero, in that order.
enum class DatoCalculadora { Ninguno, Importe, Plazo, Interes };
DatoCalculadora datoQueFalta(Money importe, int anos, Money interes);
// Its message ("" for Ninguno).
QString mensajeDatoQueFalta(DatoCalculadora dato);

} // namespace tv::finance
