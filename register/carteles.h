#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include <functional>

namespace tv {
class DataSet;
class Tdm;
} // namespace tv

// The poster texts of a property: the Spanish text written from the
// property's data (one property or the whole portfolio), and the Russian
// texts, kept apart on the UTF-8 connection.
//
// The items a text carries depend on the kind of property, told by its
// family's sheet template (FAMILIA.CODPLANTILLA) rather than the family code:
// agencies number their families freely, the template is what says "flat" or
// "land". Per template, in this order:
//   1 piso:     bedrooms (CHABDOBLES + CHABSENCILLAS + CNUMSUITE), CNUMBANOS,
//               CNUMASEOS; CSUPER1 construidos, útiles (CSUPER2, or CSUPERF1
//               when that is empty), CSUPER3 patio; lift, heating, garage,
//               storeroom, pool, garden; the year.
//   2, 3 casa:  as piso plus CSUPSOLAR parcela after útiles, without the lift.
//   4 nave:     CSUPER1 construidos, CSUPSOLAR parcela, CSUPER2 por planta,
//               CSUPER3 altura, CANCHO, CFONDO, CSUPER4 patio, CNUMBANOS,
//               CNUMASEOS; office, loading dock, emergency exit, smoke outlet,
//               enclosed; the year.
//   5 local:    CSUPER1 construidos, útiles, CSUPSOLAR total, SESCAPARATE (when
//               it holds a number), CANCHO, CALTO, CFONDO, CNUMBANOS, CNUMASEOS;
//               smoke outlet, emergency exit, office, heating; the year.
//   6 parking:  CPLAZAS, CSUPER1 construidos, CANCHO, CALTO, CFONDO;
//               underground, enclosed, lift.
//   7 solar:    CSUPER1 total, CSUPER2 parcela, CSUPER3 techo, CSUPER4 ancho,
//               SOLAR_OCUPACION, SOLAR_NUMEROVIVIENDAS; enclosed.
//   8 edificio: CSUPER1 construidos, CSUPSOLAR parcela, the EDIFICIO_ surfaces
//               above and below ground, occupation and maximum height, then
//               floors above and below ground, dwellings and parking places;
//               lift, heating, garage, storerooms, pool, garden, emergency
//               exit; EDIFICIO_ANOCONSTRUCCION.
//   9 rustica:  "SUPERFICIE TOTAL: " CSUPER1 " M2,", then the RUSTICA_ texts
//               after their labels, each closed by a comma; pool.
// Any other template reads as a flat. Every count takes the singular unit for
// 1 (the building counts too: "1 PLANTA BAJO RASANTE,"). The year follows
// "AÑO DE CONSTRUCCIÓN " only while CANOCONSTRUCCION is "S" and reads
// SANOCONSTRUCCION (a building's comes from its own page). Zero, empty and
// unreadable values are skipped; a feature needs "S". Figures are written the
// Spanish way without trailing zeros ("1.250", "85,5"). Items are joined by
// one blank (none after a word that already ends in one) and every line break
// becomes one blank.
namespace tv::registro {

inline const char* const kSqlFamiliaTipo =
    "SELECT CODFAMILIA,DESCRIPCION FROM TIPOINMUEBLE WHERE CODIGO =:CODIGO ";
inline const char* const kSqlPlantillaFamilia = "SELECT CODPLANTILLA FROM FAMILIA WHERE CODIGO =:CODIGO";
inline const char* const kSqlGuardarCartel =
    " UPDATE INMUEBLES SET CARTELES_INFORMACION=:INFORMACION WHERE CODIGO=:CODIGO ";
inline const char* const kSqlLeerRusos = " select CARTELES_INFORMARUS,CARTELES_CABECERARUS,CARTELES_PIERUS "
                                         "from inmuebles i where codigo =:codigo ";
inline const char* const kSqlGuardarRusos =
    " update inmuebles i set i.CARTELES_INFORMARUS =:informa, CARTELES_CABECERARUS =:cabera_ruso, "
    "CARTELES_PIERUS =:pie_ruso  where codigo =:codigo ";

// A column's value in the property's row (an invalid QVariant when unknown).
using ValorColumna = std::function<QVariant(const QString& columna)>;

// The poster text of a property of the template `plantilla`.
QString textoCartel(int plantilla, const ValorColumna& valor);
// The same from column -> value (column names in upper case).
QString textoCartel(int plantilla, const QVariantMap& valores);
// The same for the data set's current row (a row being edited included); its
// family comes from its CODTIPOINMUEBLE.
QString textoCartel(Tdm& dm, DataSet& ds);

// Every column the texts read, for a select.
const QStringList& columnasCartel();

// The template of a property type: its family (kSqlFamiliaTipo), then that
// family's CODPLANTILLA; a family without one takes the sheets' default for
// its code, and an unknown type reads as a flat.
int plantillaCartel(Tdm& dm, const QVariant& tipoInmueble);

// Writes and stores (kSqlGuardarCartel, then a commit retaining the context)
// the poster text of one property; the code is padded as the register pads
// it. Returns the text. A code with no property throws DatabaseError.
QString generarCartel(Tdm& dm, const QString& codigo);

// Called while the whole portfolio is written, now and then and at the end,
// with the properties done and their total; false stops the run.
using ProgresoCarteles = std::function<bool(int hechos, int total)>;
// Writes and stores the poster text of every active property (ACTIVADO "S")
// in one pass over the table, all or nothing: a failure or a stop leaves
// every text as it was (a stop returns 0). A text that comes out as stored is
// not rewritten. Returns the active properties.
int generarCarteles(Tdm& dm, const ProgresoCarteles& progreso = {});

// The Russian poster text, header and footer (UTF8 columns, read and saved on
// dm.datosrusos in the shared transaction).
struct TextosRusos {
    QString informacion;
    QString cabecera;
    QString pie;
    bool operator==(const TextosRusos&) const = default;
};
// Empty texts for a code with no property.
TextosRusos leerTextosRusos(Tdm& dm, const QString& codigo);
// Saves and commits retaining the context, so the main connection can write
// the same row next; a code with no property throws DatabaseError.
void guardarTextosRusos(Tdm& dm, const QString& codigo, const TextosRusos& textos);

} // namespace tv::registro
