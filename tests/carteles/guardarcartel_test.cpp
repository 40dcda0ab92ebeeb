// Poster texts in the database: a type's template read through its family,
// the stored text of one property and of the whole active portfolio (all or
// nothing, with progress), the text of a row being edited, and the Russian
// texts on their own connection.
#include "carteles.h"
#include "dataset.h"
#include "testdata.h"

#include <QVariantMap>
#include <gtest/gtest.h>

#include <ostream>
#include <utility>
#include <vector>

static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using namespace tv::registro;

namespace {

// Seeded property types: 1 PISO (family 1), 9 CHALET (2), 16 SOLAR (3),
// 19 NAVE (4), 21 LOCAL (5), 23 GARAJE (6), 25 EDIFICIO (7), 27 FINCA RUSTICA (8).
constexpr int kTipoPiso = 1;
constexpr int kTipoSolar = 16;
constexpr int kTipoEdificio = 25;
constexpr int kTipoRustica = 27;

class Carteles : public ::testing::Test {
protected:
    Tdm& dm() { return data.dm(); }

    void insertar(const QString& codigo, int tipo, QVariantMap columnas,
                  const QString& activado = QStringLiteral("S"))
    {
        columnas.insert(QStringLiteral("CODIGO"), codigo);
        columnas.insert(QStringLiteral("CODTIPOINMUEBLE"), tipo);
        columnas.insert(QStringLiteral("CODTIPOOPERACION"), 1);
        columnas.insert(QStringLiteral("ACTIVADO"), activado);
        const QStringList nombres = columnas.keys();
        Query q(dm().datos, dm().Transacion,
                QStringLiteral("INSERT INTO INMUEBLES (") + nombres.join(QStringLiteral(", ")) +
                    QStringLiteral(") VALUES (:") + nombres.join(QStringLiteral(", :")) +
                    QStringLiteral(")"));
        for (const QString& n : nombres)
            q.paramByName(n).setValue(columnas.value(n));
        q.exec();
        dm().Transacion.commitRetaining();
    }

    QVariant columna(Database& db, const QString& codigo, const char* nombre)
    {
        Query q(db, dm().Transacion,
                QStringLiteral("SELECT %1 FROM INMUEBLES WHERE CODIGO = :CODIGO").arg(QLatin1String(nombre)));
        q.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
        q.open();
        return q.eof() ? QVariant() : q.field(0).value();
    }
    QVariant informacion(const QString& codigo)
    {
        return columna(dm().datos, codigo, "CARTELES_INFORMACION");
    }

    // Four active properties of different kinds and one inactive one, each
    // with an old text.
    void cartera()
    {
        const QString viejo = QStringLiteral("TEXTO ANTERIOR");
        insertar(QStringLiteral("00001"), kTipoPiso,
                 {{"CHABDOBLES", 1}, {"CNUMBANOS", 1}, {"CSUPER1", 60.0}, {"CARTELES_INFORMACION", viejo}});
        insertar(
            QStringLiteral("00002"), kTipoSolar,
            {{"CSUPER1", 1500.0}, {"CSUPER2", 1200.0}, {"CHABDOBLES", 4}, {"CARTELES_INFORMACION", viejo}});
        insertar(QStringLiteral("00003"), kTipoEdificio,
                 {{"EDIFICIO_NUMVIVIENDAS", 12},
                  {"EDIFICIO_PLANTASSOBRERESANTA", 4},
                  {"CARTELES_INFORMACION", viejo}});
        insertar(QStringLiteral("00004"), kTipoRustica,
                 {{"RUSTICA_CULTIVO", "VIÑEDO"}, {"RUSTICA_LUZ", "SOLAR"}, {"CARTELES_INFORMACION", viejo}});
        insertar(QStringLiteral("00005"), kTipoPiso, {{"CHABDOBLES", 3}, {"CARTELES_INFORMACION", viejo}},
                 QStringLiteral("N"));
    }
    const std::vector<std::pair<QString, QString>> kEsperados = {
        {QStringLiteral("00001"), QStringLiteral("1 DORMITORIO, 1 CUARTO DE BAÑO, 60 M2 CONSTRUIDOS,")},
        {QStringLiteral("00002"),
         QStringLiteral("1.500 M2 SUPERFICIE TOTAL, 1.200 M2 SUPERFICIE DE PARCELA,")},
        {QStringLiteral("00003"), QStringLiteral("4 PLANTAS SOBRE RASANTE, 12 VIVIENDAS,")},
        {QStringLiteral("00004"), QStringLiteral("TIPO DE CULTIVO: VIÑEDO, LUZ: SOLAR,")},
    };

