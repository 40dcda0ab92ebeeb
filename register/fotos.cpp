#include "fotos.h"

#include "dm.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <functional>

namespace tv::registro {

namespace {

const QString kSavepoint = QStringLiteral("SAVEPOINT TV_FOTOS");
const QString kRelease = QStringLiteral("RELEASE SAVEPOINT TV_FOTOS");
const QString kRollbackTo = QStringLiteral("ROLLBACK TO SAVEPOINT TV_FOTOS");

constexpr int kCalidadMiniatura = 85;

QString expedienteDe(const QString& codigo)
{
    return codigo.trimmed().rightJustified(5, QLatin1Char('0'));
}

FotosError fotosCambiadas()
{
    return FotosError(QStringLiteral("Las fotografías del inmueble han cambiado en otro puesto. "
                                     "Vuelva a abrirlas e inténtelo de nuevo."));
}

FotosError fotoDesaparecida()
{
    return FotosError(QStringLiteral("La fotografía seleccionada ya no existe: otro puesto la ha eliminado."));
}

QString motivo(const QImageReader& r, QSize tamano)
{
    // Qt refuses to decode pictures past its memory limit; a JPEG is read
    // already reduced, so only other formats get here.
    const qint64 megas = qint64(tamano.width()) * tamano.height() * 4 / (1024 * 1024);
    if (r.error() == QImageReader::InvalidDataError && megas >= QImageReader::allocationLimit())
        return QStringLiteral("la imagen es demasiado grande (%1 × %2 píxeles)").arg(tamano.width()).arg(tamano.height());
    switch (r.error()) {
    case QImageReader::FileNotFoundError:
        return QStringLiteral("el archivo no existe");
    case QImageReader::DeviceError:
        return QStringLiteral("no se puede leer el archivo");
    case QImageReader::UnsupportedFormatError:
        return QStringLiteral("no es una imagen de un formato reconocido");
    case QImageReader::InvalidDataError:
        return QStringLiteral("la imagen está dañada o incompleta");
    default:
        return QStringLiteral("no contiene una imagen válida");
    }
}

QByteArray codificar(const QImage& imagen, const char* formato, int calidad)
{
    QByteArray out;
    QBuffer buffer(&out);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter w(&buffer, formato);
    w.setQuality(calidad);
    w.setOptimizedWrite(true);
    if (!w.write(imagen))
        throw FotosError(QStringLiteral("No se puede convertir la fotografía: %1").arg(w.errorString()));
    return out;
}

bool esJpeg(const QByteArray& formato)
{
    return formato == "jpeg" || formato == "jpg";
}

// Photographs are published as JPEG; PNG keeps drawings and plans sharp;
// anything else becomes one of the two.
const char* formatoDestino(const QImage& imagen, const QByteArray& formato)
{
    if (esJpeg(formato))
        return "jpeg";
    if (formato == "png" || imagen.hasAlphaChannel())
        return "png";
    return "jpeg";
}

// The format the bytes of a stored picture are in ("jpeg", "png", ...).
QByteArray formatoDe(const QByteArray& bytes)
{
    QBuffer buffer(const_cast<QByteArray*>(&bytes));
    buffer.open(QIODevice::ReadOnly);
    return QImageReader::imageFormat(&buffer);
}

QList<int> leerIds(Query& q)
{
    QList<int> ids;
    for (q.open(); !q.eof(); q.next())
        ids.append(q.field(0).asInteger());
    q.close();
    return ids;
}

void marcarInmueble(Tdm& data, const QString& expediente, int numero)
{
    Query contar(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlContarFotos));
    contar.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(numero);
    contar.open();
    const bool tiene = contar.field(0).asInteger() > 0;
    contar.close();
    Query marcar(data.datos, data.Transacion, QString::fromUtf8(kSqlMarcarInmueble));
    marcar.paramByName(QStringLiteral("TIENEFOTOS")).setAsString(tiene ? QStringLiteral("S") : QStringLiteral("N"));
    marcar.paramByName(QStringLiteral("CODIGO")).setAsString(expediente);
    marcar.exec();
    if (marcar.rowsAffected() == 0)
        throw FotosError(QStringLiteral("No existe el inmueble %1: no se ha cambiado ninguna fotografía.").arg(expediente));
}

// One change of a property's photos: savepoints on both databases, the
// change, the property's flags, then commit with the context kept; any
// failure takes back every statement of it. `cambio` returns false when it
// found nothing to change.
void enUnidad(Tdm& data, const QString& expediente, const std::function<bool()>& cambio)
{
    const int numero = codigoImagenes(expediente);
    Query::execute(data.Imagenes, data.Transacion, kSavepoint);
    try {
        Query::execute(data.datos, data.Transacion, kSavepoint);
    } catch (...) {
        Query::execute(data.Imagenes, data.Transacion, kRelease);
        throw;
    }
    try {
        if (cambio())
            marcarInmueble(data, expediente, numero);
        Query::execute(data.Imagenes, data.Transacion, kRelease);
        Query::execute(data.datos, data.Transacion, kRelease);
    } catch (...) {
        for (Database* db : {&data.Imagenes, &data.datos}) {
            try {
                Query::execute(*db, data.Transacion, kRollbackTo);
                Query::execute(*db, data.Transacion, kRelease);
            } catch (const DatabaseError&) {
                // The change's own error is the one to report.
            }
        }
        try {
            throw;
        } catch (const DatabaseError& e) {
            if (e.isLockConflict())
                throw FotosError(QStringLiteral("Otro puesto está modificando el inmueble %1 en este momento. "
                                                "Inténtelo de nuevo dentro de unos segundos.")
                                     .arg(expediente));
            throw;
        }
    }
    data.Transacion.commitRetaining();
}

// Gives the IDs `actuales` holds, ascending, to the photos in `orden`. A
// photo first goes to a negative stand-in of its new ID, so no two rows
// share an ID half-way.
bool reasignarIds(Tdm& data, int numero, QList<int> actuales, const QList<int>& orden)
{
    std::sort(actuales.begin(), actuales.end());
    QList<QPair<int, int>> cambios; // current ID, new ID
    for (qsizetype k = 0; k < orden.size(); ++k)
        if (orden.at(k) != actuales.at(k))
            cambios.append({orden.at(k), actuales.at(k)});
    if (cambios.isEmpty())
        return false;
    Query q(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlCambiarId));
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(numero);
    auto cambiar = [&q](int desde, int hasta) {
        q.paramByName(QStringLiteral("ID")).setAsInteger(desde);
        q.paramByName(QStringLiteral("NUEVO")).setAsInteger(hasta);
        q.exec();
        if (q.rowsAffected() != 1)
            throw fotosCambiadas();
    };
    for (const auto& [actual, nuevo] : cambios)
        cambiar(actual, -nuevo - 1);
    for (const auto& [actual, nuevo] : cambios)
        cambiar(-nuevo - 1, nuevo);
    return true;
}

