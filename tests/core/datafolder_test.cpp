#include "currentagent.h"
#include "datafolder.h"
#include "dm.h"
#include "sqlscript.h"
#include "sqltext.h"
#include "testdata.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tv;

namespace {

int count(Tdm& d, const QString& sql)
{
    return Query::scalar(d.datos, d.Transacion, sql).toInt();
}

TEST(Schema, EveryTableOfTheDataModelIsThere)
{
    test::TestData data;
    Tdm& d = data.dm();
    const QStringList tables = {
        "INMUEBLES", "PROPIETARIOS", "CLIENTES", "DEMANDAS", "GESTIONES", "DESCARTES", "RESULTADO_CRUZE",
        "OPERACIONES", "PROMOCIONES", "PROMOCIONES_TIPO", "CONTACTOS", "TELEFONOS", "INMUEBLES_GASTOS",
        "COMISIONES", "AGENDA", "AGENDAX", "AGENDA_CONFIGURACION", "AGENDAHX", "AGENDAH_CONFIGURACION",
        "AGENGAX_HISTORICO", "TIPOS_VISITAS", "EMPRESA", "CONFIGURACION", "AGENTES", "DEPARTAMENTOS",
        "CUENTASMAIL", "PORTALES", "BANCOS", "COMUN_BANCOS", "COMUN_SUCURSALES", "COMUN_IVA", "ZONAS",
        "MUNICIPIOS", "TIPOINMUEBLE", "FAMILIA", "ESTADO", "ORIGENES", "TIPOOPERACION", "TIPOGESTIONES",
        "TIPOGESTIONESANT", "TIPOGASTOS", "PERFILES", "TEMPORAL", "LIST_INFORME", "LIST_CAMPOS",
        "INMUEBLES_MAIL", "LIST_FUENTES", "REMESAS"};
    for (const QString& t : tables)
        EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM RDB$RELATIONS WHERE RDB$RELATION_NAME = ") + sql::quote(t)), 1)
            << t.toStdString();
    // Photographs live in their own file, not in the main one.
    EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM RDB$RELATIONS WHERE RDB$RELATION_NAME = 'IMAGENES'")), 0);
    EXPECT_EQ(Query::scalar(d.Imagenes, d.Transacion, QStringLiteral("SELECT COUNT(*) FROM IMAGENES")).toInt(), 0);
    // Columns other screens rely on, beyond the plain table lists.
    for (const char* col : {"AGENDA.FECHAYHORA", "AGENDA.USUARIO", "CONFIGURACION.DESACTIVAR_MENSAJES",
                            "CONFIGURACION.OBSERVACIONES_MIGRADAS", "CONFIGURACION.DOCU_RED", "EMPRESA.CIF"}) {
        const QStringList parts = QString::fromLatin1(col).split(QLatin1Char('.'));
        EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM RDB$RELATION_FIELDS WHERE RDB$RELATION_NAME = %1 "
                                          "AND RDB$FIELD_NAME = %2")
                               .arg(sql::quote(parts[0]), sql::quote(parts[1]))),
                  1)
            << col;
    }
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT MON$SQL_DIALECT FROM MON$DATABASE")).toInt(), 1);
}

TEST(Schema, PropertyCodeIsFiveCharactersEverywhere)
{
    test::TestData data;
    Tdm& d = data.dm();
    for (const char* table : {"INMUEBLES", "DESCARTES", "RESULTADO_CRUZE", "INMUEBLES_GASTOS"}) {
        const QString col = QString::fromLatin1(table) == QLatin1String("INMUEBLES") ? QStringLiteral("CODIGO")
                                                                                     : QStringLiteral("CODINMUEBLE");
        Query q(d.datos, d.Transacion,
                QStringLiteral("SELECT F.RDB$FIELD_TYPE, F.RDB$CHARACTER_LENGTH FROM RDB$RELATION_FIELDS RF "
                               "JOIN RDB$FIELDS F ON F.RDB$FIELD_NAME = RF.RDB$FIELD_SOURCE "
                               "WHERE RF.RDB$RELATION_NAME = :T AND RF.RDB$FIELD_NAME = :C"));
        q.paramByName(QStringLiteral("T")).setAsString(QString::fromLatin1(table));
        q.paramByName(QStringLiteral("C")).setAsString(col);
        q.open();
        ASSERT_FALSE(q.eof()) << table;
        EXPECT_EQ(q.field(0).asInteger(), 14) << table; // CHAR
        EXPECT_EQ(q.field(1).asInteger(), 5) << table;
    }
}

