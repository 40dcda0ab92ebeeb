#include "dm.h"
#include "query.h"
#include "testdata.h"

#include <gtest/gtest.h>

using namespace tv;

namespace {

TEST(ConvertParameters, NamesOutsideLiteralsAndComments)
{
    QStringList names;
    const QString out = convertParameters(
        QStringLiteral("SELECT ':NO', \"x:NO\" FROM T -- :NADA\nWHERE A = :uno /* :NO */ AND B = :Dos AND C = :UNO"),
        &names);
    EXPECT_EQ(out, QStringLiteral("SELECT ':NO', \"x:NO\" FROM T -- :NADA\nWHERE A = ? /* :NO */ AND B = ? AND C = ?"));
    EXPECT_EQ(names, (QStringList{"UNO", "DOS", "UNO"}));
}

TEST(ConvertParameters, DoubledQuotesAndPsqlBodies)
{
    QStringList names;
    EXPECT_EQ(convertParameters(QStringLiteral("SELECT 'O''Neil :X' FROM T WHERE A=:A"), &names),
              QStringLiteral("SELECT 'O''Neil :X' FROM T WHERE A=?"));
    EXPECT_EQ(names, QStringList{"A"});
    names.clear();
    const QString body = QStringLiteral("CREATE OR ALTER PROCEDURE P RETURNS (X INTEGER) AS BEGIN X = :X; END");
    EXPECT_EQ(convertParameters(body, &names), body);
    EXPECT_TRUE(names.isEmpty());
}

class QueryTest : public ::testing::Test {
protected:
    test::TestData data;
    Tdm& d = data.dm();
};

TEST_F(QueryTest, ParametersOfEveryTypeAndNulls)
{
    Query ins(d.datos, d.Transacion,
              QStringLiteral("INSERT INTO DESCARTES (CODIGO, CODCLIENTE, CODINMUEBLE, FECHA, MOTIVO) "
                             "VALUES (:CODIGO, :CLIENTE, :INMUEBLE, :FECHA, :MOTIVO)"));
    ins.paramByName(QStringLiteral("codigo")).setAsInteger(7);
    ins.paramByName(QStringLiteral("CLIENTE")).setAsString(QStringLiteral("12")); // the engine converts
    ins.paramByName(QStringLiteral("INMUEBLE")).setAsString(QStringLiteral("00042"));
    ins.paramByName(QStringLiteral("FECHA")).setAsDateTime(QDateTime(QDate(2026, 11, 22), QTime(10, 30, 15)));
    ins.paramByName(QStringLiteral("MOTIVO")).clear();
    ins.exec();
    EXPECT_EQ(ins.rowsAffected(), 1);

    Query q(d.datos, d.Transacion, QStringLiteral("SELECT * FROM DESCARTES WHERE CODINMUEBLE = :C"));
    q.paramByName(QStringLiteral("C")).setAsString(QStringLiteral("00042"));
    q.open();
    ASSERT_FALSE(q.eof());
    EXPECT_EQ(q.fieldByName(QStringLiteral("CODIGO")).asInteger(), 7);
    EXPECT_EQ(q.fieldByName(QStringLiteral("CODCLIENTE")).asInteger(), 12);
    EXPECT_EQ(q.fieldByName(QStringLiteral("codinmueble")).asString(), QStringLiteral("00042"));
    EXPECT_EQ(q.fieldByName(QStringLiteral("FECHA")).asDateTime(), QDateTime(QDate(2026, 11, 22), QTime(10, 30, 15)));
    EXPECT_TRUE(q.fieldByName(QStringLiteral("MOTIVO")).isNull());
    q.next();
    EXPECT_TRUE(q.eof());
    EXPECT_THROW(q.fieldByName(QStringLiteral("NOEXISTE")), DataSetError);
    EXPECT_THROW(q.paramByName(QStringLiteral("NOEXISTE")), DataSetError);
}

TEST_F(QueryTest, DialectOneArithmeticAndDates)
{
    // An empty date (a NULL column read back, a cleared date box) is stored as NULL.
    Query ins(d.datos, d.Transacion, QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, FECHAALTA) VALUES (:C, 'X', :F)"));
    ins.paramByName(QStringLiteral("C")).setAsInteger(90);
    ins.paramByName(QStringLiteral("F")).setAsDate(QDate());
    ins.exec();
    ins.paramByName(QStringLiteral("C")).setAsInteger(91);
    ins.paramByName(QStringLiteral("F")).setAsDateTime(QDateTime());
    ins.exec();
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion,
                            QStringLiteral("SELECT COUNT(*) FROM AGENTES WHERE CODIGO IN (90, 91) AND FECHAALTA IS NULL"))
                  .toInt(),
              2);

    EXPECT_DOUBLE_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT 7/2 FROM RDB$DATABASE")).toDouble(), 3.5);
    const QVariant today = Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT CAST('TODAY' AS DATE) FROM RDB$DATABASE"));
    EXPECT_EQ(today.toDateTime(), QDate::currentDate().startOfDay());
    // Codes compare as strings; a number comparison would fail on any non-numeric code.
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT '00012' FROM RDB$DATABASE")).toString(),
              QStringLiteral("00012"));
}

