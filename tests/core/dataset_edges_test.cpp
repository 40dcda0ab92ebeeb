// Faults found by reading the data layer: each test shows one thing a user
// would run into.
#include "database.h"
#include "dataset.h"
#include "dm.h"
#include "testdata.h"
#include "transaction.h"

#include <gtest/gtest.h>

using namespace tv;

namespace {

class DataSetEdges : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (int i = 1; i <= 5; ++i)
            Query::execute(d.datos, d.Transacion,
                           QStringLiteral("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (%1, 46250, 'Zona %1')")
                               .arg(100 + i));
        d.Transacion.commitRetaining();
    }

    void zonas(DataSet& ds, const QString& select)
    {
        ds.setSelectSQL(select);
        ds.setUpdateSql({QStringLiteral("select * from zonas where codigo =:OLD_CODIGO"),
                         QStringLiteral("update zonas set codigo =:CODIGO, descripcion =:DESCRIPCION, "
                                        "codmuniine =:CODMUNIINE, observaciones =:OBSERVACIONES "
                                        "where codigo =:OLD_CODIGO"),
                         QStringLiteral("insert into zonas (codigo, codmuniine, descripcion, observaciones) "
                                        "values (:CODIGO, :CODMUNIINE, :DESCRIPCION, :OBSERVACIONES)"),
                         QStringLiteral("delete from zonas where codigo =:OLD_CODIGO")});
    }

    static QList<int> codes(DataSet& ds)
    {
        QList<int> out;
        ds.fetchAll();
        const int col = ds.fieldIndex(QStringLiteral("CODIGO"));
        for (int r = 0; r < ds.recordCount(); ++r)
            out.append(ds.value(r, col).toInt());
        return out;
    }

    test::TestData data;
    Tdm& d = data.dm();
};

const QString kByKey = QStringLiteral("SELECT * FROM ZONAS WHERE CODIGO > 100 ORDER BY CODIGO");
// FIRST keeps the same rows but makes the data set read the select as it stands.
const QString kAsItStands = QStringLiteral("SELECT FIRST 1000 * FROM ZONAS WHERE CODIGO > 100 ORDER BY CODIGO");

TEST_F(DataSetEdges, CancelUpdatesPutsADeletedRowBackInItsPlaceAfterAPendingInsert)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds, kByKey);
    ds.open();
    ds.fetchAll();
    ds.insert(); // a new row before 101
    ds.fieldByName(QStringLiteral("CODIGO")).setAsInteger(200);
    ds.post();
    ds.moveTo(3); // 103
    ASSERT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 103);
    ds.remove();
    ds.cancelUpdates();
    EXPECT_EQ(codes(ds), (QList<int>{101, 102, 103, 104, 105}));
}

TEST_F(DataSetEdges, ARowInsertedAndSavedIsNotReadAgainWhenTheRestIsFetchedAsItStands)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds, kAsItStands);
    ds.open();
    ASSERT_FALSE(ds.readsByKey());
    ds.insert();
    ds.fieldByName(QStringLiteral("CODIGO")).setAsInteger(999);
    ds.post();
    ds.applyUpdates();
    EXPECT_EQ(codes(ds).count(999), 1);
    EXPECT_EQ(ds.recordCount(), 6);
}

TEST_F(DataSetEdges, LocateReadByKeyFindsASavedRowThatNoLongerMatchesTheSelectsWhere)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds, QStringLiteral("SELECT * FROM ZONAS WHERE CODMUNIINE = 46250 ORDER BY CODIGO"));
    ds.open();
    ASSERT_TRUE(ds.readsByKey());
    ds.edit();
    ds.fieldByName(QStringLiteral("CODMUNIINE")).setAsInteger(1);
    ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("Zona 103"));
    ds.post();
    ds.applyUpdates();
    ds.last();
    // The data set shows 101 first with that description.
    ASSERT_EQ(ds.value(0, ds.fieldIndex(QStringLiteral("DESCRIPCION"))).toString(), QStringLiteral("Zona 103"));
    ASSERT_TRUE(ds.locate(QStringLiteral("DESCRIPCION"), QStringLiteral("Zona 103")));
    EXPECT_EQ(ds.fieldByName(QStringLiteral("CODIGO")).asInteger(), 101) << "the first in the data set's order";
    EXPECT_TRUE(ds.locate(QStringLiteral("CODMUNIINE"), 1));
}

