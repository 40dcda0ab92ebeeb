#include "migration.h"

#include "dataset.h"
#include "dm.h"
#include "plaintext.h"
#include "sqltext.h"

namespace tv::shell::migration {

bool hecha(DataSet& tbconfiguracion)
{
    if (!tbconfiguracion.isOpen() || tbconfiguracion.isEmpty())
        return false;
    return sql::isSet(tbconfiguracion.fieldByName(QStringLiteral("OBSERVACIONES_MIGRADAS")).value());
}

QString textoPlano(const QString& richText)
{
    return ui::plainTextOf(richText).left(kLongitudTexto);
}

int migrarObservaciones(Tdm& data)
{
    DataSet qryinmuebles(data.datos, data.Transacion);
    qryinmuebles.setSelectSQL(kSqlInmuebles);
    // Only the two plain-text columns are written; the rest of the row is
    // left exactly as other workstations may have changed it meanwhile.
    qryinmuebles.setUpdateSql({
        QStringLiteral("select * from inmuebles where codigo =:OLD_CODIGO"),
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