TEST_F(QueryTest, TextBlobsKeepSpanishAndLongTexts)
{
    const QString spanish = QStringLiteral("Ático en Peñíscola con vistas al mar: 5 € de comunidad, «única» ocasión");
    QString longText;
    while (longText.size() < 70000)
        longText += QStringLiteral("Señorial vivienda de época, reformada. ");
    Query ins(d.datos, d.Transacion,
              QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, OBSERVACIONES, "
                             "OBSERVA_INTERNAS) VALUES ('00001', 1, 1, :OBS, :INT)"));
    ins.paramByName(QStringLiteral("OBS")).setAsString(spanish);
    ins.paramByName(QStringLiteral("INT")).setAsString(longText);
    ins.exec();
    Query q(d.datos, d.Transacion, QStringLiteral("SELECT OBSERVACIONES, OBSERVA_INTERNAS FROM INMUEBLES"));
    q.open();
    EXPECT_EQ(q.field(0).asString(), spanish);
    EXPECT_EQ(q.field(1).asString(), longText);
}

TEST_F(QueryTest, RussianTextsInUtf8ColumnsThroughTheSecondConnection)
{
    const QString russian = QStringLiteral("Просторная квартира у моря, 3 спальни");
    Query ins(d.datosrusos, d.Transacion,
              QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, CARTELES_INFORMARUS, "
                             "DESCRIPCION) VALUES ('00002', 1, 1, :RUS, :DES)"));
    ins.paramByName(QStringLiteral("RUS")).setAsString(russian);
    ins.paramByName(QStringLiteral("DES")).setAsString(QStringLiteral("Piso en Alcañiz, 5 €"));
    ins.exec();
    d.Transacion.commitRetaining();
    Query q(d.datos, d.Transacion, QStringLiteral("SELECT CARTELES_INFORMARUS, DESCRIPCION FROM INMUEBLES"));
    q.open();
    EXPECT_EQ(q.field(0).asString(), russian);
    EXPECT_EQ(q.field(1).asString(), QStringLiteral("Piso en Alcañiz, 5 €"));
}

TEST_F(QueryTest, BinaryBlobComesBackByteForByte)
{
    QByteArray bytes(100 * 1024, '\0');
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>((i * 7919) & 0xFF);
    const qlonglong id = Query::genId(d.Imagenes, d.Transacion, QStringLiteral("GEN_IMAGENES_ID"));
    Query ins(d.Imagenes, d.Transacion, QStringLiteral("INSERT INTO IMAGENES (ID, CODINMUEBLE, PICTURE) VALUES (:ID, 1, :P)"));
    ins.paramByName(QStringLiteral("ID")).setAsInteger(id);
    ins.paramByName(QStringLiteral("P")).setAsBytes(bytes);
    ins.exec();
    Query q(d.Imagenes, d.Transacion, QStringLiteral("SELECT PICTURE FROM IMAGENES WHERE ID = :ID"));
    q.paramByName(QStringLiteral("ID")).setAsInteger(id);
    q.open();
    EXPECT_EQ(q.field(0).asBytes(), bytes);
}

