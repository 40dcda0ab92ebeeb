// The poster text written from a property's values: each family's items in
// their order, singular and plural units, skipped zeros, feature flags, the
// year, the rural labels, Spanish figures and the removal of line breaks.
#include "carteles.h"

#include <QVariantMap>
#include <gtest/gtest.h>

#include <cctype>
#include <ostream>

// Readable texts in failure messages.
static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using tv::registro::textoCartel;

namespace {

const QString S = QStringLiteral("S");
const QString N = QStringLiteral("N");

enum Plantilla {
    Piso = 1,
    Casa = 2,
    CasaBis = 3,
    Nave = 4,
    Local = 5,
    Parking = 6,
    Solar = 7,
    Edificio = 8,
    Rustica = 9
};

QString texto(int plantilla, const QVariantMap& valores)
{
    return textoCartel(plantilla, valores);
}

} // namespace

// ------------------------------------------------------------ whole texts per family

struct CasoFamilia {
    const char* nombre;
    int plantilla;
    QVariantMap valores;
    QString esperado;
};

void PrintTo(const CasoFamilia& c, std::ostream* os)
{
    *os << c.nombre;
}

class TextoPorFamilia : public ::testing::TestWithParam<CasoFamilia> {};

TEST_P(TextoPorFamilia, ItemsInTheirOrder)
{
    const CasoFamilia& c = GetParam();
    EXPECT_EQ(texto(c.plantilla, c.valores), c.esperado);
}

// Values that belong to other families, to show each family keeps to its own.
const QVariantMap kAjenos = {{"SOLAR_OCUPACION", 300.0}, {"EDIFICIO_NUMVIVIENDAS", 12},
                             {"RUSTICA_CAZA", "PERDIZ"}, {"CPLAZAS", 3},
                             {"CMUELLE", "S"},           {"CSUBTERRANEO", "S"}};

QVariantMap con(QVariantMap v, const QVariantMap& mas)
{
    for (auto it = mas.begin(); it != mas.end(); ++it)
        v.insert(it.key(), it.value());
    return v;
}

