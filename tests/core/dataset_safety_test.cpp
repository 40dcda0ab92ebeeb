// What a data set must never do to a user's work: half-apply it, overwrite
// another workstation's change, or drop it on close; and what screens ask of
// it: metadata, locate, master-detail, several hook subscribers.
#include "database.h"
#include "dataset.h"
#include "dm.h"
#include "testdata.h"
#include "transaction.h"

#include <gtest/gtest.h>

using namespace tv;

namespace {

QString q(const QString& s)
{
    return s;
}

class Safety : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (int i = 1; i <= 5; ++i)
            Query::execute(d.datos, d.Transacion,
                           q("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (%1, 46250, 'Zona %1')").arg(100 + i));
        d.Transacion.commitRetaining();
    }

    // ZONAS through fixed statements, as a lookup screen has them.
    void zonas(DataSet& ds, const QString& select = q("SELECT * FROM ZONAS WHERE CODIGO > 100 ORDER BY CODIGO"))
    {
        ds.setSelectSQL(select);
        ds.setUpdateSql({q("select * from zonas where codigo =:OLD_CODIGO"),
                         q("update zonas set descripcion =:DESCRIPCION, codmuniine =:CODMUNIINE, "
                           "observaciones =:OBSERVACIONES where codigo =:OLD_CODIGO"),
                         q("insert into zonas (codigo, codmuniine, descripcion, observaciones) "
                           "values (:CODIGO, :CODMUNIINE, :DESCRIPCION, :OBSERVACIONES)"),
                         q("delete from zonas where codigo =:OLD_CODIGO")});
    }

    QString stored(int codigo)
    {
        return Query::scalar(d.datos, d.Transacion, q("SELECT DESCRIPCION FROM ZONAS WHERE CODIGO = %1").arg(codigo))
            .toString();
    }

    int count(const QString& where)
    {
        return Query::scalar(d.datos, d.Transacion, q("SELECT COUNT(*) FROM ZONAS WHERE ") + where).toInt();
    }

    test::TestData data;
    Tdm& d = data.dm();
};

// A second workstation on the same file: its own attachment and transaction.
struct OtherWorkstation {
    explicit OtherWorkstation(Database& same) : db(same.databaseName()) { db.open(); }
    ~OtherWorkstation()
    {
        try {
            tr.commit();
            db.close();
        } catch (...) {
        }
    }
    void run(const QString& sql)
    {
        Query::execute(db, tr, sql);
        tr.commit();
    }
    Database db;
    Transaction tr;
};

TEST_F(Safety, AFailedApplyStoresNothingKeepsEveryChangeAndARetryStoresThemOnce)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds);
    ds.open();
    ds.fetchAll();
    ds.moveTo(4);
    ds.remove(); // 105
    ds.first();
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Primera"));
    ds.post();
    ds.append();
    ds.fieldByName(q("CODIGO")).setAsInteger(101); // the key is taken: the insert fails last
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Nueva"));
    ds.post();

    try {
        ds.applyUpdates();
        FAIL() << "a duplicate key must fail the apply";
    } catch (const DatabaseError& e) {
        EXPECT_TRUE(e.isUniqueViolation()) << e.message().toStdString();
    }
    // Nothing of it reached the transaction: a commit now stores nothing.
    d.Transacion.commitRetaining();
    EXPECT_EQ(stored(101), q("Zona 101"));
    EXPECT_EQ(count(q("CODIGO = 105")), 1);
    // And every change is still pending, with its row status as before.
    ASSERT_TRUE(ds.updatesPending());
    EXPECT_EQ(ds.recordCount(), 5);
    EXPECT_EQ(ds.rowStatus(0), DataSet::RowStatus::Modified);
    EXPECT_EQ(ds.rowStatus(4), DataSet::RowStatus::Inserted);
    EXPECT_EQ(ds.value(0, ds.fieldIndex(q("DESCRIPCION"))).toString(), q("Primera"));

    // The cause removed, the retry stores each change exactly once.
    ds.moveTo(4);
    ds.edit();
    ds.fieldByName(q("CODIGO")).setAsInteger(106);
    ds.post();
    ds.applyUpdates();
    d.Transacion.commitRetaining();
    EXPECT_FALSE(ds.updatesPending());
    EXPECT_EQ(stored(101), q("Primera"));
    EXPECT_EQ(stored(106), q("Nueva"));
    EXPECT_EQ(count(q("CODIGO = 105")), 0);
    EXPECT_EQ(count(q("CODIGO > 100")), 5);
    for (int r = 0; r < ds.recordCount(); ++r)
        EXPECT_EQ(ds.rowStatus(r), DataSet::RowStatus::Unmodified);
}

