// Two workstations through a real Firebird server: the private server that
// test.sh starts (TEJAVISTA_TEST_SERVER = host/port, with a folder the server
// may use in TEJAVISTA_TEST_SERVER_DIR).
#include "dataset.h"
#include "dm.h"
#include "testdata.h"

#include <QDir>
#include <QFile>
#include <QUuid>
#include <gtest/gtest.h>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

using namespace tv;

namespace {

class ServerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        server = qEnvironmentVariable("TEJAVISTA_TEST_SERVER");
        const QString base = qEnvironmentVariable("TEJAVISTA_TEST_SERVER_DIR");
        if (server.isEmpty() || base.isEmpty())
            GTEST_SKIP() << "no private Firebird server (run ./test.sh)";
        const passwd* fb = getpwnam("firebird");
        if (!fb)
            GTEST_SKIP() << "no firebird user on this machine";
        // The server opens the files as its own user: copy the template in
        // and hand the copies over.
        folder = base + QLatin1Char('/') + QUuid::createUuid().toString(QUuid::Id128);
        QDir().mkpath(folder + QStringLiteral("/DATOS"));
        for (const QString& f : {Tdm::kDatosFile, Tdm::kImagenesFile, Tdm::kInformesFile}) {
            ASSERT_TRUE(QFile::copy(test::templateFolder() + f, folder + f));
            ASSERT_EQ(chown(QFile::encodeName(folder + f).constData(), fb->pw_uid, fb->pw_gid), 0);
        }
        chown(QFile::encodeName(folder + QStringLiteral("/DATOS")).constData(), fb->pw_uid, fb->pw_gid);
        dataPath = server + QLatin1Char(':') + folder;
    }

    void TearDown() override
    {
        if (!folder.isEmpty())
            QDir(folder).removeRecursively();
    }

    QString server;
    QString folder;
    QString dataPath;
};

