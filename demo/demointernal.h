// Shared by the files that fill the demo agency: the generator, its random
// source, the row writer and the helpers more than one of them needs.
#pragma once

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

namespace tv::demogen {

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

    void prepare();

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

inline const QString kSi = QStringLiteral("S");
inline const QString kNo = QStringLiteral("N");
inline const QString& sn(bool b)
{
    return b ? kSi : kNo;
}
inline QString u8(const char* s)
{
    return QString::fromUtf8(s);
}

// Lower-case ASCII letters and digits only, for user names and e-mail addresses.
inline QString ascii(const QString& s)
{
    QString out;
    for (QChar c : s.normalized(QString::NormalizationForm_D))
        if (c.unicode() < 128 && c.isLetterOrNumber()) out += c.toLower();
    return out;
}

inline QString pad(qint64 n, int width)
{
    return QStringLiteral("%1").arg(n, width, 10, QLatin1Char('0'));
}

inline QVariant orNull(const QString& s)
{
    return s.isEmpty() ? QVariant() : QVariant(s);
}
inline QVariant orNull(QDate day)
{
    return day.isValid() ? QVariant(day) : QVariant();
}
inline QString capital(const QString& s)
{
    return s.isEmpty() ? s : s.left(1).toUpper() + s.mid(1);
}

// --------------------------------------------------------------- the world

using demo::Tipo;
using demo::Town;

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

} // namespace tv::demogen
