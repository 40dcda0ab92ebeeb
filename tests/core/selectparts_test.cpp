#include "selectparts.h"

#include <gtest/gtest.h>

using namespace tv;

namespace {

struct Case {
    const char* sql;
    bool simple;
    const char* table;
    const char* alias;
    const char* where;
    const char* orderBy;
};

class ParseSelect : public ::testing::TestWithParam<Case> {};

TEST_P(ParseSelect, SplitsOneTableSelectsAndLeavesTheRestAsTheyStand)
{
    const Case& c = GetParam();
    const SelectParts p = parseSelect(QString::fromUtf8(c.sql));
    ASSERT_EQ(p.simple, c.simple) << c.sql;
    if (!c.simple)
        return;
    EXPECT_EQ(p.table, QString::fromUtf8(c.table));
    EXPECT_EQ(p.alias, QString::fromUtf8(c.alias));
    EXPECT_EQ(p.where, QString::fromUtf8(c.where));
    EXPECT_EQ(p.orderBy, QString::fromUtf8(c.orderBy));
}

INSTANTIATE_TEST_SUITE_P(
    Statements, ParseSelect,
    ::testing::Values(
        Case{"select * from inmuebles where activado ='S' order by codigo", true, "INMUEBLES", "", "activado ='S'", "codigo"},
        Case{"SELECT * FROM CLIENTES ORDER BY APEYNOM", true, "CLIENTES", "", "", "APEYNOM"},
        Case{"select i.codigo, i.descripcion from inmuebles i where i.municipio = 'ORDER BY' order by i.codigo desc",
             true, "INMUEBLES", "i", "i.municipio = 'ORDER BY'", "i.codigo desc"},
        Case{"select * from zonas as z where (codigo > 1) and exists (select 1 from rdb$database)", true, "ZONAS",
             "z", "(codigo > 1) and exists (select 1 from rdb$database)", ""},
        Case{"select * from zonas -- where x\n where codigo = :c", true, "ZONAS", "", "codigo = :c", ""},
        Case{"SELECT D.*,C.APEYNOM FROM DEMANDAS D , CLIENTES C WHERE D.CODCLIENTE = C.CODIGO", false, "", "", "", ""},
        Case{"select z.* from zonas z join municipios m on m.codigoine = z.codmuniine", false, "", "", "", ""},
        Case{"select first 10 * from zonas", false, "", "", "", ""},
        Case{"select distinct codmuniine from zonas", false, "", "", "", ""},
        Case{"select codmuniine, count(*) from zonas group by codmuniine", false, "", "", "", ""},
        Case{"select * from zonas order by 2", false, "", "", "", ""},
        Case{"select * from zonas union select * from zonas", false, "", "", "", ""},
        Case{"select * from (select * from zonas) z", false, "", "", "", ""},
        Case{"select * from zonas where codigo = 1 with lock", false, "", "", "", ""},
        Case{"select * from mayores(18)", false, "", "", "", ""},
        Case{"update zonas set codigo = 1", false, "", "", "", ""}));

} // namespace