TEST(Schema, SeedRowsOfANewFolder)
{
    test::TestData data;
    Tdm& d = data.dm();
    EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM EMPRESA")), 1);
    EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM CONFIGURACION")), 1);
    EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM AGENDA_CONFIGURACION")), 1);
    EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM FAMILIA WHERE CODIGO BETWEEN 1 AND 6")), 6);
    EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM MUNICIPIOS WHERE DESPAIS = 'ESPAÑA'")), 8131);
    EXPECT_EQ(count(d, QStringLiteral("SELECT COUNT(*) FROM MUNICIPIOS WHERE DESMUNIINE = 'Peníscola/Peñíscola'")), 1);
    EXPECT_GE(count(d, QStringLiteral("SELECT COUNT(*) FROM PORTALES WHERE CODIGO IN (1, 2, 6)")), 3);
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT PAIS FROM EMPRESA")).toString(), QStringLiteral("España"));
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT MONEDA FROM EMPRESA")).toString(), QStringLiteral("€"));
    // Every usual type sits in its family.
    const QList<QPair<QString, int>> types = {{"PISO", 1}, {"ATICO", 1}, {"CHALET", 2}, {"SOLAR", 3},
                                              {"NAVE INDUSTRIAL", 4}, {"LOCAL COMERCIAL", 5}, {"GARAJE", 6}};
    for (const auto& [type, family] : types)
        EXPECT_EQ(count(d, QStringLiteral("SELECT CODFAMILIA FROM TIPOINMUEBLE WHERE DESCRIPCION = ") + sql::quote(type)),
                  family)
            << type.toStdString();
    EXPECT_GE(count(d, QStringLiteral("SELECT COUNT(*) FROM TIPOOPERACION WHERE DESCRIPCION IN ('VENTA', 'ALQUILER', 'TRASPASO')")), 3);
}

TEST(Schema, ImagesUpgradeRunsOnceAndAlreadyExistsCountsAsSuccess)
{
    test::TestData data;
    Tdm& d = data.dm();
    const QString probe = QStringLiteral("SELECT COUNT(*) FROM RDB$RELATION_FIELDS WHERE RDB$RELATION_NAME = 'IMAGENES' "
                                         "AND RDB$FIELD_NAME = 'PICTURE_MINI'");
    EXPECT_EQ(Query::scalar(d.Imagenes, d.Transacion, probe).toInt(), 1); // done when the folder was made
    EXPECT_NO_THROW(d.actualizarImagenes());
    EXPECT_EQ(Query::scalar(d.Imagenes, d.Transacion, probe).toInt(), 1);
}

TEST(Schema, QuotedTextsRoundTripThroughRunTimeSql)
{
    test::TestData data;
    Tdm& d = data.dm();
    const QString nasty = QStringLiteral("L'Hospitalet d''Amunt «Peñíscola» 5 €");
    Query::execute(d.datos, d.Transacion,
                   QStringLiteral("INSERT INTO ZONAS (CODIGO, DESCRIPCION) VALUES (900, %1)").arg(sql::quote(nasty.left(20))));
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT DESCRIPCION FROM ZONAS WHERE CODIGO = 900")).toString(),
              nasty.left(20));
    const QString russian = QStringLiteral("Дом 'у моря'");
    Query::execute(d.datosrusos, d.Transacion,
                   QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, CARTELES_INFORMARUS) "
                                  "VALUES ('00077', 1, 1, %1)")
                       .arg(sql::quote(russian)));
    EXPECT_EQ(Query::scalar(d.datosrusos, d.Transacion,
                            QStringLiteral("SELECT CARTELES_INFORMARUS FROM INMUEBLES WHERE CODIGO = '00077'"))
                  .toString(),
              russian);
}