INSTANTIATE_TEST_SUITE_P(
    Familias, TextoPorFamilia,
    ::testing::Values(
        CasoFamilia{
            "piso", Piso,
            con(kAjenos, {{"CHABDOBLES", 2},
                          {"CHABSENCILLAS", 1},
                          {"CNUMSUITE", 0},
                          {"CNUMBANOS", 2},
                          {"CNUMASEOS", 1},
                          {"CSUPER1", 95.0},
                          {"CSUPER2", 80.5},
                          {"CSUPER3", 12.0},
                          {"CASCENSOR", S},
                          {"CCALEFACCION", S},
                          {"CTRASTERO", N},
                          {"CGARAJE", S},
                          {"CANOCONSTRUCCION", S},
                          {"SANOCONSTRUCCION", "1998"}}),
            QStringLiteral("3 DORMITORIOS, 2 CUARTOS DE BAÑO, 1 ASEO, 95 M2 CONSTRUIDOS, 80,5 M2 UTILES, "
                           "12 M2 DE PATIO, ASCENSOR, CALEFACCIÓN GARAJE AÑO DE CONSTRUCCIÓN 1998")},
        CasoFamilia{
            "casa", Casa,
            con(kAjenos, {{"CHABDOBLES", 3},
                          {"CHABSENCILLAS", 1},
                          {"CNUMBANOS", 2},
                          {"CSUPER1", 180.0},
                          {"CSUPSOLAR", 600.0},
                          {"CJARDIN", S},
                          {"CPISCINA", S},
                          {"CASCENSOR", S}}),
            QStringLiteral("4 DORMITORIOS, 2 CUARTOS DE BAÑO, 180 M2 CONSTRUIDOS, 600 M2 SUPERFICIE DE "
                           "PARCELA, PISCINA JARDIN ")},
        CasoFamilia{
            "casa de la otra plantilla",
            CasaBis,
            {{"CHABDOBLES", 1}, {"CNUMBANOS", 1}, {"CSUPSOLAR", 250.0}, {"CTRASTERO", S}},
            QStringLiteral("1 DORMITORIO, 1 CUARTO DE BAÑO, 250 M2 SUPERFICIE DE PARCELA, TRASTERO ")},
        CasoFamilia{
            "nave",
            Nave,
            {{"CSUPER1", 1200.0},
             {"CSUPSOLAR", 2000.0},
             {"CSUPER2", 1100.0},
             {"CSUPER3", 8.5},
             {"CANCHO", 30.0},
             {"CFONDO", 40.0},
             {"CSUPER4", 300.0},
             {"CNUMBANOS", 2},
             {"CMUELLE", S},
             {"COFICINA", S},
             {"CSALIDAHUMOS", S},
             {"CSALIDAEMERGENCIA", N},
             {"CCERRADO", S},
             {"CHABDOBLES", 2},
             {"CASCENSOR", S}},
            QStringLiteral("1.200 M2 CONSTRUIDOS, 2.000 M2 SUPERFICIE DE PARCELA, 1.100 M2 POR PLANTA, "
                           "8,5 M2 DE ALTURA, 30 M2 DE ANCHO, 40 M2 DE FONDO, 300 M2 DE PATIO, "
                           "2 CUARTOS DE BAÑO, OFICINA MUELLE SALIDA DE HUMOS CERRADO ")},
        CasoFamilia{
            "local",
            Local,
            {{"CSUPER1", 120.0},
             {"CSUPER2", 110.0},
             {"CSUPSOLAR", 130.0},
             {"SESCAPARATE", "6,5"},
             {"CANCHO", 8.0},
             {"CALTO", 3.5},
             {"CFONDO", 15.0},
             {"CNUMASEOS", 1},
             {"CSALIDAHUMOS", S},
             {"CSALIDAEMERGENCIA", S},
             {"CHABDOBLES", 2}},
            QStringLiteral("120 M2 CONSTRUIDOS, 110 M2 UTILES, 130 M2 SUPERFICIE TOTAL, 6,5 M2 ESCAPARATE, "
                           "8 M2 DE ANCHO, 3,5 M2 DE ALTO, 15 M2 DE FONDO, 1 ASEO, SALIDA DE HUMOS SALIDA "
                           "EMERGENCIA ")},
        CasoFamilia{
            "parking",
            Parking,
            {{"CPLAZAS", 2},
             {"CSUPER1", 12.5},
             {"CANCHO", 2.5},
             {"CALTO", 2.2},
             {"CFONDO", 5.0},
             {"CSUBTERRANEO", S},
             {"CCERRADO", S},
             {"CNUMBANOS", 1}},
            QStringLiteral("2 PLAZAS, 12,5 M2 CONSTRUIDOS, 2,5 M2 DE ANCHO, 2,2 M2 DE ALTO, 5 M2 DE FONDO, "
                           "SUBTERRANEO CERRADO ")},
        CasoFamilia{
            "solar",
            Solar,
            {{"CSUPER1", 1500.0},
             {"CSUPER2", 1200.0},
             {"CSUPER3", 900.5},
             {"CSUPER4", 25.0},
             {"SOLAR_OCUPACION", 600.0},
             {"SOLAR_NUMEROVIVIENDAS", 8},
             {"CCERRADO", S},
             {"CHABDOBLES", 3},
             {"CASCENSOR", S},
             {"EDIFICIO_NUMVIVIENDAS", 40}},
            QStringLiteral("1.500 M2 SUPERFICIE TOTAL, 1.200 M2 SUPERFICIE DE PARCELA, 900,5 M2 DE TECHO, "
                           "25 M2 DE ANCHO, 600 M2 OCUPACIÓN DE PARCELA, 8 VIVIENDAS, CERRADO ")},
        CasoFamilia{
            "edificio",
            Edificio,
            {{"CSUPER1", 2400.0},
             {"CSUPSOLAR", 800.0},
             {"EDIFICIO_SUPERRASANTESOBRE", 2000.0},
             {"EDIFICIO_SUPERRASANTEBAJO", 400.0},
             {"EDIFICIO_OCUPACION", 500.0},
             {"EDIFICIO_ALTURAMAXIMA", 18.0},
             {"EDIFICIO_PLANTASSOBRERESANTA", 5},
             {"EDIFICIO_PLANTASBAJORASANTE", 2},
             {"EDIFICIO_NUMVIVIENDAS", 16},
             {"EDIFICIO_PLAZASPARKING", 20},
             {"CASCENSOR", S},
             {"CSALIDAEMERGENCIA", S},
             {"EDIFICIO_ANOCONSTRUCCION", 1975},
             {"CHABDOBLES", 3},
             {"SOLAR_NUMEROVIVIENDAS", 9}},
            QStringLiteral("2.400 M2 CONSTRUIDOS, 800 M2 SUPERFICIE DE PARCELA, 2.000 M2 SOBRE RASANTE, "
                           "400 M2 BAJO RASANTE, 500 M2 OCUPACIÓN DE PARCELA, 18 M2 DE ALTURA, "
                           "5 PLANTAS SOBRE RASANTE, 2 PLANTAS BAJO RASANTE, 16 VIVIENDAS, "
                           "20 PLAZAS DE PARKING, ASCENSOR, SALIDA EMERGENCIA AÑO DE CONSTRUCCIÓN 1975")},
        CasoFamilia{"rustica",
                    Rustica,
                    {{"CSUPER1", 25000.0},
                     {"RUSTICA_ARBOLADO", "OLIVOS Y ALMENDROS"},
                     {"RUSTICA_ACCESO", "CAMINO ASFALTADO"},
                     {"RUSTICA_CIERRE", "  "},
                     {"RUSTICA_CAZA", "PERDIZ"},
                     {"RUSTICA_CULTIVO", "OLIVAR"},
                     {"RUSTICA_CONSTRUCCIONES", "CASA DE APEROS\r\nPOZO"},
                     {"RUSTICA_LUZ", "0"},
                     {"CPISCINA", S},
                     {"CHABDOBLES", 2}},
                    QStringLiteral(
                        "SUPERFICIE TOTAL: 25.000 M2, TIPO DE ARBOLADO: OLIVOS Y ALMENDROS, ACCESO: CAMINO "
                        "ASFALTADO, VARIEDAD DE CAZA: PERDIZ, TIPO DE CULTIVO: OLIVAR, CONSTRUCCIONES: "
                        "CASA DE APEROS POZO, PISCINA ")},
        CasoFamilia{"plantilla desconocida como piso",
                    42,
                    {{"CHABDOBLES", 2}, {"CSUPER1", 70.0}, {"CASCENSOR", S}},
                    QStringLiteral("2 DORMITORIOS, 70 M2 CONSTRUIDOS, ASCENSOR,")}),
    [](const auto& p) {
        std::string n = p.param.nombre;
        for (char& ch : n)
            if (!std::isalnum(static_cast<unsigned char>(ch)))
                ch = '_';
        return n;
    });

