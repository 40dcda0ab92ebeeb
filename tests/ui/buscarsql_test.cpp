#include "buscarsql.h"
#include "query.h"
#include "testdata.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace tv;
using namespace tv::ui;

namespace {

struct PartirCase {
    const char* name;
    const char* sql;
    const char* base;
    const char* orden;
};

void PrintTo(const PartirCase& c, std::ostream* os)
{
    *os << c.name;
}

class BuscarSqlPartir : public ::testing::TestWithParam<PartirCase> {};

TEST_P(BuscarSqlPartir, SplitsAtTheFirstOrder)
{
    const PartirCase& c = GetParam();
    const SentenciaPartida p = partirPorOrder(QString::fromUtf8(c.sql));
    EXPECT_EQ(p.base, QString::fromUtf8(c.base));
    EXPECT_EQ(p.orden, QString::fromUtf8(c.orden));
}

INSTANTIATE_TEST_SUITE_P(
    BuscarSql, BuscarSqlPartir,
    ::testing::Values(
        PartirCase{"ConOrder", "SELECT * FROM MUNICIPIOS ORDER BY DESMUNIINE", "SELECT * FROM MUNICIPIOS ",
                   "ORDER BY DESMUNIINE"},
        PartirCase{"OrderEnMinusculas", "select id, desmuniine from municipios order by 2",
                   "select id, desmuniine from municipios ", "order by 2"},
        PartirCase{"SinOrder", "SELECT * FROM MUNICIPIOS WHERE ID > 5", "SELECT * FROM MUNICIPIOS WHERE ID > 5", ""},
        PartirCase{"ConWhereYOrder", "SELECT * FROM MUNICIPIOS WHERE ID > 5 Order By ID DESC",
                   "SELECT * FROM MUNICIPIOS WHERE ID > 5 ", "Order By ID DESC"},
        PartirCase{"LaPrimeraAparicionAunqueSeaParteDeUnNombre", "SELECT BORDERS FROM X ORDER BY 1", "SELECT B",
                   "ORDERS FROM X ORDER BY 1"},
        PartirCase{"Vacia", "", "", ""}),
    [](const ::testing::TestParamInfo<PartirCase>& p) { return std::string(p.param.name); });

struct CondicionCase {
    const char* name;
    const char* campo;
    const char* texto;
    int tamano;
    const char* condicion;
};

void PrintTo(const CondicionCase& c, std::ostream* os)
{
    *os << c.name;
}

class BuscarSqlCondicion : public ::testing::TestWithParam<CondicionCase> {};

TEST_P(BuscarSqlCondicion, BuildsTheLike)
{
    const CondicionCase& c = GetParam();
    EXPECT_EQ(condicionBusqueda(QString::fromUtf8(c.campo), QString::fromUtf8(c.texto), c.tamano),
              QString::fromUtf8(c.condicion));
}

INSTANTIATE_TEST_SUITE_P(
    BuscarSql, BuscarSqlCondicion,
    ::testing::Values(
        // Text columns (a declared size): contains, trimmed and upper-cased.
        CondicionCase{"TextoContiene", "DESMUNIINE", "  madr ", 70, "DESMUNIINE like '%MADR%'"},
        CondicionCase{"TextoVacioListaLosNoNulos", "DESMUNIINE", "", 70, "DESMUNIINE like '%%'"},
        CondicionCase{"TextoSoloBlancos", "DESMUNIINE", "   ", 70, "DESMUNIINE like '%%'"},
        CondicionCase{"TextoConComillas", "APEYNOM", "o'donnell", 50, "APEYNOM like '%O''DONNELL%'"},
        CondicionCase{"TextoConEnie", "DESMUNIINE", "peñíscola", 70, "DESMUNIINE like '%PEÑÍSCOLA%'"},
        CondicionCase{"CampoCualificado", "M.DESMUNIINE", "ab", 70, "M.DESMUNIINE like '%AB%'"},
        // No declared size (integers, numbers, dates): starts with, nothing when empty.
        CondicionCase{"EnteroEmpiezaPor", "CODIGOINE", "280", 0, "CODIGOINE like '280%'"},
        CondicionCase{"SinTamanoVacio", "CODIGOINE", "", 0, ""},
        CondicionCase{"SinTamanoSoloBlancos", "CODIGOINE", "   ", 0, ""},
        CondicionCase{"SinTamanoConComillas", "FECHAALTA", " 2024'", 0, "FECHAALTA like '2024''%'"},
        // A negative size: starts with, even when empty.
        CondicionCase{"NegativoEmpiezaPor", "X", "ab", -1, "X like 'AB%'"},
        CondicionCase{"NegativoVacio", "X", "", -1, "X like '%'"},
        CondicionCase{"NegativoConComillas", "X", "'", -4, "X like '''%'"}),
    [](const ::testing::TestParamInfo<CondicionCase>& p) { return std::string(p.param.name); });

struct SentenciaCase {
    const char* name;
    const char* base;
    const char* orden;
    const char* condicion;
    const char* sql;
};

void PrintTo(const SentenciaCase& c, std::ostream* os)
{
    *os << c.name;
}

class BuscarSqlSentencia : public ::testing::TestWithParam<SentenciaCase> {};

TEST_P(BuscarSqlSentencia, JoinsBaseConditionAndOrder)
{
    const SentenciaCase& c = GetParam();
    const SentenciaPartida p{QString::fromUtf8(c.base), QString::fromUtf8(c.orden)};
    EXPECT_EQ(sentenciaBusqueda(p, QString::fromUtf8(c.condicion)), QString::fromUtf8(c.sql));
}

INSTANTIATE_TEST_SUITE_P(
    BuscarSql, BuscarSqlSentencia,
    ::testing::Values(
        SentenciaCase{"WhereYOrden", "SELECT * FROM MUNICIPIOS ", "ORDER BY DESMUNIINE", "DESMUNIINE like '%MADR%'",
                      "SELECT * FROM MUNICIPIOS  WHERE DESMUNIINE like '%MADR%' ORDER BY DESMUNIINE"},
        SentenciaCase{"WhereSinOrden", "SELECT * FROM MUNICIPIOS", "", "ID like '1%'",
                      "SELECT * FROM MUNICIPIOS WHERE ID like '1%' "},
        SentenciaCase{"BaseQueYaFiltra", "SELECT * FROM MUNICIPIOS WHERE DESPAIS = 'ESPAÑA' ", "ORDER BY ID",
                      "ID like '28%'", "SELECT * FROM MUNICIPIOS WHERE DESPAIS = 'ESPAÑA'  AND ID like '28%' ORDER BY ID"},
        SentenciaCase{"BaseQueYaFiltraEnMinusculas", "select * from municipios where id > 5 ", "order by id",
                      "ID like '2%'", "select * from municipios where id > 5  AND ID like '2%' order by id"},
        SentenciaCase{"WhereEnLaPrimeraPosicionNoCuenta", "where x = 1 ", "", "Y like 'A%'",
                      "where x = 1  WHERE Y like 'A%' "},
        SentenciaCase{"SinCondicion", "SELECT * FROM MUNICIPIOS ", "ORDER BY DESMUNIINE", "",
                      "SELECT * FROM MUNICIPIOS  ORDER BY DESMUNIINE"},
        SentenciaCase{"SinCondicionNiOrden", "SELECT * FROM MUNICIPIOS", "", "", "SELECT * FROM MUNICIPIOS "},
        SentenciaCase{"SinCondicionConWhere", "SELECT * FROM MUNICIPIOS WHERE ID < 3 ", "ORDER BY ID", "",
                      "SELECT * FROM MUNICIPIOS WHERE ID < 3  ORDER BY ID"}),
    [](const ::testing::TestParamInfo<SentenciaCase>& p) { return std::string(p.param.name); });

TEST(BuscarSql, AJoinWithItsOwnFilterGetsAnd)
{
    const QString sql = QStringLiteral("SELECT M.ID, M.DESMUNIINE, Z.DESCRIPCION FROM ZONAS Z JOIN MUNICIPIOS M "
                                       "ON M.CODIGOINE = Z.CODMUNIINE WHERE Z.CODIGO > 0 ORDER BY Z.DESCRIPCION");
    const SentenciaPartida p = partirPorOrder(sql);
    EXPECT_EQ(sentenciaBusqueda(p, condicionBusqueda(QStringLiteral("Z.DESCRIPCION"), QStringLiteral("centro"), 20)),
              QStringLiteral("SELECT M.ID, M.DESMUNIINE, Z.DESCRIPCION FROM ZONAS Z JOIN MUNICIPIOS M "
                             "ON M.CODIGOINE = Z.CODMUNIINE WHERE Z.CODIGO > 0  AND Z.DESCRIPCION like '%CENTRO%' "
                             "ORDER BY Z.DESCRIPCION"));
}

// What LIKE does on columns that are not texts, on the real engine: dialect 1
// compares an integer or a date as its text form.
class BuscarSqlFirebird : public ::testing::Test {
protected:
    int count(const QString& sql)
    {
        return Query::scalar(data.dm().datos, data.dm().Transacion, sql).toInt();
    }
    // Rows of the search statement built over `base` for this condition.
    int rows(const QString& base, const QString& campo, const QString& texto)
    {
        const QString sql = sentenciaBusqueda(partirPorOrder(base), condicionBusqueda(campo, texto, 0));
        Query q(data.dm().datos, data.dm().Transacion, sql);
        int n = 0;
        for (q.open(); !q.eof(); q.next())
            ++n;
        return n;
    }

