#include "datasetmodel.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include <QSignalSpy>
#include <QTableView>
#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;
using tv::ui::ColumnFormat;
using tv::ui::DataSetModel;

namespace {

// 100,000 numbered rows without a table: five cross-joined digit sets.
const QString kHundredThousand = QStringLiteral(
    "WITH D AS (SELECT 0 AS N FROM RDB$DATABASE UNION ALL SELECT 1 FROM RDB$DATABASE UNION ALL "
    "SELECT 2 FROM RDB$DATABASE UNION ALL SELECT 3 FROM RDB$DATABASE UNION ALL SELECT 4 FROM RDB$DATABASE "
    "UNION ALL SELECT 5 FROM RDB$DATABASE UNION ALL SELECT 6 FROM RDB$DATABASE UNION ALL "
    "SELECT 7 FROM RDB$DATABASE UNION ALL SELECT 8 FROM RDB$DATABASE UNION ALL SELECT 9 FROM RDB$DATABASE) "
    "SELECT A.N * 10000 + B.N * 1000 + C.N * 100 + E.N * 10 + F.N AS NUMERO FROM D A, D B, D C, D E, D F "
    "ORDER BY 1");

void addAgent(Tdm& dm, int code, const QString& name)
{
    Query q(dm.datos, dm.Transacion, QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM) VALUES (:C, :N)"));
    q.paramByName(QStringLiteral("C")).setAsInteger(code);
    q.paramByName(QStringLiteral("N")).setAsString(name);
    q.exec();
}

} // namespace

TEST(DataSetModel, HundredThousandRowsOpenWithoutReadingThemAll)
{
    test::TestData data;
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setSelectSQL(kHundredThousand);
    ds.open();
    DataSetModel model(&ds);
    EXPECT_LT(model.rowCount(), 10) << "opening must not fetch the list";
    EXPECT_TRUE(model.canFetchMore({}));

    QTableView view;
    view.setModel(&model);
    view.resize(400, 300);
    view.show();
    QCoreApplication::processEvents();
    EXPECT_GT(model.rowCount(), 0);
    EXPECT_LT(model.rowCount(), 2000) << "a view only asks for what it shows";

    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    const int before = model.rowCount();
    model.fetchMore({});
    EXPECT_EQ(model.rowCount(), before + 256);
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted.at(0).at(1).toInt(), before);
    EXPECT_EQ(inserted.at(0).at(2).toInt(), before + 255);

    ds.fetchAll();
    EXPECT_EQ(model.rowCount(), 100000);
    EXPECT_FALSE(model.canFetchMore({}));
    EXPECT_EQ(model.data(model.index(99999, 0)).toString(), QStringLiteral("99999"));
}

TEST(DataSetModel, SpanishDatesMoneyAndTitles)
{
    test::TestData data;
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setSelectSQL(QStringLiteral("SELECT CAST('22.11.2026' AS DATE) AS FECHA, CAST('22.11.2026 09:30' AS DATE) AS "
                                   "CITA, 1234.5 AS PRECIO, 'S' AS ACTIVADO, 'Peñíscola' AS MUNICIPIO, "
                                   "CAST(NULL AS INTEGER) AS VACIO FROM RDB$DATABASE"));
    ds.open();
    DataSetModel model(&ds);
    model.setColumnTitle(QStringLiteral("fecha"), QStringLiteral("Fecha de alta"));
    model.setColumnFormat(QStringLiteral("PRECIO"), ColumnFormat::Money);
    model.setColumnFormat(QStringLiteral("ACTIVADO"), ColumnFormat::Flag);

    ASSERT_EQ(model.columnCount(), 6);
    EXPECT_EQ(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Fecha de alta"));
    EXPECT_EQ(model.headerData(2, Qt::Horizontal).toString(), QStringLiteral("PRECIO"));
    EXPECT_EQ(model.data(model.index(0, 0)).toString(), QStringLiteral("22/11/2026"));
    EXPECT_EQ(model.data(model.index(0, 1)).toString(), QStringLiteral("22/11/2026 09:30"));
    EXPECT_EQ(model.data(model.index(0, 2)).toString(), QStringLiteral("1.234,50 €"));
    EXPECT_EQ(model.data(model.index(0, 2), Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight,
              Qt::AlignRight);
    EXPECT_EQ(model.data(model.index(0, 3), Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Checked);
    EXPECT_EQ(model.data(model.index(0, 4)).toString(), QStringLiteral("Peñíscola"));
    EXPECT_EQ(model.data(model.index(0, 5)).toString(), QString());

    EXPECT_EQ(DataSetModel::displayText(1234567.891, ColumnFormat::Number), QStringLiteral("1.234.567,89"));
    // A stored number no amount can hold is shown plainly, never thrown into the painting.
    EXPECT_EQ(DataSetModel::displayText(1e18, ColumnFormat::Money), QStringLiteral("1000000000000000000.00"));
    EXPECT_EQ(DataSetModel::displayText(1e18, ColumnFormat::Number), QStringLiteral("1000000000000000000.00"));
    EXPECT_EQ(DataSetModel::displayText(QDateTime(QDate(2026, 1, 5), QTime(0, 0)), ColumnFormat::Auto),
              QStringLiteral("05/01/2026"));
}

TEST(DataSetModel, ChosenColumnsAndRowsFollowTheDataSet)
{
    test::TestData data;
    for (int i = 1; i <= 3; ++i)
        addAgent(data.dm(), i, QStringLiteral("AGENTE %1").arg(i));
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setTable(QStringLiteral("AGENTES"), {QStringLiteral("CODIGO")});
    ds.setSelectSQL(QStringLiteral("SELECT * FROM AGENTES ORDER BY CODIGO"));
    ds.open();
    DataSetModel model(&ds);
    model.setColumns({{QStringLiteral("APEYNOM"), QStringLiteral("Nombre")}, {QStringLiteral("CODIGO"), QStringLiteral("Código")}});
    ASSERT_EQ(model.columnCount(), 2);
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Código"));
    ds.fetchAll();
    ASSERT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.data(model.index(2, 0)).toString(), QStringLiteral("AGENTE 3"));

    // Typing changes the row: the grid repaints it.
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    ds.moveTo(1);
    ds.edit();
    ds.fieldByName(QStringLiteral("APEYNOM")).setAsString(QStringLiteral("OTRO"));
    EXPECT_GE(changed.count(), 1);
    EXPECT_EQ(model.data(model.index(1, 0)).toString(), QStringLiteral("OTRO"));
    ds.cancel();
    EXPECT_EQ(model.data(model.index(1, 0)).toString(), QStringLiteral("AGENTE 2"));

    // A new row appears where it is inserted, and goes when it is cancelled or removed.
    ds.insert();
    EXPECT_EQ(model.rowCount(), 4);
    ds.cancel();
    EXPECT_EQ(model.rowCount(), 3);
    ds.moveTo(0);
    ds.remove();
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.data(model.index(0, 0)).toString(), QStringLiteral("AGENTE 2"));

    // The removal is still pending: closing would drop it.
    EXPECT_THROW(ds.close(), PendingChangesError);
    EXPECT_EQ(model.rowCount(), 2);
    ds.cancelUpdates();
    ds.close();
    EXPECT_EQ(model.rowCount(), 0);
}