// ------------------------------------------------------------ counts

struct CasoCuenta {
    int plantilla;
    QVariantMap valores;
    QString esperado;
};

class Cuentas : public ::testing::TestWithParam<CasoCuenta> {};

TEST_P(Cuentas, SingularForOnePluralOtherwise)
{
    EXPECT_EQ(texto(GetParam().plantilla, GetParam().valores), GetParam().esperado);
}

INSTANTIATE_TEST_SUITE_P(
    UnoYVarios, Cuentas,
    ::testing::Values(
        // Bedrooms add doubles, singles and suites.
        CasoCuenta{Piso, {{"CHABDOBLES", 1}}, QStringLiteral("1 DORMITORIO,")},
        CasoCuenta{Piso, {{"CHABSENCILLAS", 1}}, QStringLiteral("1 DORMITORIO,")},
        CasoCuenta{Piso, {{"CNUMSUITE", 1}}, QStringLiteral("1 DORMITORIO,")},
        CasoCuenta{Piso,
                   {{"CHABDOBLES", 1}, {"CHABSENCILLAS", 1}, {"CNUMSUITE", 1}},
                   QStringLiteral("3 DORMITORIOS,")},
        CasoCuenta{Piso, {{"CHABDOBLES", 2}}, QStringLiteral("2 DORMITORIOS,")},
        CasoCuenta{Piso, {{"CNUMBANOS", 1}}, QStringLiteral("1 CUARTO DE BAÑO,")},
        CasoCuenta{Piso, {{"CNUMBANOS", 2}}, QStringLiteral("2 CUARTOS DE BAÑO,")},
        CasoCuenta{Piso, {{"CNUMASEOS", 1}}, QStringLiteral("1 ASEO,")},
        CasoCuenta{Piso, {{"CNUMASEOS", 3}}, QStringLiteral("3 ASEOS,")},
        CasoCuenta{Parking, {{"CPLAZAS", 1}}, QStringLiteral("1 PLAZA,")},
        CasoCuenta{Parking, {{"CPLAZAS", 4}}, QStringLiteral("4 PLAZAS,")},
        CasoCuenta{Edificio, {{"EDIFICIO_PLANTASBAJORASANTE", 1}}, QStringLiteral("1 PLANTA BAJO RASANTE,")},
        CasoCuenta{
            Edificio, {{"EDIFICIO_PLANTASSOBRERESANTA", 1}}, QStringLiteral("1 PLANTA SOBRE RASANTE,")},
        CasoCuenta{Edificio, {{"EDIFICIO_NUMVIVIENDAS", 1}}, QStringLiteral("1 VIVIENDA,")},
        CasoCuenta{Edificio, {{"EDIFICIO_PLAZASPARKING", 1}}, QStringLiteral("1 PLAZA DE PARKING,")},
        // Counts read from text or as floating values are still counts.
        CasoCuenta{Piso,
                   {{"CHABDOBLES", "2"}, {"CNUMBANOS", 1.0}},
                   QStringLiteral("2 DORMITORIOS, 1 CUARTO DE BAÑO,")}));