TEST_F(Safety, ChangesToARowAnotherWorkstationDeletedAreReportedAndStayPending)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds);
    ds.open();
    ds.fetchAll();
    OtherWorkstation other(d.datos);
    other.run(q("DELETE FROM ZONAS WHERE CODIGO IN (101, 102)"));

    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Cambiada"));
    ds.post();
    try {
        ds.applyUpdates();
        FAIL() << "the modify hit no row";
    } catch (const RecordChangedError& e) {
        EXPECT_EQ(e.message(), q("El registro ha sido modificado o eliminado por otro usuario. Vuelva a cargar los datos."));
    }
    EXPECT_TRUE(ds.updatesPending());
    EXPECT_EQ(ds.rowStatus(0), DataSet::RowStatus::Modified);
    ds.cancelUpdates();

    ds.moveTo(1);
    ds.remove();
    EXPECT_THROW(ds.applyUpdates(), RecordChangedError);
    EXPECT_TRUE(ds.updatesPending());
    EXPECT_EQ(ds.recordCount(), 4);

    // Without a refresh statement to check against, the statements' own
    // count of rows touched tells.
    DataSet bare(d.datos, d.Transacion);
    bare.setSelectSQL(q("SELECT CODIGO, DESCRIPCION FROM ZONAS Z JOIN RDB$DATABASE R ON 1 = 1 ORDER BY CODIGO"));
    bare.setUpdateSql({{}, q("update zonas set descripcion =:DESCRIPCION where codigo =:OLD_CODIGO"), {},
                       q("delete from zonas where codigo =:OLD_CODIGO")});
    bare.open();
    bare.fetchAll();
    other.run(q("DELETE FROM ZONAS WHERE CODIGO = 103"));
    ASSERT_TRUE(bare.locate(q("CODIGO"), 103));
    bare.edit();
    bare.fieldByName(q("DESCRIPCION")).setAsString(q("Nada"));
    bare.post();
    EXPECT_THROW(bare.applyUpdates(), RecordChangedError);
    EXPECT_TRUE(bare.updatesPending());
    bare.cancelUpdates();
    bare.remove();
    EXPECT_THROW(bare.applyUpdates(), RecordChangedError);
    EXPECT_TRUE(bare.updatesPending());
}

TEST_F(Safety, ChangesOverAnotherWorkstationsSavedChangeAreRefused)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds);
    ds.open();
    OtherWorkstation other(d.datos);
    other.run(q("UPDATE ZONAS SET CODMUNIINE = 3001 WHERE CODIGO = 101"));
    other.run(q("UPDATE ZONAS SET CODIGO = 901 WHERE CODIGO = 102"));

    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Mía"));
    ds.post();
    EXPECT_THROW(ds.applyUpdates(), RecordChangedError);
    d.Transacion.commitRetaining();
    EXPECT_EQ(stored(101), q("Zona 101")); // the other's municipality is not overwritten either
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, q("SELECT CODMUNIINE FROM ZONAS WHERE CODIGO = 101")).toInt(), 3001);

    // A row whose key changed elsewhere is gone for this workstation.
    ds.next();
    ASSERT_EQ(ds.fieldByName(q("CODIGO")).asInteger(), 102);
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Mía también"));
    ds.post();
    EXPECT_THROW(ds.applyUpdates(), RecordChangedError);
    EXPECT_EQ(count(q("DESCRIPCION = 'Mía también'")), 0);

    // Reloaded, the change goes through.
    ds.cancelUpdates();
    ds.refresh();
    ASSERT_TRUE(ds.locate(q("CODIGO"), 101));
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Mía"));
    ds.post();
    ds.applyUpdates();
    EXPECT_EQ(stored(101), q("Mía"));
    EXPECT_FALSE(ds.locate(q("CODIGO"), 102));
    EXPECT_TRUE(ds.locate(q("CODIGO"), 901));
}

