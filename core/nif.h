#pragma once

#include <QString>

namespace tv {

// What a tax number field shows when the number typed cannot be accepted.
inline const QString kNifErroneo = QStringLiteral("ERR. NIF");
// Check letter of a personal number (DNI, NIE, K/L/M): indexed by number % 23.
inline const QString kNifLetras = QStringLiteral("TRWAGMYFPDXBNJZSQVHLCKE");
// First letters of a company tax code (CIF).
inline const QString kCifLetrasIniciales = QStringLiteral("ABCDEFGHJNPQRSUVW");
// The two ways of writing a company code's control value d (0..9):
// kCifControlLetras[d] or kCifControlDigitos[d]; A pairs with 1, ..., J with 0.
inline const QString kCifControlLetras = QStringLiteral("JABCDEFGHI");
inline const QString kCifControlDigitos = QStringLiteral("0123456789");
// Company codes whose control must be a letter, and those whose control must
// be a digit; the rest accept either. (K numbers are personal: kNifLetras.)
inline const QString kCifConControlLetra = QStringLiteral("NPQRSW");
inline const QString kCifConControlDigito = QStringLiteral("ABEH");
// Prefixes agencies keep for foreign legal persons and foreign individuals;
// such values are not Spanish numbers and pass unchecked.
inline const QString kNifMarcaPersonaJuridica = QStringLiteral("PJ");
inline const QString kNifMarcaPersonaFisica = QStringLiteral("PFL");

// The Spanish tax number in its canonical form: upper case without blanks,
// hyphens, dots or slashes; a DNI padded to eight digits and an NIE to seven,
// with the check letter appended when missing; a company code with its control
// appended when missing (a digit unless the code requires a letter). A number
// whose typed check character is wrong, or that cannot be read, gives
// kNifErroneo; blank text gives an empty string. Only Spain's numbers are
// checked: for any other country the text comes back exactly as typed.
QString normalizarNif(const QString& text, const QString& pais = QStringLiteral("España"));

// Whether the country is Spain, however it is capitalised or accented.
bool esEspana(const QString& pais);

} // namespace tv
