#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

#include <stdexcept>

namespace tv {
class Database;
class Tdm;
class Transaction;
}

// The photographs of a property, apart from any window: listing, adding from
// files, ordering, rotating and removing. They live in IMAGENES of the images
// database; portals read them "order by id", so the order of the IDs is the
// order of the photos and the first is the main one. Every change is one unit
// of work on the shared transaction (savepoints on both databases, undone
// whole on failure), keeps the property's TIENEFOTOS and per-portal
// FOTOS_ACT_* flags in step in the main database, and is committed with the
// context kept. Interface thread only.
namespace tv::registro {

// A photograph as the manager lists it; the full picture is read on demand.
struct Foto {
    int id = 0;
    QDateTime fecha;
    QString clase;        // GRAPHICCLASS
    QByteArray miniatura; // PICTURE_MINI, or made from PICTURE when the row has none
};

// A picture ready to be stored: the web-sized picture, its thumbnail and class.
struct FotoPreparada {
    QByteArray imagen;
    QByteArray miniatura;
    QString clase;
    QSize tamano; // of the stored picture, after any shrinking
};

// A file that is not a readable picture, or photos changed by another
// workstation meanwhile; the message is for the user, in Spanish.
class FotosError : public std::runtime_error {
public:
    explicit FotosError(const QString& mensaje) : std::runtime_error(mensaje.toStdString()), mMensaje(mensaje) {}
    QString mensaje() const { return mMensaje; }

private:
    QString mMensaje;
};

// Longest side of a stored picture (what portals show) and of a thumbnail.
inline constexpr int kLadoWeb = 1600;
inline constexpr int kLadoMiniatura = 200;
inline constexpr int kCalidadJpeg = 88;

inline const char* const kClaseJpeg = "TJPEGImage";
inline const char* const kClasePng = "TPngImage";

inline const char* const kSqlExisteMiniatura =
    "SELECT COUNT(*) FROM RDB$RELATION_FIELDS WHERE RDB$RELATION_NAME = 'IMAGENES' "
    "AND RDB$FIELD_NAME = 'PICTURE_MINI'";
inline const char* const kSqlFotos =
    "SELECT ID, FECHA, GRAPHICCLASS, PICTURE_MINI FROM IMAGENES WHERE CODINMUEBLE = :CODINMUEBLE ORDER BY ID";
inline const char* const kSqlIdsFotos = "SELECT ID FROM IMAGENES WHERE CODINMUEBLE = :CODINMUEBLE ORDER BY ID";
inline const char* const kSqlContarFotos = "SELECT COUNT(*) FROM IMAGENES WHERE CODINMUEBLE = :CODINMUEBLE";
inline const char* const kSqlLeerFoto = "SELECT PICTURE FROM IMAGENES WHERE ID = :ID";
inline const char* const kSqlFotoPrincipal =
    "SELECT FIRST 1 PICTURE FROM IMAGENES WHERE CODINMUEBLE = :CODINMUEBLE ORDER BY ID";
inline const char* const kSqlInsertarFoto =
    "INSERT INTO IMAGENES (ID, CODINMUEBLE, FECHA, GRAPHICCLASS, PICTURE, PICTURE_MINI) "
    "VALUES (:ID, :CODINMUEBLE, :FECHA, :GRAPHICCLASS, :PICTURE, :PICTURE_MINI)";
inline const char* const kSqlCambiarId =
    "UPDATE IMAGENES SET ID = :NUEVO WHERE ID = :ID AND CODINMUEBLE = :CODINMUEBLE";
inline const char* const kSqlGirarFoto =
    "UPDATE IMAGENES SET PICTURE = :PICTURE, PICTURE_MINI = :PICTURE_MINI, GRAPHICCLASS = :GRAPHICCLASS "
    "WHERE ID = :ID AND CODINMUEBLE = :CODINMUEBLE";
inline const char* const kSqlBorrarFoto = "DELETE FROM IMAGENES WHERE ID = :ID AND CODINMUEBLE = :CODINMUEBLE";
// The photos changed: every portal must upload them again.
inline const char* const kSqlMarcarInmueble =
    "UPDATE INMUEBLES SET TIENEFOTOS = :TIENEFOTOS, FOTOS_ACT_PISOS = 'S', FOTOS_ACT_TUCASA = 'S', "
    "FOTOS_ACT_FOTOCASA = 'S', FOTOS_ACT_MIWEB = 'S', FOTOS_ACT_IDEALISTA = 'S', FOTOS_ACT_YAENCONTRE = 'S', "
    "FOTOS_ACT_HABITACLIA = 'S', FOTOS_ACT_ENALQUILER = 'S', FOTOS_ACT_TROVIMAP = 'S', FOTOS_ACT_INDOMINIO = 'S' "
    "WHERE CODIGO = :CODIGO";

// The thumbnail column: true when it is there (the images database files of
// old installations lack it).
bool tieneMiniaturas(Database& imagenes, Transaction& tr);
// Adds PICTURE_MINI when it is missing, on the images connection and the
// shared transaction, committed with the context kept so the column can be
// used at once. True when it was added now.
bool actualizarTablaImagenes(Tdm& data);

// The folder the agency keeps its photographs in (CONFIGURACION), where
// choosing files starts; empty when none is set.
inline const char* const kSqlCarpetaFotos = "SELECT DIRECTORIO_FOTOS FROM CONFIGURACION";
QString carpetaFotos(Tdm& data);

// The numeric value IMAGENES keeps of a property code ("00012" gives 12).
int codigoImagenes(const QString& codigo);

// The property's photographs in their order (the first is the main one).
QList<Foto> listarFotos(Tdm& data, const QString& codigo);
// The IDs of the property's photographs in their order.
QList<int> idsFotos(Tdm& data, const QString& codigo);
int contarFotos(Tdm& data, const QString& codigo);
// One photograph's full picture (empty when the row is gone or has none).
QByteArray leerFoto(Tdm& data, int id);
// The main (first) photograph's picture, empty when the property has none.
QByteArray fotoPrincipal(Tdm& data, const QString& codigo);

// A picture from stored or read bytes, turned upright when the file says
// how it was taken (EXIF orientation). Null when the bytes are no picture.
QImage decodificarFoto(const QByteArray& bytes);
// The class name GRAPHICCLASS keeps for a stored format ("jpeg", "png").
QString claseGrafica(const QByteArray& formato);
// The thumbnail of a picture: at most kLadoMiniatura a side, JPEG.
QByteArray miniaturaDe(const QImage& imagen);
// A picture as it is stored: shrunk to kLadoWeb keeping its shape, JPEG
// kept as JPEG, PNG as PNG, anything else JPEG (PNG when it has
// transparency). `original` is kept as it was when nothing had to change.
FotoPreparada prepararFoto(const QImage& imagen, const QByteArray& formato, const QByteArray& original = {});
// Reads a picture file; FotosError naming the file when it cannot be read.
FotoPreparada prepararArchivo(const QString& ruta);

// Adds the files' pictures after the property's photographs, in the order
// given; every file is read first, so one unreadable file adds none.
// Returns the new IDs.
QList<int> anadirFotos(Tdm& data, const QString& codigo, const QStringList& rutas);
// Adds pictures already prepared (scanned, captured, dropped).
QList<int> anadirPreparadas(Tdm& data, const QString& codigo, const QList<FotoPreparada>& fotos);
// Gives the property's IDs, in ascending order, to the photographs listed in
// `orden` (every current ID exactly once).
void ordenarFotos(Tdm& data, const QString& codigo, const QList<int>& orden);
// Moves one photograph to a position (0 = main); returns the ID it has now.
int moverFoto(Tdm& data, const QString& codigo, int id, int posicion);
// Makes a photograph the main one; returns the ID it has now.
int hacerPrincipal(Tdm& data, const QString& codigo, int id);
enum class Giro { Izquierda, Derecha };
// Turns a photograph a quarter; picture and thumbnail are rewritten.
void girarFoto(Tdm& data, const QString& codigo, int id, Giro giro);
void eliminarFoto(Tdm& data, const QString& codigo, int id);

} // namespace tv::registro
