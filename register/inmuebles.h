#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>

namespace tv {
class DataSet;
class Database;
class Tdm;
class Transaction;
struct CurrentAgent;
}

// The rules of the property register, apart from its window: numbering,
// defaults, the checks before saving, the search condition, copying and
// deleting. The screen (frminmuebles.h) only wires widgets to these.
namespace tv::registro {

inline const char* const kSelectInmuebles = "select * from inmuebles";
inline const char* const kWhereActivos = "where activado ='S'";
inline const char* const kOrderInmuebles = "order by codigo";
// The register's default query: the active stock by expediente.
QString consultaInmuebles();
// The register's query over a search condition (see condicionBusqueda).
QString consultaInmuebles(const QString& condicion);

// The statements that store the register's rows: every column of
// INMUEBLES but the Russian poster texts, which have statements of their own
// (carteles.h) and so are neither written nor compared here.
struct SentenciasInmuebles {
    QString refresh;
    QString modify;
    QString insert;
    QString remove;
};
const QStringList& columnasRusas();
SentenciasInmuebles sentenciasInmuebles(Database& db, Transaction& tr);

// The expediente as stored: trimmed, cut to its first five characters and
// left-padded with "0" to five ("7" gives "00007", "1234567" "12345").
QString rellenarExpediente(const QString& tecleado);
// The numeric value other tables keep of a property code ("00012" gives
// 12; -1 for a code that is no number).
int numeroExpediente(const QString& codigo);

// A video link as it is embedded: "&feature=youtu.be" removed and
// "watch?v=" replaced by "embed/".
QString normalizarVideo(const QString& enlace);
// The page that plays a property's video (the embedded player).
QString paginaVideo(const QString& enlace);

// HONORARIO_VENTA + HONORARIO_SOBRE * HONORARIO_PORCENTAJE / 100, to 2 decimals.
double honorarioCalculado(const QVariant& venta, const QVariant& sobre, const QVariant& porcentaje);

// "Cartera de Inmuebles" with the captor and the apartment's name when set.
QString tituloCartera(const QString& captador, const QString& apartamento);

// The feature flags a new property starts with "N", then the other defaults.
const QStringList& banderasNuevoInmueble();
const QStringList& banderasFotos();
// Writes every default of a new property into the data set's new row:
// `agente` becomes captor, agent and valuer when somebody is logged in;
// `propietario` (> 0) the first owner.
void valoresNuevoInmueble(DataSet& ds, const CurrentAgent& agente, int propietario, const QString& codigo);

// The checks before saving, in order; the first failure's message and the
// column whose box takes the focus.
struct Fallo {
    QString mensaje;
    QString columna;
};
inline const char* const kSqlExpedienteRepetido = "SELECT COUNT(*) FROM INMUEBLES WHERE CODIGO =:CODIGO ";
std::optional<Fallo> validarInmueble(DataSet& ds, Database& db, Transaction& tr);

// The property search dialog's boxes.
struct FiltroInmuebles {
    QVariant propietario;     // owner code
    QString calle;            // NOMBREVIA
    QString apartamento;      // NOMBRE_APARTAMENTO
    QDate desde;              // entry dates, both valid or ignored
    QDate hasta;
    QString expediente;
    bool soloExclusivas = false;
};
// The condition the dialog adds to "select * from inmuebles ": filled
// boxes in a fixed order, each joined with WHERE when first and AND after;
// active properties always; exclusive ones when asked.
QString condicionBusqueda(const FiltroInmuebles& f);
// A LIKE pattern of typed text (both ends open).
QString patronBusqueda(const QString& tecleado);

// Copies a property under a new code from CODINMUEBLE: every column but
// the code, in the shared transaction, committed (context kept); with an
// agent (> 0) the copy is his. Returns the new code.
QString copiarInmueble(Tdm& data, const QString& codigo, int agente = 0);
inline const char* const kPreguntaCopiar =
    "¿Está seguro generar un nuevo inmueble a partir del inmueble \r\nseleccionado?";
inline const char* const kInmuebleCopiado = "Inmueble copiado correctamente";

// The photographs go with the property: run in the same unit of work as
// the row's delete.
inline const char* const kSqlBorrarFotos = "DELETE FROM IMAGENES WHERE CODINMUEBLE =:CODINMUEBLE";
void borrarFotos(Tdm& data, const QString& codigo);

// Marks (or unmarks) a property for the agency's own web, committed.
void marcarWeb(Tdm& data, const QString& codigo, bool publicar);

// The folder of a property's attached documents, under the data folder.
QString carpetaDocumentos(const QString& carpetaDatos, const QString& codigo);

// An owner's phones; the property keeps the first there is, in the order
// TEL, TEL_MOVIL, TEL_TRABAJO (TELEFONO for the first owner, TELEFONO2 for
// the second).
struct TelefonosPropietario {
    QString tel;
    QString movil;
    QString trabajo;
    QString primero() const;
};
TelefonosPropietario telefonosPropietario(Database& db, Transaction& tr, const QVariant& codigo);
// The owner's name, for the row's NOMBREPROPIETARIO.
QString nombrePropietario(Database& db, Transaction& tr, const QVariant& codigo);

// Messages of the register.
inline const char* const kSinVideo = "No existe ningún video en Youtube asociado a este inmueble";
inline const char* const kGrabarAntesDeWeb = "Debe grabar los cambios antes de exportar a Internet";
inline const char* const kPreguntaQuitarWeb = "¿Está seguro de eliminar este inmueble a su web?";
inline const char* const kPreguntaBorrar = "¿Está seguro de eliminar el inmueble seleccionado?";
inline const char* const kPreguntaCartelesCartera =
    "¿Está seguro de generar la información de la publicidad de toda la cartera de inmuebles?";

} // namespace tv::registro
