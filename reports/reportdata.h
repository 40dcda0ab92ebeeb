#pragma once

#include <QDate>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

namespace tv {
class Tdm;
struct CurrentAgent;
}

// What each report prints: the queries and fields behind every template in
// informes/, shared by the screens and the command line. Each function
// returns the map a template is filled with (always with "empresa", the
// agency's data) and throws ReportError when the record does not exist.
namespace tv::reports {

// ---- property sheets (in_ficha_*)

// The sheet template of a property: its family's CODPLANTILLA read with
// "SELECT F.CODPLANTILLA FROM FAMILIA F , tipoinmueble I WHERE F.codigo =
// I.codfamilia and i.CODIGO =:CODIGO " (the property type's code).
QString plantillaFicha(Tdm& data, const QString& codigoInmueble);
// The property, its family's data and features, and its photographs
// (first one large, the others as thumbnails) under "inmueble" and "fotos".
QVariantMap datosFichaInmueble(Tdm& data, const QString& codigoInmueble);

// ---- lists and records

// The portfolio (in_ofertas) over the register's current list: `consulta`
// is the register's own select on INMUEBLES; empty means the live stock.
QVariantMap datosOfertas(Tdm& data, const QString& consulta = {});
// The same for chosen property codes.
QVariantMap datosOfertas(Tdm& data, const QStringList& codigos);
// A property's follow-ups (in_inmuebleGestion).
QVariantMap datosInmuebleGestion(Tdm& data, const QString& codigoInmueble);
// A client's record with demands and follow-ups (in_cliente).
QVariantMap datosCliente(Tdm& data, int codigo);
// An owner's record with the owner's properties (in_propietario).
QVariantMap datosPropietario(Tdm& data, int codigo);
// One follow-up with its property, owner and client (in_gestion).
QVariantMap datosGestion(Tdm& data, int codigo);
// The follow-ups of a date range, as the listing's filter selects them,
// grouped by type (in_gestiones).
QVariantMap datosGestiones(Tdm& data, const QDate& desde, const QDate& hasta);
// The interested clients of a property (in_interesados); `clientes` are the
// client codes found by the reverse match.
QVariantMap datosInteresados(Tdm& data, const QString& codigoInmueble, const QStringList& clientes);
// The task list (in_agendax) from `desde` to the end of `hasta`; only the
// agent's own appointments when he sees only his own agenda. "numero" is
// the count; with 0 nothing is to be printed (kSinRegistros).
QVariantMap datosAgendax(Tdm& data, const QDate& desde, const QDate& hasta, const CurrentAgent& agente);
inline const char* const kSinRegistros = "No existen registros para esta consulta.";
// The task list's select, as the agenda runs it.
QString consultaAgendax(const QDate& desde, const QDate& hasta, bool soloPropia);
// A property's expenses with their total (in_inmueblegastos).
QVariantMap datosInmuebleGastos(Tdm& data, const QString& codigoInmueble);
// The expenses screen's title of a property: CODIGO-MUNICIPIO-type(zone), in lower case.
QString tituloGastos(Tdm& data, const QString& codigoInmueble);

// ---- statistics (in_estadistica1 .. in_estadistica8)

struct Estadistica {
    int numero;
    QString titulo;   // the command's caption
    QString impreso;  // the heading printed
    QString consulta; // the grouped query
    QString columnaEtiqueta;
    QString columnaValor;
    bool importe;     // the value is an amount in euros
};
const QVector<Estadistica>& estadisticas();
QVariantMap datosEstadistica(Tdm& data, int numero);

// ---- by name, for the command line

// The data of report `nombre` (a template name, or "ficha" for a property's
// own sheet) from text parameters (codigo, desde, hasta, clientes,
// codigos, usuario); *plantilla receives the template to print.
QVariantMap datosPorNombre(Tdm& data, const QString& nombre, const QMap<QString, QString>& parametros,
                           QString* plantilla);
// The reports datosPorNombre knows, with the parameters each takes.
QStringList informesDisponibles();

} // namespace tv::reports