TEST_F(DataSetEdges, LocateReadByKeyFindsASavedInsertOutsideTheSelectsWhere)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds, kByKey);
    ds.open();
    ASSERT_TRUE(ds.readsByKey());
    ds.insert();
    ds.fieldByName(QStringLiteral("CODIGO")).setAsInteger(7);
    ds.post();
    ds.applyUpdates();
    ds.last();
    EXPECT_TRUE(ds.locate(QStringLiteral("CODIGO"), 7));
}

TEST_F(DataSetEdges, ALocateReadByKeyWithATextForANumberIsNotFoundRatherThanAnError)
{
    DataSet byKey(d.datos, d.Transacion);
    zonas(byKey, kByKey);
    byKey.open();
    ASSERT_TRUE(byKey.readsByKey());
    bool found = false;
    EXPECT_NO_THROW(found = byKey.locate(QStringLiteral("CODIGO"), QStringLiteral("abc")));
    EXPECT_FALSE(found);
}

TEST_F(DataSetEdges, AMasterPostRefusedByItsDetailLeavesBothInStep)
{
    DataSet master(d.datos, d.Transacion);
    zonas(master, kByKey);
    DataSet detail(d.datos, d.Transacion);
    zonas(detail, QStringLiteral("SELECT * FROM ZONAS WHERE CODMUNIINE =:CODMUNIINE ORDER BY CODIGO"));
    detail.setMasterSource(&master);
    master.open();
    ASSERT_TRUE(detail.isOpen());
    detail.edit();
    detail.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("Pendiente"));
    detail.post();

    master.edit();
    master.fieldByName(QStringLiteral("CODMUNIINE")).setAsInteger(1);
    EXPECT_THROW(master.post(), PendingChangesError);
    EXPECT_EQ(master.state(), DataSet::State::Edit) << "a refused post leaves the row being edited";
    EXPECT_EQ(detail.paramByName(QStringLiteral("CODMUNIINE")).value().toInt(), 46250)
        << "the detail still shows the rows of 46250";
}

TEST_F(DataSetEdges, ACalculatedFieldTheHookLeavesUnsetIsEmptyNotTheOldValue)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds, kByKey);
    ds.addCalculatedField(QStringLiteral("DOBLE"), {QStringLiteral("CODMUNIINE")});
    ds.onCalcFields += [](DataSet& s) {
        if (!s.fieldByName(QStringLiteral("CODMUNIINE")).isNull())
            s.fieldByName(QStringLiteral("DOBLE")).setAsInteger(s.fieldByName(QStringLiteral("CODMUNIINE")).asInteger() * 2);
    };
    ds.open();
    ASSERT_EQ(ds.fieldByName(QStringLiteral("DOBLE")).asInteger(), 92500);
    ds.edit();
    ds.fieldByName(QStringLiteral("CODMUNIINE")).clear();
    EXPECT_TRUE(ds.fieldByName(QStringLiteral("DOBLE")).isNull());
    ds.post();
    EXPECT_TRUE(ds.fieldByName(QStringLiteral("DOBLE")).isNull());
}

TEST_F(DataSetEdges, ASelectOrderedByAnAliasOpens)
{
    DataSet ds(d.datos, d.Transacion);
    ds.setSelectSQL(QStringLiteral("SELECT CODIGO, DESCRIPCION AS NOMBRE FROM ZONAS WHERE CODIGO > 100 ORDER BY NOMBRE DESC"));
    ASSERT_NO_THROW(ds.open());
    EXPECT_EQ(codes(ds), (QList<int>{105, 104, 103, 102, 101}));
}

} // namespace
