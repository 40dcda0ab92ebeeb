// Column types, widths and NOT NULLs of the created main database, sampled
// across the data model: the traps are the widths that other tables must
// repeat, the blobs, the dialect-1 dates and the Russian UTF8 columns.
#include "dm.h"
#include "testdata.h"

#include <gtest/gtest.h>

using namespace tv;

namespace {

enum FieldType { Char = 14, Varchar = 37, Integer = 8, Double = 27, Timestamp = 35, Blob = 261 };

struct ColumnCase {
    const char* table;
    const char* column;
    FieldType type;
    int length; // characters for texts, blob sub-type for blobs, 0 otherwise
    bool notNull;
    bool utf8 = false;
};

void PrintTo(const ColumnCase& c, std::ostream* os)
{
    *os << c.table << '.' << c.column;
}

class SchemaColumns : public ::testing::TestWithParam<ColumnCase> {
protected:
    static void SetUpTestSuite() { data = new test::TestData; }
    static void TearDownTestSuite()
    {
        delete data;
        data = nullptr;
    }
    static test::TestData* data;
};

test::TestData* SchemaColumns::data = nullptr;

TEST_P(SchemaColumns, TypeWidthAndNotNull)
{
    const ColumnCase c = GetParam();
    Tdm& d = data->dm();
    Query q(d.datos, d.Transacion,
            QStringLiteral("SELECT F.RDB$FIELD_TYPE, F.RDB$CHARACTER_LENGTH, F.RDB$FIELD_SUB_TYPE, RF.RDB$NULL_FLAG, "
                           "F.RDB$CHARACTER_SET_ID FROM RDB$RELATION_FIELDS RF "
                           "JOIN RDB$FIELDS F ON F.RDB$FIELD_NAME = RF.RDB$FIELD_SOURCE "
                           "WHERE RF.RDB$RELATION_NAME = :T AND RF.RDB$FIELD_NAME = :C"));
    q.paramByName(QStringLiteral("T")).setAsString(QLatin1String(c.table));
    q.paramByName(QStringLiteral("C")).setAsString(QLatin1String(c.column));
    q.open();
    ASSERT_FALSE(q.eof()) << "missing column";
    EXPECT_EQ(q.field(0).asInteger(), int(c.type));
    const bool text = c.type == Char || c.type == Varchar;
    if (text) {
        EXPECT_EQ(q.field(1).asInteger(), c.length);
        EXPECT_EQ(q.field(4).asInteger() == 4, c.utf8) << "character set " << q.field(4).asInteger();
    }
    if (c.type == Blob) {
        EXPECT_EQ(q.field(2).asInteger(), c.length);
    }
    EXPECT_EQ(q.field(3).asInteger() == 1, c.notNull);
}

INSTANTIATE_TEST_SUITE_P(
    DataModel, SchemaColumns,
    ::testing::Values(ColumnCase{"INMUEBLES", "CODIGO", Char, 5, true}, ColumnCase{"INMUEBLES", "ACTIVADO", Char, 1, false},
                      ColumnCase{"INMUEBLES", "CODTIPOINMUEBLE", Integer, 0, true},
                      ColumnCase{"INMUEBLES", "CODTIPOOPERACION", Integer, 0, true},
                      ColumnCase{"INMUEBLES", "MUNICIPIO", Char, 30, false},
                      ColumnCase{"INMUEBLES", "NOMBREVIA", Char, 35, false},
                      ColumnCase{"INMUEBLES", "EUROIMPORTE", Double, 0, false},
                      ColumnCase{"INMUEBLES", "FECHAALTA", Timestamp, 0, false},
                      ColumnCase{"INMUEBLES", "OBSERVACIONES", Blob, 1, false},
                      ColumnCase{"INMUEBLES", "DOCUMENTACION", Blob, 0, false},
                      ColumnCase{"INMUEBLES", "OBSERVACIONES_TEXTO", Varchar, 5000, false},
                      ColumnCase{"INMUEBLES", "CARTELES_INFORMACION", Varchar, 3000, false},
                      ColumnCase{"INMUEBLES", "CARTELES_INFORMARUS", Varchar, 4000, false, true},
                      ColumnCase{"INMUEBLES", "CESCAPARATE", Varchar, 1, false},
                      ColumnCase{"INMUEBLES", "PORTAL_FOTOCASA", Varchar, 1, false},
                      ColumnCase{"INMUEBLES", "PORTAL_IDEALISTA", Char, 1, false},
                      ColumnCase{"DESCARTES", "CODINMUEBLE", Char, 5, true},
                      ColumnCase{"DEMANDAS", "CODINMUEBLE1", Integer, 0, false},
                      ColumnCase{"DEMANDAS", "PRECIODESDE", Double, 0, false},
                      ColumnCase{"CLIENTES", "APEYNOM", Varchar, 50, true},
                      ColumnCase{"CLIENTES", "PROVINCIA", Char, 35, true},
                      ColumnCase{"MUNICIPIOS", "DESMUNIINE", Char, 70, true},
                      ColumnCase{"MUNICIPIOS", "DESPROVINCIA", Char, 30, true},
                      ColumnCase{"PORTALES", "IDENTIFICACION", Varchar, 20, false},
                      ColumnCase{"PORTALES", "MAIL", Char, 100, false},
                      ColumnCase{"AGENTES", "USUARIO", Varchar, 20, false},
                      ColumnCase{"AGENDA", "FECHAYHORA", Timestamp, 0, false},
                      ColumnCase{"AGENDA", "USUARIO", Varchar, 20, false},
                      ColumnCase{"OPERACIONES", "CODOPERACION", Integer, 0, true},
                      ColumnCase{"OPERACIONES", "FECHAALTA", Timestamp, 0, true},
                      ColumnCase{"COMUN_BANCOS", "CODBANCO", Varchar, 6, true}));

TEST(SchemaSize, TheWidestTableKeepsEveryColumnUnderTheRowLimit)
{
    test::TestData data;
    Tdm& d = data.dm();
    EXPECT_GE(Query::scalar(d.datos, d.Transacion,
                            QStringLiteral("SELECT COUNT(*) FROM RDB$RELATION_FIELDS WHERE RDB$RELATION_NAME = 'INMUEBLES'"))
                  .toInt(),
              340);
    // A row with every long text filled to the brim still fits.
    Query::execute(d.datosrusos, d.Transacion,
                   QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, OBSERVACIONES_TEXTO, "
                                  "OBSERVA_INTERNAS_TEXTO, CARTELES_INFORMACION, CARTELES_INFORMACATALAN, "
                                  "CARTELES_INFORMARUS) VALUES ('00001', 1, 1, '%1', '%1', '%2', '%2', '%3')")
                       .arg(QString(5000, QLatin1Char('a')), QString(3000, QChar(0x00F1)), QString(4000, QChar(0x0416))));
    d.Transacion.commitRetaining(); // the other attachment sees it once committed
    EXPECT_EQ(Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT CHAR_LENGTH(CARTELES_INFORMARUS) FROM INMUEBLES"))
                  .toInt(),
              4000);
}

} // namespace