TEST(CurrentAgentRecord, LoadingRule)
{
    test::TestData data;
    Tdm& d = data.dm();
    const CurrentAgent nobody = CurrentAgent::load(d.datos, d.Transacion, 0);
    EXPECT_EQ(nobody.codigo, 0);
    EXPECT_EQ(nobody.usuario, QStringLiteral("TODOS"));
    EXPECT_TRUE(nobody.administrador);
    EXPECT_FALSE(nobody.ocultarDatosEconomicos || nobody.verSoloSusGestiones || nobody.verSoloSuAgenda ||
                 nobody.ocultarDatosInternos || nobody.ocultarClientes || nobody.ocultarPropietarios);
    EXPECT_EQ(CurrentAgent::load(d.datos, d.Transacion, -3).usuario, QStringLiteral("TODOS"));

    Query::execute(d.datos, d.Transacion,
                   QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, CONTRASENA, OCULTARDATOSECONOMICOS, "
                                  "VERSOLOSUSGESTIONES, VERSOLOSUAGENDA, OCULTARDATOSINTERNOS, OCULTARCLIENTES, "
                                  "OCULTASPROPIETARIOS, ADMINISTRADOR) "
                                  "VALUES (7, 'Lucía Gómez', ' lucia ', 'x', 'S', 'N', 'S', 's', 'S', 'N', 'N')"));
    const CurrentAgent a = CurrentAgent::load(d.datos, d.Transacion, 7);
    EXPECT_EQ(a.codigo, 7);
    EXPECT_EQ(a.usuario, QStringLiteral("lucia"));
    EXPECT_TRUE(a.ocultarDatosEconomicos);
    EXPECT_FALSE(a.verSoloSusGestiones);
    EXPECT_TRUE(a.verSoloSuAgenda);
    EXPECT_FALSE(a.ocultarDatosInternos); // only "S" counts
    EXPECT_TRUE(a.ocultarClientes);
    EXPECT_FALSE(a.ocultarPropietarios);
    EXPECT_FALSE(a.administrador);
}

TEST(DataFolder, RefusesAFolderThatHoldsDataAndLeavesItAlone)
{
    const QString folder = test::templateFolder();
    const QByteArray before = [&] {
        QFile f(folder + Tdm::kDatosFile);
        f.open(QIODevice::ReadOnly);
        return f.read(4096);
    }();
    EXPECT_THROW(createDataFolder(folder), DataFolderError);
    QFile f(folder + Tdm::kDatosFile);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.read(4096), before);
}

TEST(DataFolder, CommandLineToolRefusesWithExitCodeOne)
{
    const QString cli = QStringLiteral(TEJAVISTA_CLI_PATH);
    QProcess p;
    p.start(cli, {QStringLiteral("crear-datos"), test::templateFolder()});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 1);
    EXPECT_TRUE(QString::fromUtf8(p.readAllStandardError()).contains(QStringLiteral("ya contiene datos")));

    QProcess sql;
    sql.start(cli, {QStringLiteral("sql"), QStringLiteral("--datos"), test::templateFolder(),
                    QStringLiteral("SELECT CODIGO, DESCRIPCION FROM FAMILIA WHERE CODIGO <= 2 ORDER BY CODIGO")});
    ASSERT_TRUE(sql.waitForFinished(60000));
    EXPECT_EQ(sql.exitCode(), 0) << sql.readAllStandardError().toStdString();
    const QStringList lines = QString::fromUtf8(sql.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("1\t")));
}