TEST_F(Safety, ARowLockedByAnotherWorkstationIsAConflictNotAnOverwrite)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds);
    ds.open();
    OtherWorkstation other(d.datos);
    Query::execute(other.db, other.tr, q("UPDATE ZONAS SET DESCRIPCION = 'Suya' WHERE CODIGO = 101")); // not committed
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Mía"));
    ds.post();
    try {
        ds.applyUpdates();
        FAIL() << "the row is being changed elsewhere";
    } catch (const DatabaseError& e) {
        EXPECT_TRUE(e.isLockConflict()) << e.message().toStdString();
    }
    EXPECT_TRUE(ds.updatesPending());
    other.tr.rollback();
    ds.applyUpdates();
    EXPECT_EQ(stored(101), q("Mía"));
}

TEST_F(Safety, PendingEditsRefuseCloseRefreshAndANewSelect)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds);
    ds.open();
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Sin grabar"));
    // Still in edit: every way of dropping the typed text refuses.
    EXPECT_THROW(ds.close(), PendingChangesError);
    EXPECT_THROW(ds.refresh(), PendingChangesError);
    EXPECT_THROW(ds.refreshKeepingPosition(q("CODIGO")), PendingChangesError);
    EXPECT_THROW(ds.setSelectSQL(q("SELECT * FROM ZONAS")), PendingChangesError);
    EXPECT_EQ(ds.state(), DataSet::State::Edit);
    ds.post();
    // Posted but not applied: the same.
    EXPECT_THROW(ds.close(), PendingChangesError);
    EXPECT_THROW(ds.refresh(), PendingChangesError);
    EXPECT_THROW(ds.setSelectSQL(q("SELECT * FROM ZONAS")), PendingChangesError);
    EXPECT_TRUE(ds.isOpen());
    EXPECT_EQ(ds.fieldByName(q("DESCRIPCION")).asString(), q("Sin grabar"));
    EXPECT_EQ(ds.selectSQL(), q("SELECT * FROM ZONAS WHERE CODIGO > 100 ORDER BY CODIGO"));
    ds.applyUpdates();
    ds.refresh();
    EXPECT_EQ(ds.fieldByName(q("DESCRIPCION")).asString(), q("Sin grabar"));
    ds.close();
    EXPECT_FALSE(ds.isOpen());
}

TEST_F(Safety, LargeSelectsOnOneTableAreReadByKeyAndOthersAsTheyStand)
{
    DataSet byKey(d.datos, d.Transacion);
    zonas(byKey);
    byKey.open();
    EXPECT_TRUE(byKey.readsByKey());
    DataSet joined(d.datos, d.Transacion);
    joined.setSelectSQL(q("SELECT Z.*, M.DESMUNIINE FROM ZONAS Z JOIN MUNICIPIOS M ON M.CODIGOINE = Z.CODMUNIINE"));
    joined.open();
    EXPECT_FALSE(joined.readsByKey());
    DataSet noKey(d.datos, d.Transacion);
    noKey.setSelectSQL(q("SELECT * FROM COMUN_SUCURSALES"));
    noKey.open();
    EXPECT_FALSE(noKey.readsByKey());

    // A row deleted elsewhere after its key was read, before its page was:
    // it shows its key only, and saving it says what happened.
    for (int i = 106; i <= 220; ++i)
        Query::execute(d.datos, d.Transacion,
                       q("INSERT INTO ZONAS (CODIGO, CODMUNIINE, DESCRIPCION) VALUES (%1, 46250, 'Zona %1')").arg(i));
    d.Transacion.commitRetaining();
    byKey.close();
    byKey.open();
    byKey.fetchAll();
    EXPECT_EQ(byKey.recordCount(), 120);
    OtherWorkstation other(d.datos);
    other.run(q("DELETE FROM ZONAS WHERE CODIGO = 210"));
    byKey.moveTo(109);
    EXPECT_EQ(byKey.fieldByName(q("CODIGO")).asInteger(), 210);
    EXPECT_TRUE(byKey.fieldByName(q("DESCRIPCION")).isNull());
    byKey.prior();
    EXPECT_EQ(byKey.fieldByName(q("DESCRIPCION")).asString(), q("Zona 209"));
    byKey.next();
    byKey.edit();
    byKey.fieldByName(q("DESCRIPCION")).setAsString(q("Otra"));
    byKey.post();
    EXPECT_THROW(byKey.applyUpdates(), RecordChangedError);
    EXPECT_EQ(count(q("CODIGO = 210")), 0);
    byKey.cancelUpdates();
    // Every row comes once, in order, whatever page it was read in.
    byKey.last();
    QList<int> codes;
    for (int r = 0; r < byKey.recordCount(); ++r)
        codes.append(byKey.value(r, byKey.fieldIndex(q("CODIGO"))).toInt());
    QList<int> expected;
    for (int c = 101; c <= 220; ++c)
        expected.append(c);
    EXPECT_EQ(codes, expected);
    // And upwards, row by row from the end, after the pages were dropped.
    byKey.close();
    byKey.open();
    byKey.last();
    QList<int> upwards;
    for (;;) {
        upwards.prepend(byKey.fieldByName(q("CODIGO")).asInteger());
        if (byKey.recNo() == 0)
            break;
        byKey.prior();
    }
    expected.removeOne(210); // gone since the reopening
    EXPECT_EQ(upwards, expected);
}

