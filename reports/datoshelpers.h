#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace tv {
class Query;
class Tdm;
}

// Shared pieces of the data-gathering functions.
namespace tv::reports {

// Every column of the current row as display text (dates dd/mm/yyyy,
// numbers the Spanish way), keyed by column name: "{{campos.NOMBREVIA}}"
// lets an agency print any column without a code change.
QVariantMap camposFila(const Query& q);
// The non-empty parts joined.
QString unir(const QStringList& parts, const QString& separator = QStringLiteral(" "));
// A property's street address: TIPOVIA, NOMBREVIA, NUMERO, BLOQUE, ESCALERA,
// PLANTA, PUERTA, each trimmed, joined by single blanks.
QString direccionInmueble(const Query& q);
// A person's address from DIRSIGLA, DIR, DIRNUM, DIRPISO, DIRLETRA.
QString direccionPersona(const Query& q);
// Remarks kept as formatted text (HTML or RTF) turned to plain text.
QString textoPlano(const QString& text);
// Marks alternate rows with "par" so templates can shade them.
void marcarFilas(QVariantList& rows);
// Parses dd/mm/yyyy, dd.mm.yyyy or yyyy-mm-dd.
QDate leerFecha(const QString& text);
// "S" -> "Sí", anything else -> "No".
QString siNo(const QVariant& flag);

} // namespace tv::reports

namespace tv::reports {

// A property code as the register writes it: trimmed, left-padded with "0"
// to five characters, a longer text cut to its first five.
QString normalizarCodigo(const QString& codigo);
// Opens q on the property's row ("SELECT * FROM INMUEBLES ..."); a code with
// no property is refused with "No existe el inmueble NNNNN.".
void abrirInmueble(Query& q, Tdm& data, const QString& codigo);
// Splits a list into rows of `columnas` cells ({"celdas": [...]}), the last
// row padded with {"vacia": true} so table columns stay aligned.
QVariantList enFilas(const QVariantList& items, int columnas);

} // namespace tv::reports
