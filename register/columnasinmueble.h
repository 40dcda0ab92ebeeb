#pragma once

#include "column.h"

#include <QList>
#include <QString>

// How the property register shows INMUEBLES: every column once, grouped in
// boxes on tab pages. The form, the list and the search dialog are built
// from these tables.
namespace tv::registro {

// Tab pages of the register.
inline const char* const kPaginaGeneral = "Datos generales";
inline const char* const kPaginaSuperficies = "Superficies";
inline const char* const kPaginaCaracteristicas = "Características";
inline const char* const kPaginaSolar = "Solar";
inline const char* const kPaginaEdificio = "Edificio";
inline const char* const kPaginaRustica = "Rústica";
inline const char* const kPaginaRegistro = "Registro";
inline const char* const kPaginaObservaciones = "Observaciones";
inline const char* const kPaginaCarteles = "Carteles";
inline const char* const kPaginaPublicacion = "Publicación";

// A box of fields on a page: `porFila` fields side by side.
struct GrupoInmueble {
    QString pagina;
    QString titulo;
    int porFila = 2;
    ui::Columns columnas;
};
const QList<GrupoInmueble>& gruposInmueble();

// Every column of the groups, in order (for the list and the search).
const ui::Columns& columnasInmueble();

// The poster texts of one language: header, text, footer.
struct IdiomaCartel {
    QString idioma;
    QString cabecera;
    QString informacion;
    QString pie;
};
// Spanish, Catalan, English, French and German are columns of the row;
// Russian is kept apart (carteles.h).
const QList<IdiomaCartel>& idiomasCartel();

// The columns the register's list shows, in order.
const QStringList& columnasLista();

} // namespace tv::registro