QList<int> idsDe(Tdm& data, int numero)
{
    Query q(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlIdsFotos));
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(numero);
    return leerIds(q);
}

bool esPermutacion(QList<int> a, QList<int> b)
{
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    return a == b;
}

} // namespace

bool tieneMiniaturas(Database& imagenes, Transaction& tr)
{
    return Query::scalar(imagenes, tr, QString::fromUtf8(kSqlExisteMiniatura)).toInt() > 0;
}

bool actualizarTablaImagenes(Tdm& data)
{
    if (tieneMiniaturas(data.Imagenes, data.Transacion))
        return false;
    data.actualizarImagenes();
    return true;
}

QString carpetaFotos(Tdm& data)
{
    return Query::scalar(data.datos, data.Transacion, QString::fromUtf8(kSqlCarpetaFotos)).toString().trimmed();
}

int codigoImagenes(const QString& codigo)
{
    bool ok = false;
    const int numero = codigo.trimmed().toInt(&ok);
    if (!ok)
        throw FotosError(QStringLiteral("El código de inmueble «%1» no es un número de expediente.").arg(codigo));
    return numero;
}

QImage decodificarFoto(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return {};
    QBuffer buffer(const_cast<QByteArray*>(&bytes));
    buffer.open(QIODevice::ReadOnly);
    QImageReader r(&buffer);
    r.setAutoTransform(true);
    return r.read();
}

QString claseGrafica(const QByteArray& formato)
{
    if (esJpeg(formato))
        return QString::fromLatin1(kClaseJpeg);
    if (formato == "png")
        return QString::fromLatin1(kClasePng);
    // Other stored formats keep the same naming: "T" + format + "Image".
    return QStringLiteral("T%1Image").arg(QString::fromLatin1(formato).toUpper());
}

