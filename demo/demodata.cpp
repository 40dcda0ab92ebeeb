#include "demodata.h"

#include "datafolder.h"
#include "dm.h"
#include "wordlists.h"

#include <QDateTime>
#include <QHash>
#include <QLocale>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tv {

namespace {

// ------------------------------------------------------------------ random

// The Mersenne Twister is fully specified by the standard; the mapping to a
// range is our own because the library distributions differ between
// platforms. Never draw twice inside one expression whose order of
// evaluation is unspecified (function arguments, operands of +).
class Rng {
public:
    explicit Rng(quint32 seed) : mGen(seed) {}

    int range(int lo, int hi)
    {
        if (hi <= lo) return lo;
        const quint64 span = quint64(qint64(hi) - qint64(lo) + 1);
        const quint64 x = quint64(quint32(mGen()));
        return int(qint64(lo) + qint64((x * span) >> 32));
    }
    bool chance(int percent) { return range(0, 99) < percent; }
    template <class T> int weighted(const T& weights)
    {
        int total = 0;
        for (int w : weights)
            total += w;
        int x = range(0, total - 1);
        int i = 0;
        for (int w : weights) {
            if (x < w) return i;
            x -= w;
            ++i;
        }
        return 0;
    }
    const QString& pick(const QStringList& list) { return list.at(range(0, int(list.size()) - 1)); }
    QDate between(QDate from, QDate to)
    {
        if (to <= from) return from;
        return from.addDays(range(0, int(from.daysTo(to))));
    }

private:
    std::mt19937 mGen;
};

// ------------------------------------------------------------- the inserts

// One prepared INSERT run once per row. The columns are those set for the
// first row; every later row sets the same columns in the same order, which
// lets the values go straight to their parameters without a look-up.
//
// Every parameter costs a conversion on each row, and the big tables carry
// dozens of one-character flags. Values that never change are therefore
// written into the statement, and for a table keyed with keyedBy() the
// one-character columns travel packed in a single text that the statement
// takes apart with SUBSTRING. Such a statement is a MERGE on the key, since a
// plain INSERT cannot read one parameter into several columns. (Packing the
// other columns too was tried: the engine spends more on the expressions than
// it saves on the parameters.)
class Inserter {
public:
    Inserter(Database& db, Transaction& tr, const char* table)
        : mDb(db), mTr(tr), mQ(db, tr), mTable(QString::fromLatin1(table))
    {
    }

    void keyedBy(const char* column, const char* sqlType)
    {
        mKey = column;
        mKeyType = sqlType;
    }

    void set(const char* column, const QVariant& value)
    {
        if (!mReady) {
            mColumns.push_back({column, Kind::Param, nullptr});
            mFirst.push_back(value);
            return;
        }
        const Column& c = next(column, Kind::Param);
        if (c.slot >= 0)
            mParams[size_t(c.slot)].setValue(value);
        else
            pack(c, value);
    }

    void literal(const char* column, const char* sql)
    {
        if (!mReady)
            mColumns.push_back({column, Kind::Literal, sql});
        else
            next(column, Kind::Literal);
    }

    void exec()
    {
        if (!mReady)
            prepare();
        else if (mNext != mColumns.size())
            throw std::logic_error("demo insert with missing columns");
        if (mPackParam) mPackParam->setValue(mPacked);
        mQ.exec();
        mNext = 0;
    }

private:
    enum class Kind { Param, Literal };
    struct Column {
        const char* name;
        Kind kind;
        const char* literal;
        int slot = -1; // parameter index, or -1 when packed
        int at = -1;   // offset in the packed text
    };

    const Column& next(const char* column, Kind kind)
    {
        if (mNext >= mColumns.size() || mColumns[mNext].kind != kind ||
            std::strcmp(mColumns[mNext].name, column) != 0)
            throw std::logic_error(std::string("demo insert out of order at ") + column);
        return mColumns[mNext++];
    }

    void pack(const Column& c, const QVariant& v)
    {
        const QString text = v.toString();
        if (text.size() != 1)
            throw std::logic_error(std::string("demo packed column needs one character: ") + c.name);
        mPacked[c.at] = text.at(0);
    }

