#include "descripciones.h"

#include "dm.h"

namespace tv::reports {

QString Descripciones::of(const QString& table, const QVariant& code, const QString& column)
{
    bool ok = false;
    const qlonglong key = code.toString().trimmed().toLongLong(&ok);
    if (!ok || key == 0)
        return {};
    const QString cacheKey = table + QLatin1Char('.') + column;
    auto it = mCache.find(cacheKey);
    if (it == mCache.end()) {
        QHash<qlonglong, QString> values;
        // Table and column names come from this file's callers, never from the user.
        Query q(mData.datos, mData.Transacion,
                QStringLiteral("SELECT CODIGO, %1 FROM %2").arg(column, table));
        for (q.open(); !q.eof(); q.next())
            values.insert(q.field(0).asInt64(), q.field(1).asString().trimmed());
        q.close();
        it = mCache.insert(cacheKey, values);
    }
    return it->value(key);
}

QString Descripciones::legible(const QString& text)
{
    const QString t = text.trimmed();
    if (t.size() <= 3 || t != t.toUpper() || t == t.toLower())
        return t;
    return t.left(1) + t.mid(1).toLower();
}

QString Descripciones::tipoInmueble(const QVariant& code)
{
    // The Spanish caption reads better on paper than the upper-case code text.
    const QString castellano = of(QStringLiteral("TIPOINMUEBLE"), code, QStringLiteral("DESCRIPCION_CASTELLANO"));
    return castellano.isEmpty() ? of(QStringLiteral("TIPOINMUEBLE"), code) : castellano;
}

} // namespace tv::reports
