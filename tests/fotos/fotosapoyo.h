#pragma once

// What the photo tests share: a data folder with two properties, pictures
// drawn in code and written to files, and readers of what was stored.
#include "dm.h"
#include "fotos.h"
#include "testdata.h"

#include <QColor>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <ostream>

namespace tv::test {

inline const QStringList kColumnasFotosAct = {
    QStringLiteral("FOTOS_ACT_PISOS"),      QStringLiteral("FOTOS_ACT_TUCASA"),
    QStringLiteral("FOTOS_ACT_FOTOCASA"),   QStringLiteral("FOTOS_ACT_MIWEB"),
    QStringLiteral("FOTOS_ACT_IDEALISTA"),  QStringLiteral("FOTOS_ACT_YAENCONTRE"),
    QStringLiteral("FOTOS_ACT_HABITACLIA"), QStringLiteral("FOTOS_ACT_ENALQUILER"),
    QStringLiteral("FOTOS_ACT_TROVIMAP"),   QStringLiteral("FOTOS_ACT_INDOMINIO")};

// Left half one colour, right half another: enough to tell which way a
// picture was turned, even through JPEG.
inline QImage dibujo(QSize tamano, QColor izquierda = Qt::red, QColor derecha = Qt::blue)
{
    QImage img(tamano, QImage::Format_RGB32);
    img.fill(derecha);
    QPainter p(&img);
    p.fillRect(QRect(0, 0, tamano.width() / 2, tamano.height()), izquierda);
    return img;
}

inline bool parecido(QColor a, QColor b)
{
    return std::abs(a.red() - b.red()) < 60 && std::abs(a.green() - b.green()) < 60 &&
           std::abs(a.blue() - b.blue()) < 60;
}

class FotosTest : public ::testing::Test {
protected:
    static inline const QString kCodigo = QStringLiteral("00012");
    static inline const QString kOtro = QStringLiteral("00013");

    void SetUp() override
    {
        ASSERT_TRUE(mCarpeta.isValid());
        for (const QString& codigo : {kCodigo, kOtro}) {
            QString sql = QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, TIENEFOTOS");
            for (const QString& c : kColumnasFotosAct)
                sql += QStringLiteral(", ") + c;
            sql += QStringLiteral(") VALUES ('%1', 1, 1, '5'").arg(codigo);
            for (qsizetype i = 0; i < kColumnasFotosAct.size(); ++i)
                sql += QStringLiteral(", 'N'");
            Query::execute(d().datos, d().Transacion, sql + QLatin1Char(')'));
        }
        d().Transacion.commitRetaining();
    }

    Tdm& d() { return mData.dm(); }

    // A picture file in the test's folder.
    QString archivo(const QString& nombre, const QImage& img, const char* formato = "png")
    {
        const QString ruta = mCarpeta.filePath(nombre);
        QImageWriter w(ruta, formato);
        EXPECT_TRUE(w.write(img)) << w.errorString().toStdString();
        return ruta;
    }
    QString archivo(const QString& nombre, QSize tamano, const char* formato = "png")
    {
        return archivo(nombre, dibujo(tamano), formato);
    }
    QString carpeta() const { return mCarpeta.path(); }

    // TIENEFOTOS, then every FOTOS_ACT_* column, of a property.
    QStringList banderas(const QString& codigo = kCodigo)
    {
        Query q(d().datos, d().Transacion,
                QStringLiteral("SELECT TIENEFOTOS, %1 FROM INMUEBLES WHERE CODIGO = :CODIGO")
                    .arg(kColumnasFotosAct.join(QStringLiteral(", "))));
        q.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
        q.open();
        QStringList out;
        for (int i = 0; i < q.fieldCount(); ++i)
            out.append(q.field(i).asString());
        return out;
    }
    static QStringList todasS(const QString& tiene = QStringLiteral("S"))
    {
        QStringList out{tiene};
        for (qsizetype i = 0; i < kColumnasFotosAct.size(); ++i)
            out.append(QStringLiteral("S"));
        return out;
    }
    static QStringList sinTocar()
    {
        QStringList out{QStringLiteral("5")};
        for (qsizetype i = 0; i < kColumnasFotosAct.size(); ++i)
            out.append(QStringLiteral("N"));
        return out;
    }
    // The portals have taken the photos: the next change must flag them again.
    void portalesAlDia(const QString& codigo = kCodigo)
    {
        Query q(d().datos, d().Transacion,
                QStringLiteral("UPDATE INMUEBLES SET %1 = 'N' WHERE CODIGO = :CODIGO")
                    .arg(kColumnasFotosAct.join(QStringLiteral(" = 'N', "))));
        q.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
        q.exec();
        d().Transacion.commitRetaining();
    }

    // The stored picture as a picture.
    QImage guardada(int id) { return registro::decodificarFoto(registro::leerFoto(d(), id)); }
    // Widths tell the test's pictures apart; read in the order portals read.
    QList<int> anchosEnOrden(const QString& codigo = kCodigo)
    {
        QList<int> out;
        for (int id : registro::idsFotos(d(), codigo))
            out.append(guardada(id).width());
        return out;
    }
    qlonglong escalar(Database& db, const QString& sql)
    {
        return Query::scalar(db, d().Transacion, sql).toLongLong();
    }
    qlonglong generador() { return escalar(d().Imagenes, QStringLiteral("SELECT GEN_ID(GEN_IMAGENES_ID, 0) FROM RDB$DATABASE")); }
    qlonglong filas() { return escalar(d().Imagenes, QStringLiteral("SELECT COUNT(*) FROM IMAGENES")); }

    // Four photographs told apart by their widths 101..104, in that order.
    QList<int> cuatro()
    {
        QStringList rutas;
        for (int i = 1; i <= 4; ++i)
            rutas.append(archivo(QStringLiteral("f%1.png").arg(i), QSize(100 + i, 60)));
        return registro::anadirFotos(d(), kCodigo, rutas);
    }

    TestData mData;
    QTemporaryDir mCarpeta;
};

} // namespace tv::test

namespace tv::registro {
// Readable values in failure messages.
inline void PrintTo(const FotoPreparada& f, std::ostream* os)
{
    *os << f.clase.toStdString() << ' ' << f.tamano.width() << 'x' << f.tamano.height();
}
} // namespace tv::registro

inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}
