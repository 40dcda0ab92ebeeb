#include "dataset.h"
#include "dm.h"
#include "testdata.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace tv;

namespace {

class DataSetTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (int i = 1; i <= 5; ++i)
            Query::execute(d.datos, d.Transacion,
                           QStringLiteral("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (%1, 46250, 'ZONA %1')")
                               .arg(100 + i));
        d.Transacion.commitRetaining();
        ds.setSelectSQL(QStringLiteral("SELECT CODIGO, CODMUNIINE, DESCRIPCION FROM ZONAS WHERE CODIGO > 100 ORDER BY CODIGO"));
        ds.setUpdateSql({QStringLiteral("SELECT CODIGO, CODMUNIINE, DESCRIPCION FROM ZONAS WHERE CODIGO = :CODIGO"),
                         QStringLiteral("UPDATE ZONAS SET DESCRIPCION = :DESCRIPCION, CODMUNIINE = :CODMUNIINE "
                                        "WHERE CODIGO = :OLD_CODIGO"),
                         QStringLiteral("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) "
                                        "VALUES (:CODIGO, :CODMUNIINE, :DESCRIPCION)"),
                         QStringLiteral("DELETE FROM ZONAS WHERE CODIGO = :OLD_CODIGO")});
    }

    QString stored(int codigo)
    {
        return Query::scalar(d.datos, d.Transacion,
                             QStringLiteral("SELECT DESCRIPCION FROM ZONAS WHERE CODIGO = %1").arg(codigo))
            .toString();
    }

    test::TestData data;
    Tdm& d = data.dm();
    DataSet ds{d.datos, d.Transacion};
};

TEST_F(DataSetTest, OpensLazilyAndNavigates)
{
    ds.open();
    EXPECT_EQ(ds.state(), DataSet::State::Browse);
    // One table with a key: read by key, a page of keys at once (all five here).
    EXPECT_TRUE(ds.readsByKey());
    EXPECT_EQ(ds.recordCount(), 5);
    EXPECT_FALSE(ds.canFetchMore());
    EXPECT_EQ(ds.fieldByName(QStringLiteral("descripcion")).asString(), QStringLiteral("ZONA 101"));
    ds.next();
    ds.next();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 103);
    ds.last();
    EXPECT_EQ(ds.recordCount(), 5);
    EXPECT_TRUE(ds.eof());
    ds.next();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 105);
    ds.first();
    ds.prior();
    EXPECT_TRUE(ds.bof());
    EXPECT_TRUE(ds.locate(QStringLiteral("DESCRIPCION"), QStringLiteral("ZONA 104")));
    EXPECT_EQ(ds.recNo(), 3);
    EXPECT_FALSE(ds.locate(QStringLiteral("DESCRIPCION"), QStringLiteral("NINGUNA")));
    EXPECT_EQ(ds.recNo(), 3);
}

TEST_F(DataSetTest, EditPostAndApplyWritesTheRow)
{
    ds.open();
    EXPECT_THROW(ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("X")), DataSetError);
    ds.edit();
    EXPECT_EQ(ds.state(), DataSet::State::Edit);
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("CENTRO"));
    EXPECT_EQ(ds.fieldByName(QStringLiteral("DESCRIPCION")).oldValue().toString(), QStringLiteral("ZONA 101"));
    ds.post();
    EXPECT_EQ(ds.state(), DataSet::State::Browse);
    EXPECT_TRUE(ds.updatesPending());
    EXPECT_EQ(stored(101), QStringLiteral("ZONA 101")); // cached until applied
    ds.applyUpdates();
    EXPECT_FALSE(ds.updatesPending());
    EXPECT_EQ(stored(101), QStringLiteral("CENTRO"));
}

TEST_F(DataSetTest, InsertCancelAndRemove)
{
    ds.onNewRecord += [](DataSet& s) { s.fieldByName(QStringLiteral("CODMUNIINE")).setAsInteger(46250); };
    ds.open();
    ds.fetchAll();
    ds.append();
    EXPECT_EQ(ds.state(), DataSet::State::Insert);
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODMUNIINE")).asInteger(), 46250);
    ds.fieldByName(QStringLiteral("CODIGO")).setAsInteger(200);
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("PLAYA"));
    ds.cancel();
    EXPECT_EQ(ds.recordCount(), 5);
    EXPECT_EQ(ds.state(), DataSet::State::Browse);

    ds.append();
    ds.fieldByName(QStringLiteral("CODIGO")).setAsInteger(200);
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("PLAYA"));
    ds.post();
    ASSERT_TRUE(ds.locate(QStringLiteral("CODIGO"), 102));
    ds.remove();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 103);
    ds.applyUpdates();
    EXPECT_EQ(stored(200), QStringLiteral("PLAYA"));
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT COUNT(*) FROM ZONAS WHERE CODIGO = 102")).toInt(), 0);
}