TEST_F(Safety, BlobsAreReadWhenAskedAndKeptByIdWhenUntouched)
{
    QByteArray picture(70000, '\0');
    for (int i = 0; i < picture.size(); ++i)
        picture[i] = static_cast<char>(i * 7);
    Query put(d.datos, d.Transacion, q("UPDATE ZONAS SET OBSERVACIONES = :B WHERE CODIGO = 101"));
    put.paramByName(q("B")).setAsBytes(picture);
    put.exec();
    d.Transacion.commitRetaining();

    DataSet ds(d.datos, d.Transacion);
    zonas(ds);
    ds.open();
    EXPECT_EQ(ds.fieldInfo(ds.fieldIndex(q("OBSERVACIONES"))).type, FieldInfo::Type::BinaryBlob);
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Con foto"));
    ds.post();
    ds.applyUpdates(); // the blob goes back by its id, unread
    d.Transacion.commitRetaining();
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, q("SELECT OBSERVACIONES FROM ZONAS WHERE CODIGO = 101")).toByteArray(),
              picture);
    EXPECT_EQ(ds.fieldByName(q("OBSERVACIONES")).asBytes(), picture);

    ds.edit();
    ds.fieldByName(q("OBSERVACIONES")).setValue(QByteArray("nueva"));
    ds.post();
    ds.applyUpdates();
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, q("SELECT OBSERVACIONES FROM ZONAS WHERE CODIGO = 101")).toByteArray(),
              QByteArray("nueva"));
    EXPECT_EQ(ds.fieldByName(q("OBSERVACIONES")).asBytes(), QByteArray("nueva"));
}

TEST_F(Safety, FieldMetadataTellsKindSizeScaleAndNullability)
{
    DataSet ds(d.datos, d.Transacion);
    ds.setSelectSQL(q("SELECT * FROM INMUEBLES"));
    ds.open();
    auto info = [&](const char* f) { return ds.fieldInfo(ds.fieldIndex(QLatin1String(f))); };
    EXPECT_EQ(info("CODIGO").type, FieldInfo::Type::Text);
    EXPECT_EQ(info("CODIGO").size, 5);
    EXPECT_FALSE(info("CODIGO").nullable);
    EXPECT_EQ(info("CODIGO").relation, q("INMUEBLES"));
    EXPECT_EQ(info("ACTIVADO").size, 1);
    EXPECT_TRUE(info("ACTIVADO").nullable);
    EXPECT_EQ(info("OBSERVACIONES").type, FieldInfo::Type::TextBlob);
    EXPECT_EQ(info("OBSERVACIONES").blobSubType, 1);
    EXPECT_EQ(info("EUROIMPORTE").type, FieldInfo::Type::Float);
    EXPECT_EQ(info("FECHA_MANDATO").type, FieldInfo::Type::DateTime);
    EXPECT_EQ(info("CODAGENTE").type, FieldInfo::Type::Integer);
    DataSet field(d.datos, d.Transacion);
    field.setSelectSQL(q("SELECT * FROM ZONAS"));
    field.open();
    EXPECT_EQ(field.fieldByName(q("DESCRIPCION")).info().size, 20);
    DataSet operaciones(d.datos, d.Transacion);
    operaciones.setSelectSQL(q("SELECT PORCENTAJE_VARIABLE FROM OPERACIONES"));
    operaciones.open();
    EXPECT_EQ(operaciones.fieldInfo(0).type, FieldInfo::Type::Numeric);
    EXPECT_EQ(operaciones.fieldInfo(0).scale, 2);
}