TEST_F(QueryTest, KeyProceduresAndGenerators)
{
    Query p(d.datos, d.Transacion, QStringLiteral("EXECUTE PROCEDURE CODINMUEBLE"));
    p.open();
    EXPECT_EQ(p.fieldByName(QStringLiteral("CODIGO")).asString(), QStringLiteral("00001"));
    Query::execute(d.datos, d.Transacion,
                   QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION) VALUES ('00001', 1, 1)"));
    p.open();
    EXPECT_EQ(p.fieldByName(QStringLiteral("CODIGO")).asString(), QStringLiteral("00002"));

    // Every key procedure answers with its output parameter.
    for (const char* proc : {"CODPROPIETARIO", "CODCLIENTE", "CODDEMANDAS", "CODDESCARTES", "SPCODAGENDA", "CODAGENDA",
                             "CODPROMOCION", "CODDEPARTAMENTO", "CODTIPOPERFIL", "CODCUENTAMAIL", "CODTELEFONO",
                             "CODZONA", "CODESTADO", "CODTIPOFAMILIA", "CODGASTOS", "CODORIGEN", "CODTIPOGESTION",
                             "CODTIPOOPERACION", "CODTIPOVISITA", "LIST_NUEVOINFORME", "CODAGENTE", "CODTIPOINMUEBLE",
                             "SP_GEN_OPERACIONES_ID", "CODIGOGASTOS"}) {
        Query k(d.datos, d.Transacion, QStringLiteral("EXECUTE PROCEDURE ") + QLatin1String(proc));
        k.open();
        EXPECT_FALSE(k.field(0).isNull()) << proc;
    }
    for (const char* proc : {"SP_GEN_GESTIONES_ID", "SP_GEN_CONTACTOS_ID"}) {
        Query k(d.datos, d.Transacion, QStringLiteral("EXECUTE PROCEDURE ") + QLatin1String(proc));
        k.open();
        EXPECT_GT(k.fieldByName(QStringLiteral("ID")).asInteger(), 0) << proc;
    }
    const qlonglong a = Query::genId(d.datos, d.Transacion, QStringLiteral("GEN_IVA"));
    EXPECT_EQ(Query::genId(d.datos, d.Transacion, QStringLiteral("GEN_IVA")), a + 1);
    EXPECT_EQ(Query::genId(d.datos, d.Transacion, QStringLiteral("GEN_IVA"), 0), a + 1);
}

TEST_F(QueryTest, ProcedureWithInputsAndOutput)
{
    Query p(d.datos, d.Transacion, QStringLiteral("EXECUTE PROCEDURE SPEXISTE_MUNICIPIO :PAIS, :PROVINCIA, :MUNICIPIO"));
    p.paramByName(QStringLiteral("PAIS")).setAsString(QStringLiteral("ESPAÑA"));
    p.paramByName(QStringLiteral("PROVINCIA")).setAsString(QStringLiteral("Madrid"));
    p.paramByName(QStringLiteral("MUNICIPIO")).setAsString(QStringLiteral("Madrid"));
    p.open();
    EXPECT_EQ(p.fieldByName(QStringLiteral("EXISTE")).asString(), QStringLiteral("S"));
    p.paramByName(QStringLiteral("MUNICIPIO")).setAsString(QStringLiteral("Villanoexiste del Río"));
    p.open();
    EXPECT_EQ(p.fieldByName(QStringLiteral("EXISTE")).asString(), QStringLiteral("N"));
}

TEST_F(QueryTest, ErrorsCarryTheEngineMessageAndCode)
{
    try {
        Query::execute(d.datos, d.Transacion, QStringLiteral("SELECT * FROM TABLA_QUE_NO_EXISTE"));
        FAIL() << "no error";
    } catch (const DatabaseError& e) {
        EXPECT_TRUE(e.message().contains(QStringLiteral("TABLA_QUE_NO_EXISTE"))) << e.message().toStdString();
        EXPECT_NE(e.gdsCode(), 0);
    }
    Query::execute(d.datos, d.Transacion, QStringLiteral("INSERT INTO ESTADO (CODIGO, DESCRIPCION) VALUES (99, 'X')"));
    try {
        Query::execute(d.datos, d.Transacion, QStringLiteral("INSERT INTO ESTADO (CODIGO, DESCRIPCION) VALUES (99, 'Y')"));
        FAIL() << "no error";
    } catch (const DatabaseError& e) {
        EXPECT_TRUE(e.isUniqueViolation());
        EXPECT_FALSE(e.isLockConflict());
    }
}

} // namespace
