#include "migration.h"

#include "dataset.h"
#include "dm.h"
#include "plaintext.h"
#include "sqltext.h"

#include <algorithm>
#include <iterator>

namespace tv::shell::migration {

bool hecha(DataSet& tbconfiguracion)
{
    if (!tbconfiguracion.isOpen() || tbconfiguracion.isEmpty())
        return false;
    return sql::isSet(tbconfiguracion.fieldByName(QStringLiteral("OBSERVACIONES_MIGRADAS")).value());
}

namespace {

// What the WIN1252 columns can store: Latin-1 and the 27 extra characters
// of the Windows page.
bool enWindows1252(QChar c)
{
    const char16_t u = c.unicode();
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF))
        return true;
    static constexpr char16_t extra[] = {0x20AC, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030,
                                         0x0160, 0x2039, 0x0152, 0x017D, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                                         0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x017E, 0x0178};
    return std::find(std::begin(extra), std::end(extra), u) != std::end(extra);
}

} // namespace

QString textoPlano(const QString& richText)
{
    QString t = ui::plainTextOf(richText).left(kLongitudTexto);
    // One character the column cannot hold (an arrow in old RTF, Cyrillic)
    // would fail the migration, and with it every start of the program.
    for (QChar& c : t)
        if (!enWindows1252(c))
            c = QLatin1Char('?');
    return t;
}

int migrarObservaciones(Tdm& data)
{
    DataSet qryinmuebles(data.datos, data.Transacion);
    qryinmuebles.setSelectSQL(kSqlInmuebles);
    // Only the two plain-text columns are written; the rest of the row is
    // left exactly as other workstations may have changed it meanwhile.
    // The refresh names only what the migration reads and writes: those are
    // the columns checked for another workstation's change before each row is
    // written, and read back after.
    qryinmuebles.setUpdateSql({
        QStringLiteral("select codigo, observaciones, observa_internas, observaciones_texto, "
                       "observa_internas_texto from inmuebles where codigo =:OLD_CODIGO"),
        QStringLiteral("update inmuebles set OBSERVACIONES_TEXTO =:OBSERVACIONES_TEXTO, "
                       "OBSERVA_INTERNAS_TEXTO =:OBSERVA_INTERNAS_TEXTO where codigo =:OLD_CODIGO"),
        {},
        {},
    });
    auto plain = [](const DataSetField& f) -> QVariant {
        return f.isNull() ? QVariant() : QVariant(textoPlano(f.asString()));
    };
    int migrated = 0;
    qryinmuebles.open();
    while (!qryinmuebles.eof()) {
        qryinmuebles.edit();
        qryinmuebles.fieldByName(QStringLiteral("OBSERVACIONES_TEXTO"))
            .setValue(plain(qryinmuebles.fieldByName(QStringLiteral("OBSERVACIONES"))));
        qryinmuebles.fieldByName(QStringLiteral("OBSERVA_INTERNAS_TEXTO"))
            .setValue(plain(qryinmuebles.fieldByName(QStringLiteral("OBSERVA_INTERNAS"))));
        qryinmuebles.post();
        qryinmuebles.applyUpdates();
        ++migrated;
        qryinmuebles.next();
    }
    qryinmuebles.close();
    Query::execute(data.datos, data.Transacion, kSqlMarcar);
    data.Transacion.commitRetaining();
    return migrated;
}

} // namespace tv::shell::migration