class Locate : public Safety, public ::testing::WithParamInterface<bool> {
protected:
    // The same rows read by key (one table) and as they stand (a join).
    void open(DataSet& ds)
    {
        const QString sql = GetParam() ? q("SELECT * FROM ZONAS WHERE CODIGO > 100 ORDER BY CODIGO")
                                       : q("SELECT Z.* FROM ZONAS Z JOIN RDB$DATABASE R ON 1 = 1 "
                                           "WHERE Z.CODIGO > 100 ORDER BY Z.CODIGO");
        zonas(ds, sql);
        ds.open();
        ASSERT_EQ(ds.readsByKey(), GetParam());
    }
};

TEST_P(Locate, SeveralFieldsPartialAndCaseInsensitive)
{
    Query::execute(d.datos, d.Transacion, q("UPDATE ZONAS SET CODMUNIINE = 3001 WHERE CODIGO IN (103, 105)"));
    Query::execute(d.datos, d.Transacion, q("UPDATE ZONAS SET DESCRIPCION = 'Peñíscola Sur' WHERE CODIGO = 105"));
    DataSet ds(d.datos, d.Transacion);
    open(ds);
    auto code = [&] { return ds.fieldByName(q("CODIGO")).asInteger(); };
    using O = DataSet::LocateOption;

    EXPECT_TRUE(ds.locate({q("CODMUNIINE"), q("DESCRIPCION")}, {3001, q("Zona 103")}));
    EXPECT_EQ(code(), 103);
    EXPECT_FALSE(ds.locate({q("CODMUNIINE"), q("DESCRIPCION")}, {46250, q("Zona 103")}));
    EXPECT_EQ(code(), 103) << "a failed locate stays put";
    EXPECT_FALSE(ds.locate(q("DESCRIPCION"), q("zona 104")));
    EXPECT_TRUE(ds.locate(q("DESCRIPCION"), q("zona 104"), O::CaseInsensitive));
    EXPECT_EQ(code(), 104);
    EXPECT_FALSE(ds.locate(q("DESCRIPCION"), q("Zona 10")));
    EXPECT_TRUE(ds.locate(q("DESCRIPCION"), q("Zona 10"), O::PartialKey));
    EXPECT_EQ(code(), 101) << "the first in the data set's order";
    EXPECT_TRUE(ds.locate(q("DESCRIPCION"), q("PEÑÍS"), DataSet::LocateOptions(O::PartialKey) | O::CaseInsensitive));
    EXPECT_EQ(code(), 105);
    EXPECT_TRUE(ds.locate({q("CODMUNIINE"), q("DESCRIPCION")}, {3001, q("z")}, DataSet::LocateOptions(O::PartialKey) | O::CaseInsensitive));
    EXPECT_EQ(code(), 103);
    EXPECT_TRUE(ds.locate(q("OBSERVACIONES"), QVariant()));
    EXPECT_EQ(code(), 101);

    // A pending change counts as the row's value.
    ASSERT_TRUE(ds.locate(q("CODIGO"), 102));
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Cambiada"));
    ds.post();
    ds.first();
    EXPECT_TRUE(ds.locate(q("DESCRIPCION"), q("Cambiada")));
    EXPECT_EQ(code(), 102);
    EXPECT_FALSE(ds.locate(q("DESCRIPCION"), q("Zona 102")));
    ds.cancelUpdates();
}

