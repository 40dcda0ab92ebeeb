#pragma once

#include <QString>

// The statements of the search dialog, as plain functions so that every
// branch is tested without a window. User text reaches the SQL only through
// tv::sql::quote.
namespace tv::ui {

// A select split where its ordering starts: the first "ORDER" in the
// upper-cased text. Without one the base is the whole text and orden is empty.
struct SentenciaPartida {
    QString base;
    QString orden;
};

SentenciaPartida partirPorOrder(const QString& sql);

// The condition for one column. texto is what the user typed; tamano the
// column's declared size (0 for integers, numbers and dates):
// - above 0 (a text column): "<campo> like '%TEXTO%'", even for an empty text,
//   which then lists every row whose column is not null;
// - 0: "<campo> like 'TEXTO%'", or no condition (empty) for an empty text;
// - below 0: "<campo> like 'TEXTO%'", even for an empty text.
// TEXTO is the text trimmed and upper-cased.
QString condicionBusqueda(const QString& campo, const QString& texto, int tamano);

// The select to run: base + " WHERE " + condicion + " " + orden, or with
// " AND " when the base already filters (a "WHERE" past its first character);
// without a condition, base + " " + orden.
QString sentenciaBusqueda(const SentenciaPartida& partes, const QString& condicion);

} // namespace tv::ui