TEST_F(DataSetTest, RefusingHooksLeaveRowAndStateAsTheyWere)
{
    bool refuse = true;
    ds.beforeEdit += [&](DataSet&) { if (refuse) throw Abort(); };
    ds.beforePost += [&](DataSet& s) {
        if (s.fieldByName(QStringLiteral("DESCRIPCION")).asString().isEmpty())
            throw Abort();
    };
    ds.beforeDelete += [&](DataSet&) { if (refuse) throw Abort(); };
    ds.open();
    EXPECT_THROW(ds.edit(), Abort);
    EXPECT_EQ(ds.state(), DataSet::State::Browse);
    EXPECT_THROW(ds.remove(), Abort);
    EXPECT_EQ(ds.recordCount(), 5);
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 101);
    EXPECT_FALSE(ds.updatesPending());

    refuse = false;
    ds.edit();
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QString());
    EXPECT_THROW(ds.post(), Abort);
    EXPECT_EQ(ds.state(), DataSet::State::Edit); // still editing, value kept for the user to fix
    EXPECT_EQ(ds.fieldByName(QStringLiteral("DESCRIPCION")).asString(), QString());
    ds.cancel();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("DESCRIPCION")).asString(), QStringLiteral("ZONA 101"));
    EXPECT_FALSE(ds.updatesPending());

    // A refused new record is not added.
    ds.onNewRecord += [](DataSet&) { throw Abort(); };
    EXPECT_THROW(ds.insert(), Abort);
    EXPECT_EQ(ds.state(), DataSet::State::Browse);
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 101);
}

TEST_F(DataSetTest, OnChangeRefusalRestoresTheFieldAndCalcFieldsFollowRows)
{
    ds.addCalculatedField(QStringLiteral("ETIQUETA"));
    ds.onCalcFields += [](DataSet& s) {
        s.fieldByName(QStringLiteral("ETIQUETA"))
            .setAsString(QStringLiteral("%1-%2").arg(s.fieldByName(QStringLiteral("CODIGO")).asInteger())
                             .arg(s.fieldByName(QStringLiteral("DESCRIPCION")).asString()));
    };
    ds.setOnChange(QStringLiteral("DESCRIPCION"), [](DataSetField f) {
        if (f.asString().contains(QLatin1Char('!')))
            throw Abort();
    });
    ds.open();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("ETIQUETA")).asString(), QStringLiteral("101-ZONA 101"));
    ds.next();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("ETIQUETA")).asString(), QStringLiteral("102-ZONA 102"));
    ds.edit();
    EXPECT_THROW(ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("MAL!")), Abort);
    EXPECT_EQ(ds.fieldByName(QStringLiteral("DESCRIPCION")).asString(), QStringLiteral("ZONA 102"));
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("BIEN"));
    ds.post();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("ETIQUETA")).asString(), QStringLiteral("102-BIEN"));
}

TEST_F(DataSetTest, MovingAwayPostsTheEditAndRefreshKeepsPosition)
{
    ds.open();
    ds.edit();
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("NORTE"));
    ds.next();
    EXPECT_EQ(ds.state(), DataSet::State::Browse);
    ds.applyUpdates();
    d.Transacion.commitRetaining();
    ds.next();
    ds.next();
    ds.refreshKeepingPosition(QStringLiteral("CODIGO"));
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 104);
    ds.first();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("DESCRIPCION")).asString(), QStringLiteral("NORTE"));
}