QByteArray miniaturaDe(const QImage& imagen)
{
    if (imagen.isNull())
        return {};
    QImage mini = imagen;
    if (std::max(imagen.width(), imagen.height()) > kLadoMiniatura)
        mini = imagen.scaled(QSize(kLadoMiniatura, kLadoMiniatura), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (mini.hasAlphaChannel()) {
        // JPEG has no transparency: what shows through is white, as on a page.
        QImage fondo(mini.size(), QImage::Format_RGB32);
        fondo.fill(Qt::white);
        QPainter p(&fondo);
        p.drawImage(0, 0, mini);
        p.end();
        mini = fondo;
    }
    return codificar(mini, "jpeg", kCalidadMiniatura);
}

FotoPreparada prepararFoto(const QImage& imagen, const QByteArray& formato, const QByteArray& original)
{
    if (imagen.isNull())
        throw FotosError(QStringLiteral("La imagen está vacía."));
    const char* destino = formatoDestino(imagen, formato);
    QImage foto = imagen;
    const bool reducir = std::max(imagen.width(), imagen.height()) > kLadoWeb;
    if (reducir)
        foto = imagen.scaled(QSize(kLadoWeb, kLadoWeb), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    FotoPreparada p;
    const bool guardable = esJpeg(formato) || formato == "png";
    p.imagen = !reducir && guardable && !original.isEmpty() ? original : codificar(foto, destino, kCalidadJpeg);
    p.miniatura = miniaturaDe(foto);
    p.clase = claseGrafica(destino);
    p.tamano = foto.size();
    return p;
}

FotoPreparada prepararArchivo(const QString& ruta)
{
    const QString nombre = QDir::toNativeSeparators(ruta);
    auto error = [&nombre](const QString& porque) {
        return FotosError(QStringLiteral("No se puede leer la fotografía «%1»: %2.").arg(nombre, porque));
    };
    QFile f(ruta);
    if (!f.exists())
        throw error(QStringLiteral("el archivo no existe"));
    if (!f.open(QIODevice::ReadOnly))
        throw error(QStringLiteral("no se puede abrir el archivo"));
    const QByteArray bytes = f.readAll();
    if (bytes.isEmpty())
        throw error(QStringLiteral("el archivo está vacío"));
    QBuffer buffer(const_cast<QByteArray*>(&bytes));
    buffer.open(QIODevice::ReadOnly);
    QImageReader r(&buffer);
    r.setAutoTransform(true);
    const QByteArray formato = r.format();
    // The size as stored, before any turn; the longest side is the same
    // either way. Asking for the web size at once lets JPEG decode reduced:
    // faster, and camera pictures stay within Qt's memory limit.
    const QSize almacenado = r.size();
    const bool reducir = almacenado.isValid() && std::max(almacenado.width(), almacenado.height()) > kLadoWeb;
    if (reducir)
        r.setScaledSize(almacenado.scaled(kLadoWeb, kLadoWeb, Qt::KeepAspectRatio));
    const QImage imagen = r.read();
    if (imagen.isNull())
        throw error(motivo(r, almacenado));
    // A picture that had to be turned upright is stored turned, without the
    // orientation note that would turn it again.
    const bool intacta = !reducir && r.transformation() == QImageIOHandler::TransformationNone;
    return prepararFoto(imagen, formato, intacta ? bytes : QByteArray());
}

QList<Foto> listarFotos(Tdm& data, const QString& codigo)
{
    actualizarTablaImagenes(data);
    Query q(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlFotos));
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(codigoImagenes(codigo));
    QList<Foto> fotos;
    for (q.open(); !q.eof(); q.next()) {
        Foto f;
        f.id = q.field(0).asInteger();
        f.fecha = q.field(1).asDateTime();
        f.clase = q.field(2).asString();
        f.miniatura = q.field(3).asBytes();
        fotos.append(f);
    }
    q.close();
    // Rows stored without a thumbnail (older programs, the scanner) show one
    // made from the picture; nothing is written while listing.
    for (Foto& f : fotos)
        if (f.miniatura.isEmpty())
            f.miniatura = miniaturaDe(decodificarFoto(leerFoto(data, f.id)));
    return fotos;
}

QList<int> idsFotos(Tdm& data, const QString& codigo)
{
    return idsDe(data, codigoImagenes(codigo));
}

int contarFotos(Tdm& data, const QString& codigo)
{
    Query q(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlContarFotos));
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(codigoImagenes(codigo));
    q.open();
    return q.field(0).asInteger();
}

QByteArray leerFoto(Tdm& data, int id)
{
    Query q(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlLeerFoto));
    q.paramByName(QStringLiteral("ID")).setAsInteger(id);
    q.open();
    return q.eof() ? QByteArray() : q.field(0).asBytes();
}

QByteArray fotoPrincipal(Tdm& data, const QString& codigo)
{
    Query q(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlFotoPrincipal));
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(codigoImagenes(codigo));
    q.open();
    return q.eof() ? QByteArray() : q.field(0).asBytes();
}

QList<int> anadirFotos(Tdm& data, const QString& codigo, const QStringList& rutas)
{
    // Every file is read before anything is stored.
    QList<FotoPreparada> fotos;
    for (const QString& ruta : rutas) {
        try {
            fotos.append(prepararArchivo(ruta));
        } catch (const FotosError& e) {
            throw FotosError(e.mensaje() + QStringLiteral(" No se ha añadido ninguna fotografía."));
        }
    }
    return anadirPreparadas(data, codigo, fotos);
}

