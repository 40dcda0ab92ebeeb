// The property register's rules without its window: numbering, the video
// link, the fee, the caption, the search condition, the statements that
// store a row, copying and deleting photographs.
#include "inmuebles.h"

#include "columnasinmueble.h"
#include "dataset.h"
#include "query.h"
#include "testdata.h"

#include <gtest/gtest.h>

#include <ostream>

static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using namespace tv::registro;

TEST(ReglasInmueble, ElExpedienteSeRecortaYSeRellenaACincoCifras)
{
    EXPECT_EQ(rellenarExpediente(QStringLiteral("7")), QStringLiteral("00007"));
    EXPECT_EQ(rellenarExpediente(QStringLiteral("12")), QStringLiteral("00012"));
    EXPECT_EQ(rellenarExpediente(QStringLiteral(" 345 ")), QStringLiteral("00345"));
    EXPECT_EQ(rellenarExpediente(QStringLiteral("1234567")), QStringLiteral("12345"));
    EXPECT_EQ(rellenarExpediente(QStringLiteral("54321")), QStringLiteral("54321"));
    EXPECT_EQ(rellenarExpediente(QStringLiteral("   ")), QString());
    EXPECT_EQ(numeroExpediente(QStringLiteral("00012")), 12);
}

TEST(ReglasInmueble, ElEnlaceDelVideoSeIncrusta)
{
    EXPECT_EQ(normalizarVideo(QStringLiteral("https://www.youtube.com/watch?v=abc123&feature=youtu.be")),
              QStringLiteral("https://www.youtube.com/embed/abc123"));
    EXPECT_EQ(normalizarVideo(QStringLiteral("https://www.youtube.com/embed/abc123")),
              QStringLiteral("https://www.youtube.com/embed/abc123"));
    const QString pagina = paginaVideo(QStringLiteral("https://www.youtube.com/watch?v=x1"));
    EXPECT_TRUE(pagina.contains(QStringLiteral("<iframe src=\"https://www.youtube.com/embed/x1\"")));
}

TEST(ReglasInmueble, HonorarioCalculadoADosDecimales)
{
    EXPECT_DOUBLE_EQ(honorarioCalculado(1000.0, 150000.0, 3.0), 5500.0);
    EXPECT_DOUBLE_EQ(honorarioCalculado(QVariant(), 100000.0, 2.5), 2500.0);
    // 0.005 rounds up, not down to the nearest binary fraction below.
    EXPECT_DOUBLE_EQ(honorarioCalculado(0.0, 333.33, 1.5), 5.0);
    EXPECT_DOUBLE_EQ(honorarioCalculado(QVariant(), QVariant(), QVariant()), 0.0);
}

TEST(ReglasInmueble, TituloDeLaCartera)
{
    EXPECT_EQ(tituloCartera({}, {}), QStringLiteral("Cartera de Inmuebles"));
    EXPECT_EQ(tituloCartera(QStringLiteral("ANA"), {}), QStringLiteral("Cartera de Inmuebles CAPTADOR: ANA"));
    EXPECT_EQ(tituloCartera(QStringLiteral("ANA"), QStringLiteral("Las Dunas")),
              QStringLiteral("Cartera de Inmuebles CAPTADOR: ANA / Apartamento: Las Dunas"));
    EXPECT_EQ(tituloCartera({}, QStringLiteral("Las Dunas")), QStringLiteral("Cartera de Inmuebles Apartamento: Las Dunas"));
}

TEST(BusquedaInmuebles, ConsultaPorDefecto)
{
    EXPECT_EQ(consultaInmuebles(), QStringLiteral("select * from inmuebles where activado ='S' order by codigo"));
}

TEST(BusquedaInmuebles, CadaCasillaEnSuOrdenYSiempreActivos)
{
    FiltroInmuebles f;
    EXPECT_EQ(condicionBusqueda(f), QStringLiteral(" where activado ='S' "));

    f.propietario = 15;
    EXPECT_EQ(condicionBusqueda(f), QStringLiteral(" WHERE CODPROPIETARIO = 15 and activado ='S' "));

    FiltroInmuebles calle;
    calle.calle = QStringLiteral("Colón");
    EXPECT_EQ(condicionBusqueda(calle), QStringLiteral(" WHERE NOMBREVIA LIKE '%Colón%' and activado ='S' "));

    FiltroInmuebles todo;
    todo.propietario = 3;
    todo.calle = QStringLiteral("O'Donnell");
    todo.apartamento = QStringLiteral("Dunas");
    todo.desde = QDate(2026, 1, 1);
    todo.hasta = QDate(2026, 3, 31);
    todo.expediente = QStringLiteral("12");
    todo.soloExclusivas = true;
    EXPECT_EQ(condicionBusqueda(todo),
              QStringLiteral(" WHERE CODPROPIETARIO = 3 AND NOMBREVIA LIKE '%O''Donnell%' AND NOMBRE_APARTAMENTO LIKE "
                             "'%Dunas%' AND ((FECHAALTA >= '01.01.2026' AND FECHAALTA <= '31.03.2026') OR (FECHAALTA IS "
                             "NULL))  AND CODIGO = '00012' and activado ='S'  and exclusiva ='S' "));
}

