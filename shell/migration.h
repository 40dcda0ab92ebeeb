#pragma once

#include <QString>

namespace tv {
class DataSet;
class Tdm;
}

namespace tv::shell {

// The one-time migration of the properties' observations: the rich-text
// blobs OBSERVACIONES and OBSERVA_INTERNAS get plain-text copies (first 5000
// characters) in OBSERVACIONES_TEXTO and OBSERVA_INTERNAS_TEXTO, which the
// searches and listings read. Runs once per database.
namespace migration {

inline constexpr int kLongitudTexto = 5000;
inline const QString kSqlInmuebles = QStringLiteral("select * from inmuebles");
inline const QString kSqlMarcar = QStringLiteral("UPDATE CONFIGURACION SET OBSERVACIONES_MIGRADAS ='S' ");

// True when CONFIGURACION (open in tbconfiguracion) says the migration ran.
bool hecha(DataSet& tbconfiguracion);
// The plain text a blob of any format gives, cut to 5000 characters.
QString textoPlano(const QString& richText);
// Row by row: edit, set both plain texts, post and apply at once; then marks
// CONFIGURACION and commits. Returns the number of properties migrated.
int migrarObservaciones(Tdm& data);

} // namespace migration

} // namespace tv::shell
