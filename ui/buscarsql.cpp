#include "buscarsql.h"

#include "sqltext.h"

namespace tv::ui {

SentenciaPartida partirPorOrder(const QString& sql)
{
    const qsizetype at = sql.toUpper().indexOf(QLatin1String("ORDER"));
    if (at < 0)
        return {sql, QString()};
    return {sql.left(at), sql.mid(at)};
}

QString condicionBusqueda(const QString& campo, const QString& texto, int tamano)
{
    const QString t = texto.trimmed().toUpper();
    const QString like = campo + QLatin1String(" like ");
    if (tamano > 0)
        return like + sql::quote(QLatin1Char('%') + t + QLatin1Char('%'));
    if (tamano == 0 && t.isEmpty())
        return {};
    return like + sql::quote(t + QLatin1Char('%'));
}

QString sentenciaBusqueda(const SentenciaPartida& partes, const QString& condicion)
{
    const QString espacio = QStringLiteral(" ");
    if (condicion.isEmpty())
        return partes.base + espacio + partes.orden;
    // A "WHERE" at the very start cannot be the base's own filter.
    const bool filtra = partes.base.toUpper().indexOf(QLatin1String("WHERE")) > 0;
    const QString enlace = filtra ? QStringLiteral(" AND ") : QStringLiteral(" WHERE ");
    return partes.base + enlace + condicion + espacio + partes.orden;
}

} // namespace tv::ui