TEST(BusquedaInmuebles, FechasSoloConLasDosYExpedientePrimero)
{
    FiltroInmuebles f;
    f.desde = QDate(2026, 1, 1); // no end date: ignored
    EXPECT_EQ(condicionBusqueda(f), QStringLiteral(" where activado ='S' "));
    f.hasta = QDate(2026, 1, 31);
    EXPECT_EQ(condicionBusqueda(f),
              QStringLiteral(" WHERE ((FECHAALTA >= '01.01.2026' AND FECHAALTA <= '31.01.2026') OR (FECHAALTA IS NULL))  "
                             "and activado ='S' "));

    FiltroInmuebles e;
    e.expediente = QStringLiteral("7");
    e.soloExclusivas = true;
    EXPECT_EQ(condicionBusqueda(e), QStringLiteral(" WHERE CODIGO = '00007' and activado ='S'  and exclusiva ='S' "));
    EXPECT_EQ(consultaInmuebles(condicionBusqueda(e)),
              QStringLiteral("select * from inmuebles  WHERE CODIGO = '00007' and activado ='S'  and exclusiva ='S'  order by codigo"));
}

TEST(BusquedaInmuebles, LaCondicionFiltraDeVerdad)
{
    test::TestData t;
    Tdm& d = t.dm();
    Query(d.datos, d.Transacion,
          QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, ACTIVADO, EXCLUSIVA, "
                         "NOMBREVIA, FECHAALTA) VALUES ('00001', 1, 1, 'S', 'S', 'Colón', '10.01.2026')"))
        .exec();
    Query(d.datos, d.Transacion,
          QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, ACTIVADO, EXCLUSIVA, "
                         "NOMBREVIA) VALUES ('00002', 1, 1, 'S', 'N', 'Colón')"))
        .exec();
    Query(d.datos, d.Transacion,
          QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, ACTIVADO, EXCLUSIVA, "
                         "NOMBREVIA, FECHAALTA) VALUES ('00003', 1, 1, 'N', 'S', 'Colón', '10.01.2026')"))
        .exec();
    auto codigos = [&d](const FiltroInmuebles& f) {
        QStringList l;
        Query q(d.datos, d.Transacion, consultaInmuebles(condicionBusqueda(f)));
        for (q.open(); !q.eof(); q.next())
            l.append(q.fieldByName(QStringLiteral("CODIGO")).asString());
        return l;
    };
    FiltroInmuebles f;
    f.calle = QStringLiteral("Col");
    EXPECT_EQ(codigos(f), (QStringList{"00001", "00002"}));
    f.desde = QDate(2026, 1, 1);
    f.hasta = QDate(2026, 1, 5);
    // Without a date of entry a property always passes.
    EXPECT_EQ(codigos(f), (QStringList{"00002"}));
    f.soloExclusivas = true;
    EXPECT_TRUE(codigos(f).isEmpty());
}

TEST(SentenciasInmueble, LosTextosRusosSoloEnElAlta)
{
    test::TestData t;
    const SentenciasInmuebles s = sentenciasInmuebles(t.dm().datos, t.dm().Transacion);
    for (const QString* sql : {&s.refresh, &s.modify, &s.remove})
        for (const QString& c : columnasRusas())
            EXPECT_FALSE(sql->contains(c)) << sql->toStdString();
    // A new property is written whole.
    for (const QString& c : columnasRusas())
        EXPECT_TRUE(s.insert.contains(QLatin1Char(':') + c)) << c.toStdString();
    EXPECT_TRUE(s.modify.startsWith(QStringLiteral("UPDATE INMUEBLES SET ")));
    EXPECT_TRUE(s.modify.endsWith(QStringLiteral(" WHERE CODIGO = :OLD_CODIGO")));
    EXPECT_TRUE(s.insert.contains(QStringLiteral("CARTELES_INFORMACION")));
    EXPECT_TRUE(s.modify.contains(QStringLiteral("TIENEFOTOS = :TIENEFOTOS")));
    EXPECT_EQ(s.remove, QStringLiteral("DELETE FROM INMUEBLES WHERE CODIGO = :OLD_CODIGO"));
}