    test::TestData data;
};

} // namespace

TEST_F(Carteles, TheTemplateComesFromTheTypesFamily)
{
    EXPECT_EQ(plantillaCartel(dm(), kTipoPiso), 1);
    EXPECT_EQ(plantillaCartel(dm(), 9), 2);
    EXPECT_EQ(plantillaCartel(dm(), kTipoSolar), 7);
    EXPECT_EQ(plantillaCartel(dm(), 19), 4);
    EXPECT_EQ(plantillaCartel(dm(), 21), 5);
    EXPECT_EQ(plantillaCartel(dm(), 23), 6);
    // Family 7 is the agency's buildings: its template, not its code, decides.
    EXPECT_EQ(plantillaCartel(dm(), kTipoEdificio), 8);
    EXPECT_EQ(plantillaCartel(dm(), kTipoRustica), 9);

    // A family without a template takes the sheets' default for its code;
    // a type without a family, and an unknown type, read as a flat.
    Query::execute(dm().datos, dm().Transacion,
                   QStringLiteral("UPDATE FAMILIA SET CODPLANTILLA = NULL WHERE CODIGO = 3"));
    Query::execute(
        dm().datos, dm().Transacion,
        QStringLiteral(
            "INSERT INTO TIPOINMUEBLE (CODIGO, CODFAMILIA, DESCRIPCION) VALUES (90, NULL, 'SUELTO')"));
    EXPECT_EQ(plantillaCartel(dm(), kTipoSolar), 7);
    EXPECT_EQ(plantillaCartel(dm(), 90), 1);
    EXPECT_EQ(plantillaCartel(dm(), 999), 1);
    EXPECT_EQ(plantillaCartel(dm(), QVariant()), 1);
}

TEST_F(Carteles, OnePropertysTextIsStoredAndCommitted)
{
    cartera();
    const QString texto = generarCartel(dm(), QStringLiteral("2"));
    EXPECT_EQ(texto, kEsperados[1].second);
    EXPECT_EQ(informacion(QStringLiteral("00002")).toString(), texto);
    // Visible to another attachment: committed, not merely written.
    EXPECT_EQ(columna(dm().datosrusos, QStringLiteral("00002"), "CARTELES_INFORMACION").toString(), texto);
    // The others keep theirs.
    EXPECT_EQ(informacion(QStringLiteral("00001")).toString(), QStringLiteral("TEXTO ANTERIOR"));
    EXPECT_EQ(informacion(QStringLiteral("00003")).toString(), QStringLiteral("TEXTO ANTERIOR"));

    // A property with nothing to tell gets an empty text, not the old one.
    insertar(QStringLiteral("00010"), kTipoPiso, {{"CARTELES_INFORMACION", QStringLiteral("VIEJO")}});
    EXPECT_EQ(generarCartel(dm(), QStringLiteral("00010")), QString());
    EXPECT_EQ(informacion(QStringLiteral("00010")).toString(), QString());
}

TEST_F(Carteles, AnUnknownPropertyIsRefused)
{
    try {
        generarCartel(dm(), QStringLiteral("00099"));
        FAIL() << "no refusal";
    } catch (const DatabaseError& e) {
        EXPECT_EQ(e.message(), QStringLiteral("No existe el inmueble 00099."));
    }
}

