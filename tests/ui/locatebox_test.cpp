#include "dataset.h"
#include "locatebox.h"
#include "query.h"
#include "testdata.h"

#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;

namespace {

bool startsWith(const QString& value, const QString& text)
{
    return value.startsWith(text, Qt::CaseInsensitive);
}

class LocateBox : public ::testing::Test {
protected:
    void exec(const char* sql) { Query::execute(data.dm().datos, data.dm().Transacion, QString::fromUtf8(sql)); }

    // The municipalities by name, editable (the table's statements known).
    std::unique_ptr<DataSet> municipios()
    {
        auto ds = std::make_unique<DataSet>(data.dm().datos, data.dm().Transacion);
        ds->setTable(QStringLiteral("MUNICIPIOS"), {QStringLiteral("ID")});
        ds->setSelectSQL(QStringLiteral("SELECT * FROM MUNICIPIOS ORDER BY DESMUNIINE, ID"));
        ds->open();
        return ds;
    }

    QString value(DataSet& ds, const char* field) { return ds.fieldByName(QString::fromUtf8(field)).asString(); }

    test::TestData data;
};

TEST_F(LocateBox, TypingMovesToTheFirstRowThatStartsWithTheText)
{
    auto ds = municipios();
    ui::LocateBox box(*ds, QStringLiteral("desmuniine"));
    QTest::keyClicks(&box, "madr");
    const int first = ds->recNo();
    ASSERT_GT(first, 0);
    EXPECT_TRUE(startsWith(value(*ds, "DESMUNIINE"), QStringLiteral("madr"))) << value(*ds, "DESMUNIINE").toStdString();
    // It is the first such row: the one before does not start so.
    ds->moveTo(first - 1);
    EXPECT_FALSE(startsWith(value(*ds, "DESMUNIINE"), QStringLiteral("madr")));

    QTest::keyClicks(&box, "id");
    EXPECT_EQ(value(*ds, "DESMUNIINE"), QStringLiteral("Madrid"));
    const int madrid = ds->recNo();
    // Nothing starts so: the row stays.
    QTest::keyClicks(&box, "xx");
    EXPECT_EQ(ds->recNo(), madrid);
    // Case does not matter.
    box.setText(QStringLiteral("PEÑA"));
    EXPECT_TRUE(startsWith(value(*ds, "DESMUNIINE"), QStringLiteral("Peña"))) << value(*ds, "DESMUNIINE").toStdString();
}

TEST_F(LocateBox, EmptyTextLeavesTheRow)
{
    auto ds = municipios();
    ui::LocateBox box(*ds, QStringLiteral("DESMUNIINE"));
    box.setText(QStringLiteral("zara"));
    const int row = ds->recNo();
    EXPECT_TRUE(startsWith(value(*ds, "DESMUNIINE"), QStringLiteral("zara")));
    box.clear();
    EXPECT_EQ(ds->recNo(), row);
    EXPECT_FALSE(box.locateText());
}

TEST_F(LocateBox, DoesNothingWhileTheDataSetIsEdited)
{
    auto ds = municipios();
    ui::LocateBox box(*ds, QStringLiteral("DESMUNIINE"));
    ds->edit();
    ds->fieldByName(QStringLiteral("DESPAIS")).setValue(QStringLiteral("PORTUGAL"));
    const int row = ds->recNo();
    box.setText(QStringLiteral("zara"));
    EXPECT_EQ(ds->recNo(), row);
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_FALSE(ds->updatesPending()); // not posted
    EXPECT_EQ(value(*ds, "DESPAIS"), QStringLiteral("PORTUGAL"));

    ds->cancel();
    EXPECT_TRUE(box.locateText());
    EXPECT_TRUE(startsWith(value(*ds, "DESMUNIINE"), QStringLiteral("zara")));
}

TEST_F(LocateBox, FourBoxesOverBanksAndBranches)
{
    exec("INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO) VALUES ('0049', 'BANCO SANTANDER')");
    exec("INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO) VALUES ('0182', 'BANCO BILBAO VIZCAYA ARGENTARIA')");
    exec("INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO) VALUES ('2100', 'CAIXABANK')");
    exec("INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR) VALUES ('0049', '0001', 'MADRID CENTRAL')");
    exec("INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR) VALUES ('0182', '0001', 'BILBAO GRAN VIA')");
    exec("INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR) VALUES ('0182', '4321', 'VALENCIA COLON')");
    exec("INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR) VALUES ('2100', '0600', 'BARCELONA DIAGONAL')");
    // A join, so the rows are searched where they are held.
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setSelectSQL(QStringLiteral("SELECT S.CODBANCO, B.DESBANCO, S.CODSUCUR, S.DESSUCUR FROM COMUN_SUCURSALES S "
                                   "JOIN COMUN_BANCOS B ON B.CODBANCO = S.CODBANCO ORDER BY S.CODBANCO, S.CODSUCUR"));
    ds.open();
    ASSERT_FALSE(ds.readsByKey());
    ui::LocateBox banco(ds, QStringLiteral("CODBANCO"));
    ui::LocateBox nombre(ds, QStringLiteral("DESBANCO"));
    ui::LocateBox sucursal(ds, QStringLiteral("CODSUCUR"));
    ui::LocateBox direccion(ds, QStringLiteral("DESSUCUR"));

    QTest::keyClicks(&banco, "01");
    EXPECT_EQ(ds.recNo(), 1);
    QTest::keyClicks(&nombre, "caixa");
    EXPECT_EQ(ds.recNo(), 3);
    QTest::keyClicks(&sucursal, "43");
    EXPECT_EQ(ds.recNo(), 2);
    QTest::keyClicks(&direccion, "madrid");
    EXPECT_EQ(ds.recNo(), 0);
    EXPECT_EQ(value(ds, "DESBANCO"), QStringLiteral("BANCO SANTANDER"));
}

} // namespace