// ------------------------------------------------------------ what is left out

TEST(TextoCartel, ZeroEmptyAndNullValuesAreSkipped)
{
    EXPECT_EQ(texto(Piso, {}), QString());
    EXPECT_EQ(texto(Piso, {{"CHABDOBLES", 0},
                           {"CHABSENCILLAS", QVariant()},
                           {"CNUMSUITE", 0},
                           {"CNUMBANOS", 0},
                           {"CSUPER1", 0.0},
                           {"CSUPER2", QVariant()},
                           {"CSUPERF1", ""},
                           {"CSUPER3", 0.001},
                           {"CNUMASEOS", 2}}),
              QStringLiteral("2 ASEOS,"));
    EXPECT_EQ(texto(Solar, {{"CSUPER1", 0.0}, {"CSUPER2", 300.0}, {"SOLAR_NUMEROVIVIENDAS", 0}}),
              QStringLiteral("300 M2 SUPERFICIE DE PARCELA,"));
    // A window measured in words is not a figure.
    EXPECT_EQ(texto(Local, {{"SESCAPARATE", "Dos escaparates"}, {"CSUPER1", 80.0}}),
              QStringLiteral("80 M2 CONSTRUIDOS,"));
    EXPECT_EQ(
        texto(Rustica,
              {{"RUSTICA_LUZ", ""}, {"RUSTICA_CAZA", "0"}, {"CSUPER1", 0.0}, {"RUSTICA_ACCESO", "PISTA"}}),
        QStringLiteral("ACCESO: PISTA,"));
    EXPECT_EQ(texto(Edificio, {{"EDIFICIO_ANOCONSTRUCCION", 0}, {"EDIFICIO_NUMVIVIENDAS", 0}}), QString());
    // Nor do negative figures, typing slips that would print as "-80 M2".
    EXPECT_EQ(texto(Piso, {{"CSUPER1", -80.0}, {"CHABDOBLES", -1}, {"CSUPER2", "-3"}}), QString());
}