INSTANTIATE_TEST_SUITE_P(ByKeyAndAsTheyStand, Locate, ::testing::Bool());

TEST_F(Safety, DetailFollowsItsMasterAndHoldsItWhileItHasChanges)
{
    Query::execute(d.datos, d.Transacion, q("INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO) VALUES ('0049', 'SANTANDER')"));
    Query::execute(d.datos, d.Transacion, q("INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO) VALUES ('2100', 'CAIXABANK')"));
    for (const char* s : {"('0049', '0001', 'MADRID')", "('0049', '0002', 'VALENCIA')", "('2100', '0100', 'BARCELONA')"})
        Query::execute(d.datos, d.Transacion,
                       q("INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR) VALUES ") + QLatin1String(s));
    DataSet bancos(d.datos, d.Transacion);
    bancos.setSelectSQL(q("SELECT * FROM COMUN_BANCOS ORDER BY CODBANCO"));
    DataSet sucursales(d.datos, d.Transacion);
    sucursales.setTable(q("COMUN_SUCURSALES"));
    sucursales.setSelectSQL(q("SELECT * FROM COMUN_SUCURSALES WHERE CODBANCO =:CODBANCO ORDER BY CODSUCUR"));
    sucursales.setMasterSource(&bancos);
    bancos.open();
    ASSERT_TRUE(sucursales.isOpen());
    sucursales.fetchAll();
    EXPECT_EQ(sucursales.recordCount(), 2);
    EXPECT_EQ(sucursales.fieldByName(q("DESSUCUR")).asString(), q("MADRID"));
    bancos.next();
    sucursales.fetchAll();
    EXPECT_EQ(sucursales.recordCount(), 1);
    EXPECT_EQ(sucursales.fieldByName(q("DESSUCUR")).asString(), q("BARCELONA"));

    // A branch typed but not saved keeps its bank on screen.
    sucursales.edit();
    sucursales.fieldByName(q("DESSUCUR")).setAsString(q("GIRONA"));
    EXPECT_THROW(bancos.prior(), PendingChangesError);
    EXPECT_EQ(bancos.fieldByName(q("CODBANCO")).asString(), q("2100"));
    sucursales.post();
    EXPECT_THROW(bancos.first(), PendingChangesError);
    EXPECT_THROW(bancos.close(), PendingChangesError);
    sucursales.applyUpdates();
    bancos.first();
    sucursales.fetchAll();
    EXPECT_EQ(sucursales.recordCount(), 2);
    bancos.last();
    EXPECT_EQ(sucursales.fieldByName(q("DESSUCUR")).asString(), q("GIRONA"));
    bancos.close();
    EXPECT_FALSE(sucursales.isOpen());
}

TEST_F(Safety, HooksTakeSeveralSubscribersAndCalculatedFieldsFollowTyping)
{
    DataSet ds(d.datos, d.Transacion);
    zonas(ds);
    QStringList calls;
    ds.beforePost += [&](DataSet&) { calls << q("base"); };
    const int screen = ds.beforePost.add([&](DataSet&) { calls << q("pantalla"); });
    ds.onNewRecord += [&](DataSet& s) { s.fieldByName(q("CODMUNIINE")).setAsInteger(46250); };
    ds.onNewRecord += [&](DataSet& s) { s.fieldByName(q("DESCRIPCION")).setAsString(q("Nueva")); };
    ds.addCalculatedField(q("ETIQUETA"), {q("DESCRIPCION")});
    ds.onCalcFields += [](DataSet& s) {
        s.fieldByName(q("ETIQUETA")).setAsString(s.fieldByName(q("DESCRIPCION")).asString().toUpper());
    };
    ds.open();
    EXPECT_EQ(ds.fieldByName(q("ETIQUETA")).asString(), q("ZONA 101"));
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Centro"));
    EXPECT_EQ(ds.fieldByName(q("ETIQUETA")).asString(), q("CENTRO")) << "recomputed as the field changes";
    ds.post();
    EXPECT_EQ(calls, (QStringList{q("base"), q("pantalla")}));
    ds.insert();
    EXPECT_EQ(ds.fieldByName(q("CODMUNIINE")).asInteger(), 46250);
    EXPECT_EQ(ds.fieldByName(q("DESCRIPCION")).asString(), q("Nueva"));
    ds.cancel();
    ds.beforePost.remove(screen);
    calls.clear();
    ds.edit();
    ds.fieldByName(q("DESCRIPCION")).setAsString(q("Otra"));
    ds.post();
    EXPECT_EQ(calls, QStringList{q("base")});
    ds.cancelUpdates();
}

