// The rules of a property's photographs: adding (IDs from the generator,
// thumbnails, web size, upright pictures), the order that portals read by
// ID, turning, removing, the property's photo flags after every change, the
// thumbnail column added only when missing, and that a failing change
// leaves both databases as they were.
#include "fotosapoyo.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

using namespace tv;
using namespace tv::registro;
using test::FotosTest;
using test::dibujo;
using test::parecido;

namespace {

QByteArray formatoDe(const QByteArray& bytes)
{
    QBuffer b(const_cast<QByteArray*>(&bytes));
    b.open(QIODevice::ReadOnly);
    return QImageReader::imageFormat(&b);
}

QByteArray codificado(const QImage& img, const char* formato)
{
    QByteArray out;
    QBuffer b(&out);
    b.open(QIODevice::WriteOnly);
    QImageWriter w(&b, formato);
    EXPECT_TRUE(w.write(img));
    return out;
}

// A JPEG with an EXIF block holding only the orientation tag (6: turn a
// quarter clockwise to show), as cameras write it.
QByteArray conOrientacion(const QByteArray& jpeg, quint16 orientacion)
{
    QByteArray tiff("MM\x00\x2A\x00\x00\x00\x08", 8);     // big-endian header, IFD at 8
    tiff.append("\x00\x01", 2);                              // one entry
    tiff.append("\x01\x12\x00\x03\x00\x00\x00\x01", 8);     // Orientation, SHORT, count 1
    tiff.append(char(orientacion >> 8)).append(char(orientacion & 0xFF)).append("\x00\x00", 2);
    tiff.append("\x00\x00\x00\x00", 4);                      // no next IFD
    const QByteArray exif = QByteArray("Exif\x00\x00", 6) + tiff;
    const int largo = int(exif.size()) + 2;
    QByteArray app1("\xFF\xE1", 2);
    app1.append(char(largo >> 8)).append(char(largo & 0xFF)).append(exif);
    return jpeg.left(2) + app1 + jpeg.mid(2);
}

QByteArray leerArchivo(const QString& ruta)
{
    QFile f(ruta);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

TEST_F(FotosTest, AddingSeveralDrawsIdsFromTheGeneratorAndStoresThumbnails)
{
    const qlonglong antes = generador();
    const QString png = archivo(QStringLiteral("salon.png"), QSize(120, 80));
    const QString jpg = archivo(QStringLiteral("cocina.jpg"), QSize(100, 100), "jpeg");
    const QString grande = archivo(QStringLiteral("fachada.png"), QSize(640, 320));
    const QDateTime inicio = QDateTime::currentDateTime().addSecs(-1);

    const QList<int> ids = anadirFotos(d(), kCodigo, {png, jpg, grande});

    EXPECT_EQ(ids, (QList<int>{int(antes + 1), int(antes + 2), int(antes + 3)}));
    EXPECT_EQ(generador(), antes + 3);
    EXPECT_EQ(idsFotos(d(), kCodigo), ids);
    EXPECT_EQ(contarFotos(d(), kCodigo), 3);
    EXPECT_EQ(escalar(d().Imagenes, QStringLiteral("SELECT COUNT(*) FROM IMAGENES WHERE CODINMUEBLE = 12")), 3);

    const QList<Foto> fotos = listarFotos(d(), kCodigo);
    ASSERT_EQ(fotos.size(), 3);
    EXPECT_EQ(fotos.at(0).clase, QStringLiteral("TPngImage"));
    EXPECT_EQ(fotos.at(1).clase, QStringLiteral("TJPEGImage"));
    for (const Foto& f : fotos) {
        EXPECT_GE(f.fecha, inicio);
        EXPECT_LE(f.fecha, QDateTime::currentDateTime().addSecs(1));
        EXPECT_EQ(formatoDe(f.miniatura), QByteArray("jpeg"));
    }
    // Small pictures are thumbnails of themselves; a bigger one is cut to 200.
    EXPECT_EQ(decodificarFoto(fotos.at(0).miniatura).size(), QSize(120, 80));
    EXPECT_EQ(decodificarFoto(fotos.at(2).miniatura).size(), QSize(200, 100));
    // The thumbnail is stored, not only shown.
    EXPECT_FALSE(Query::scalar(d().Imagenes, d().Transacion,
                               QStringLiteral("SELECT PICTURE_MINI FROM IMAGENES WHERE ID = %1").arg(ids.at(2)))
                     .toByteArray()
                     .isEmpty());
    // Pictures that needed nothing are kept byte for byte; JPEG stays JPEG.
    EXPECT_EQ(leerFoto(d(), ids.at(0)), leerArchivo(png));
    EXPECT_EQ(leerFoto(d(), ids.at(1)), leerArchivo(jpg));

    EXPECT_EQ(banderas(), todasS());
    EXPECT_EQ(banderas(kOtro), sinTocar());
    EXPECT_EQ(contarFotos(d(), kOtro), 0);
}

TEST_F(FotosTest, AddedPhotosGoAfterTheExistingOnesAndAreCommitted)
{
    const QList<int> primeros = cuatro();
    const QList<int> otro = anadirFotos(d(), kCodigo, {archivo(QStringLiteral("f5.png"), QSize(105, 60))});
    ASSERT_EQ(otro.size(), 1);
    EXPECT_GT(otro.first(), primeros.last());
    EXPECT_EQ(anchosEnOrden(), (QList<int>{101, 102, 103, 104, 105}));

    // Another workstation sees them at once.
    Database otra(d().Imagenes.databaseName());
    otra.open();
    Transaction tr;
    EXPECT_EQ(Query::scalar(otra, tr, QStringLiteral("SELECT COUNT(*) FROM IMAGENES WHERE CODINMUEBLE = 12")).toInt(), 5);
    tr.commit();
    otra.close();
}

TEST_F(FotosTest, BigPicturesShrinkToWebSizeKeepingTheirShape)
{
    struct Caso {
        QSize tamano;
        const char* formato;
        QSize guardado;
        QSize miniatura;
        QByteArray formatoGuardado;
        QString clase;
    };
    const QList<Caso> casos = {
        {QSize(4000, 3000), "jpeg", QSize(1600, 1200), QSize(200, 150), "jpeg", QStringLiteral("TJPEGImage")},
        {QSize(3000, 4000), "jpeg", QSize(1200, 1600), QSize(150, 200), "jpeg", QStringLiteral("TJPEGImage")},
        {QSize(2000, 1000), "png", QSize(1600, 800), QSize(200, 100), "png", QStringLiteral("TPngImage")},
        {QSize(1600, 900), "jpeg", QSize(1600, 900), QSize(200, 112), "jpeg", QStringLiteral("TJPEGImage")},
        // Formats portals do not take become JPEG.
        {QSize(2400, 1200), "bmp", QSize(1600, 800), QSize(200, 100), "jpeg", QStringLiteral("TJPEGImage")},
    };
    int n = 0;
    for (const Caso& c : casos) {
        SCOPED_TRACE(QStringLiteral("%1x%2 %3").arg(c.tamano.width()).arg(c.tamano.height()).arg(QLatin1String(c.formato)).toStdString());
        const QString ruta = archivo(QStringLiteral("g%1.%2").arg(++n).arg(QLatin1String(c.formato)), c.tamano, c.formato);
        const FotoPreparada p = prepararArchivo(ruta);
        EXPECT_EQ(p.tamano, c.guardado);
        EXPECT_EQ(decodificarFoto(p.imagen).size(), c.guardado);
        EXPECT_EQ(formatoDe(p.imagen), c.formatoGuardado);
        EXPECT_EQ(p.clase, c.clase);
        EXPECT_EQ(decodificarFoto(p.miniatura).size(), c.miniatura);
    }
    // A camera's picture past Qt's decoding memory limit is read reduced.
    {
        QImage camara(6000, 5600, QImage::Format_RGB888);
        camara.fill(Qt::darkGreen);
        const QString ruta = archivo(QStringLiteral("camara.jpg"), camara, "jpeg");
        camara = QImage();
        const FotoPreparada p = prepararArchivo(ruta);
        EXPECT_EQ(p.tamano, QSize(1600, 1493));
        EXPECT_EQ(decodificarFoto(p.imagen).size(), QSize(1600, 1493));
    }
    // Through the database too.
    const QList<int> ids = anadirFotos(d(), kCodigo, {archivo(QStringLiteral("enorme.jpg"), QSize(4000, 3000), "jpeg")});
    EXPECT_EQ(guardada(ids.first()).size(), QSize(1600, 1200));
}

TEST_F(FotosTest, PicturesTakenSidewaysAreStoredUpright)
{
    // A camera held upright stores the picture lying and notes the turn.
    const QString ruta = mCarpeta.filePath(QStringLiteral("vertical.jpg"));
    {
        QFile f(ruta);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(conOrientacion(codificado(dibujo(QSize(120, 60)), "jpeg"), 6));
    }
    QImageReader sinGirar(ruta);
    sinGirar.setAutoTransform(false);
    ASSERT_EQ(sinGirar.read().size(), QSize(120, 60));
    ASSERT_EQ(decodificarFoto(leerArchivo(ruta)).size(), QSize(60, 120));

    const QList<int> ids = anadirFotos(d(), kCodigo, {ruta});
    const QImage img = guardada(ids.first());
    ASSERT_EQ(img.size(), QSize(60, 120));
    // Turned clockwise: the left half is now on top; no note turns it again.
    EXPECT_TRUE(parecido(img.pixelColor(30, 10), Qt::red));
    EXPECT_TRUE(parecido(img.pixelColor(30, 110), Qt::blue));
    QByteArray bytes = leerFoto(d(), ids.first());
    QBuffer b(&bytes);
    b.open(QIODevice::ReadOnly);
    QImageReader r(&b);
    r.setAutoTransform(false);
    EXPECT_EQ(r.read().size(), QSize(60, 120));
}

TEST_F(FotosTest, MovingReassignsTheSameIdsInTheNewOrder)
{
    const QList<int> ids = cuatro();
    portalesAlDia();

    // The fourth to the second place: it takes the second ID.
    EXPECT_EQ(moverFoto(d(), kCodigo, ids.at(3), 1), ids.at(1));
    EXPECT_EQ(idsFotos(d(), kCodigo), ids);
    EXPECT_EQ(anchosEnOrden(), (QList<int>{101, 104, 102, 103}));
    EXPECT_EQ(banderas(), todasS());

    // Backwards too, and past the end means last.
    portalesAlDia();
    EXPECT_EQ(moverFoto(d(), kCodigo, ids.at(0), 99), ids.at(3));
    EXPECT_EQ(anchosEnOrden(), (QList<int>{104, 102, 103, 101}));
    EXPECT_EQ(banderas(), todasS());

    // Main photo: to the front; it is what the property shows.
    portalesAlDia();
    EXPECT_EQ(hacerPrincipal(d(), kCodigo, ids.at(2)), ids.at(0));
    EXPECT_EQ(anchosEnOrden(), (QList<int>{103, 104, 102, 101}));
    EXPECT_EQ(idsFotos(d(), kCodigo), ids);
    EXPECT_EQ(decodificarFoto(fotoPrincipal(d(), kCodigo)).width(), 103);
    EXPECT_EQ(banderas(), todasS());
    // Thumbnails and dates travel with their pictures.
    const QList<Foto> fotos = listarFotos(d(), kCodigo);
    EXPECT_EQ(decodificarFoto(fotos.at(0).miniatura).width(), 103);
    EXPECT_EQ(fotos.at(0).clase, QStringLiteral("TPngImage"));

    // Nothing moved, nothing flagged.
    portalesAlDia();
    EXPECT_EQ(moverFoto(d(), kCodigo, ids.at(0), 0), ids.at(0));
    EXPECT_EQ(banderas().mid(1), sinTocar().mid(1));
}

TEST_F(FotosTest, OrderingNeedsEveryCurrentPhotoExactlyOnce)
{
    const QList<int> ids = cuatro();
    ordenarFotos(d(), kCodigo, {ids.at(3), ids.at(2), ids.at(1), ids.at(0)});
    EXPECT_EQ(anchosEnOrden(), (QList<int>{104, 103, 102, 101}));
    EXPECT_EQ(idsFotos(d(), kCodigo), ids);

    portalesAlDia();
    // A list from before another workstation's change is refused whole.
    for (const QList<int>& mal : {QList<int>{ids.at(0), ids.at(1), ids.at(2)},
                                  QList<int>{ids.at(0), ids.at(1), ids.at(2), ids.at(2)},
                                  QList<int>{ids.at(0), ids.at(1), ids.at(2), ids.at(3), 999999}}) {
        try {
            ordenarFotos(d(), kCodigo, mal);
            ADD_FAILURE() << "accepted a wrong list";
        } catch (const FotosError& e) {
            EXPECT_TRUE(e.mensaje().startsWith(QStringLiteral("Las fotografías del inmueble han cambiado en otro puesto")));
        }
    }
    EXPECT_EQ(anchosEnOrden(), (QList<int>{104, 103, 102, 101}));
    EXPECT_EQ(banderas().mid(1), sinTocar().mid(1));
    // A photograph of another property is not moved here.
    const QList<int> ajena = anadirFotos(d(), kOtro, {archivo(QStringLiteral("x.png"), QSize(50, 50))});
    EXPECT_THROW(moverFoto(d(), kCodigo, ajena.first(), 0), FotosError);
    EXPECT_EQ(idsFotos(d(), kOtro), ajena);
}

TEST_F(FotosTest, TurningSwapsWidthAndHeightAndRewritesTheThumbnail)
{
    const QList<int> ids = anadirFotos(d(), kCodigo, {archivo(QStringLiteral("a.png"), QSize(80, 40)),
                                                       archivo(QStringLiteral("b.jpg"), QSize(400, 200), "jpeg")});
    portalesAlDia();

    girarFoto(d(), kCodigo, ids.at(0), Giro::Derecha);
    QImage img = guardada(ids.at(0));
    ASSERT_EQ(img.size(), QSize(40, 80));
    EXPECT_TRUE(parecido(img.pixelColor(20, 5), Qt::red));   // left went to the top
    EXPECT_TRUE(parecido(img.pixelColor(20, 75), Qt::blue));
    EXPECT_EQ(banderas(), todasS());

    portalesAlDia();
    girarFoto(d(), kCodigo, ids.at(1), Giro::Izquierda);
    img = guardada(ids.at(1));
    ASSERT_EQ(img.size(), QSize(200, 400));
    EXPECT_TRUE(parecido(img.pixelColor(100, 20), Qt::blue)); // right went to the top
    EXPECT_TRUE(parecido(img.pixelColor(100, 380), Qt::red));
    EXPECT_EQ(banderas(), todasS());

    const QList<Foto> fotos = listarFotos(d(), kCodigo);
    EXPECT_EQ(decodificarFoto(fotos.at(0).miniatura).size(), QSize(40, 80));
    EXPECT_EQ(decodificarFoto(fotos.at(1).miniatura).size(), QSize(100, 200));
    EXPECT_EQ(fotos.at(0).clase, QStringLiteral("TPngImage"));
    EXPECT_EQ(fotos.at(1).clase, QStringLiteral("TJPEGImage"));
    EXPECT_EQ(formatoDe(leerFoto(d(), ids.at(1))), QByteArray("jpeg"));
    EXPECT_EQ(idsFotos(d(), kCodigo), ids);

    // Four quarters bring it back.
    for (int i = 0; i < 3; ++i)
        girarFoto(d(), kCodigo, ids.at(0), Giro::Derecha);
    EXPECT_EQ(guardada(ids.at(0)).size(), QSize(80, 40));
    EXPECT_TRUE(parecido(guardada(ids.at(0)).pixelColor(5, 20), Qt::red));
}

TEST_F(FotosTest, RemovingKeepsTheOthersAndTheFlagsInStep)
{
    const QList<int> ids = cuatro();
    portalesAlDia();
    eliminarFoto(d(), kCodigo, ids.at(1));
    EXPECT_EQ(idsFotos(d(), kCodigo), (QList<int>{ids.at(0), ids.at(2), ids.at(3)}));
    EXPECT_EQ(anchosEnOrden(), (QList<int>{101, 103, 104}));
    EXPECT_EQ(banderas(), todasS());

    // Gone already: told, nothing else changes.
    portalesAlDia();
    EXPECT_THROW(eliminarFoto(d(), kCodigo, ids.at(1)), FotosError);
    EXPECT_EQ(contarFotos(d(), kCodigo), 3);
    EXPECT_EQ(banderas().mid(1), sinTocar().mid(1));
    // Nor is another property's photograph removed from here.
    const QList<int> ajena = anadirFotos(d(), kOtro, {archivo(QStringLiteral("x.png"), QSize(50, 50))});
    portalesAlDia();
    EXPECT_THROW(eliminarFoto(d(), kCodigo, ajena.first()), FotosError);
    EXPECT_EQ(idsFotos(d(), kOtro), ajena);
    EXPECT_EQ(banderas().mid(1), sinTocar().mid(1));

    for (int id : {ids.at(0), ids.at(2), ids.at(3)}) {
        portalesAlDia();
        eliminarFoto(d(), kCodigo, id);
        EXPECT_EQ(banderas().mid(1), todasS().mid(1));
    }
    EXPECT_EQ(contarFotos(d(), kCodigo), 0);
    EXPECT_EQ(banderas(), todasS(QStringLiteral("N")));
    EXPECT_TRUE(fotoPrincipal(d(), kCodigo).isEmpty());
}

TEST_F(FotosTest, AnUnreadableFileAddsNothing)
{
    const QString buena = archivo(QStringLiteral("buena.png"), QSize(90, 60));
    const QString texto = mCarpeta.filePath(QStringLiteral("notas.jpg"));
    {
        QFile f(texto);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("esto no es una fotografía");
    }
    const QString falta = mCarpeta.filePath(QStringLiteral("no-existe.jpg"));
    const qlonglong gen = generador();

    for (const QString& mala : {texto, falta}) {
        try {
            anadirFotos(d(), kCodigo, {buena, mala, buena});
            ADD_FAILURE() << "added with " << mala.toStdString();
        } catch (const FotosError& e) {
            EXPECT_TRUE(e.mensaje().startsWith(QStringLiteral("No se puede leer la fotografía «%1»: ").arg(mala)))
                << e.mensaje().toStdString();
            EXPECT_TRUE(e.mensaje().endsWith(QStringLiteral(" No se ha añadido ninguna fotografía.")));
        }
    }
    EXPECT_EQ(filas(), 0);
    EXPECT_EQ(generador(), gen);
    EXPECT_EQ(banderas(), sinTocar());
}

TEST_F(FotosTest, AFailureHalfWayTakesBackEveryStatementOfTheChange)
{
    // No such property in the main database: the pictures inserted before
    // that was found out go too.
    const QString ruta = archivo(QStringLiteral("a.png"), QSize(90, 60));
    try {
        anadirFotos(d(), QStringLiteral("00099"), {ruta, ruta});
        ADD_FAILURE() << "added to a missing property";
    } catch (const FotosError& e) {
        EXPECT_EQ(e.mensaje(), QStringLiteral("No existe el inmueble 00099: no se ha cambiado ninguna fotografía."));
    }
    EXPECT_EQ(filas(), 0);

    // Another workstation holds the property's row: the removal waits for nothing and undoes itself.
    const QList<int> ids = cuatro();
    portalesAlDia();
    Database otra(d().datos.databaseName());
    otra.open();
    Transaction suya;
    Query::execute(otra, suya, QStringLiteral("UPDATE INMUEBLES SET MARCA = 'X' WHERE CODIGO = '00012'"));
    try {
        eliminarFoto(d(), kCodigo, ids.at(0));
        ADD_FAILURE() << "removed while the property was held";
    } catch (const FotosError& e) {
        EXPECT_TRUE(e.mensaje().startsWith(QStringLiteral("Otro puesto está modificando el inmueble 00012")));
    }
    try {
        moverFoto(d(), kCodigo, ids.at(3), 0);
        ADD_FAILURE() << "moved while the property was held";
    } catch (const FotosError&) {
    }
    suya.rollback();
    otra.close();
    EXPECT_EQ(idsFotos(d(), kCodigo), ids);
    EXPECT_EQ(anchosEnOrden(), (QList<int>{101, 102, 103, 104}));
    EXPECT_EQ(banderas().mid(1), sinTocar().mid(1));
    // And the transaction is fit for the next change.
    eliminarFoto(d(), kCodigo, ids.at(0));
    EXPECT_EQ(contarFotos(d(), kCodigo), 3);
}

TEST_F(FotosTest, TheThumbnailColumnIsAddedOnlyWhenMissing)
{
    // The column is there in a new data folder: nothing to do, twice.
    EXPECT_TRUE(tieneMiniaturas(d().Imagenes, d().Transacion));
    EXPECT_FALSE(actualizarTablaImagenes(d()));
    EXPECT_FALSE(actualizarTablaImagenes(d()));

    // An old images file without it.
    Query::execute(d().Imagenes, d().Transacion, QStringLiteral("ALTER TABLE IMAGENES DROP PICTURE_MINI"));
    d().Transacion.commitRetaining();
    ASSERT_FALSE(tieneMiniaturas(d().Imagenes, d().Transacion));

    EXPECT_TRUE(actualizarTablaImagenes(d()));
    EXPECT_TRUE(tieneMiniaturas(d().Imagenes, d().Transacion));
    EXPECT_FALSE(actualizarTablaImagenes(d()));
    const qlonglong tipo = escalar(d().Imagenes,
                                   QStringLiteral("SELECT F.RDB$FIELD_TYPE * 10 + F.RDB$FIELD_SUB_TYPE FROM RDB$RELATION_FIELDS R "
                                                  "JOIN RDB$FIELDS F ON F.RDB$FIELD_NAME = R.RDB$FIELD_SOURCE "
                                                  "WHERE R.RDB$RELATION_NAME = 'IMAGENES' AND R.RDB$FIELD_NAME = 'PICTURE_MINI'"));
    EXPECT_EQ(tipo, 261 * 10 + 0); // BLOB SUB_TYPE 0
    // Usable at once, in the same transaction.
    const QList<int> ids = anadirFotos(d(), kCodigo, {archivo(QStringLiteral("a.png"), QSize(300, 150))});
    EXPECT_EQ(decodificarFoto(listarFotos(d(), kCodigo).first().miniatura).size(), QSize(200, 100));

    // Opening the photos of a property upgrades an old file by itself.
    Query::execute(d().Imagenes, d().Transacion, QStringLiteral("ALTER TABLE IMAGENES DROP PICTURE_MINI"));
    d().Transacion.commitRetaining();
    const QList<Foto> fotos = listarFotos(d(), kCodigo);
    EXPECT_TRUE(tieneMiniaturas(d().Imagenes, d().Transacion));
    ASSERT_EQ(fotos.size(), 1);
    // A row without a thumbnail shows one made from its picture.
    EXPECT_EQ(decodificarFoto(fotos.first().miniatura).size(), QSize(200, 100));
    EXPECT_EQ(fotos.first().id, ids.first());
}

TEST_F(FotosTest, MainPhotoIsTheFirstByIdOrEmpty)
{
    EXPECT_TRUE(fotoPrincipal(d(), kCodigo).isEmpty());
    const QList<int> ids = cuatro();
    EXPECT_EQ(fotoPrincipal(d(), kCodigo), leerFoto(d(), ids.first()));
    EXPECT_TRUE(fotoPrincipal(d(), kOtro).isEmpty());
    EXPECT_EQ(fotoPrincipal(d(), QStringLiteral("12")), leerFoto(d(), ids.first()));
    EXPECT_THROW(fotoPrincipal(d(), QStringLiteral("ABCDE")), FotosError);
    EXPECT_EQ(codigoImagenes(QStringLiteral("00012")), 12);
}
