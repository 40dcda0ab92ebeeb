#include "query.h"

#include "database.h"
#include "fbapi.h"
#include "transaction.h"

#include <QRegularExpression>

#include <ibase.h>

#include <cmath>
#include <cstring>
#include <map>
#include <vector>

using namespace Firebird;

namespace tv {

// ---------------------------------------------------------------- parameters

QString convertParameters(const QString& sql, QStringList* names)
{
    static const QRegularExpression psql(
        QStringLiteral(R"(^\s*((CREATE|ALTER|RECREATE)(\s+OR\s+ALTER)?\s+(PROCEDURE|TRIGGER)|EXECUTE\s+BLOCK))"),
        QRegularExpression::CaseInsensitiveOption);
    if (psql.match(sql).hasMatch())
        return sql;

    QString out;
    out.reserve(sql.size());
    const int n = sql.size();
    auto isStart = [](QChar c) { return c.isLetter() || c == QLatin1Char('_'); };
    auto isPart = [](QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$'); };
    int i = 0;
    while (i < n) {
        const QChar c = sql[i];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            // Literal: copied verbatim, a doubled quote stays inside it.
            int j = i + 1;
            while (j < n) {
                if (sql[j] == c) {
                    if (j + 1 < n && sql[j + 1] == c) {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            out += sql.mid(i, j - i + 1);
            i = j + 1;
        } else if (c == QLatin1Char('-') && i + 1 < n && sql[i + 1] == QLatin1Char('-')) {
            int j = sql.indexOf(QLatin1Char('\n'), i);
            if (j < 0)
                j = n;
            out += sql.mid(i, j - i);
            i = j;
        } else if (c == QLatin1Char('/') && i + 1 < n && sql[i + 1] == QLatin1Char('*')) {
            int j = sql.indexOf(QLatin1String("*/"), i + 2);
            j = j < 0 ? n : j + 2;
            out += sql.mid(i, j - i);
            i = j;
        } else if (c == QLatin1Char(':') && i + 1 < n && isStart(sql[i + 1])) {
            int j = i + 1;
            while (j < n && isPart(sql[j]))
                ++j;
            if (names)
                names->append(sql.mid(i + 1, j - i - 1).toUpper());
            out += QLatin1Char('?');
            i = j;
        } else {
            out += c;
            ++i;
        }
    }
    return out;
}

// --------------------------------------------------------------------- Field

QString Field::asString() const
{
    if (isNull())
        return {};
    if (mValue.typeId() == QMetaType::QDateTime) {
        const QDateTime dt = mValue.toDateTime();
        return dt.time() == QTime(0, 0) ? dt.toString(QStringLiteral("dd/MM/yyyy"))
                                        : dt.toString(QStringLiteral("dd/MM/yyyy hh:mm:ss"));
    }
    if (mValue.typeId() == QMetaType::Double) {
        return QString::number(mValue.toDouble(), 'g', 15);
    }
    if (mValue.typeId() == QMetaType::QByteArray)
        return QString::fromUtf8(mValue.toByteArray());
    return mValue.toString();
}

int Field::asInteger() const
{
    if (isNull())
        return 0;
    if (mValue.typeId() == QMetaType::Double)
        return static_cast<int>(std::llround(mValue.toDouble()));
    if (mValue.typeId() == QMetaType::QString)
        return mValue.toString().trimmed().toInt();
    return mValue.toInt();
}

qlonglong Field::asInt64() const
{
    if (isNull())
        return 0;
    if (mValue.typeId() == QMetaType::Double)
        return std::llround(mValue.toDouble());
    if (mValue.typeId() == QMetaType::QString)
        return mValue.toString().trimmed().toLongLong();
    return mValue.toLongLong();
}

double Field::asDouble() const
{
    if (isNull())
        return 0.0;
    if (mValue.typeId() == QMetaType::QString)
        return mValue.toString().trimmed().toDouble();
    return mValue.toDouble();
}

QDateTime Field::asDateTime() const
{
    if (isNull())
        return {};
    if (mValue.typeId() == QMetaType::QDate)
        return mValue.toDate().startOfDay();
    return mValue.toDateTime();
}

QByteArray Field::asBytes() const
{
    if (isNull())
        return {};
    if (mValue.typeId() == QMetaType::QString)
        return mValue.toString().toUtf8();
    return mValue.toByteArray();
}

// ---------------------------------------------------------------------- Impl

namespace {

const unsigned kCsUtf8 = 4;
const unsigned kCsOctets = 1;
const int kSegment = 32000;

ISC_TIMESTAMP encodeTimestamp(const QDateTime& dt)
{
    ISC_TIMESTAMP ts;
    ts.timestamp_date = static_cast<ISC_DATE>(dt.date().toJulianDay() - 2400001);
    const QTime t = dt.time();
    ts.timestamp_time = static_cast<ISC_TIME>((t.hour() * 3600 + t.minute() * 60 + t.second()) * 10000 +
                                              t.msec() * 10);
    return ts;
}

QDateTime decodeTimestamp(const ISC_TIMESTAMP& ts)
{
    const QDate d = QDate::fromJulianDay(static_cast<qint64>(ts.timestamp_date) + 2400001);
    const unsigned frac = ts.timestamp_time;
    const int secs = static_cast<int>(frac / 10000);
    const int msec = static_cast<int>((frac % 10000) / 10);
    return QDateTime(d, QTime(secs / 3600, (secs / 60) % 60, secs % 60, msec));
}

bool isIntegerVariant(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::Short:
    case QMetaType::Bool:
        return true;
    default:
        return false;
    }
}

} // namespace

struct Query::Impl {
    Database* db = nullptr;
    Transaction* tr = nullptr;
    int listener = 0;

    QString sql;
    QString converted;
    QStringList positions;
    std::map<QString, QVariant> params;

    IStatement* stmt = nullptr;
    quint64 generation = 0;
    unsigned type = 0;
    IMessageMetadata* outMeta = nullptr;
    std::vector<unsigned char> outBuf;
    QStringList names;
    // The output layout, read once at prepare: asking the metadata object per
    // row and column costs more than the decoding itself on long lists.
    struct Column {
        unsigned type;
        int subType;
        int scale;
        unsigned length;
        unsigned charSet;
        unsigned offset;
        unsigned nullOffset;
    };
    std::vector<Column> columns;

    IResultSet* rs = nullptr;
    bool isOpen = false;
    bool atEof = true;
    QVector<QVariant> row;
    int affected = 0;

    ~Impl() { release(); }

    void closeCursor()
    {
        if (rs) {
            try {
                fb::guard([&] {
                    fb::Status st;
                    rs->close(&st);
                });
            } catch (const DatabaseError&) {
                rs->release();
            }
            rs = nullptr;
        }
    }

    void release()
    {
        closeCursor();
        if (outMeta) {
            outMeta->release();
            outMeta = nullptr;
        }
        if (stmt) {
            stmt->release();
            stmt = nullptr;
        }
        isOpen = false;
        atEof = true;
    }

    void need() const
    {
        if (!db || !tr)
            throw DataSetError(QStringLiteral("La consulta no tiene base de datos o transacción"));
    }

    void prepare()
    {
        need();
        ITransaction* tra = tr->handleFor(*db);
        if (stmt && generation == db->generation())
            return;
        release();
        fb::guard([&] {
            fb::Status st;
            const QByteArray text = converted.toUtf8();
            stmt = db->attachment()->prepare(&st, tra, 0, text.constData(), 1,
                                             IStatement::PREPARE_PREFETCH_METADATA);
            generation = db->generation();
            type = stmt->getType(&st);
            outMeta = stmt->getOutputMetadata(&st);
            const unsigned count = outMeta->getCount(&st);
            names.clear();
            columns.clear();
            for (unsigned i = 0; i < count; ++i) {
                names.append(QString::fromUtf8(outMeta->getAlias(&st, i)).toUpper());
                columns.push_back({outMeta->getType(&st, i) & ~1u, outMeta->getSubType(&st, i),
                                   outMeta->getScale(&st, i), outMeta->getLength(&st, i),
                                   outMeta->getCharSet(&st, i), outMeta->getOffset(&st, i),
                                   outMeta->getNullOffset(&st, i)});
            }
            outBuf.assign(outMeta->getMessageLength(&st), 0);
        });
    }

    // Builds the input message from the parameter values. The message is
    // typed after the values (the engine converts), except blobs, which are
    // written first and passed by id.
    IMessageMetadata* buildInput(fb::Status& st, ITransaction* tra, std::vector<unsigned char>& buf)
    {
        IMessageMetadata* in = stmt->getInputMetadata(&st);
        const unsigned count = in->getCount(&st);
        if (count != static_cast<unsigned>(positions.size())) {
            in->release();
            throw DataSetError(QStringLiteral("La sentencia espera %1 parámetros y tiene %2 con nombre")
                                   .arg(count)
                                   .arg(positions.size()));
        }
        if (count == 0) {
            buf.clear();
            return in;
        }
        IMetadataBuilder* b = in->getBuilder(&st);
        std::vector<QVariant> vals(count);
        std::vector<bool> blob(count, false);
        std::vector<bool> textBlobAsString(count, false);
        for (unsigned i = 0; i < count; ++i) {
            QVariant v = params[positions[i]];
            // An empty date is NULL, not a timestamp out of range.
            if ((v.typeId() == QMetaType::QDateTime && !v.toDateTime().isValid()) ||
                (v.typeId() == QMetaType::QDate && !v.toDate().isValid()))
                v = QVariant();
            vals[i] = v;
            const unsigned t = in->getType(&st, i) & ~1u;
            if (!v.isValid() || v.isNull())
                continue;
            if (t == SQL_BLOB) {
                const bool text = in->getSubType(&st, i) == 1;
                if (text && v.typeId() != QMetaType::QByteArray && v.toString().toUtf8().size() <= kSegment) {
                    // Short texts go as strings: the engine makes the blob
                    // and transliterates to the column's charset.
                    textBlobAsString[i] = true;
                } else {
                    blob[i] = true;
                    continue;
                }
            }
            if (v.typeId() == QMetaType::QString || textBlobAsString[i]) {
                const int len = std::max<qsizetype>(1, v.toString().toUtf8().size());
                b->setType(&st, i, SQL_VARYING + 1);
                b->setLength(&st, i, static_cast<unsigned>(len));
                b->setCharSet(&st, i, kCsUtf8);
                b->setScale(&st, i, 0);
            } else if (isIntegerVariant(v)) {
                b->setType(&st, i, SQL_INT64 + 1);
                b->setLength(&st, i, sizeof(ISC_INT64));
                b->setScale(&st, i, 0);
            } else if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float) {
                b->setType(&st, i, SQL_DOUBLE + 1);
                b->setLength(&st, i, sizeof(double));
                b->setScale(&st, i, 0);
            } else if (v.typeId() == QMetaType::QDateTime || v.typeId() == QMetaType::QDate) {
                b->setType(&st, i, SQL_TIMESTAMP + 1);
                b->setLength(&st, i, sizeof(ISC_TIMESTAMP));
                b->setScale(&st, i, 0);
            } else if (v.typeId() == QMetaType::QByteArray) {
                b->setType(&st, i, SQL_VARYING + 1);
                b->setLength(&st, i, static_cast<unsigned>(std::max<qsizetype>(1, v.toByteArray().size())));
                b->setCharSet(&st, i, kCsOctets);
                b->setScale(&st, i, 0);
            } else {
                const int len = std::max<qsizetype>(1, v.toString().toUtf8().size());
                b->setType(&st, i, SQL_VARYING + 1);
                b->setLength(&st, i, static_cast<unsigned>(len));
                b->setCharSet(&st, i, kCsUtf8);
                b->setScale(&st, i, 0);
            }
        }
        IMessageMetadata* msg = b->getMetadata(&st);
        b->release();
        in->release();

        buf.assign(msg->getMessageLength(&st), 0);
        for (unsigned i = 0; i < count; ++i) {
            const QVariant& v = vals[i];
            auto* nullFlag = reinterpret_cast<short*>(buf.data() + msg->getNullOffset(&st, i));
            unsigned char* data = buf.data() + msg->getOffset(&st, i);
            if (!v.isValid() || v.isNull()) {
                *nullFlag = -1;
                continue;
            }
            *nullFlag = 0;
            const unsigned t = msg->getType(&st, i) & ~1u;
            if (blob[i]) {
                const QByteArray bytes = v.typeId() == QMetaType::QByteArray ? v.toByteArray() : v.toString().toUtf8();
                ISC_QUAD id;
                IBlob* bl = nullptr;
                if (msg->getSubType(&st, i) == 1) {
                    // Text written as UTF-8; the engine converts to the column's charset.
                    const unsigned char bpb[] = {isc_bpb_version1,
                                                 isc_bpb_source_type, 1, 1,
                                                 isc_bpb_source_interp, 1, kCsUtf8,
                                                 isc_bpb_target_type, 1, 1,
                                                 isc_bpb_target_interp, 1, kCsUtf8};
                    bl = db->attachment()->createBlob(&st, tra, &id, sizeof bpb, bpb);
                } else {
                    bl = db->attachment()->createBlob(&st, tra, &id, 0, nullptr);
                }
                for (qsizetype off = 0; off < bytes.size(); off += kSegment) {
                    const qsizetype len = std::min<qsizetype>(kSegment, bytes.size() - off);
                    bl->putSegment(&st, static_cast<unsigned>(len), bytes.constData() + off);
                }
                bl->close(&st);
                std::memcpy(data, &id, sizeof id);
                continue;
            }
            switch (t) {
            case SQL_VARYING: {
                const QByteArray bytes = v.typeId() == QMetaType::QByteArray ? v.toByteArray() : v.toString().toUtf8();
                const auto len = static_cast<unsigned short>(bytes.size());
                std::memcpy(data, &len, sizeof len);
                std::memcpy(data + sizeof len, bytes.constData(), bytes.size());
                break;
            }
            case SQL_INT64: {
                const ISC_INT64 x = v.toLongLong();
                std::memcpy(data, &x, sizeof x);
                break;
            }
            case SQL_DOUBLE: {
                const double x = v.toDouble();
                std::memcpy(data, &x, sizeof x);
                break;
            }
            case SQL_TIMESTAMP: {
                const QDateTime dt =
                    v.typeId() == QMetaType::QDate ? v.toDate().startOfDay() : v.toDateTime();
                const ISC_TIMESTAMP ts = encodeTimestamp(dt);
                std::memcpy(data, &ts, sizeof ts);
                break;
            }
            default:
                throw DataSetError(QStringLiteral("Tipo de parámetro no admitido en %1").arg(positions[i]));
            }
        }
        return msg;
    }

    QByteArray readBlob(fb::Status& st, ITransaction* tra, const ISC_QUAD& id)
    {
        QByteArray out;
        ISC_QUAD q = id;
        IBlob* bl = db->attachment()->openBlob(&st, tra, &q, 0, nullptr);
        char chunk[kSegment];
        for (;;) {
            unsigned len = 0;
            const int r = bl->getSegment(&st, sizeof chunk, chunk, &len);
            if (r == IStatus::RESULT_OK || r == IStatus::RESULT_SEGMENT)
                out.append(chunk, static_cast<qsizetype>(len));
            else
                break;
        }
        bl->close(&st);
        return out;
    }

    void decodeRow(fb::Status& st, ITransaction* tra)
    {
        const auto count = static_cast<int>(columns.size());
        row.resize(count);
        const unsigned char* buf = outBuf.data();
        for (int i = 0; i < count; ++i) {
            const Column& c = columns[static_cast<size_t>(i)];
            if (*reinterpret_cast<const short*>(buf + c.nullOffset)) {
                row[i] = QVariant();
                continue;
            }
            const unsigned char* data = buf + c.offset;
            const unsigned t = c.type;
            const int scale = c.scale;
            auto scaled = [scale](qlonglong x) -> QVariant {
                if (scale >= 0)
                    return x;
                return static_cast<double>(x) / std::pow(10.0, -scale);
            };
            switch (t) {
            case SQL_TEXT: {
                const unsigned len = c.length;
                const auto* p = reinterpret_cast<const char*>(data);
                if (c.charSet == kCsOctets) {
                    row[i] = QByteArray(p, len);
                } else {
                    unsigned end = len;
                    while (end > 0 && p[end - 1] == ' ')
                        --end;
                    row[i] = QString::fromUtf8(p, end);
                }
                break;
            }
            case SQL_VARYING: {
                unsigned short len;
                std::memcpy(&len, data, sizeof len);
                const auto* p = reinterpret_cast<const char*>(data + sizeof len);
                if (c.charSet == kCsOctets)
                    row[i] = QByteArray(p, len);
                else
                    row[i] = QString::fromUtf8(p, len);
                break;
            }
            case SQL_SHORT: {
                short x;
                std::memcpy(&x, data, sizeof x);
                row[i] = scale < 0 ? scaled(x) : QVariant(int(x));
                break;
            }
            case SQL_LONG: {
                ISC_LONG x;
                std::memcpy(&x, data, sizeof x);
                row[i] = scale < 0 ? scaled(x) : QVariant(int(x));
                break;
            }
            case SQL_INT64: {
                ISC_INT64 x;
                std::memcpy(&x, data, sizeof x);
                row[i] = scaled(x);
                break;
            }
            case SQL_FLOAT: {
                float x;
                std::memcpy(&x, data, sizeof x);
                row[i] = double(x);
                break;
            }
            case SQL_DOUBLE:
            case SQL_D_FLOAT: {
                // Dialect-1 NUMERIC is a double carrying a scale; the value is already right.
                double x;
                std::memcpy(&x, data, sizeof x);
                row[i] = x;
                break;
            }
            case SQL_TIMESTAMP: {
                ISC_TIMESTAMP ts;
                std::memcpy(&ts, data, sizeof ts);
                row[i] = decodeTimestamp(ts);
                break;
            }
            case SQL_TYPE_DATE: {
                ISC_DATE d;
                std::memcpy(&d, data, sizeof d);
                row[i] = QDate::fromJulianDay(static_cast<qint64>(d) + 2400001);
                break;
            }
            case SQL_TYPE_TIME: {
                ISC_TIME x;
                std::memcpy(&x, data, sizeof x);
                const int secs = static_cast<int>(x / 10000);
                row[i] = QTime(secs / 3600, (secs / 60) % 60, secs % 60, static_cast<int>((x % 10000) / 10));
                break;
            }
            case SQL_BOOLEAN:
                row[i] = bool(*data);
                break;
            case SQL_BLOB: {
                ISC_QUAD id;
                std::memcpy(&id, data, sizeof id);
                const QByteArray bytes = readBlob(st, tra, id);
                if (c.subType == 1)
                    row[i] = QString::fromUtf8(bytes);
                else
                    row[i] = bytes;
                break;
            }
            default:
                row[i] = QVariant();
            }
        }
    }

    void fetch()
    {
        fb::guard([&] {
            fb::Status st;
            if (rs->fetchNext(&st, outBuf.data()) == IStatus::RESULT_OK) {
                atEof = false;
                decodeRow(st, tr->handleFor(*db));
            } else {
                atEof = true;
                closeCursor();
            }
        });
    }
};

// --------------------------------------------------------------------- Query

Query::Query() : d(std::make_unique<Impl>()) {}

Query::Query(Database& db, Transaction& tr, const QString& sql) : Query()
{
    setDatabase(db);
    setTransaction(tr);
    if (!sql.isEmpty())
        setSQL(sql);
}

Query::~Query()
{
    if (d->tr && d->listener)
        d->tr->removeEndListener(d->listener);
}

void Query::setDatabase(Database& db)
{
    if (d->db != &db) {
        d->release();
        d->db = &db;
    }
}

void Query::setTransaction(Transaction& tr)
{
    if (d->tr == &tr)
        return;
    if (d->tr && d->listener)
        d->tr->removeEndListener(d->listener);
    d->tr = &tr;
    // A hard commit ends the cursor; rows already read stay readable.
    d->listener = tr.addEndListener([impl = d.get()] {
        if (impl->rs) {
            impl->closeCursor();
            impl->atEof = true;
        }
    });
}

Database* Query::database() const
{
    return d->db;
}

Transaction* Query::transaction() const
{
    return d->tr;
}

void Query::setSQL(const QString& sql)
{
    if (sql == d->sql)
        return;
    d->release();
    d->sql = sql;
    d->positions.clear();
    d->converted = convertParameters(sql, &d->positions);
    std::map<QString, QVariant> kept;
    for (const QString& n : d->positions) {
        auto it = d->params.find(n);
        kept[n] = it == d->params.end() ? QVariant() : it->second;
    }
    d->params = std::move(kept);
    d->names.clear();
}

QString Query::sql() const
{
    return d->sql;
}

QStringList Query::paramNames() const
{
    QStringList out;
    for (const QString& n : d->positions)
        if (!out.contains(n))
            out.append(n);
    return out;
}

Param Query::paramByName(const QString& name)
{
    auto it = d->params.find(name.toUpper());
    if (it == d->params.end())
        throw DataSetError(QStringLiteral("Parameter '%1' not found").arg(name));
    return Param(&it->second);
}

bool Query::hasParam(const QString& name) const
{
    return d->params.count(name.toUpper()) > 0;
}

void Query::open()
{
    close();
    d->prepare();
    fb::guard([&] {
        fb::Status st;
        ITransaction* tra = d->tr->handleFor(*d->db);
        std::vector<unsigned char> inBuf;
        IMessageMetadata* in = d->buildInput(st, tra, inBuf);
        try {
            if (d->type == isc_info_sql_stmt_select || d->type == isc_info_sql_stmt_select_for_upd) {
                d->rs = d->stmt->openCursor(&st, tra, in, inBuf.empty() ? nullptr : inBuf.data(), d->outMeta, 0);
                d->isOpen = true;
                in->release();
                in = nullptr;
                d->fetch();
            } else {
                d->stmt->execute(&st, tra, in, inBuf.empty() ? nullptr : inBuf.data(),
                                 d->names.isEmpty() ? nullptr : d->outMeta,
                                 d->names.isEmpty() ? nullptr : d->outBuf.data());
                in->release();
                in = nullptr;
                d->isOpen = true;
                d->affected = static_cast<int>(d->stmt->getAffectedRecords(&st));
                if (d->names.isEmpty()) {
                    d->atEof = true;
                } else {
                    d->atEof = false;
                    d->decodeRow(st, tra);
                }
            }
        } catch (...) {
            if (in)
                in->release();
            throw;
        }
    });
}

void Query::exec()
{
    close();
    d->prepare();
    if (d->type == isc_info_sql_stmt_select || d->type == isc_info_sql_stmt_select_for_upd) {
        open();
        close();
        return;
    }
    open();
    d->isOpen = false;
}

void Query::close()
{
    d->closeCursor();
    d->isOpen = false;
    d->atEof = true;
    d->row.clear();
}

bool Query::isOpen() const
{
    return d->isOpen;
}

bool Query::eof() const
{
    return d->atEof;
}

void Query::next()
{
    if (d->atEof)
        return;
    if (!d->rs) {
        d->atEof = true;
        return;
    }
    d->fetch();
}

int Query::rowsAffected() const
{
    return d->affected;
}

int Query::fieldCount() const
{
    return d->names.size();
}

Field Query::field(int i) const
{
    return Field(d->names.value(i), d->atEof || i >= d->row.size() ? QVariant() : d->row[i]);
}

int Query::fieldIndex(const QString& name) const
{
    return d->names.indexOf(name.toUpper());
}

Field Query::fieldByName(const QString& name) const
{
    const int i = fieldIndex(name);
    if (i < 0)
        throw DataSetError(QStringLiteral("Field '%1' not found").arg(name));
    return field(i);
}

QStringList Query::fieldNames() const
{
    return d->names;
}

QVector<QVariant> Query::values() const
{
    return d->row;
}

void Query::unprepare()
{
    d->release();
}

qlonglong Query::genId(Database& db, Transaction& tr, const QString& generator, int increment)
{
    Query q(db, tr, QString::asprintf("SELECT GEN_ID(%s, %d) FROM RDB$DATABASE", generator.toUtf8().constData(),
                                      increment));
    q.open();
    return q.field(0).asInt64();
}

void Query::execute(Database& db, Transaction& tr, const QString& sql)
{
    Query q(db, tr, sql);
    q.exec();
}

QVariant Query::scalar(Database& db, Transaction& tr, const QString& sql)
{
    Query q(db, tr, sql);
    q.open();
    return q.eof() ? QVariant() : q.field(0).value();
}

} // namespace tv