TEST_F(Carteles, TheWholePortfolioWritesEveryActivePropertyAndNoOther)
{
    cartera();
    std::vector<std::pair<int, int>> avisos;
    const int n = generarCarteles(dm(), [&](int hechos, int total) {
        avisos.emplace_back(hechos, total);
        return true;
    });
    EXPECT_EQ(n, 4);
    for (const auto& [codigo, esperado] : kEsperados)
        EXPECT_EQ(columna(dm().datosrusos, codigo, "CARTELES_INFORMACION").toString(), esperado)
            << codigo.toStdString();
    EXPECT_EQ(informacion(QStringLiteral("00005")).toString(), QStringLiteral("TEXTO ANTERIOR"));

    ASSERT_FALSE(avisos.empty());
    EXPECT_EQ(avisos.front(), std::make_pair(0, 4));
    EXPECT_EQ(avisos.back(), std::make_pair(4, 4));
    for (size_t i = 1; i < avisos.size(); ++i)
        EXPECT_LT(avisos[i - 1].first, avisos[i].first);

    // Without a progress callback, and with nothing active.
    EXPECT_EQ(generarCarteles(dm()), 4);
    Query::execute(dm().datos, dm().Transacion, QStringLiteral("UPDATE INMUEBLES SET ACTIVADO = 'N'"));
    EXPECT_EQ(generarCarteles(dm()), 0);
}

TEST_F(Carteles, AnUnchangedTextIsNotRewritten)
{
    cartera();
    ASSERT_EQ(generarCarteles(dm()), 4);
    auto version = [&](const char* codigo) {
        return columna(dm().datos, QLatin1String(codigo), "RDB$RECORD_VERSION").toLongLong();
    };
    const qlonglong piso = version("00001");
    const qlonglong solar = version("00002");
    Query::execute(dm().datos, dm().Transacion,
                   QStringLiteral("UPDATE INMUEBLES SET CSUPER1 = 2000 WHERE CODIGO = '00002'"));
    dm().Transacion.commitRetaining();
    const qlonglong solarCambiado = version("00002");
    ASSERT_NE(solarCambiado, solar);

    EXPECT_EQ(generarCarteles(dm()), 4);
    EXPECT_EQ(version("00001"), piso);
    EXPECT_NE(version("00002"), solarCambiado);
    EXPECT_EQ(informacion(QStringLiteral("00002")).toString(),
              QStringLiteral("2.000 M2 SUPERFICIE TOTAL, 1.200 M2 SUPERFICIE DE PARCELA,"));
}

TEST_F(Carteles, StoppingThePortfolioLeavesEveryTextAsItWas)
{
    cartera();
    const int n = generarCarteles(dm(), [](int hechos, int) { return hechos < 2; });
    EXPECT_EQ(n, 0);
    for (const char* c : {"00001", "00002", "00003", "00004", "00005"})
        EXPECT_EQ(informacion(QLatin1String(c)).toString(), QStringLiteral("TEXTO ANTERIOR")) << c;
    // The shared transaction goes on as before.
    EXPECT_EQ(generarCartel(dm(), QStringLiteral("00001")), kEsperados[0].second);
}

TEST_F(Carteles, AFailureHalfWayLeavesEveryTextAsItWas)
{
    cartera();
    Query::execute(dm().datos, dm().Transacion,
                   QStringLiteral("CREATE EXCEPTION EX_PRUEBA_CARTEL 'cartel rechazado'"));
    dm().Transacion.commitRetaining();
    Query::execute(dm().datos, dm().Transacion,
                   QStringLiteral("CREATE TRIGGER TR_PRUEBA_CARTEL FOR INMUEBLES BEFORE UPDATE AS BEGIN "
                                  "IF (NEW.CODIGO = '00004') THEN EXCEPTION EX_PRUEBA_CARTEL; END"));
    dm().Transacion.commitRetaining();

    EXPECT_THROW(generarCarteles(dm()), DatabaseError);
    for (const char* c : {"00001", "00002", "00003", "00004"})
        EXPECT_EQ(informacion(QLatin1String(c)).toString(), QStringLiteral("TEXTO ANTERIOR")) << c;
    dm().Transacion.commitRetaining();
    for (const char* c : {"00001", "00002", "00003"})
        EXPECT_EQ(columna(dm().datosrusos, QLatin1String(c), "CARTELES_INFORMACION").toString(),
                  QStringLiteral("TEXTO ANTERIOR"))
            << c;
}