TEST(TextoCartel, FeaturesNeedTheirFlagSetToS)
{
    EXPECT_EQ(texto(Piso, {{"CASCENSOR", S}}), QStringLiteral("ASCENSOR,"));
    EXPECT_EQ(texto(Piso, {{"CASCENSOR", N}}), QString());
    EXPECT_EQ(texto(Piso, {{"CASCENSOR", "s"}}), QString());
    EXPECT_EQ(texto(Piso, {{"CASCENSOR", QVariant()}}), QString());
    // CHAR columns may come padded.
    EXPECT_EQ(texto(Piso, {{"CCALEFACCION", "S "}}), QStringLiteral("CALEFACCIÓN "));
    EXPECT_EQ(texto(Piso, {{"CTRASTERO", S}, {"CGARAJE", N}, {"CPISCINA", S}, {"CJARDIN", S}}),
              QStringLiteral("TRASTERO PISCINA JARDIN "));
    EXPECT_EQ(texto(Nave, {{"CSALIDAEMERGENCIA", S}}), QStringLiteral("SALIDA EMERGENCIA "));
    EXPECT_EQ(texto(Parking, {{"CASCENSOR", S}, {"CSUBTERRANEO", N}}), QStringLiteral("ASCENSOR,"));
}

TEST(TextoCartel, TheYearFollowsItsLabel)
{
    EXPECT_EQ(texto(Piso, {{"CANOCONSTRUCCION", S}, {"SANOCONSTRUCCION", "1998"}}),
              QStringLiteral("AÑO DE CONSTRUCCIÓN 1998"));
    EXPECT_EQ(texto(Piso, {{"CANOCONSTRUCCION", S}, {"SANOCONSTRUCCION", " 2004 "}, {"CHABDOBLES", 1}}),
              QStringLiteral("1 DORMITORIO, AÑO DE CONSTRUCCIÓN 2004"));
    // Without its tick, or without a year, nothing.
    EXPECT_EQ(texto(Piso, {{"CANOCONSTRUCCION", N}, {"SANOCONSTRUCCION", "1998"}}), QString());
    EXPECT_EQ(texto(Piso, {{"CANOCONSTRUCCION", S}, {"SANOCONSTRUCCION", ""}}), QString());
    EXPECT_EQ(texto(Piso, {{"CANOCONSTRUCCION", S}, {"SANOCONSTRUCCION", "0"}}), QString());
    // A building keeps its year on its own page, with no tick box.
    EXPECT_EQ(texto(Edificio, {{"EDIFICIO_ANOCONSTRUCCION", 1962}}),
              QStringLiteral("AÑO DE CONSTRUCCIÓN 1962"));
    EXPECT_EQ(texto(Edificio, {{"CANOCONSTRUCCION", S}, {"SANOCONSTRUCCION", "1998"}}), QString());
    EXPECT_EQ(texto(Solar, {{"CANOCONSTRUCCION", S}, {"SANOCONSTRUCCION", "1998"}}), QString());
}

