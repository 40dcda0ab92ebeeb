// The demo agency: the order of the fill and the pieces it shares.
#include "demodata.h"

#include "demointernal.h"

namespace tv::demogen {

namespace {

// The agency's own address.
const QString kValencia = QStringLiteral("Valencia/València");

// ------------------------------------------------------------ write mode

// With forced writes every page the engine evicts is written synchronously;
// a fill of tens of thousands of rows then waits on the disk thousands of
// times. The mode belongs to the database file and is changed through an
// attachment of its own; the engine applies it to the open ones at once.
// Best effort: a failure only means a slower fill.
void setForcedWrites(Database& db, bool on)
{
    try {
        Database::setForcedWrites(db.databaseName(), on);
    } catch (const DatabaseError&) {
    }
}

} // namespace

void Inserter::prepare()
{
    QSet<QString> single; // one-character columns of the table
    if (mKey) {
        Query q(
            mDb, mTr,
            QStringLiteral("SELECT TRIM(RF.RDB$FIELD_NAME) FROM RDB$RELATION_FIELDS RF JOIN RDB$FIELDS F ON "
                           "F.RDB$FIELD_NAME = RF.RDB$FIELD_SOURCE WHERE RF.RDB$RELATION_NAME = :T "
                           "AND F.RDB$FIELD_TYPE IN (14, 37) AND F.RDB$CHARACTER_LENGTH = 1"));
        q.paramByName(QStringLiteral("T")).setAsString(mTable);
        for (q.open(); !q.eof(); q.next())
            single.insert(q.field(0).asString());
    }
    // A column is packed when it is one character wide and its first value is one character.
    size_t v = 0;
    int width = 0;
    for (Column& c : mColumns) {
        if (c.kind == Kind::Literal) continue;
        const QVariant& first = mFirst[v++];
        if ((!mKey || std::strcmp(c.name, mKey) != 0) && single.contains(QString::fromLatin1(c.name)) &&
            first.toString().size() == 1)
            c.at = width++;
    }
    const bool merge = width > 0;
    QStringList cols;
    QStringList values;
    for (const Column& c : mColumns) {
        const QString name = QString::fromLatin1(c.name);
        cols << name;
        if (c.kind == Kind::Literal)
            values << QString::fromLatin1(c.literal);
        else if (c.at >= 0)
            values << QStringLiteral("SUBSTRING(X.P FROM %1 FOR 1)").arg(c.at + 1);
        else if (merge && std::strcmp(c.name, mKey) == 0)
            values << QStringLiteral("X.K");
        else
            values << QLatin1Char(':') + name;
    }
    const QString insert = QStringLiteral("(%1) VALUES (%2)")
                               .arg(cols.join(QStringLiteral(", ")), values.join(QStringLiteral(", ")));
    if (merge) {
        mQ.setSQL(QStringLiteral("MERGE INTO %1 USING (SELECT CAST(:DEMO_PACK AS VARCHAR(%2)) AS P, "
                                 "CAST(:%3 AS %4) AS K FROM RDB$DATABASE) X ON (%1.%3 = X.K) "
                                 "WHEN NOT MATCHED THEN INSERT %5")
                      .arg(mTable)
                      .arg(width)
                      .arg(QString::fromLatin1(mKey), QString::fromLatin1(mKeyType), insert));
        mPackParam.emplace(mQ.paramByName(QStringLiteral("DEMO_PACK")));
        mPacked = QString(width, QLatin1Char('N'));
    } else {
        mQ.setSQL(QStringLiteral("INSERT INTO %1 %2").arg(mTable, insert));
    }
    v = 0;
    for (Column& c : mColumns) {
        if (c.kind != Kind::Param) continue;
        const QVariant& first = mFirst[v++];
        if (c.at >= 0) {
            pack(c, first);
            continue;
        }
        Param p = mQ.paramByName(QString::fromLatin1(c.name));
        p.setValue(first);
        c.slot = int(mParams.size());
        mParams.push_back(p);
    }
    mFirst.clear();
    mReady = true;
    mNext = mColumns.size();
}

int Demo::flagIndex(const char* column) const
{
    for (size_t i = 0; i < w.flags.size(); ++i)
        if (w.flags[i].column == column) return int(i);
    throw std::logic_error(column);
}

int Demo::maxOf(const char* table, const char* column, Database* db)
{
    const QVariant v = Query::scalar(
        db ? *db : d.datos, d.Transacion,
        QStringLiteral("SELECT MAX(%1) FROM %2").arg(QLatin1String(column), QLatin1String(table)));
    return v.isValid() ? v.toString().trimmed().toInt() : 0;
}

void Demo::moveGenerator(const char* generator, qint64 value, Database* db)
{
    Database& on = db ? *db : d.datos;
    const qint64 now = Query::genId(on, d.Transacion, QString::fromLatin1(generator), 0);
    if (value > now)
        Query::execute(on, d.Transacion,
                       QStringLiteral("SET GENERATOR %1 TO %2").arg(QLatin1String(generator)).arg(value));
}

QString Demo::nif()
{
    static const char letters[] = "TRWAGMYFPDXBNJZSQVHLCKE";
    const int n = r.range(10000000, 79999999);
    return pad(n, 8) + QLatin1Char(letters[n % 23]);
}

QString Demo::mail(const QString& nombre, const QString& apellido)
{
    const QString& dom = r.pick(w.dominiosCorreo);
    const bool num = r.chance(40);
    QString local = ascii(nombre) + QLatin1Char('.') + ascii(apellido);
    if (num) {
        const int n = r.range(1, 99);
        local += QString::number(n);
    }
    return local + QLatin1Char('@') + dom;
}

qint64 Demo::priceOf(int tipo, int op, int town, int m2)
{
    const Tipo& t = tipoAt(tipo);
    const int factor = townAt(town).priceFactor;
    if (op == 1 || op == 3) {
        const int perM2 = r.range(t.ventaMin, t.ventaMax);
        qint64 euros = qint64(m2) * perM2 / 100 * factor / 100;
        if (op == 3) // key money of a running business
            euros = euros / 6;
        const qint64 step = euros >= 100000 ? 1000 : 500;
        return std::max<qint64>(step, (euros + step / 2) / step * step);
    }
    const int perM2 = r.range(t.alqMin, t.alqMax);
    qint64 euros = qint64(m2) * perM2 / 100 * factor / 100;
    if (op == 4)
        euros = euros * 115 / 100;
    else if (op == 5)
        euros = euros * 160 / 100;
    const qint64 step = euros >= 1000 ? 50 : euros >= 100 ? 10 : 5;
    return std::max<qint64>(30, (euros + step / 2) / step * step);
}

// ----------------------------------------------------------------- agency

void Demo::empresa()
{
    Query q(
        d.datos, d.Transacion,
        QStringLiteral("UPDATE EMPRESA SET NOMBRE = :NOMBRE, DIRECCION = :DIRECCION, CODPOSTAL = :CODPOSTAL, "
                       "MUNICIPIO = :MUNICIPIO, PROVINCIA = :PROVINCIA, PAIS = :PAIS, TELEFONO = :TELEFONO, "
                       "FAX = :FAX, MAIL = :MAIL, CIF = :CIF"));
    q.paramByName(QStringLiteral("NOMBRE")).setAsString(QStringLiteral("Inmobiliaria Tejavista Demo"));
    q.paramByName(QStringLiteral("DIRECCION")).setAsString(u8("Av. Reino de Valencia, 42"));
    q.paramByName(QStringLiteral("CODPOSTAL")).setAsString(QStringLiteral("46005"));
    q.paramByName(QStringLiteral("MUNICIPIO")).setAsString(u8("València"));
    q.paramByName(QStringLiteral("PROVINCIA")).setAsString(kValencia);
    q.paramByName(QStringLiteral("PAIS")).setAsString(u8("España"));
    q.paramByName(QStringLiteral("TELEFONO")).setAsString(mTelefonoAgencia);
    q.paramByName(QStringLiteral("FAX")).setAsString(QStringLiteral("963 512 749"));
    q.paramByName(QStringLiteral("MAIL")).setAsString(QStringLiteral("info@tejavista-demo.es"));
    q.paramByName(QStringLiteral("CIF")).setAsString(QStringLiteral("B97512347"));
    q.exec();
    if (q.rowsAffected() == 0) {
        // A folder without its agency row gets one, keyed as the agency screen keys it.
        Query::execute(
            d.datos, d.Transacion,
            QStringLiteral("INSERT INTO EMPRESA (CODIGO, NOMBRE, DIRECCION, CODPOSTAL, MUNICIPIO, PROVINCIA) "
                           "VALUES (GEN_ID(GEN_REMESAS, 1), 'x', 'x', 'x', 'x', 'x')"));
        q.exec();
    }
}

int Demo::pickTipo(int familia)
{
    std::vector<int> idx;
    std::vector<int> weights;
    for (int i = 0; i < int(w.tipos.size()); ++i)
        if (tipoAt(i).familia == familia) {
            idx.push_back(i);
            weights.push_back(tipoAt(i).peso);
        }
    return idx[size_t(r.weighted(weights))];
}

int Demo::metros(const Tipo& t)
{
    // The smaller of two draws: small units are commoner than large ones.
    const int a = r.range(t.m2Min, t.m2Max);
    const int b = r.range(t.m2Min, t.m2Max);
    return std::min(a, b);
}

QString Demo::shortTown(int t) const
{
    return townName(t).section(QLatin1Char('/'), 0, 0);
}

void Demo::generadores()
{
    moveGenerator("GEN_DEPARTAMENTOS", lastDep);
    moveGenerator("GEN_AGENTES", baseAgente + qint64(mAgentes.size()));
    moveGenerator("GEN_ZONAS", baseZona + qint64(mZonas.size()));
    moveGenerator("GEN_PROPIETARIOS", baseProp + qint64(mProp.size()));
    moveGenerator("GEN_CLIENTES", baseCli + qint64(mCli.size()));
    moveGenerator("GEN_INMUEBLES", baseInm + qint64(mInm.size()));
    moveGenerator("GEN_DEMANDAS", lastDem);
    moveGenerator("GEN_DESCARTES", lastDesc);
    moveGenerator("GEN_GESTIONES", lastGest);
    // Reminders are numbered by both agenda procedures.
    moveGenerator("GEN_AGENDA", lastAgenda);
    moveGenerator("GEN_AGENDAX", lastAgenda);
    moveGenerator("GEN_OPERACIONES", lastOp);
    moveGenerator("GEN_INMUEBLES_GASTOS", lastGasto);
    moveGenerator("GEN_IMAGENES_ID", lastFoto, &d.Imagenes);
}

void Demo::ruso()
{
    if (mRusoCodigo.isEmpty()) return;
    // The Russian columns are UTF8: they need a connection whose character set is UTF8 too.
    Database* db = d.datosrusos.isOpen() ? &d.datosrusos
                   : d.datos.lcCtype().compare(QLatin1String("UTF8"), Qt::CaseInsensitive) == 0 ? &d.datos
                                                                                                : nullptr;
    if (!db) return;
    Query q(
        *db, d.Transacion,
        QStringLiteral("UPDATE INMUEBLES SET CARTELES_CABECERARUS = :CABECERA, CARTELES_INFORMARUS = :TEXTO, "
                       "CARTELES_PIERUS = :PIE WHERE CODIGO = :CODIGO"));
    q.paramByName(QStringLiteral("CABECERA")).setAsString(mRusoCabecera);
    q.paramByName(QStringLiteral("TEXTO")).setAsString(mRusoTexto);
    q.paramByName(QStringLiteral("PIE"))
        .setAsString(QStringLiteral("Inmobiliaria Tejavista Demo · ") + mTelefonoAgencia);
    q.paramByName(QStringLiteral("CODIGO")).setAsString(mRusoCodigo);
    q.exec();
}

void Demo::run()
{
    const bool forced =
        Query::scalar(d.datos, d.Transacion, QStringLiteral("SELECT MON$FORCED_WRITES FROM MON$DATABASE"))
            .toInt() == 1;
    if (forced) setForcedWrites(d.datos, false);
    struct Restore {
        Database& db;
        bool forced;
        ~Restore()
        {
            if (forced) setForcedWrites(db, true);
        }
    } restore{d.datos, forced};
    try {
        empresa();
        agentes();
        zonas();
        planInmuebles();
        personas(false);
        personas(true);
        planOperaciones();
        planFotos();
        inmuebles();
        demandas();
        descartes();
        gestiones();
        operaciones();
        gastos();
        fotos();
        generadores();
        // The Russian texts go over a second attachment, which must see the rows committed.
        d.Transacion.commit();
        ruso();
        d.Transacion.commit();
    } catch (...) {
        d.Transacion.rollback();
        throw;
    }
}

} // namespace tv::demogen

namespace tv {

void fillDemoAgency(Tdm& data, quint32 seed, const DemoSize& size)
{
    demogen::Demo(data, seed, size).run();
}

} // namespace tv