TEST_F(Carteles, TheRowBeingEditedGivesItsText)
{
    insertar(QStringLiteral("00007"), kTipoSolar, {{"CSUPER1", 800.0}});
    DataSet ds(dm().datos, dm().Transacion);
    ds.setTable(QStringLiteral("INMUEBLES"), {QStringLiteral("CODIGO")});
    ds.open();
    ASSERT_TRUE(ds.locate(QStringLiteral("CODIGO"), QStringLiteral("00007")));
    EXPECT_EQ(textoCartel(dm(), ds), QStringLiteral("800 M2 SUPERFICIE TOTAL,"));
    ds.edit();
    ds.fieldByName(QStringLiteral("CSUPER3")).setValue(400.0);
    ds.fieldByName(QStringLiteral("CODTIPOINMUEBLE")).setValue(kTipoPiso);
    ds.fieldByName(QStringLiteral("CHABDOBLES")).setValue(2);
    EXPECT_EQ(textoCartel(dm(), ds), QStringLiteral("2 DORMITORIOS, 800 M2 CONSTRUIDOS, 400 M2 DE PATIO,"));
    ds.cancel();
}

TEST_F(Carteles, RussianTextsRoundTripExactly)
{
    insertar(QStringLiteral("00008"), kTipoPiso,
             {{"CARTELES_INFORMACION", QStringLiteral("2 DORMITORIOS,")}});
    const TextosRusos rusos{
        QStringLiteral("ПРОДАЁТСЯ КВАРТИРА С ВИДОМ НА МОРЕ — 3 спальни,\r\nёлка «Йошкар-Ола» №5"),
        QStringLiteral("ПРОДАЁТСЯ"), QStringLiteral("Звоните: +34 600 000 000 · щёлк")};
    guardarTextosRusos(dm(), QStringLiteral("8"), rusos);
    EXPECT_EQ(leerTextosRusos(dm(), QStringLiteral("00008")), rusos);
    // Stored as those characters, not as bytes that merely come back alike.
    EXPECT_EQ(
        Query::scalar(
            dm().datosrusos, dm().Transacion,
            QStringLiteral("SELECT CHAR_LENGTH(CARTELES_CABECERARUS) FROM INMUEBLES WHERE CODIGO = '00008'"))
            .toInt(),
        9);
    EXPECT_EQ(columna(dm().datos, QStringLiteral("00008"), "CARTELES_PIERUS").toString(), rusos.pie);
    // The Spanish text is another column, untouched; and the main connection
    // can write the row straight after (the Russian save was committed).
    EXPECT_EQ(informacion(QStringLiteral("00008")).toString(), QStringLiteral("2 DORMITORIOS,"));
    EXPECT_EQ(generarCartel(dm(), QStringLiteral("00008")), QString());

    // Replacing them, with an empty footer.
    const TextosRusos otros{QStringLiteral("Дом"), QStringLiteral("АРЕНДА"), QString()};
    guardarTextosRusos(dm(), QStringLiteral("00008"), otros);
    EXPECT_EQ(leerTextosRusos(dm(), QStringLiteral("00008")), otros);
}

TEST_F(Carteles, RussianTextsOfAnUnknownProperty)
{
    EXPECT_EQ(leerTextosRusos(dm(), QStringLiteral("00042")), TextosRusos{});
    try {
        guardarTextosRusos(dm(), QStringLiteral("00042"), {QStringLiteral("Дом"), {}, {}});
        FAIL() << "no refusal";
    } catch (const DatabaseError& e) {
        EXPECT_EQ(e.message(), QStringLiteral("No existe el inmueble 00042."));
    }
}