TEST(CopiaInmueble, CopiaTodoMenosElCodigo)
{
    test::TestData t;
    Tdm& d = t.dm();
    Query(d.datos, d.Transacion,
          QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, ACTIVADO, NOMBREVIA, "
                         "EUROIMPORTE, CARTELES_INFORMARUS, TIENEFOTOS) VALUES ('00040', 3, 2, 'S', 'Mayor', 125000, "
                         "'Квартира', 'S')"))
        .exec();
    const QString nuevo = copiarInmueble(d, QStringLiteral("00040"));
    EXPECT_NE(nuevo, QStringLiteral("00040"));
    EXPECT_EQ(nuevo.size(), 5);
    Query q(d.datos, d.Transacion,
            QStringLiteral("SELECT CODTIPOINMUEBLE, CODTIPOOPERACION, NOMBREVIA, EUROIMPORTE, CARTELES_INFORMARUS, "
                           "TIENEFOTOS FROM INMUEBLES WHERE CODIGO = :C"));
    q.paramByName(QStringLiteral("C")).setAsString(nuevo);
    q.open();
    ASSERT_FALSE(q.eof());
    EXPECT_EQ(q.field(0).asInteger(), 3);
    EXPECT_EQ(q.field(1).asInteger(), 2);
    EXPECT_EQ(q.field(2).asString().trimmed(), QStringLiteral("Mayor"));
    EXPECT_DOUBLE_EQ(q.field(3).asDouble(), 125000.0);
    EXPECT_EQ(q.field(4).asString(), QStringLiteral("Квартира"));
    EXPECT_EQ(q.field(5).asString(), QStringLiteral("S"));
    q.close();
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES")).toInt(), 2);
}

TEST(BorradoInmueble, SoloLasFotosDeEseInmueble)
{
    test::TestData t;
    Tdm& d = t.dm();
    for (int i = 1; i <= 3; ++i)
        Query(d.Imagenes, d.Transacion,
              QStringLiteral("INSERT INTO IMAGENES (ID, CODINMUEBLE) VALUES (%1, %2)").arg(i).arg(i < 3 ? 12 : 13))
            .exec();
    borrarFotos(d, QStringLiteral("00012"));
    EXPECT_EQ(Query::scalar(d.Imagenes, d.Transacion, QStringLiteral("SELECT COUNT(*) FROM IMAGENES")).toInt(), 1);
    EXPECT_EQ(Query::scalar(d.Imagenes, d.Transacion, QStringLiteral("SELECT CODINMUEBLE FROM IMAGENES")).toInt(), 13);
}

TEST(ColumnasInmueble, CadaColumnaUnaVezYTodasExisten)
{
    test::TestData t;
    QStringList tabla;
    Query q(t.dm().datos, t.dm().Transacion,
            QStringLiteral("SELECT TRIM(RDB$FIELD_NAME) FROM RDB$RELATION_FIELDS WHERE RDB$RELATION_NAME = 'INMUEBLES'"));
    for (q.open(); !q.eof(); q.next())
        tabla.append(q.field(0).asString());
    q.close();
    QStringList vistas;
    for (const ui::Column& c : columnasInmueble()) {
        EXPECT_FALSE(vistas.contains(c.column)) << c.column.toStdString();
        vistas.append(c.column);
        EXPECT_TRUE(tabla.contains(c.column)) << c.column.toStdString();
        if (!c.remarkColumn.isEmpty()) {
            EXPECT_TRUE(tabla.contains(c.remarkColumn)) << c.remarkColumn.toStdString();
            EXPECT_FALSE(vistas.contains(c.remarkColumn)) << c.remarkColumn.toStdString();
            vistas.append(c.remarkColumn);
        }
    }
    for (const IdiomaCartel& i : idiomasCartel()) {
        for (const QString& c : {i.cabecera, i.informacion, i.pie})
            EXPECT_TRUE(tabla.contains(c)) << c.toStdString();
    }
    // Every feature flag a new property starts with is on the screen.
    for (const QString& f : banderasNuevoInmueble()) {
        if (f != QLatin1String("SSISTEMAANT"))
            EXPECT_TRUE(vistas.contains(f)) << f.toStdString();
    }
}

TEST(ReglasInmueble, TextosFijosDeLasSentencias)
{
    // Other workstations' programs run the same statements: the texts are fixed.
    EXPECT_STREQ(kSqlExpedienteRepetido, "SELECT COUNT(*) FROM INMUEBLES WHERE CODIGO =:CODIGO ");
    EXPECT_STREQ(kSqlBorrarFotos, "DELETE FROM IMAGENES WHERE CODINMUEBLE =:CODINMUEBLE");
    EXPECT_STREQ(kPreguntaCopiar, "¿Está seguro generar un nuevo inmueble a partir del inmueble \r\nseleccionado?");
    EXPECT_STREQ(kPreguntaCartelesCartera,
                 "¿Está seguro de generar la información de la publicidad de toda la cartera de inmuebles?");
}
