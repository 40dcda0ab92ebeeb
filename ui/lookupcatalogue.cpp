#include "lookupcatalogue.h"

#include "database.h"
#include "query.h"

namespace tv::ui {

namespace {

QString cacheKey(const Database& db, const QString& name)
{
    return db.databaseName() + QLatin1Char('\n') + name;
}

// The catalogues every screen may name. The description comes second, the
// parent value (when there is one) third.
QList<Lookups::Definition> standardDefinitions()
{
    auto d = [](const char* name, const char* table, const char* sql) {
        return Lookups::Definition{QString::fromLatin1(name), QString::fromLatin1(table), QString::fromLatin1(sql)};
    };
    return {
        d("zonas", "ZONAS", "SELECT CODIGO, DESCRIPCION, CODMUNIINE FROM ZONAS ORDER BY DESCRIPCION"),
        d("estados", "ESTADO", "SELECT CODIGO, DESCRIPCION FROM ESTADO ORDER BY DESCRIPCION"),
        d("tipoinmueble", "TIPOINMUEBLE",
          "SELECT CODIGO, DESCRIPCION, CODFAMILIA FROM TIPOINMUEBLE ORDER BY DESCRIPCION"),
        d("familias", "FAMILIA", "SELECT CODIGO, DESCRIPCION FROM FAMILIA ORDER BY DESCRIPCION"),
        d("tipogastos", "TIPOGASTOS", "SELECT CODIGO, DESCRIPCION FROM TIPOGASTOS ORDER BY DESCRIPCION"),
        d("origenes", "ORIGENES", "SELECT CODIGO, DESCRIPCION FROM ORIGENES ORDER BY DESCRIPCION"),
        d("tipogestiones", "TIPOGESTIONES", "SELECT CODIGO, DESCRIPCION FROM TIPOGESTIONES ORDER BY DESCRIPCION"),
        d("tipooperacion", "TIPOOPERACION", "SELECT CODIGO, DESCRIPCION FROM TIPOOPERACION ORDER BY DESCRIPCION"),
        d("departamentos", "DEPARTAMENTOS", "SELECT CODIGO, DESCRIPCION FROM DEPARTAMENTOS ORDER BY DESCRIPCION"),
        d("perfiles", "PERFILES", "SELECT CODIGO, DESCRIPCION FROM PERFILES ORDER BY DESCRIPCION"),
        d("iva", "COMUN_IVA", "SELECT CODIGO, DESCRIPCION FROM COMUN_IVA ORDER BY CODIGO"),
        d("tiposvisitas", "TIPOS_VISITAS", "SELECT CODIGO, DESCRIPCION FROM TIPOS_VISITAS ORDER BY DESCRIPCION"),
        d("agentes", "AGENTES", "SELECT CODIGO, APEYNOM FROM AGENTES ORDER BY APEYNOM"),
        d("bancos", "COMUN_BANCOS", "SELECT CODBANCO, DESBANCO FROM COMUN_BANCOS ORDER BY DESBANCO"),
    };
}

} // namespace

QString lookupKey(const QVariant& code)
{
    if (!code.isValid() || code.isNull())
        return {};
    return code.toString().trimmed();
}

Lookups::Lookups() : mDefs(standardDefinitions()) {}

Lookups& Lookups::instance()
{
    static Lookups catalogue;
    return catalogue;
}

void Lookups::define(const Definition& d)
{
    for (Definition& existing : mDefs) {
        if (existing.name == d.name) {
            existing = d;
            changed(d.table);
            return;
        }
    }
    mDefs.append(d);
}

const Lookups::Definition* Lookups::definition(const QString& name) const
{
    for (const Definition& d : mDefs)
        if (d.name == name)
            return &d;
    return nullptr;
}

QStringList Lookups::names() const
{
    QStringList out;
    for (const Definition& d : mDefs)
        out.append(d.name);
    return out;
}

const QList<LookupItem>& Lookups::load(Database& db, Transaction& tr, const Definition& d)
{
    const QString key = cacheKey(db, d.name);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    auto it = mCache.find(key);
    if (it != mCache.end() && it->readAt.secsTo(now) < kSecondsValid)
        return it->items;
    Cached fresh;
    fresh.readAt = now;
    Query q(db, tr, d.sql);
    for (q.open(); !q.eof(); q.next()) {
        LookupItem item;
        item.code = q.field(0).value();
        item.description = q.fieldCount() > 1 ? q.field(1).asString().trimmed() : q.field(0).asString().trimmed();
        if (q.fieldCount() > 2)
            item.parent = q.field(2).value();
        fresh.items.append(item);
    }
    q.close();
    it = mCache.insert(key, fresh);
    return it->items;
}

QList<LookupItem> Lookups::items(Database& db, Transaction& tr, const QString& name, const QVariant& parent)
{
    const Definition* d = definition(name);
    if (!d)
        return {};
    const QList<LookupItem>& all = load(db, tr, *d);
    if (!parent.isValid())
        return all;
    const QString wanted = lookupKey(parent);
    QList<LookupItem> out;
    for (const LookupItem& i : all)
        if (lookupKey(i.parent) == wanted)
            out.append(i);
    return out;
}

QString Lookups::description(Database& db, Transaction& tr, const QString& name, const QVariant& code)
{
    const QString wanted = lookupKey(code);
    if (wanted.isEmpty())
        return {};
    const Definition* d = definition(name);
    if (!d)
        return {};
    for (const LookupItem& i : load(db, tr, *d))
        if (lookupKey(i.code) == wanted)
            return i.description;
    return {};
}

void Lookups::changed(const QString& table)
{
    const QString upper = table.toUpper();
    for (const Definition& d : mDefs) {
        if (d.table != upper)
            continue;
        for (auto it = mCache.begin(); it != mCache.end();) {
            if (it.key().endsWith(QLatin1Char('\n') + d.name))
                it = mCache.erase(it);
            else
                ++it;
        }
    }
}

void Lookups::clear()
{
    mCache.clear();
}

} // namespace tv::ui