QList<int> anadirPreparadas(Tdm& data, const QString& codigo, const QList<FotoPreparada>& fotos)
{
    if (fotos.isEmpty())
        return {};
    actualizarTablaImagenes(data);
    const QString expediente = expedienteDe(codigo);
    const int numero = codigoImagenes(expediente);
    QList<int> nuevos;
    enUnidad(data, expediente, [&] {
        nuevos.clear();
        const QList<int> antes = idsDe(data, numero);
        const QDateTime ahora = QDateTime::currentDateTime();
        Query ins(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlInsertarFoto));
        QList<int> orden = antes;
        for (const FotoPreparada& f : fotos) {
            const int id = int(Query::genId(data.Imagenes, data.Transacion, QStringLiteral("GEN_IMAGENES_ID")));
            ins.paramByName(QStringLiteral("ID")).setAsInteger(id);
            ins.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(numero);
            ins.paramByName(QStringLiteral("FECHA")).setAsDateTime(ahora);
            ins.paramByName(QStringLiteral("GRAPHICCLASS")).setAsString(f.clase);
            ins.paramByName(QStringLiteral("PICTURE")).setAsBytes(f.imagen);
            ins.paramByName(QStringLiteral("PICTURE_MINI")).setAsBytes(f.miniatura);
            ins.exec();
            orden.append(id);
        }
        // A generator left behind by an import could hand out IDs below the
        // existing ones; the new photos still go last.
        QList<int> todos = orden;
        reasignarIds(data, numero, todos, orden);
        std::sort(todos.begin(), todos.end());
        nuevos = todos.mid(antes.size());
        return true;
    });
    return nuevos;
}

void ordenarFotos(Tdm& data, const QString& codigo, const QList<int>& orden)
{
    const QString expediente = expedienteDe(codigo);
    const int numero = codigoImagenes(expediente);
    enUnidad(data, expediente, [&] {
        const QList<int> actuales = idsDe(data, numero);
        if (!esPermutacion(actuales, orden))
            throw fotosCambiadas();
        return reasignarIds(data, numero, actuales, orden);
    });
}

int moverFoto(Tdm& data, const QString& codigo, int id, int posicion)
{
    const QString expediente = expedienteDe(codigo);
    const int numero = codigoImagenes(expediente);
    int nuevoId = id;
    enUnidad(data, expediente, [&] {
        const QList<int> actuales = idsDe(data, numero);
        const qsizetype desde = actuales.indexOf(id);
        if (desde < 0)
            throw fotoDesaparecida();
        const int hasta = std::clamp(posicion, 0, int(actuales.size()) - 1);
        QList<int> orden = actuales;
        orden.move(desde, hasta);
        nuevoId = actuales.at(hasta);
        return reasignarIds(data, numero, actuales, orden);
    });
    return nuevoId;
}

int hacerPrincipal(Tdm& data, const QString& codigo, int id)
{
    return moverFoto(data, codigo, id, 0);
}

void girarFoto(Tdm& data, const QString& codigo, int id, Giro giro)
{
    actualizarTablaImagenes(data);
    const QString expediente = expedienteDe(codigo);
    const int numero = codigoImagenes(expediente);
    enUnidad(data, expediente, [&] {
        const QByteArray bytes = leerFoto(data, id);
        const QImage imagen = decodificarFoto(bytes);
        if (imagen.isNull()) {
            if (bytes.isEmpty())
                throw fotoDesaparecida();
            throw FotosError(QStringLiteral("La fotografía seleccionada no contiene una imagen válida."));
        }
        // On screen y grows downwards, so a positive angle turns clockwise.
        const QImage girada = imagen.transformed(QTransform().rotate(giro == Giro::Derecha ? 90 : -90));
        const QByteArray formato = formatoDe(bytes);
        const char* destino = formatoDestino(girada, formato);
        Query q(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlGirarFoto));
        q.paramByName(QStringLiteral("PICTURE")).setAsBytes(codificar(girada, destino, kCalidadJpeg));
        q.paramByName(QStringLiteral("PICTURE_MINI")).setAsBytes(miniaturaDe(girada));
        q.paramByName(QStringLiteral("GRAPHICCLASS")).setAsString(claseGrafica(destino));
        q.paramByName(QStringLiteral("ID")).setAsInteger(id);
        q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(numero);
        q.exec();
        if (q.rowsAffected() != 1)
            throw fotoDesaparecida();
        return true;
    });
}

void eliminarFoto(Tdm& data, const QString& codigo, int id)
{
    const QString expediente = expedienteDe(codigo);
    const int numero = codigoImagenes(expediente);
    enUnidad(data, expediente, [&] {
        Query q(data.Imagenes, data.Transacion, QString::fromUtf8(kSqlBorrarFoto));
        q.paramByName(QStringLiteral("ID")).setAsInteger(id);
        q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(numero);
        q.exec();
        if (q.rowsAffected() != 1)
            throw fotoDesaparecida();
        return true;
    });
}

} // namespace tv::registro