TEST_F(ServerTest, TheDataModuleOpensEveryConnectionThroughTheServer)
{
    Tdm ws(dataPath);
    EXPECT_FALSE(ws.isLocal());
    ws.abrirConexiones();
    EXPECT_TRUE(ws.datos.databaseName().startsWith(server + QLatin1Char(':')));
    EXPECT_TRUE(ws.datos.databaseName().endsWith(QStringLiteral("/DATOS/datisp68.IB")));
    EXPECT_EQ(Query::scalar(ws.datos, ws.Transacion, QStringLiteral("SELECT COUNT(*) FROM FAMILIA WHERE CODIGO <= 6")).toInt(), 6);
    EXPECT_EQ(Query::scalar(ws.Imagenes, ws.Transacion, QStringLiteral("SELECT COUNT(*) FROM IMAGENES")).toInt(), 0);
    // Spanish text and the euro sign survive the wire.
    Query::execute(ws.datos, ws.Transacion, QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'Peñíscola Inmuebles 5 €'"));
    EXPECT_EQ(Query::scalar(ws.datos, ws.Transacion, QStringLiteral("SELECT NOMBRE FROM EMPRESA")).toString(),
              QStringLiteral("Peñíscola Inmuebles 5 €"));
    ws.Transacion.commit();
    ws.cerrarConexiones();
    ws.datosrusos.close();
}

TEST_F(ServerTest, TwoWorkstationsSeeEachOthersCommittedWork)
{
    Tdm a(dataPath);
    Tdm b(dataPath);
    a.datos.open();
    b.datos.open();
    Query::execute(a.datos, a.Transacion, QStringLiteral("INSERT INTO ZONAS (CODIGO, DESCRIPCION) VALUES (500, 'PUERTO')"));
    EXPECT_EQ(Query::scalar(b.datos, b.Transacion, QStringLiteral("SELECT COUNT(*) FROM ZONAS WHERE CODIGO = 500")).toInt(), 0);
    a.Transacion.commitRetaining();
    EXPECT_EQ(Query::scalar(b.datos, b.Transacion, QStringLiteral("SELECT DESCRIPCION FROM ZONAS WHERE CODIGO = 500")).toString(),
              QStringLiteral("PUERTO"));
    a.Transacion.commit();
    b.Transacion.commit();
    a.datos.close();
    b.datos.close();
}

TEST_F(ServerTest, SecondWriterOfTheSameRowFailsAtOnceAndTheFirstKeepsItsData)
{
    Tdm a(dataPath);
    Tdm b(dataPath);
    a.datos.open();
    b.datos.open();
    Query::execute(a.datos, a.Transacion, QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'ESTACION A'"));
    try {
        Query::execute(b.datos, b.Transacion, QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'ESTACION B'"));
        FAIL() << "no lock conflict";
    } catch (const DatabaseError& e) {
        EXPECT_TRUE(e.isLockConflict()) << e.message().toStdString();
    }
    b.Transacion.rollback();
    a.Transacion.commit();
    EXPECT_EQ(Query::scalar(b.datos, b.Transacion, QStringLiteral("SELECT NOMBRE FROM EMPRESA")).toString(),
              QStringLiteral("ESTACION A"));
    b.Transacion.commit();
    a.datos.close();
    b.datos.close();
}

TEST_F(ServerTest, SavingARowAnotherWorkstationDeletedOrChangedIsReportedAndStaysPending)
{
    Tdm a(dataPath);
    Tdm b(dataPath);
    a.datos.open();
    b.datos.open();
    for (int i = 1; i <= 3; ++i)
        Query::execute(a.datos, a.Transacion,
                       QStringLiteral("INSERT INTO ZONAS (CODIGO, DESCRIPCION) VALUES (%1, 'ZONA %1')").arg(600 + i));
    a.Transacion.commitRetaining();
    DataSet ds(a.datos, a.Transacion);
    ds.setSelectSQL(QStringLiteral("SELECT * FROM ZONAS WHERE CODIGO > 600 ORDER BY CODIGO"));
    ds.setUpdateSql({QStringLiteral("select * from zonas where codigo =:OLD_CODIGO"),
                     QStringLiteral("update zonas set descripcion =:DESCRIPCION where codigo =:OLD_CODIGO"), {},
                     QStringLiteral("delete from zonas where codigo =:OLD_CODIGO")});
    ds.open();
    ds.fetchAll();
    ds.value(2, 0); // every row read before the other workstation acts
    Query::execute(b.datos, b.Transacion, QStringLiteral("DELETE FROM ZONAS WHERE CODIGO = 601"));
    Query::execute(b.datos, b.Transacion, QStringLiteral("UPDATE ZONAS SET DESCRIPCION = 'DE B' WHERE CODIGO = 603"));
    b.Transacion.commit();

    ds.edit();
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("DE A"));
    ds.post();
    EXPECT_THROW(ds.applyUpdates(), RecordChangedError);
    EXPECT_TRUE(ds.updatesPending());
    ds.cancelUpdates();
    ds.last();
    ds.remove();
    EXPECT_THROW(ds.applyUpdates(), RecordChangedError);
    EXPECT_TRUE(ds.updatesPending());
    a.Transacion.commitRetaining();
    EXPECT_EQ(Query::scalar(b.datos, b.Transacion, QStringLiteral("SELECT DESCRIPCION FROM ZONAS WHERE CODIGO = 603")).toString(),
              QStringLiteral("DE B"));
    ds.cancelUpdates();
    a.Transacion.commit();
    b.Transacion.commit();
    a.datos.close();
    b.datos.close();
}

TEST_F(ServerTest, WrongServerPasswordGivesTheEngineMessage)
{
    Database db(server + QLatin1Char(':') + folder + Tdm::kDatosFile);
    db.setPassword(QStringLiteral("otra"));
    try {
        db.open();
        FAIL() << "attached with a wrong password";
    } catch (const DatabaseError& e) {
        EXPECT_EQ(e.gdsCode(), 335544472L) << e.message().toStdString();
    }
}

} // namespace