    test::TestData data;
};

TEST_F(BuscarSqlFirebird, StartsWithOnAnIntegerColumn)
{
    // "280" starts 280, 2800..2809 and 28000..28099, nothing else.
    const int expected = count(QStringLiteral("SELECT COUNT(*) FROM MUNICIPIOS WHERE CODIGOINE = 280 OR CODIGOINE "
                                              "BETWEEN 2800 AND 2809 OR CODIGOINE BETWEEN 28000 AND 28099"));
    ASSERT_GT(expected, 50);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM MUNICIPIOS ORDER BY DESMUNIINE"), QStringLiteral("CODIGOINE"),
                   QStringLiteral("280")),
              expected);

    // The key: 1, 10..19, 100..199, 1000..1999 of 8,131.
    EXPECT_EQ(rows(QStringLiteral("SELECT ID, DESMUNIINE FROM MUNICIPIOS WHERE DESPAIS = 'ESPAÑA' ORDER BY ID"),
                   QStringLiteral("ID"), QStringLiteral("1")),
              1 + 10 + 100 + 1000);
    EXPECT_EQ(rows(QStringLiteral("SELECT ID FROM MUNICIPIOS"), QStringLiteral("ID"), QStringLiteral("8131")), 1);
    EXPECT_EQ(rows(QStringLiteral("SELECT ID FROM MUNICIPIOS"), QStringLiteral("ID"), QStringLiteral("9")),
              1 + 10 + 100);
}