TEST_F(DataSetTest, ARefusedDeleteCanBeUndoneInPlace)
{
    DataSet::UpdateSql refusing = ds.updateSql();
    refusing.remove = QStringLiteral("DELETE FROM ZONAS WHERE CODIGO = :OLD_CODIGO AND 1/0 = 1");
    ds.setUpdateSql(refusing);
    int scrolls = 0;
    ds.afterScroll += [&](DataSet&) { ++scrolls; };
    ds.open();
    ds.fetchAll();
    ds.moveTo(1);
    ds.remove();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 103);
    EXPECT_THROW(ds.applyUpdates(), DatabaseError);
    scrolls = 0;
    ds.cancelUpdates();
    EXPECT_EQ(ds.recordCount(), 5);
    EXPECT_EQ(ds.recNo(), 1);
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 102);
    EXPECT_EQ(scrolls, 1) << "screens follow the row put back";
    QList<int> order;
    for (int r = 0; r < ds.recordCount(); ++r)
        order.append(ds.value(r, 0).toInt());
    EXPECT_EQ(order, (QList<int>{101, 102, 103, 104, 105}));
}

TEST_F(DataSetTest, TableWithoutKeyIsUpdatedByComparingEveryColumn)
{
    DataSet conf(d.datos, d.Transacion);
    conf.setTable(QStringLiteral("CONFIGURACION"));
    conf.open();
    ASSERT_EQ(conf.recordCount(), 1);
    EXPECT_TRUE(conf.updateSql().modify.startsWith(QStringLiteral("UPDATE CONFIGURACION SET ")));
    conf.edit();
    conf.fieldByName(QStringLiteral("DESACTIVAR_MENSAJES")).setAsString(QStringLiteral("S"));
    conf.post();
    conf.applyUpdates();
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT DESACTIVAR_MENSAJES FROM CONFIGURACION")).toString(),
              QStringLiteral("S"));
}

TEST_F(DataSetTest, SignalsTellGridsWhatChanged)
{
    QSignalSpy fetched(&ds, &DataSet::rowsFetched);
    QSignalSpy changed(&ds, &DataSet::rowChanged);
    QSignalSpy states(&ds, &DataSet::stateChanged);
    // Read as it stands (a join), one row at a time.
    ds.setSelectSQL(QStringLiteral("SELECT Z.CODIGO, Z.CODMUNIINE, Z.DESCRIPCION FROM ZONAS Z JOIN RDB$DATABASE R "
                                   "ON 1 = 1 WHERE Z.CODIGO > 100 ORDER BY Z.CODIGO"));
    ds.open();
    ds.fetchMore(2);
    EXPECT_EQ(fetched.count(), 1);
    EXPECT_EQ(fetched.at(0).at(0).toInt(), 1);
    EXPECT_EQ(fetched.at(0).at(1).toInt(), 2);
    ds.edit();
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("A"));
    EXPECT_GE(changed.count(), 1);
    EXPECT_GE(states.count(), 2);
}

} // namespace

namespace {

TEST_F(DataSetTest, AHardCommitEndsTheCursorButKeepsTheRowsRead)
{
    ds.setSelectSQL(QStringLiteral("SELECT Z.CODIGO, Z.CODMUNIINE, Z.DESCRIPCION FROM ZONAS Z JOIN RDB$DATABASE R "
                                   "ON 1 = 1 WHERE Z.CODIGO > 100 ORDER BY Z.CODIGO"));
    ds.open();
    ds.fetchMore(1);
    ASSERT_EQ(ds.recordCount(), 2);
    d.Transacion.commit();
    EXPECT_FALSE(ds.canFetchMore());
    ds.next();
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 102);
    ds.next(); // nothing more to read: stays on the last row read
    EXPECT_TRUE(ds.eof());
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 102);
    ds.refreshKeepingPosition(QStringLiteral("CODIGO")); // a new transaction starts on demand
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 102);
}

TEST_F(DataSetTest, PreparedStatementsSurviveClosingAndReopeningTheConnection)
{
    Query q(d.datos, d.Transacion, QStringLiteral("SELECT DESCRIPCION FROM ZONAS WHERE CODIGO = :C"));
    q.paramByName(QStringLiteral("C")).setAsInteger(101);
    q.open();
    EXPECT_EQ(q.field(0).asString(), QStringLiteral("ZONA 101"));
    q.close();
    Query::execute(d.datos, d.Transacion, QStringLiteral("UPDATE ZONAS SET DESCRIPCION = 'GUARDADA' WHERE CODIGO = 101"));
    d.datos.close(); // commits what the attachment held
    d.datos.open();
    q.open();
    EXPECT_EQ(q.field(0).asString(), QStringLiteral("GUARDADA"));
}

} // namespace