TEST(TextoCartel, SurfacesAreWrittenTheSpanishWayWithoutTrailingZeros)
{
    EXPECT_EQ(texto(Piso, {{"CSUPER1", 90.0}}), QStringLiteral("90 M2 CONSTRUIDOS,"));
    EXPECT_EQ(texto(Piso, {{"CSUPER1", 90.5}}), QStringLiteral("90,5 M2 CONSTRUIDOS,"));
    EXPECT_EQ(texto(Piso, {{"CSUPER1", 85.257}}), QStringLiteral("85,26 M2 CONSTRUIDOS,"));
    EXPECT_EQ(texto(Piso, {{"CSUPER1", 1250.0}}), QStringLiteral("1.250 M2 CONSTRUIDOS,"));
    EXPECT_EQ(texto(Piso, {{"CSUPER1", "75,50"}}), QStringLiteral("75,5 M2 CONSTRUIDOS,"));
    // Useful surface: CSUPER2, or CSUPERF1 when that is empty.
    EXPECT_EQ(texto(Piso, {{"CSUPERF1", 70.0}}), QStringLiteral("70 M2 UTILES,"));
    EXPECT_EQ(texto(Piso, {{"CSUPER2", 0.0}, {"CSUPERF1", 70.0}}), QStringLiteral("70 M2 UTILES,"));
    EXPECT_EQ(texto(Piso, {{"CSUPER2", 72.0}, {"CSUPERF1", 70.0}}), QStringLiteral("72 M2 UTILES,"));
}

TEST(TextoCartel, LineBreaksAreRemoved)
{
    const QString t = texto(Rustica, {{"RUSTICA_ACCESO", "CAMINO\nDE TIERRA"},
                                      {"RUSTICA_CONSTRUCCIONES", "CASA  \r\n\r\n  CUADRA\rPOZO\r\n"},
                                      {"RUSTICA_LUZ", "\r\nSI"}});
    EXPECT_EQ(t, QStringLiteral("ACCESO: CAMINO DE TIERRA, CONSTRUCCIONES: CASA CUADRA POZO, LUZ: SI,"));
    EXPECT_FALSE(t.contains(QLatin1Char('\n')));
    EXPECT_FALSE(t.contains(QLatin1Char('\r')));
}

TEST(TextoCartel, TheLookupAndTheMapGiveTheSameText)
{
    const QVariantMap v = {{"CHABDOBLES", 2}, {"CNUMBANOS", 1}, {"CSUPER1", 88.0}, {"CASCENSOR", S}};
    QStringList pedidas;
    const QString porFuncion = textoCartel(Piso, [&](const QString& columna) {
        pedidas.append(columna);
        return v.value(columna);
    });
    EXPECT_EQ(porFuncion, texto(Piso, v));
    EXPECT_EQ(porFuncion, QStringLiteral("2 DORMITORIOS, 1 CUARTO DE BAÑO, 88 M2 CONSTRUIDOS, ASCENSOR,"));
    // Only the columns a select can be asked for.
    for (const QString& c : pedidas)
        EXPECT_TRUE(tv::registro::columnasCartel().contains(c)) << c.toStdString();
}

TEST(TextoCartel, TheStatementsStandAsTheyAre)
{
    using namespace tv::registro;
    EXPECT_STREQ(kSqlFamiliaTipo, "SELECT CODFAMILIA,DESCRIPCION FROM TIPOINMUEBLE WHERE CODIGO =:CODIGO ");
    EXPECT_STREQ(kSqlGuardarCartel,
                 " UPDATE INMUEBLES SET CARTELES_INFORMACION=:INFORMACION WHERE CODIGO=:CODIGO ");
    EXPECT_STREQ(
        kSqlLeerRusos,
        " select CARTELES_INFORMARUS,CARTELES_CABECERARUS,CARTELES_PIERUS from inmuebles i where codigo "
        "=:codigo ");
    EXPECT_STREQ(
        kSqlGuardarRusos,
        " update inmuebles i set i.CARTELES_INFORMARUS =:informa, CARTELES_CABECERARUS =:cabera_ruso, "
        "CARTELES_PIERUS =:pie_ruso  where codigo =:codigo ");
}