    void prepare()
    {
        QSet<QString> single; // one-character columns of the table
        if (mKey) {
            Query q(mDb, mTr,
                    QStringLiteral(
                        "SELECT TRIM(RF.RDB$FIELD_NAME) FROM RDB$RELATION_FIELDS RF JOIN RDB$FIELDS F ON "
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

    Database& mDb;
    Transaction& mTr;
    Query mQ;
    QString mTable;
    const char* mKey = nullptr;
    const char* mKeyType = nullptr;
    std::vector<Column> mColumns;
    std::vector<QVariant> mFirst;
    std::vector<Param> mParams;
    std::optional<Param> mPackParam;
    QString mPacked;
    size_t mNext = 0;
    bool mReady = false;
};

const QString kSi = QStringLiteral("S");
const QString kNo = QStringLiteral("N");
const QString& sn(bool b)
{
    return b ? kSi : kNo;
}
QString u8(const char* s)
{
    return QString::fromUtf8(s);
}

// Lower-case ASCII letters and digits only, for user names and e-mail addresses.
QString ascii(const QString& s)
{
    QString out;
    for (QChar c : s.normalized(QString::NormalizationForm_D))
        if (c.unicode() < 128 && c.isLetterOrNumber()) out += c.toLower();
    return out;
}

QString pad(qint64 n, int width)
{
    return QStringLiteral("%1").arg(n, width, 10, QLatin1Char('0'));
}

// --------------------------------------------------------------- the world

using demo::Tipo;
using demo::Town;

// The agency's own address.
const QString kValencia = QStringLiteral("Valencia/València");

// Flags a new property starts with "N" and the demo does not use.
const char* const kFlagsNo[] = {
    "CSISTEMAANT",   "CSISTEMASEGURIDA", "CSUELO",     "CSUPUEDEVISITAR",  "CTELEFONO",  "CPINTURA",
    "CPLANTABAJA",   "CPLANTAS",         "CPOTENCIA",  "CSUBTERRANEO",     "CCOLUMNAS",  "CDIVISIBLE",
    "CALTILLO",      "CCAJAFUERTE",      "CCARPEXT",   "CCARPINT",         "CAISLANTE",  "CANOCONSTRUCCION",
    "CCLASENEGOCIO", "CINTRANET",        "CVIGILANTE", "CGASTOSCOMUNIDAD", "SSISTEMAANT"};
const char* const kFotosAct[] = {"FOTOS_ACT_PISOS",      "FOTOS_ACT_TUCASA",     "FOTOS_ACT_FOTOCASA",
                                 "FOTOS_ACT_MIWEB",      "FOTOS_ACT_IDEALISTA",  "FOTOS_ACT_YAENCONTRE",
                                 "FOTOS_ACT_HABITACLIA", "FOTOS_ACT_ENALQUILER", "FOTOS_ACT_TROVIMAP"};

// Every demand flag; the ones matching reads for a family may be "S".
const char* const kDemandFlags[] = {
    "CAGUA",       "CAIRE",       "CAISLANTES",     "CALTILLO",      "CALUMBRADO",  "CARBOLES",
    "CASCENSOR",   "CASFALTADO",  "CBALCON",        "CCALEFACCION",  "CCERRADO",    "CCOLUMNAS",
    "CCULTIVABLE", "CEDIFICABLE", "CEDIFICACIONES", "CELECTRICIDAD", "CESCAPARATE", "CEXTERIOR",
    "CGARAJE",     "CGRUA",       "CJARDIN",        "CLUZ",          "CMUEBLES",    "CMUELLE",
    "COFICINA",    "CPINTURA",    "CPISCINA",       "CPLANTABAJA",   "CPLANTAS",    "CPOZO",
    "CREJAS",      "CSALHUMOS",   "CSEGURIDAD",     "CSUBTERRANEO",  "CSUITE",      "CTERRAZA",
    "CTRASTERO",   "CURBANIZADO", "CVESTURIOS",     "CVIGILANTE",    "CVPO"};

struct DemandFlag {
    const char* column;
    int family; // 0: families 1 and 2
    int percent;
};
const DemandFlag kDemandWishes[] = {
    {"CASCENSOR", 1, 30},   {"CGARAJE", 0, 20},   {"CTERRAZA", 0, 18},   {"CEXTERIOR", 1, 25},
    {"CPISCINA", 2, 35},    {"CPISCINA", 1, 6},   {"CTRASTERO", 0, 8},   {"CCALEFACCION", 0, 6},
    {"CVPO", 1, 2},         {"CCERRADO", 6, 20},  {"CSEGURIDAD", 6, 10}, {"CESCAPARATE", 5, 40},
    {"CAIRE", 5, 20},       {"CSALHUMOS", 5, 15}, {"CMUELLE", 4, 30},    {"COFICINA", 4, 30},
    {"CURBANIZADO", 3, 50}, {"CAGUA", 3, 30},     {"CASFALTADO", 3, 10},
};

// ------------------------------------------------------------------ models

struct Agente {
    int codigo;
    QString usuario;
    QString apeynom;
};

struct Persona {
    int codigo = 0;
    QString apeynom;
    QDate alta;
    int agente = 0;
    int origen = 1;
    int town = 0;
    QString tel;
    QString movil;
    QString situacion;
};

struct Inmueble {
    QString codigo;
    int tipo = 0; // index into the property types
    int op = 1;
    int town = 0;
    int zona = 0;         // index into the zone list
    int propietario = -1; // index into the owners
    int agente = 0;
    QDate alta;
    qint64 precio = 0;
    int m2 = 0;
    bool activo = true;
    int estado = 1;
    bool fotos = false;
    QString direccion;
};

struct Zona {
    int codigo;
    int town;
    QString nombre;
};

struct Operacion {
    int inmueble;
    int cliente;
    int estado; // 0 waiting, 1 reserved, 2 accepted, 3 finalised, 4 cancelled
    QDate alta, reserva, acepta, finaliza, cancela;
};

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

// ---------------------------------------------------------------- pictures

quint32 crc32(const QByteArray& data)
{
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> t{};
        for (quint32 n = 0; n < 256; ++n) {
            quint32 c = n;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    quint32 c = 0xFFFFFFFFu;
    for (char ch : data)
        c = table[(c ^ quint8(ch)) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

void putBE(QByteArray& out, quint32 v)
{
    out.append(char(v >> 24));
    out.append(char(v >> 16));
    out.append(char(v >> 8));
    out.append(char(v));
}

void chunk(QByteArray& png, const char* type, const QByteArray& data)
{
    putBE(png, quint32(data.size()));
    QByteArray body(type, 4);
    body += data;
    png += body;
    putBE(png, crc32(body));
}

struct Escena {
    quint32 cielo, suelo, pared, tejado, ventana;
    int x0, x1, techo; // in thousandths of the picture
    bool bloque;       // a block of flats instead of a house
    int sol;
};

quint32 pixel(const Escena& e, int u, int v)
{
    auto mix = [](quint32 a, quint32 b, int t) { // t in 0..1000
        quint32 out = 0;
        for (int s = 0; s < 24; s += 8) {
            const int ca = int((a >> s) & 0xFF);
            const int cb = int((b >> s) & 0xFF);
            out |= quint32(ca + (cb - ca) * t / 1000) << s;
        }
        return out;
    };
    const int base = 860;
    if (u >= e.x0 && u <= e.x1 && v >= e.techo && v <= base) {
        const int w = e.x1 - e.x0;
        const int cu = (u - e.x0) * 1000 / std::max(1, w);
        const int cv = (v - e.techo) * 1000 / std::max(1, base - e.techo);
        const int mid = (e.x0 + e.x1) / 2;
        if (!e.bloque && std::abs(u - mid) < w / 10 && cv > 620) return 0x5A3A22; // door
        const int cols = e.bloque ? 5 : 3;
        const int rows = e.bloque ? 7 : 2;
        const int cx = cu * cols % 1000;
        const int cy = cv * rows % 1000;
        if (cx > 250 && cx < 750 && cy > 250 && cy < 700 && cv < 940) return e.ventana;
        return e.pared;
    }
    if (!e.bloque) {
        const int roof = (e.x1 - e.x0) * 45 / 100;
        const int top = e.techo - roof;
        const int mid = (e.x0 + e.x1) / 2;
        if (v >= top && v < e.techo) {
            const int half = (v - top) * ((e.x1 - e.x0) / 2 + 30) / std::max(1, roof);
            if (std::abs(u - mid) <= half) return e.tejado;
        }
    }
    if (v > 640) return mix(e.suelo, 0x000000, (v - 640) * 300 / 360);
    const int du = u - e.sol;
    const int dv = v - 160;
    if (du * du + dv * dv * 16 / 9 < 70 * 70) return 0xFFE680;
    return mix(e.cielo, 0xFFFFFF, v * 700 / 640);
}

QByteArray png(const Escena& e, int w, int h)
{
    QByteArray raw;
    raw.reserve((w * 3 + 1) * h);
    for (int y = 0; y < h; ++y) {
        raw.append(char(0));
        for (int x = 0; x < w; ++x) {
            const quint32 c = pixel(e, x * 1000 / w, y * 1000 / h);
            raw.append(char(c >> 16));
            raw.append(char(c >> 8));
            raw.append(char(c));
        }
    }
    QByteArray out("\x89PNG\r\n\x1a\n", 8);
    QByteArray ihdr;
    putBE(ihdr, quint32(w));
    putBE(ihdr, quint32(h));
    ihdr.append(char(8)); // bit depth
    ihdr.append(char(2)); // RGB
    ihdr.append(3, char(0));
    chunk(out, "IHDR", ihdr);
    chunk(out, "IDAT", qCompress(raw, 6).mid(4)); // qCompress prefixes the length to a zlib stream
    chunk(out, "IEND", QByteArray());
    return out;
}

// --------------------------------------------------------------- generator

class Demo {
public:
    Demo(Tdm& data, quint32 seed, const DemoSize& size)
        : d(data), r(seed), s(size), hoy(size.hoy.isValid() ? size.hoy : QDate::currentDate())
    {
        // planInmuebles() weighs five operations; agentes() files agents under three departments.
        if (w.operaciones.size() != 5 || w.departamentos.size() < 3)
            throw std::logic_error("demo word lists: five operations and three departments expected");
        for (const Town& t : w.towns)
            townWeights.push_back(t.weight);
        for (const Tipo& t : w.tipos)
            tipoWeights.push_back(t.peso);
    }

    void run();

private:
    int maxOf(const char* table, const char* column, Database* db = nullptr);
    void moveGenerator(const char* generator, qint64 value, Database* db = nullptr);
    const Town& townAt(int t) const { return w.towns[size_t(t)]; }
    const Tipo& tipoAt(int t) const { return w.tipos[size_t(t)]; }
    const demo::TipoOperacion& operacionAt(int op) const { return w.operaciones[size_t(op - 1)]; }
    int flagIndex(const char* column) const;
    const QString& townName(int t) const { return townAt(t).name; }
    const QString& province(int t) const { return townAt(t).province; }
    QString cp(int t) { return pad(townAt(t).cp + r.range(0, townAt(t).cpCount - 1), 5); }
    int randomTown() { return r.weighted(townWeights); }
    QString nif();
    QString movil() { return QString::number(r.range(600000000, 699999999)); }
    QString fijo() { return QString::number(r.range(960000000, 966999999)); }
    qint64 priceOf(int tipo, int op, int town, int m2);
    QString mail(const QString& nombre, const QString& apellido);
    QDateTime at(QDate day, const QString& hora)
    {
        return QDateTime(day, QTime::fromString(hora, QStringLiteral("hh:mm")));
    }
    // Office hours on the quarter.
    QString hora()
    {
        const int h = r.range(9, 19);
        const int q = r.range(0, 3);
        return QStringLiteral("%1:%2").arg(h, 2, 10, QLatin1Char('0')).arg(q * 15, 2, 10, QLatin1Char('0'));
    }

    void empresa();
    void agentes();
    void zonas();
    void planInmuebles();
    void personas(bool clientes);
    void planOperaciones();
    void inmuebles();
    void demandas();
    void descartes();
    void gestiones();
    void operaciones();
    void gastos();
    void fotos();
    void generadores();
    void ruso();
    void planFotos();
    int pickTipo(int familia);
    int metros(const Tipo& t);
    QString shortTown(int t) const;

    Tdm& d;
    Rng r;
    DemoSize s;
    QDate hoy;
    const demo::WordLists& w = demo::wordLists();
    std::vector<int> townWeights;
    std::vector<int> tipoWeights;

    std::vector<Agente> mAgentes;
    std::vector<Zona> mZonas;
    std::vector<std::vector<int>> mZonasDe; // zone indexes per town
    std::vector<Inmueble> mInm;
    std::vector<Persona> mProp;
    std::vector<Persona> mCli;
    std::vector<Operacion> mOps;
    struct Busca {
        int familia = 0;
        int op = 0;
    };
    std::vector<Busca> mBusca; // what each client looks for (family 0: no demand)
    QHash<int, QString> mUsuarioDe;
    QString mRusoCodigo;
    QString mRusoCabecera, mRusoTexto;
    QString mTelefonoAgencia = QStringLiteral("963 512 748");

    int baseAgente = 0, baseZona = 0, baseProp = 0, baseCli = 0, baseInm = 0, baseDem = 0, baseDesc = 0,
        baseGest = 0, baseAgenda = 0, baseOp = 0, baseGasto = 0, baseFoto = 0, baseDep = 0;
    int lastDem = 0, lastDesc = 0, lastGest = 0, lastAgenda = 0, lastOp = 0, lastGasto = 0, lastFoto = 0,
        lastDep = 0;
};

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

QVariant orNull(const QString& s)
{
    return s.isEmpty() ? QVariant() : QVariant(s);
}
QVariant orNull(QDate day)
{
    return day.isValid() ? QVariant(day) : QVariant();
}
QString capital(const QString& s)
{
    return s.isEmpty() ? s : s.left(1).toUpper() + s.mid(1);
}

// "a, b y c"
QString joinY(const QStringList& items)
{
    if (items.size() <= 1) return items.join(QString());
    return items.mid(0, items.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" y ") + items.last();
}

// Check digit of a Spanish bank account (CCC) part.
int cccDigit(const QString& ten)
{
    static const int weights[] = {1, 2, 4, 8, 5, 10, 9, 7, 3, 6};
    int sum = 0;
    for (int i = 0; i < 10; ++i)
        sum += ten.at(i).digitValue() * weights[i];
    int dc = 11 - sum % 11;
    if (dc == 11) dc = 0;
    if (dc == 10) dc = 1;
    return dc;
}

void Demo::agentes()
{
    baseDep = maxOf("DEPARTAMENTOS", "CODIGO");
    lastDep = baseDep;
    Inserter dep(d.datos, d.Transacion, "DEPARTAMENTOS");
    for (const QString& name : w.departamentos) {
        dep.set("CODIGO", ++lastDep);
        dep.set("DESCRIPCION", name);
        dep.exec();
    }

    baseAgente = maxOf("AGENTES", "CODIGO");
    QSet<QString> usados;
    {
        Query q(d.datos, d.Transacion, QStringLiteral("SELECT USUARIO FROM AGENTES"));
        for (q.open(); !q.eof(); q.next())
            usados.insert(q.field(0).asString().trimmed());
    }
    const bool adminTaken = usados.contains(QStringLiteral("admin"));
    Inserter ins(d.datos, d.Transacion, "AGENTES");
    const int n = std::max(1, s.agentes);
    for (int k = 0; k < n; ++k) {
        const bool mujer = r.chance(50);
        const QString nombre = mujer ? r.pick(w.mujeres) : r.pick(w.hombres);
        const QString ap1 = r.pick(w.apellidos);
        const QString ap2 = r.pick(w.apellidos);
        const QString apeynom = nombre + QLatin1Char(' ') + ap1 + QLatin1Char(' ') + ap2;
        QString usuario;
        QString clave;
        if (k == 0 && !adminTaken) {
            usuario = QStringLiteral("admin");
            clave = QStringLiteral("admin");
        } else {
            usuario = ascii(nombre).left(12);
            if (usados.contains(usuario)) usuario += ascii(ap1).left(1);
            const QString stem = usuario;
            for (int extra = 2; usados.contains(usuario); ++extra)
                usuario = stem + QString::number(extra);
            const int pin = r.range(1000, 9999);
            clave = usuario + QString::number(pin);
        }
        usados.insert(usuario);
        bool ocEco = false, soloGest = false, soloAgenda = false, ocInternos = false, ocCli = false,
             ocProp = false;
        switch (k % 5) {
        case 2:
            soloAgenda = soloGest = true;
            break;
        case 3:
            ocEco = ocInternos = true;
            break;
        case 4:
            ocCli = ocProp = true;
            break;
        case 0:
            if (k > 0) {
                ocEco = r.chance(30);
                soloGest = r.chance(30);
                soloAgenda = soloGest;
                ocCli = r.chance(20);
                ocProp = ocCli;
            }
            break;
        default:
            break;
        }
        const int town = r.chance(60) ? 0 : 8;
        const int codigo = baseAgente + k + 1;
        mAgentes.push_back({codigo, usuario, apeynom});
        ins.set("CODIGO", codigo);
        ins.set("APEYNOM", apeynom);
        ins.set("NIF", nif());
        ins.set("USUARIO", usuario);
        ins.set("CONTRASENA", clave);
        ins.set("CODDEPARTAMENTO", k == 0 ? baseDep + 3 : baseDep + 1 + k % 2);
        ins.set("FECHAALTA", hoy.addYears(-3).addDays(-r.range(0, 700)));
        ins.set("DIRSIGLA", r.pick(w.siglas));
        ins.set("DIR", r.pick(w.calles));
        ins.set("DIRNUM", QString::number(r.range(1, 120)));
        ins.set("DIRPISO", QString::number(r.range(1, 9)));
        ins.set("DIRLETRA", QString(QChar(QLatin1Char('A').unicode() + r.range(0, 3))));
        ins.set("POB", townName(town));
        ins.set("CP", cp(town));
        ins.set("PROVINCIA", province(town));
        ins.set("PAIS", u8("España"));
        ins.set("TEL", mTelefonoAgencia);
        ins.set("TEL_MOVIL", movil());
        ins.set("PORCENTAJE_CAPTACION", double(r.range(10, 25)));
        ins.set("PORCENTAJE_OPERACIONES", double(r.range(20, 40)));
        ins.set("ADMINISTRADOR", sn(k == 0));
        ins.set("OCULTARCLIENTES", sn(ocCli));
        ins.set("OCULTARDATOSECONOMICOS", sn(ocEco));
        ins.set("OCULTARDATOSINTERNOS", sn(ocInternos));
        ins.set("OCULTASPROPIETARIOS", sn(ocProp));
        ins.set("VERSOLOSUAGENDA", sn(soloAgenda));
        ins.set("VERSOLOSUSGESTIONES", sn(soloGest));
        ins.set("OBSERVACIONES", k == 0 ? u8("Dirección de la agencia.") : u8("Agente comercial."));
        ins.exec();
    }
    for (const Agente& a : mAgentes)
        mUsuarioDe.insert(a.codigo, a.usuario);
}

void Demo::zonas()
{
    baseZona = maxOf("ZONAS", "CODIGO");
    Inserter ins(d.datos, d.Transacion, "ZONAS");
    mZonasDe.assign(w.towns.size(), {});
    for (int t = 0; t < int(w.towns.size()); ++t) {
        for (const QString& name : townAt(t).zones) {
            const Zona z{baseZona + int(mZonas.size()) + 1, t, name};
            mZonasDe[t].push_back(int(mZonas.size()));
            mZonas.push_back(z);
            ins.set("CODIGO", z.codigo);
            ins.set("CODMUNIINE", townAt(t).ine);
            ins.set("DESCRIPCION", name);
            ins.exec();
        }
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

void Demo::planInmuebles()
{
    baseInm = maxOf("INMUEBLES", "CODIGO");
    if (baseInm + s.inmuebles > 99999)
        throw DataFolderError(
            u8("Los códigos de inmueble tienen cinco cifras: no caben %1 inmuebles más.").arg(s.inmuebles));
    static const int opWeights[8][5] = {{68, 27, 0, 2, 3}, {80, 15, 0, 2, 3},  {95, 5, 0, 0, 0},
                                        {50, 45, 5, 0, 0}, {40, 45, 15, 0, 0}, {60, 40, 0, 0, 0},
                                        {90, 10, 0, 0, 0}, {90, 10, 0, 0, 0}};
    const int owners = std::max(0, s.propietarios);
    mInm.reserve(size_t(std::max(0, s.inmuebles)));
    for (int i = 0; i < s.inmuebles; ++i) {
        Inmueble m;
        m.codigo = pad(baseInm + i + 1, 5);
        m.tipo = r.weighted(tipoWeights);
        const Tipo& t = tipoAt(m.tipo);
        m.town = randomTown();
        const std::vector<int>& zs = mZonasDe[m.town];
        m.zona = zs[r.range(0, int(zs.size()) - 1)];
        m.op = r.weighted(opWeights[t.familia - 1]) + 1;
        if (m.op == 5 && !townAt(m.town).coast) m.op = 2;
        m.m2 = metros(t);
        m.precio = priceOf(m.tipo, m.op, m.town, m.m2);
        m.agente = mAgentes[r.range(0, int(mAgentes.size()) - 1)].codigo;
        m.alta = hoy.addDays(-r.range(0, 3 * 365));
        if (owners > 0) m.propietario = i < owners ? i : r.range(0, owners - 1);
        if (r.chance(4)) {
            m.activo = false;
            m.estado = 5;
        }
        mInm.push_back(m);
    }
}

void Demo::personas(bool clientes)
{
    const int n = std::max(0, clientes ? s.clientes : s.propietarios);
    const int base = maxOf(clientes ? "CLIENTES" : "PROPIETARIOS", "CODIGO");
    (clientes ? baseCli : baseProp) = base;
    std::vector<QDate> primera(clientes ? 0 : size_t(n));
    if (!clientes)
        for (const Inmueble& m : mInm)
            if (m.propietario >= 0 && (!primera[m.propietario].isValid() || m.alta < primera[m.propietario]))
                primera[m.propietario] = m.alta;

    static const int origWeights[] = {18, 22, 8, 3, 10, 12, 10, 9, 5, 2, 1};
    Inserter ins(d.datos, d.Transacion, clientes ? "CLIENTES" : "PROPIETARIOS");
    std::vector<Persona>& out = clientes ? mCli : mProp;
    out.reserve(size_t(n));
    for (int i = 0; i < n; ++i) {
        Persona p;
        p.codigo = base + i + 1;
        const bool extranjero = clientes && r.chance(6);
        bool mujer = false;
        QString nombre;
        QString ap1;
        QString documento;
        QString nota;
        if (extranjero) {
            const demo::Extranjero& e = w.extranjeros[size_t(r.range(0, int(w.extranjeros.size()) - 1))];
            p.apeynom = e.nombre;
            mujer = e.mujer;
            nombre = p.apeynom.section(QLatin1Char(' '), 0, 0);
            ap1 = p.apeynom.section(QLatin1Char(' '), -1);
            static const char letters[] = "TRWAGMYFPDXBNJZSQVHLCKE";
            const int y = r.range(0, 1);
            const int num = r.range(0, 9999999);
            documento =
                QLatin1Char(y ? 'Y' : 'X') + pad(num, 7) + QLatin1Char(letters[(y * 10000000 + num) % 23]);
            nota = u8("Cliente extranjero (%1); habla inglés.").arg(e.pais);
        } else {
            mujer = r.chance(50);
            nombre = mujer ? r.pick(w.mujeres) : r.pick(w.hombres);
            ap1 = r.pick(w.apellidos);
            const QString ap2 = r.pick(w.apellidos);
            p.apeynom = nombre + QLatin1Char(' ') + ap1 + QLatin1Char(' ') + ap2;
            documento = nif();
        }
        const int trato = r.range(0, 1);
        p.town = randomTown();
        if (clientes || !primera[i].isValid())
            p.alta = hoy.addDays(-r.range(0, 3 * 365));
        else
            p.alta = primera[i].addDays(-r.range(0, 30));
        p.agente = mAgentes[r.range(0, int(mAgentes.size()) - 1)].codigo;
        p.origen = r.weighted(origWeights) + 1;
        if (r.chance(55)) p.tel = fijo();
        p.movil = movil();
        const int sit = r.range(0, 99);
        p.situacion = sit < 90   ? QStringLiteral("Activo")
                      : sit < 96 ? QStringLiteral("Paralizado")
                                 : QStringLiteral("Eliminado");
        const QString correo = r.chance(75) ? mail(nombre, ap1) : QString();
        const QString trabajo = r.chance(20) ? fijo() : QString();

        ins.set("CODIGO", p.codigo);
        ins.set(clientes ? "FECHAALTA" : "FECHA_ALTA", p.alta);
        ins.set("TRATO", mujer ? (trato ? u8("Dª") : u8("Sra.")) : (trato ? u8("Dº") : u8("Sr.")));
        ins.set("APEYNOM", p.apeynom);
        ins.set("NIF", documento);
        ins.set("DIRSIGLA", r.pick(w.siglas));
        ins.set("DIR", r.pick(w.calles));
        ins.set("DIRNUM", QString::number(r.range(1, 150)));
        ins.set("DIRPISO", QString::number(r.range(1, 12)));
        ins.set("DIRLETRA", QString::number(r.range(1, 16)));
        ins.set("POB", townName(p.town));
        ins.set("CP", cp(p.town));
        ins.set("PROVINCIA", province(p.town));
        ins.set("PAIS", u8("España"));
        ins.set("TEL", orNull(p.tel));
        ins.set("TEL_TRABAJO", orNull(trabajo));
        ins.set("TEL_MOVIL", p.movil);
        ins.set("MAIL", orNull(correo));
        if (r.chance(clientes ? 25 : 60)) {
            const QString banco = r.pick(w.bancos);
            const QString sucursal = pad(r.range(1, 9999), 4);
            const QString cuenta = pad(r.range(0, 99999), 5) + pad(r.range(0, 99999), 5);
            const QString dc = QString::number(cccDigit(QStringLiteral("00") + banco + sucursal)) +
                               QString::number(cccDigit(cuenta));
            ins.set("TITULAR", p.apeynom);
            ins.set("BANCO", banco);
            ins.set("SUCURSAL", sucursal);
            ins.set("DC", dc);
            ins.set("CUENTA", cuenta);
        } else {
            for (const char* c : {"TITULAR", "BANCO", "SUCURSAL", "DC", "CUENTA"})
                ins.set(c, QVariant());
        }
        const int edad = r.range(25, 80);
        ins.set("SEXO", mujer ? QStringLiteral("M") : QStringLiteral("H"));
        ins.set("FECHA_NACIMIENTO", hoy.addYears(-edad).addDays(-r.range(0, 364)));
        QString civil = r.pick(w.estadosCiviles);
        if (mujer) civil.replace(civil.size() - 1, 1, QLatin1Char('a'));
        ins.set("ESTADO_CIVIL", civil);
        ins.set("NIVEL_ESTUDIOS", r.pick(w.estudios));
        ins.set("SITUACION_LABORAL", edad > 67 ? u8("Jubilación") : r.pick(w.situacionesLaborales));
        ins.set("CODAGENTE", p.agente);
        ins.set("CODPROCEDENCIA", p.origen);
        ins.set("SITUACION", p.situacion);
        if (nota.isEmpty() && r.chance(clientes ? 35 : 30))
            nota = r.pick(clientes ? w.notasCliente : w.notasPropietario);
        ins.set("OBSERVACIONES", orNull(nota));
        ins.exec();
        out.push_back(p);
    }
}

void Demo::planOperaciones()
{
    const int n = int(mInm.size());
    const int c = int(mCli.size());
    if (n == 0 || c == 0) return;
    std::vector<bool> usado(size_t(n), false);
    const int wanted = std::min(s.operaciones, n / 2);
    for (int k = 0; k < wanted; ++k) {
        int idx = -1;
        for (int tries = 0; tries < 50 && idx < 0; ++tries) {
            const int x = r.range(0, n - 1);
            if (mInm[x].activo && !usado[x]) idx = x;
        }
        if (idx < 0) continue;
        usado[idx] = true;
        Inmueble& m = mInm[idx];
        Operacion o;
        o.inmueble = idx;
        o.cliente = r.range(0, c - 1);
        const int x = r.range(0, 99);
        o.estado = x < 12 ? 0 : x < 30 ? 1 : x < 45 ? 2 : x < 88 ? 3 : 4;
        const bool venta = m.op == 1 || m.op == 3;
        const int dRes = r.range(1, 15);
        const int dAce = r.range(7, 45);
        const int dFin = venta ? r.range(20, 75) : r.range(3, 20);
        const int dCan = r.range(2, 25);
        const int total = (o.estado >= 1 ? dRes : 0) + (o.estado >= 2 ? dAce : 0) +
                          (o.estado >= 3 ? dFin : 0) + (o.estado >= 4 ? dCan : 0);
        const QDate earliest = std::max(m.alta, mCli[o.cliente].alta);
        o.alta = r.between(earliest, hoy.addDays(-total));
        // Clamping to today keeps the dates in order when a late client leaves no room.
        auto upTo = [this](QDate day) { return day > hoy ? hoy : day; };
        if (o.estado >= 1) o.reserva = upTo(o.alta.addDays(dRes));
        if (o.estado >= 2) o.acepta = upTo(o.reserva.addDays(dAce));
        if (o.estado >= 3) o.finaliza = upTo(o.acepta.addDays(dFin));
        if (o.estado >= 4) o.cancela = upTo(o.finaliza.addDays(dCan));
        switch (o.estado) {
        case 1:
            m.activo = false;
            m.estado = 2;
            break;
        case 2:
        case 3:
            m.activo = false;
            m.estado = venta ? 3 : 4;
            break;
        case 4:
            m.activo = r.chance(50);
            m.estado = m.activo ? 1 : 5;
            break;
        default:
            break;
        }
        mOps.push_back(o);
    }
}

void Demo::planFotos()
{
    const int n = int(mInm.size());
    const int wanted = std::min(std::max(0, s.inmueblesConFotos), n);
    int done = 0;
    for (int tries = 0; done < wanted && tries < wanted * 20; ++tries) {
        const int x = r.range(0, n - 1);
        if (!mInm[x].fotos) {
            mInm[x].fotos = true;
            ++done;
        }
    }
}

QString Demo::shortTown(int t) const
{
    return townName(t).section(QLatin1Char('/'), 0, 0);
}

void Demo::inmuebles()
{
    const int iAsc = flagIndex("CASCENSOR"), iTerraza = flagIndex("CTERRAZA"),
              iCerrado = flagIndex("CCERRADO"), iPiscina = flagIndex("CPISCINA"),
              iMuebles = flagIndex("CMUEBLES"), iSuite = flagIndex("CSUITE"),
              iExterior = flagIndex("CEXTERIOR"), iCocina = flagIndex("CCOCINA"),
              iComedor = flagIndex("CCOMEDOR"), iVistas = flagIndex("CVISTAS");
    static const int origWeights[] = {18, 30, 6, 2, 10, 12, 8, 8, 4, 1, 1};
    static const int energyWeights[] = {3, 5, 8, 15, 35, 15, 9};
    static const int energyFrom[] = {20, 45, 75, 115, 175, 355, 425};
    static const int energyTo[] = {44, 74, 114, 174, 354, 424, 600};
    const QString pie = QStringLiteral("Inmobiliaria Tejavista Demo · ") + mTelefonoAgencia;
    const QLocale english(QLocale::English);
    const QLocale russian(QLocale::Russian);

    Inserter ins(d.datos, d.Transacion, "INMUEBLES");
    ins.keyedBy("CODIGO", "CHAR(5)");
    const int nFlags = int(w.flags.size());
    std::vector<bool> f(size_t(nFlags), false);
    for (Inmueble& m : mInm) {
        const Tipo& t = tipoAt(m.tipo);
        const int fam = t.familia;
        const Town& town = townAt(m.town);
        const bool venta = m.op == 1 || m.op == 3;
        for (int k = 0; k < nFlags; ++k)
            f[size_t(k)] = r.chance(w.flags[size_t(k)].percent[size_t(fam - 1)]);
        if (t.codigo == 3) f[iTerraza] = true;
        if (t.codigo == 7) f[iAsc] = false;
        if (t.codigo == 24) f[iCerrado] = true;
        if (town.coast && fam <= 2 && !f[iPiscina]) f[iPiscina] = r.chance(20);
        if (!venta && fam <= 2 && !f[iMuebles]) f[iMuebles] = r.chance(50);

        // Rooms and surfaces, as the search of each family reads them.
        QVariant dobles, sencillas, banos, aseos, suite, plazas, altura, super2, super3, super4, supSolar;
        int habitaciones = 0;
        int numBanos = 0;
        if (fam == 1 || fam == 2) {
            const int total = t.codigo == 5 ? 0 : std::clamp(m.m2 / 28, 1, fam == 2 ? 7 : 5);
            int senc = total >= 3 ? r.range(0, 2) : 0;
            int dob = total - senc;
            int su = 0;
            if (f[iSuite] && dob >= 2) {
                su = 1;
                --dob;
            } else {
                f[iSuite] = false;
            }
            numBanos = 1 + (m.m2 > 85) + (m.m2 > 150) + (m.m2 > 300);
            const int a = m.m2 > 110 && r.chance(40) ? 1 : 0;
            habitaciones = dob + senc + su;
            dobles = dob;
            sencillas = senc;
            suite = su;
            banos = numBanos;
            aseos = a;
            super2 = double(m.m2 * r.range(78, 90) / 100);
            if (fam == 2) supSolar = double(m.m2 * r.range(150, 400) / 100);
        } else if (fam == 3 || fam == 8) {
            super2 = double(m.m2);
            supSolar = double(m.m2);
            if (fam == 3) {
                if (t.codigo != 18) super3 = double(m.m2 * r.range(50, 150) / 100);
                super4 = double(r.range(10, 40));
            }
        } else if (fam == 4) {
            const int h = r.range(6, 12);
            altura = double(h);
            super3 = double(h);
            super2 = double(m.m2 * r.range(85, 100) / 100);
            supSolar = double(m.m2 * r.range(100, 160) / 100);
            banos = 0;
            aseos = r.range(1, 3);
        } else if (fam == 5) {
            numBanos = r.range(1, 2);
            banos = numBanos;
            aseos = 0;
            super2 = double(m.m2 * r.range(85, 95) / 100);
            supSolar = double(m.m2);
        } else if (fam == 6) {
            plazas = t.codigo == 23 ? (m.m2 > 20 ? 2 : 1) : 0;
        } else if (fam == 7) {
            numBanos = std::max(4, m.m2 / 60);
            banos = numBanos;
            aseos = 0;
            super2 = double(m.m2 * r.range(80, 90) / 100);
        }

        // Address.
        QString tipovia, via, numero, planta, puerta;
        if (fam == 3 || fam == 8 || t.codigo == 14 || t.codigo == 15) {
            via = r.pick(w.caminos);
            tipovia = via.startsWith(QLatin1String("Partida")) ? QStringLiteral("PD") : QStringLiteral("CM");
            numero = r.chance(50) ? QStringLiteral("s/n") : QString::number(r.range(1, 250));
        } else {
            tipovia = r.pick(w.siglas);
            via = r.pick(w.calles);
            numero = QString::number(r.range(1, 180));
        }
        if (fam == 1) {
            const int top = town.priceFactor >= 105 || town.coast ? 15 : 8;
            if (t.codigo == 7)
                planta = QStringLiteral("BJ");
            else if (t.codigo == 3)
                planta = QString::number(r.range(5, top + 2));
            else
                planta = QString::number(r.range(1, top));
            if (r.chance(50))
                puerta = QString(QChar(QLatin1Char('A').unicode() + r.range(0, 3)));
            else
                puerta = QString::number(r.range(1, 12));
        } else if (fam == 5) {
            planta = t.codigo == 21 ? QStringLiteral("BJ") : QString::number(r.range(1, 6));
        } else if (fam == 6) {
            planta = QStringLiteral("-1");
        }
        m.direccion =
            (w.nombreVia.value(tipovia) + QLatin1Char(' ') + via).trimmed() + QStringLiteral(", ") + numero;
        if (!planta.isEmpty())
            m.direccion +=
                QStringLiteral(", ") + planta + (puerta.isEmpty() ? QString() : QLatin1Char(' ') + puerta);
        m.direccion += QStringLiteral(" - ") + townName(m.town);

        // Texts.
        const QString& tipoNombre = t.nombre;
        const QString zona = mZonas[m.zona].nombre;
        const QString lugar = zona + QStringLiteral(" (") + shortTown(m.town) + QLatin1Char(')');
        const QString precioTexto =
            Money::fromUnits(m.precio).toSpanish(0, true) + (venta ? QString() : u8(" al mes"));
        QStringList rasgos;
        for (int k = 0; k < nFlags; ++k)
            if (f[size_t(k)] && !w.flags[size_t(k)].texto.isEmpty())
                rasgos << (k == iVistas && town.coast ? u8("vistas al mar") : w.flags[size_t(k)].texto);
        const QString titulo = (capital(tipoNombre) + QLatin1Char(' ') + operacionAt(m.op).enOperacion +
                                QStringLiteral(" en ") + lugar)
                                   .left(80);
        QString descripcion =
            capital(tipoNombre) + QStringLiteral(" de ") + QString::number(m.m2) + u8(" m²");
        if (habitaciones > 0) descripcion += QStringLiteral(", %1 hab.").arg(habitaciones);
        if (numBanos > 0 && fam <= 2)
            descripcion += numBanos == 1 ? u8(", 1 baño") : u8(", %1 baños").arg(numBanos);
        if (!rasgos.isEmpty()) descripcion += QStringLiteral(", ") + rasgos.first();
        descripcion = descripcion.left(80);

        QString texto =
            (m.op == 1   ? u8("Se vende ")
             : m.op == 3 ? u8("Se traspasa ")
                         : u8("Se alquila ")) +
            tipoNombre + (f[iExterior] && fam <= 2 ? u8(" exterior") : QString()) + QStringLiteral(" de ") +
            QString::number(m.m2) + (fam == 3 || fam == 8 ? u8(" m² de superficie") : u8(" m² construidos")) +
            QStringLiteral(" en ") + zona + QStringLiteral(", ") + shortTown(m.town) + QStringLiteral(".");
        if (fam <= 2) {
            if (habitaciones > 0) {
                texto += u8(" Dispone de %1 %2")
                             .arg(habitaciones)
                             .arg(habitaciones == 1 ? u8("dormitorio") : u8("dormitorios"));
                if (suite.toInt() > 0) texto += u8(", uno de ellos en suite");
                texto += u8(", %1 %2").arg(numBanos).arg(numBanos == 1 ? u8("baño") : u8("baños"));
            } else {
                texto += u8(" Espacio diáfano con baño completo");
            }
            if (f[iCocina]) texto += u8(", cocina equipada");
            if (f[iComedor]) texto += u8(" y salón-comedor");
            texto += QLatin1Char('.');
        }
        if (!rasgos.isEmpty()) texto += u8(" Cuenta con ") + joinY(rasgos) + QLatin1Char('.');
        texto += QLatin1Char(' ') + r.pick(w.textosInmueble[size_t(fam - 1)]);
        texto += u8(" Precio: ") + precioTexto + QLatin1Char('.');
        const QString interna = r.chance(40) ? r.pick(w.notasInternas) : QString();

        // Window poster, and the one poster in Russian.
        bool cartel = r.chance(20);
        const bool ruso = mRusoCodigo.isEmpty() && fam <= 2 && m.op == 1 && m.activo && habitaciones > 0;
        cartel = cartel || ruso;
        const bool ingles = cartel && r.chance(50);
        QString cartelTexto, cartelIngles;
        if (cartel) {
            QString medidas = QString::number(m.m2) + u8(" m²");
            QString sizes = medidas;
            if (habitaciones > 0) {
                medidas += u8(" · %1 %2 · %3 %4")
                               .arg(habitaciones)
                               .arg(habitaciones == 1 ? u8("habitación") : u8("habitaciones"))
                               .arg(numBanos)
                               .arg(numBanos == 1 ? u8("baño") : u8("baños"));
                sizes += QStringLiteral(" · %1 %2 · %3 %4")
                             .arg(habitaciones)
                             .arg(habitaciones == 1 ? QStringLiteral("bedroom") : QStringLiteral("bedrooms"))
                             .arg(numBanos)
                             .arg(numBanos == 1 ? QStringLiteral("bathroom") : QStringLiteral("bathrooms"));
            }
            cartelTexto =
                capital(tipoNombre) + QStringLiteral(" en ") + lugar + QStringLiteral("\r\n") + medidas;
            if (!rasgos.isEmpty())
                cartelTexto += QStringLiteral("\r\n") + capital(rasgos.mid(0, 3).join(QStringLiteral(", ")));
            cartelTexto += u8("\r\nPrecio: ") + precioTexto;
            if (ingles)
                cartelIngles = t.ingles + QStringLiteral(" in ") + lugar + QStringLiteral("\r\n") + sizes +
                               QStringLiteral("\r\nPrice: ") + english.toString(m.precio) + u8(" €") +
                               (venta ? QString() : QStringLiteral(" per month"));
            if (ruso) {
                mRusoCodigo = m.codigo;
                mRusoCabecera = u8("ПРОДАЁТСЯ");
                mRusoTexto = t.ruso + u8(" — ") + lugar + u8("\r\nПлощадь: %1 м²").arg(m.m2) +
                             u8("\r\nСпален: %1 · Ванных комнат: %2").arg(habitaciones).arg(numBanos) +
                             u8("\r\nЦена: ") + russian.toString(m.precio) + u8(" €");
            }
        }

        ins.set("CODIGO", m.codigo);
        ins.set("ACTIVADO", sn(m.activo));
        ins.set("PUBLICAR", sn(m.activo));
        ins.set("DESTACADO", sn(m.activo && r.chance(5)));
        ins.literal("CARTELES", "'S'");
        ins.set("SUBIR_INTERNET", sn(m.activo));
        ins.literal("SUBIR_PRECIO", "'S'");
        ins.set("TIENEFOTOS", m.fotos ? QStringLiteral("2") : QStringLiteral("5"));
        ins.literal("GOOGLE_MAPS_MANUAL", "'N'");
        ins.literal("TURISTICO_ESTADO", "'--'");
        ins.set("CODTIPOINMUEBLE", t.codigo);
        ins.set("DESTIPOINMUEBLE", t.mayus);
        ins.set("CODTIPOOPERACION", m.op);
        ins.set("DESTIPOOPERACION", operacionAt(m.op).nombre);
        ins.set("CODTIPOZONA", mZonas[m.zona].codigo);
        ins.set("DESZONA", zona);
        ins.set("CODESTADO", m.estado);
        ins.set("CODORIGEN", r.weighted(origWeights) + 1);
        ins.set("CODAGENTE", m.agente);
        ins.set("CODCAPTADOR", m.agente);
        ins.set("CODPROPIETARIO", m.propietario >= 0 ? QVariant(mProp[m.propietario].codigo) : QVariant());
        ins.set("NOMBREPROPIETARIO",
                m.propietario >= 0 ? QVariant(mProp[m.propietario].apeynom) : QVariant());
        ins.set("FECHAALTA", m.alta);
        {
            const QDate day = r.between(m.alta, hoy);
            const int h = r.range(9, 19);
            const int mi = r.range(0, 59);
            ins.set("FECHA_MODIFICA", QDateTime(day, QTime(h, mi)));
        }
        ins.set("TIPOVIA", tipovia);
        ins.set("NOMBREVIA", via);
        ins.set("NUMERO", numero);
        ins.set("PLANTA", orNull(planta));
        ins.set("PUERTA", orNull(puerta));
        ins.set("CP", cp(m.town));
        ins.set("MUNICIPIO", townName(m.town));
        ins.set("PROVINCIA", province(m.town));
        {
            const int dLat = r.range(-120, 120);
            const int dLon = r.range(-120, 120);
            ins.set("LATITUDE", town.lat + dLat / 10000.0);
            ins.set("LONGITUDE", town.lon + dLon / 10000.0);
        }
        ins.set("EUROIMPORTE", double(m.precio));
        if (venta) {
            const int pct = r.range(90, 97);
            ins.set("EUROMINIMO", double(m.precio * pct / 100 / 500 * 500));
            const int half = r.range(6, 10);
            ins.set("HONORARIO_PORCENTAJE", half / 2.0);
        } else {
            ins.set("EUROMINIMO", QVariant());
            ins.set("HONORARIO_PORCENTAJE", QVariant());
        }
        ins.set("CSUPER1", double(m.m2));
        ins.set("CSUPER2", super2);
        ins.set("CSUPER3", super3);
        ins.set("CSUPER4", super4);
        ins.set("CSUPSOLAR", supSolar);
        ins.set("CHABDOBLES", dobles);
        ins.set("CHABSENCILLAS", sencillas);
        ins.set("CNUMSUITE", suite);
        ins.set("CNUMBANOS", banos);
        ins.set("CNUMASEOS", aseos);
        ins.set("CPLAZAS", plazas);
        ins.set("CALTURA", altura);
        for (int k = 0; k < nFlags; ++k)
            ins.set(w.flags[size_t(k)].column.constData(), sn(f[size_t(k)]));
        for (const char* c : kFlagsNo)
            ins.literal(c, "'N'");
        for (const char* c : kFotosAct)
            ins.literal(c, "'N'");
        ins.set("SGASTOSCOMUNIDAD", fam == 1 ? QVariant(double(r.range(25, 120))) : QVariant());
        if (fam == 1 || fam == 2 || fam == 4 || fam == 5 || fam == 7) {
            const int e = r.weighted(energyWeights);
            const int consumo = r.range(energyFrom[e] * 10, energyTo[e] * 10);
            const int emisiones = r.range(consumo / 6, consumo / 4);
            ins.set("ENERGETICA", QString(QChar(QLatin1Char('A').unicode() + e)));
            ins.set(
                "CONSUMO",
                QLocale::c().toString(consumo / 10.0, 'f', 1).replace(QLatin1Char('.'), QLatin1Char(',')));
            ins.set(
                "EMISIONES",
                QLocale::c().toString(emisiones / 10.0, 'f', 1).replace(QLatin1Char('.'), QLatin1Char(',')));
        } else {
            ins.set("ENERGETICA", QVariant());
            ins.set("CONSUMO", QVariant());
            ins.set("EMISIONES", QVariant());
        }
        if (venta && r.chance(60)) {
            static const char az[] = "ABCDEFGHJKLMNPQRSTUVWXYZ";
            QString ref = pad(r.range(0, 9999999), 7);
            for (int k = 0; k < 2; ++k)
                ref += QLatin1Char(az[r.range(0, 23)]);
            ref += pad(r.range(0, 9999), 4);
            ref += QLatin1Char(az[r.range(0, 23)]);
            ref += pad(r.range(1, 9999), 4);
            for (int k = 0; k < 2; ++k)
                ref += QLatin1Char(az[r.range(0, 23)]);
            ins.set("REFCATASTRAL", ref);
        } else {
            ins.set("REFCATASTRAL", QVariant());
        }
        ins.set("TITULO", titulo);
        ins.set("DESCRIPCION", descripcion);
        ins.set("OBSERVACIONES", texto);
        ins.set("OBSERVACIONES_TEXTO", texto);
        ins.set("OBSERVA_INTERNAS", orNull(interna));
        ins.set("OBSERVA_INTERNAS_TEXTO", orNull(interna));
        ins.set("CARTELES_CABECERA", cartel ? QVariant(operacionAt(m.op).cabecera) : QVariant());
        ins.set("CARTELES_INFORMACION", orNull(cartelTexto));
        ins.set("CARTELES_PIE", cartel ? QVariant(pie) : QVariant());
        ins.set("CARTELES_CABECERAENG", ingles ? QVariant(operacionAt(m.op).cabeceraIngles) : QVariant());
        ins.set("CARTELES_INFORMAINGLES", orNull(cartelIngles));
        ins.set("CARTELES_PIEENG", ingles ? QVariant(pie) : QVariant());
        {
            const bool fc = m.activo && r.chance(60);
            const bool id = m.activo && r.chance(70);
            const bool hb = m.activo && r.chance(30);
            const bool ps = m.activo && r.chance(40);
            ins.set("PORTAL_FOTOCASA", sn(fc));
            ins.set("PORTAL_IDEALISTA", sn(id));
            ins.set("PORTAL_HABITACLIA", sn(hb));
            ins.set("PORTAL_PISOS", sn(ps));
        }
        ins.exec();
    }
}

void Demo::demandas()
{
    baseDem = maxOf("DEMANDAS", "CODIGO");
    lastDem = baseDem;
    const int c = int(mCli.size());
    mBusca.assign(size_t(c), {});
    if (c == 0) return;
    static const int famWeights[] = {55, 25, 4, 3, 8, 5};
    constexpr int nFlags = int(sizeof kDemandFlags / sizeof kDemandFlags[0]);
    std::array<bool, nFlags> wish{};
    auto flagAt = [](const char* column) {
        for (int i = 0; i < nFlags; ++i)
            if (std::strcmp(kDemandFlags[i], column) == 0) return i;
        throw std::logic_error(column);
    };
    const int iMuebles = flagAt("CMUEBLES");
    Inserter ins(d.datos, d.Transacion, "DEMANDAS");
    ins.keyedBy("CODIGO", "INTEGER");
    for (int j = 0; j < s.demandas; ++j) {
        const int ci = j < c ? j : r.range(0, c - 1);
        const Persona& cli = mCli[ci];
        const int fam = r.weighted(famWeights) + 1;
        const int op = r.range(0, 99) < (fam <= 2 ? 62 : 50) ? 1 : 2;
        const int tipo1 = pickTipo(fam);
        int tipo2 = -1;
        if (r.chance(40)) {
            tipo2 = pickTipo(fam);
            if (tipo2 == tipo1) tipo2 = -1;
        }
        const int town = r.chance(70) ? cli.town : randomTown();
        int town2 = -1;
        if (r.chance(25)) {
            town2 = randomTown();
            if (town2 == town || townAt(town2).province != townAt(town).province) town2 = -1;
        }
        int zona = 0;
        if (r.chance(30)) {
            const std::vector<int>& zs = mZonasDe[town];
            zona = mZonas[zs[r.range(0, int(zs.size()) - 1)]].codigo;
        }
        const Tipo& t = tipoAt(tipo1);
        const int m2 = metros(t);
        const qint64 precio = priceOf(tipo1, op, town, m2);
        const qint64 step = op == 1 ? 1000 : 10;
        const int up = r.range(105, 135);
        const qint64 hasta = std::max(step, (precio * up / 100 + step / 2) / step * step);
        QVariant desde;
        if (r.chance(70)) {
            const int low = r.range(50, 80);
            desde = double(precio * low / 100 / step * step);
        }
        const QVariant metrosDesde = r.chance(55) ? QVariant(m2 * 85 / 100) : QVariant();
        const QVariant metrosHasta = r.chance(20) ? QVariant(m2 * 160 / 100) : QVariant();
        QVariant habDesde, banosDesde;
        if (fam <= 2 && t.codigo != 5) {
            if (r.chance(60)) habDesde = std::clamp(m2 / 30, 1, 4);
            if (r.chance(35)) banosDesde = m2 > 100 ? 2 : 1;
        }
        wish.fill(false);
        for (const DemandFlag& dw : kDemandWishes)
            if (dw.family == fam || (dw.family == 0 && fam <= 2))
                if (r.chance(dw.percent)) wish[flagAt(dw.column)] = true;
        if (op == 2 && fam <= 2 && r.chance(30)) wish[iMuebles] = true;
        QDate alta = r.between(cli.alta, std::min(cli.alta.addDays(30), hoy));
        if (mBusca[ci].familia == 0) mBusca[ci] = {fam, op};

        ins.set("CODIGO", ++lastDem);
        ins.set("CODCLIENTE", cli.codigo);
        ins.set("CODAGENTE", cli.agente);
        ins.set("FECHAALTA", alta);
        ins.set("SITUACION", cli.situacion);
        ins.set("TELEFONO1", cli.movil);
        ins.set("TELEFONO2", orNull(cli.tel));
        ins.set("CODFAMILIA", fam);
        ins.set("CODOPERACION", op);
        ins.set("CODINMUEBLE1", t.codigo);
        ins.set("CODINMUEBLE2", tipo2 >= 0 ? QVariant(tipoAt(tipo2).codigo) : QVariant());
        ins.set("CODINMUEBLE3", QVariant());
        ins.set("POBLACION1", townName(town));
        ins.set("POBLACION2", town2 >= 0 ? QVariant(townName(town2)) : QVariant());
        ins.set("CODZONA", zona);
        for (const char* z :
             {"CODZONA2", "CODZONA3", "CODZONA4", "CODZONAA", "CODZONAB", "CODZONAC", "CODZONAD"})
            ins.literal(z, "0");
        ins.set("PRECIODESDE", desde);
        ins.set("PRECIOHASTA", double(hasta));
        ins.set("SDESDEMETROS", metrosDesde);
        ins.set("SHASTAMETROS", metrosHasta);
        ins.set("SDESDEHABITACIONES", habDesde);
        ins.set("SDESDEBANOS", banosDesde);
        for (int k = 0; k < nFlags; ++k)
            ins.set(kDemandFlags[k], sn(wish[k]));
        ins.exec();
    }
}

void Demo::descartes()
{
    baseDesc = maxOf("DESCARTES", "CODIGO");
    lastDesc = baseDesc;
    const int n = int(mInm.size());
    const int c = int(mCli.size());
    if (n == 0 || c == 0) return;
    QHash<int, std::vector<int>> porBusca; // family * 10 + operation -> properties
    for (int i = 0; i < n; ++i)
        porBusca[tipoAt(mInm[i].tipo).familia * 10 + (mInm[i].op == 1 ? 1 : 2)].push_back(i);
    std::set<std::pair<int, int>> hechos;
    Inserter ins(d.datos, d.Transacion, "DESCARTES");
    for (int k = 0; k < s.descartes; ++k) {
        for (int tries = 0; tries < 20; ++tries) {
            const int ci = r.range(0, c - 1);
            const Busca& b = mBusca.empty() ? Busca{} : mBusca[ci];
            int pi;
            const auto it = porBusca.constFind(b.familia * 10 + b.op);
            if (b.familia > 0 && it != porBusca.constEnd() && !it->empty())
                pi = (*it)[r.range(0, int(it->size()) - 1)];
            else
                pi = r.range(0, n - 1);
            if (!hechos.insert({ci, pi}).second) continue;
            const QDate fecha = r.between(std::max(mCli[ci].alta, mInm[pi].alta), hoy);
            ins.set("CODIGO", ++lastDesc);
            ins.set("CODCLIENTE", mCli[ci].codigo);
            ins.set("CODINMUEBLE", mInm[pi].codigo);
            ins.set("FECHA", fecha);
            ins.set("MOTIVO", r.pick(w.motivosDescarte));
            ins.exec();
            break;
        }
    }
}

void Demo::gestiones()
{
    baseGest = maxOf("GESTIONES", "CODIGO");
    lastGest = baseGest;
    baseAgenda = std::max(maxOf("AGENDA", "CODIGO"), maxOf("AGENDAX", "ID"));
    lastAgenda = baseAgenda;
    const int n = int(mInm.size());
    const int c = int(mCli.size());
    static const int gestionWeights[] = {30, 25, 6, 12, 2, 4, 6, 3, 2, 2, 7, 1};
    Inserter g(d.datos, d.Transacion, "GESTIONES");
    Inserter a(d.datos, d.Transacion, "AGENDA");
    auto agenda = [&](QDate fecha, const QString& h, bool hecho, const QString& texto, int agente,
                      int gestion) {
        a.set("CODIGO", ++lastAgenda);
        a.set("FECHA", fecha);
        a.set("HORA", h);
        a.set("ALARMA", kSi);
        a.set("REALIZADO", sn(hecho));
        a.set("TEXTO", texto.left(300));
        a.set("FECHAYHORA", at(fecha, h));
        a.set("USUARIO", mUsuarioDe.value(agente));
        a.set("CODGESTION", gestion);
        a.exec();
    };
    for (int k = 0; k < s.gestiones && (n > 0 || c > 0); ++k) {
        const int tipo = r.weighted(gestionWeights) + 1;
        const bool conInmueble = tipo == 2 || tipo == 3 || tipo == 7 || tipo == 8 || tipo == 9 || tipo == 10;
        const bool conCliente = tipo != 7 && tipo != 8;
        int pi = -1;
        int ci = -1;
        if (n > 0 && (conInmueble || r.chance(50))) pi = r.range(0, n - 1);
        if (c > 0 && conCliente) ci = r.range(0, c - 1);
        if (pi < 0 && ci < 0) {
            if (c > 0)
                ci = r.range(0, c - 1);
            else
                pi = r.range(0, n - 1);
        }
        QDate fecha = hoy.addDays(r.range(-540, 30));
        QDate earliest;
        if (pi >= 0) earliest = mInm[pi].alta;
        if (ci >= 0 && (!earliest.isValid() || mCli[ci].alta > earliest)) earliest = mCli[ci].alta;
        if (fecha < earliest) fecha = r.between(earliest, hoy.addDays(30));
        const QString h = hora();
        const bool futuro = fecha >= hoy;
        const bool pendiente = futuro || r.chance(8);
        const bool confirmada = r.chance(futuro ? 40 : 75);
        const int agente = pi >= 0 ? mInm[pi].agente : mCli[ci].agente;
        const int registrador = r.chance(80) ? agente : mAgentes.front().codigo;
        const QString cliente = ci >= 0 ? mCli[ci].apeynom : u8("el cliente");
        const QString codigo = pi >= 0 ? mInm[pi].codigo : QString();
        QString asunto;
        switch (tipo) {
        case 1:
            asunto = u8("Llamar a ") + cliente +
                     (pi >= 0 ? u8(" por el inmueble ") + codigo : u8(" para concertar visitas"));
            break;
        case 2:
            asunto = u8("Visita al inmueble ") + codigo + u8(" con ") + cliente;
            break;
        case 3: {
            const int pct = r.range(85, 97);
            asunto = u8("Oferta de ") +
                     Money::fromUnits(mInm[pi].precio * pct / 100 / 500 * 500).toSpanish(0, true) +
                     u8(" por el inmueble ") + codigo;
            break;
        }
        case 4:
            asunto = u8("Enviar por correo ") +
                     (pi >= 0 ? u8("la ficha del inmueble ") + codigo : u8("una selección de inmuebles")) +
                     u8(" a ") + cliente;
            break;
        case 5:
            asunto = u8("Carta de presentación de la agencia a ") + cliente;
            break;
        case 6:
            asunto = u8("Reunión en la oficina con ") + cliente;
            break;
        case 7:
            asunto =
                u8("Captación del inmueble ") + codigo +
                (mInm[pi].propietario >= 0 ? u8(" de ") + mProp[mInm[pi].propietario].apeynom : QString());
            break;
        case 8:
            asunto = u8("Tasación del inmueble ") + codigo;
            break;
        case 9:
            asunto = u8("Firma de la reserva del inmueble ") + codigo + u8(" con ") + cliente;
            break;
        case 10:
            asunto = u8("Firma en notaría del inmueble ") + codigo;
            break;
        case 11:
            asunto = u8("Seguimiento de la demanda de ") + cliente;
            break;
        default:
            asunto = u8("Revisar documentación con ") + cliente;
            break;
        }
        QString enlaces;
        if (pi >= 0) {
            const Inmueble& m = mInm[pi];
            enlaces += u8("Propiedad: ") + m.codigo + QLatin1Char(' ') + capital(tipoAt(m.tipo).nombre) +
                       QStringLiteral(", ") + m.direccion + QStringLiteral("\r\n");
            if (m.propietario >= 0)
                enlaces += u8("Propietario: ") + mProp[m.propietario].apeynom + QStringLiteral("\r\n");
        }
        if (ci >= 0) enlaces += u8("Cliente: ") + mCli[ci].apeynom + QStringLiteral("\r\n");
        const QString resultado = pendiente ? QString() : r.pick(w.resultadosGestion);
        const bool enAgenda = r.chance(fecha >= hoy.addDays(-10) ? 70 : 10);

        g.set("CODIGO", ++lastGest);
        g.set("CODTIPOGESTION", tipo);
        g.set("ASUNTO", asunto.left(100));
        g.set("FECHA", fecha);
        g.set("HORA", h);
        g.set("CODAGENTE", agente);
        g.set("CODAGENTE_REGISTRADOR", registrador);
        g.set("AGENDA", sn(enAgenda));
        g.set("CONFIRMADA", sn(confirmada));
        g.set("PENDIENTE", sn(pendiente));
        g.set("RESULTADO", orNull(resultado));
        g.set("CODORIGEN", ci >= 0 ? QVariant(mCli[ci].origen) : QVariant());
        g.set("CODCLIENTE", ci >= 0 ? QVariant(mCli[ci].codigo) : QVariant());
        g.set("CODINMUEBLE", orNull(codigo));
        g.set("TEXTO_AGENDA", enlaces.left(1000));
        g.exec();
        if (enAgenda) {
            const bool hecho = fecha < hoy.addDays(-1) && r.chance(80);
            agenda(fecha, h, hecho, asunto, agente, lastGest);
        }
    }
    // Reminders of each agent that come from no follow-up.
    if (s.gestiones > 0)
        for (const Agente& ag : mAgentes)
            for (int k = 0; k < 2; ++k) {
                const QDate fecha = hoy.addDays(r.range(-3, 20));
                const QString h = hora();
                agenda(fecha, h, false, r.pick(w.recordatorios), ag.codigo, 0);
            }
}

void Demo::operaciones()
{
    baseOp = maxOf("OPERACIONES", "CODOPERACION");
    lastOp = baseOp;
    Inserter ins(d.datos, d.Transacion, "OPERACIONES");
    for (const Operacion& o : mOps) {
        const Inmueble& m = mInm[o.inmueble];
        const Persona& c = mCli[o.cliente];
        const bool venta = m.op == 1 || m.op == 3;
        qint64 importe = m.precio;
        if (venta) {
            const int pct = r.range(92, 100);
            importe = std::max<qint64>(500, m.precio * pct / 100 / 500 * 500);
        }
        const double gastoFijo = venta ? double(r.range(3, 15) * 100) : double(importe);
        const double porcentaje = venta ? 3.0 : 0.0;
        const double gastoVariable = double(importe) * porcentaje / 100.0;
        const double total = gastoFijo + double(importe) + gastoVariable;
        double entrada = total;
        QVariant anos, interes, cuota;
        if (venta) {
            const int pct = r.range(20, 35);
            entrada = std::round(total * pct / 100.0);
            const int a = r.range(4, 6) * 5;
            const int i = r.range(220, 420);
            anos = a;
            interes = i / 100.0;
            cuota = d.cuotaMensual(i / 100.0, a, Money::fromDouble(total - entrada)).toDouble();
        }
        QString info = venta ? QStringLiteral("Compraventa con financiacion bancaria.")
                             : QStringLiteral("Contrato de arrendamiento con fianza de dos mensualidades.");
        ins.set("CODOPERACION", ++lastOp);
        ins.set("FECHAALTA", o.alta);
        ins.set("CODORIGEN", c.origen);
        ins.set("CODCLIENTE", c.codigo);
        ins.set("CODINMUEBLE", m.codigo);
        ins.set("FECHARESERVA", orNull(o.reserva));
        ins.set("FECHAACEPTA", orNull(o.acepta));
        ins.set("FECHAFINALIZA", orNull(o.finaliza));
        ins.set("FECHACANCELACION", orNull(o.cancela));
        ins.set("GASTOFIJO", gastoFijo);
        ins.set("GASTOVARIABLE", gastoVariable);
        ins.set("IMPORTEINMUEBLE", double(importe));
        ins.set("IMPORTEOPERACION", total);
        ins.set("IMPORTEENTRADA", entrada);
        ins.set("IMPORTEHIPOTECA", total - entrada);
        ins.set("ANOSHIPOTECA", anos);
        ins.set("INTERES", interes);
        ins.set("CUOTAHIPOTECA", cuota);
        ins.set("PORCENTAJE_VARIABLE", porcentaje);
        ins.set("INFORMACION", info);
        ins.set("OBSERVACIONES",
                o.estado == 4 ? QVariant(QStringLiteral("Operacion cancelada por el cliente.")) : QVariant());
        ins.set("CODAGENTE", m.agente);
        ins.set("ANOMES", o.alta.toString(QStringLiteral("yyyy/MM")));
        ins.set("TIPOOPERACION", operacionAt(m.op).nombre);
        ins.exec();
    }
}

void Demo::gastos()
{
    baseGasto = maxOf("INMUEBLES_GASTOS", "CODIGO");
    lastGasto = baseGasto;
    const int n = int(mInm.size());
    if (n == 0) return;
    std::vector<int> weights;
    for (const demo::ClaseGasto& g : w.gastos)
        weights.push_back(g.peso);
    const int wanted = std::min(std::max(0, s.gastos), 99999 - baseGasto);
    Inserter ins(d.datos, d.Transacion, "INMUEBLES_GASTOS");
    for (int k = 0; k < wanted; ++k) {
        const demo::ClaseGasto& cl = w.gastos[size_t(r.weighted(weights))];
        const Inmueble& m = mInm[r.range(0, n - 1)];
        const QDate fecha = r.between(m.alta, hoy);
        QString descripcion = r.pick(cl.conceptos);
        if (cl.tipo == QLatin1String("IBI"))
            descripcion += QLatin1Char(' ') + QString::number(fecha.year());
        else if (cl.tipo == QLatin1String("COMUNIDAD"))
            descripcion += QStringLiteral(" de ") + w.meses.at(fecha.month() - 1);
        const int cents = r.range(cl.min * 100, cl.max * 100);
        ins.set("CODIGO", pad(++lastGasto, 5));
        ins.set("CODINMUEBLE", m.codigo);
        ins.set("DESCRIPCION", descripcion.left(60));
        ins.set("FECHA", fecha);
        ins.set("IMPORTE", cents / 100.0);
        ins.set("TIPOGASTO", cl.tipo);
        ins.exec();
    }
}

void Demo::fotos()
{
    baseFoto = maxOf("IMAGENES", "ID", &d.Imagenes);
    lastFoto = baseFoto;
    const bool mini =
        Query::scalar(
            d.Imagenes, d.Transacion,
            QStringLiteral("SELECT COUNT(*) FROM RDB$RELATION_FIELDS WHERE RDB$RELATION_NAME = 'IMAGENES' "
                           "AND RDB$FIELD_NAME = 'PICTURE_MINI'"))
            .toInt() > 0;
    static const quint32 paredes[] = {0xF2E6D0, 0xFFFFFF, 0xE8D5B5, 0xF5DEB3, 0xD9C7A7, 0xEFE3C8, 0xE4B98E};
    static const quint32 tejados[] = {0xB5462F, 0x9E3B26, 0x8A4B2A, 0xA0522D};
    static const quint32 cielos[] = {0x4A90D9, 0x5FA8E8, 0x3F7FBF, 0x6CB4EE};
    static const quint32 suelos[] = {0x6B8E23, 0x8FBC5A, 0xC2A46B, 0x9C8A5A};
    static const quint32 ventanas[] = {0x2F4F6F, 0x3B5F7F, 0x28425A};
    Inserter ins(d.Imagenes, d.Transacion, "IMAGENES");
    for (const Inmueble& m : mInm) {
        if (!m.fotos) continue;
        const int fam = tipoAt(m.tipo).familia;
        const int count = r.range(1, 4);
        for (int p = 0; p < count; ++p) {
            Escena e;
            e.cielo = cielos[r.range(0, 3)];
            e.suelo = suelos[r.range(0, 3)];
            e.pared = paredes[r.range(0, 6)];
            e.tejado = tejados[r.range(0, 3)];
            e.ventana = ventanas[r.range(0, 2)];
            e.bloque = fam == 1 || fam == 5 || fam == 7;
            e.x0 = r.range(100, 380);
            e.x1 = std::min(950, e.x0 + r.range(300, 520));
            e.techo = e.bloque ? r.range(80, 250) : r.range(380, 520);
            e.sol = r.range(80, 920);
            ins.set("ID", ++lastFoto);
            ins.set("CODINMUEBLE", m.codigo.toInt());
            ins.set("FECHA", m.alta);
            ins.set("GRAPHICCLASS", QStringLiteral("TPngImage"));
            ins.set("PICTURE", png(e, 320, 240));
            if (mini) ins.set("PICTURE_MINI", png(e, 96, 72));
            ins.exec();
        }
    }
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

} // namespace

void fillDemoAgency(Tdm& data, quint32 seed, const DemoSize& size)
{
    Demo(data, seed, size).run();
}

} // namespace tv