TEST(DateParameters, ADateInTheScreensFormatIsTheDateItMeansNotMonthFirst)
{
    test::TestData data;
    Tdm& d = data.dm();
    Query put(d.datos, d.Transacion, q("INSERT INTO BANCOS (C, F) VALUES (:C, :F)"));
    Query get(d.datos, d.Transacion, q("SELECT F FROM BANCOS WHERE C = :C"));
    int n = 0;
    for (const auto& [text, expected] : std::vector<std::pair<QString, QDateTime>>{
             {q("05/01/2026"), QDateTime(QDate(2026, 1, 5), QTime(0, 0))},
             {q("5/1/2026"), QDateTime(QDate(2026, 1, 5), QTime(0, 0))},
             {q("31/12/2026 17:30"), QDateTime(QDate(2026, 12, 31), QTime(17, 30))},
             {q("06.02.2026"), QDateTime(QDate(2026, 2, 6), QTime(0, 0))}}) {
        put.paramByName(q("F")).setAsString(text);
        put.paramByName(q("C")).setAsInteger(++n);
        put.exec();
        get.paramByName(q("C")).setAsInteger(n);
        get.open();
        EXPECT_EQ(get.field(0).asDateTime(), expected) << text.toStdString();
    }
}

TEST(DatabaseErrors, AlreadyExistsIsDecidedByTheEngineCodes)
{
    test::TestData data;
    Tdm& d = data.dm();
    auto failure = [&](const QString& sql) {
        try {
            Query::execute(d.datos, d.Transacion, sql);
            d.Transacion.commitRetaining();
        } catch (const DatabaseError& e) {
            d.Transacion.rollback();
            return e;
        }
        return DatabaseError(QString());
    };
    EXPECT_TRUE(failure(q("ALTER TABLE ZONAS ADD DESCRIPCION INTEGER")).isAlreadyExists());
    EXPECT_TRUE(failure(q("CREATE TABLE ZONAS (A INTEGER)")).isAlreadyExists());
    EXPECT_FALSE(failure(q("ALTER TABLE NO_EXISTE ADD A INTEGER")).isAlreadyExists());
    EXPECT_FALSE(failure(q("INSERT INTO ZONAS (CODIGO) VALUES (NULL)")).isAlreadyExists());
    // A unique violation on data is not "already exists".
    Query::execute(d.datos, d.Transacion, q("INSERT INTO ZONAS (CODIGO) VALUES (1)"));
    EXPECT_FALSE(failure(q("INSERT INTO ZONAS (CODIGO) VALUES (1)")).isAlreadyExists());
}

} // namespace

namespace {

TEST(DateText, DayFirstWithSlashesOrDotsOrIsoAndNothingElse)
{
    const QDateTime jan5(QDate(2026, 1, 5), QTime(0, 0));
    EXPECT_EQ(dateTimeFromText(QStringLiteral("05/01/2026")), jan5);
    EXPECT_EQ(dateTimeFromText(QStringLiteral(" 5/1/2026 ")), jan5);
    EXPECT_EQ(dateTimeFromText(QStringLiteral("05.01.2026")), jan5);
    EXPECT_EQ(dateTimeFromText(QStringLiteral("2026-01-05")), jan5);
    EXPECT_EQ(dateTimeFromText(QStringLiteral("05/01/2026 17:30")), QDateTime(QDate(2026, 1, 5), QTime(17, 30)));
    EXPECT_FALSE(dateTimeFromText(QStringLiteral("31/02/2026")).isValid());
    EXPECT_FALSE(dateTimeFromText(QStringLiteral("mañana")).isValid());
    EXPECT_FALSE(dateTimeFromText(QString()).isValid());
}

} // namespace