TEST(Transactions, SecondWriterGetsTheLockConflictAtOnceAndNothingCommittedIsLost)
{
    test::TestData data;
    Tdm& first = data.dm();
    Tdm second(data.folder());
    second.datos.open();

    Query::execute(first.datos, first.Transacion, QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'PRIMERA'"));
    first.Transacion.commitRetaining();
    Query::execute(first.datos, first.Transacion, QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'SIN CONFIRMAR'"));
    try {
        Query::execute(second.datos, second.Transacion, QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'SEGUNDA'"));
        FAIL() << "no conflict";
    } catch (const DatabaseError& e) {
        EXPECT_TRUE(e.isLockConflict()) << e.message().toStdString();
    }
    // The other transaction still reads the last committed value.
    EXPECT_EQ(Query::scalar(second.datos, second.Transacion, QStringLiteral("SELECT NOMBRE FROM EMPRESA")).toString(),
              QStringLiteral("PRIMERA"));
    second.Transacion.rollback();
    first.Transacion.commit();
    EXPECT_EQ(Query::scalar(second.datos, second.Transacion, QStringLiteral("SELECT NOMBRE FROM EMPRESA")).toString(),
              QStringLiteral("SIN CONFIRMAR"));
    second.Transacion.commit();
    second.datos.close();
}

} // namespace

namespace {

TEST(DataFolder, TheToolWorksOnAFolderTheProgramHasOpen)
{
    test::TestData data; // attached here, as the program would be
    Query::execute(data.dm().datos, data.dm().Transacion, QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'ABIERTA'"));
    data.dm().Transacion.commitRetaining();
    QProcess p;
    p.start(QStringLiteral(TEJAVISTA_CLI_PATH),
            {QStringLiteral("sql"), QStringLiteral("--datos"), data.folder(), QStringLiteral("SELECT NOMBRE FROM EMPRESA")});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    EXPECT_EQ(QString::fromUtf8(p.readAllStandardOutput()).trimmed(), QStringLiteral("ABIERTA"));
}

} // namespace

namespace {

TEST(DataFolder, AFailedCreationLeavesNothingAndCanBeRetried)
{
    QTemporaryDir tmp;
    const QString folder = tmp.path() + QStringLiteral("/nueva");
    DataFolderOptions failing;
    failing.seedMunicipios = false;
    failing.fill = [](Tdm&) { throw DataFolderError(QStringLiteral("fallo a medias")); };
    EXPECT_THROW(createDataFolder(folder, failing), DataFolderError);
    EXPECT_FALSE(folderHasData(folder));
    EXPECT_FALSE(QFile::exists(folder + QStringLiteral("/libreria.dll")));

    DataFolderOptions plain;
    plain.seedMunicipios = false;
    EXPECT_NO_THROW(createDataFolder(folder, plain));
    EXPECT_TRUE(folderHasData(folder));
}

TEST(SqlScripts, TerminatorsLiteralsCommentsAndCommits)
{
    const QStringList s = splitSqlScript(QStringLiteral(
        "-- a comment; with a semicolon\n"
        "CREATE TABLE T (A VARCHAR(10));\n"
        "INSERT INTO T VALUES ('x;y');  /* ; inside */\n"
        "SET TERM ^ ;\n"
        "CREATE PROCEDURE P RETURNS (X INTEGER) AS BEGIN X = 1; SUSPEND; END^\n"
        "SET TERM ; ^\n"
        "SET SQL DIALECT 1;\n"
        "commit work;\n"
        "INSERT INTO T VALUES ('it''s');"));
    ASSERT_EQ(s.size(), 5);
    EXPECT_EQ(s[0], QStringLiteral("CREATE TABLE T (A VARCHAR(10))"));
    EXPECT_EQ(s[1], QStringLiteral("INSERT INTO T VALUES ('x;y')"));
    EXPECT_TRUE(s[2].startsWith(QStringLiteral("CREATE PROCEDURE P")));
    EXPECT_TRUE(s[2].endsWith(QStringLiteral("SUSPEND; END")));
    EXPECT_EQ(s[3], QStringLiteral("commit work"));

    test::TestData data;
    Tdm& d = data.dm();
    runSqlScript(d.datos, d.Transacion,
                 QStringLiteral("CREATE TABLE PRUEBA (A VARCHAR(10));\nCOMMIT WORK;\nINSERT INTO PRUEBA VALUES ('ñ;');"));
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT A FROM PRUEBA")).toString(), QStringLiteral("ñ;"));
}

} // namespace