TEST_F(BuscarSqlFirebird, StartsWithOnADateColumnMatchesItsTextForm)
{
    const char* inserts[] = {
        "INSERT INTO TELEFONOS (CODIGO, FECHAALTA, ORIGEN) VALUES (1, '05.03.2024', 'UNO')",
        "INSERT INTO TELEFONOS (CODIGO, FECHAALTA, ORIGEN) VALUES (2, '28.03.2024 17:30:00', 'DOS')",
        "INSERT INTO TELEFONOS (CODIGO, FECHAALTA, ORIGEN) VALUES (3, '05.04.2024', 'TRES')",
        "INSERT INTO TELEFONOS (CODIGO, FECHAALTA, ORIGEN) VALUES (4, NULL, 'CUATRO')",
    };
    for (const char* sql : inserts)
        Query::execute(data.dm().datos, data.dm().Transacion, QString::fromUtf8(sql));
    const QString base = QStringLiteral("SELECT CODIGO, FECHAALTA FROM TELEFONOS ORDER BY CODIGO");
    const QString campo = QStringLiteral("FECHAALTA");
    // Dialect 1 writes a date as dd-MON-yyyy (with the time when it is not
    // midnight), so that is what a start matches.
    EXPECT_EQ(Query::scalar(data.dm().datos, data.dm().Transacion,
                            QStringLiteral("SELECT CAST(FECHAALTA AS VARCHAR(30)) FROM TELEFONOS WHERE CODIGO = 1"))
                  .toString(),
              QStringLiteral("05-MAR-2024"));
    EXPECT_EQ(Query::scalar(data.dm().datos, data.dm().Transacion,
                            QStringLiteral("SELECT CAST(FECHAALTA AS VARCHAR(30)) FROM TELEFONOS WHERE CODIGO = 2"))
                  .toString(),
              QStringLiteral("28-MAR-2024 17:30:00.0000"));
    EXPECT_EQ(rows(base, campo, QStringLiteral("05")), 2);
    EXPECT_EQ(rows(base, campo, QStringLiteral("05-mar")), 1);
    EXPECT_EQ(rows(base, campo, QStringLiteral("28-MAR-2024 17")), 1);
    EXPECT_EQ(rows(base, campo, QStringLiteral("2024")), 0);
    EXPECT_EQ(rows(base, campo, QStringLiteral("05.03")), 0);
}

TEST_F(BuscarSqlFirebird, ContainsOnATextColumnIsCaseSensitive)
{
    // The text is upper-cased and LIKE keeps the column's case: the seeded
    // municipalities (written "Madrid") only match through capitals they hold.
    const QString base = QStringLiteral("SELECT * FROM MUNICIPIOS ORDER BY DESMUNIINE");
    const auto contains = [&](const QString& texto) {
        return count(QStringLiteral("SELECT COUNT(*) FROM (") +
                     sentenciaBusqueda(partirPorOrder(QStringLiteral("SELECT * FROM MUNICIPIOS")),
                                       condicionBusqueda(QStringLiteral("DESMUNIINE"), texto, 70)) +
                     QStringLiteral(") T"));
    };
    EXPECT_EQ(contains(QStringLiteral("madr")), 0);
    EXPECT_EQ(contains(QStringLiteral("")), 8131);
    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO MUNICIPIOS (ID, DESMUNIINE, DESPROVINCIA) "
                                  "VALUES (90001, 'VILLAMADRE', 'PRUEBA')"));
    EXPECT_EQ(contains(QStringLiteral("madr")), 1);
    EXPECT_EQ(rows(base, QStringLiteral("DESMUNIINE"), QStringLiteral("VILLAM")), 1);
}

} // namespace
