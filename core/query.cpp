#include "query.h"

#include "database.h"
#include "fbapi.h"
#include "transaction.h"

#include <QRegularExpression>

#include <ibase.h>

#include <cmath>
#include <cstring>
#include <map>
#include <optional>
#include <vector>

using namespace Firebird;

namespace tv {

// ---------------------------------------------------------------- parameters

int skipLiteralOrComment(const QString& sql, int i)
{
    const int n = static_cast<int>(sql.size());
    if (i >= n)
        return i;
    const QChar c = sql[i];
    if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
        // A doubled quote stays inside the literal.
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
        return std::min(j + 1, n);
    }
    if (c == QLatin1Char('-') && i + 1 < n && sql[i + 1] == QLatin1Char('-')) {
        const int j = static_cast<int>(sql.indexOf(QLatin1Char('\n'), i));
        return j < 0 ? n : j;
    }
    if (c == QLatin1Char('/') && i + 1 < n && sql[i + 1] == QLatin1Char('*')) {
        const int j = static_cast<int>(sql.indexOf(QLatin1String("*/"), i + 2));
        return j < 0 ? n : j + 2;
    }
    return i;
}

bool isNumberVariant(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

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
        if (const int end = skipLiteralOrComment(sql, i); end > i) {
            // Literals and comments are copied verbatim.
            out += sql.mid(i, end - i);
            i = end;
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
const unsigned kCsUnicodeFss = 3;
const int kSegment = 32000;

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

bool isNullVariant(const QVariant& v)
{
    // An empty date is NULL, not a timestamp out of range.
    return !v.isValid() || v.isNull() || (v.typeId() == QMetaType::QDateTime && !v.toDateTime().isValid()) ||
           (v.typeId() == QMetaType::QDate && !v.toDate().isValid());
}

ColumnKind kindOf(unsigned type, unsigned charSet)
{
    switch (type) {
    case SQL_TEXT:
    case SQL_VARYING:
        return charSet == kCsOctets ? ColumnKind::Bytes : ColumnKind::Text;
    case SQL_SHORT:
        return ColumnKind::Int16;
    case SQL_LONG:
        return ColumnKind::Int32;
    case SQL_INT64:
        return ColumnKind::Int64;
    case SQL_FLOAT:
        return ColumnKind::Float;
    case SQL_DOUBLE:
    case SQL_D_FLOAT:
        return ColumnKind::Double;
    case SQL_TIMESTAMP:
        return ColumnKind::Timestamp;
    case SQL_TYPE_DATE:
        return ColumnKind::Date;
    case SQL_TYPE_TIME:
        return ColumnKind::Time;
    case SQL_BOOLEAN:
        return ColumnKind::Boolean;
    case SQL_BLOB:
        return ColumnKind::Blob;
    default:
        return ColumnKind::Bytes;
    }
}

// A date or date and time written as the screens show them (day first, with
// slashes); invalid for anything else.
QDateTime fromDisplayFormat(const QString& text)
{
    const QString t = text.trimmed();
    if (!t.contains(QLatin1Char('/')))
        return {};
    for (const char* f : {"dd/MM/yyyy", "d/M/yyyy", "dd/MM/yyyy hh:mm", "dd/MM/yyyy hh:mm:ss"}) {
        const QDateTime d = QDateTime::fromString(t, QLatin1String(f));
        if (d.isValid())
            return d;
    }
    const QDate d = QDate::fromString(t, QStringLiteral("d/M/yyyy"));
    return d.isValid() ? d.startOfDay() : QDateTime();
}

// One input parameter's shape in the message; the coerced metadata is kept
// while the shapes stay the same (every row of one apply, as a rule).
struct ParamShape {
    unsigned type;
    unsigned length;
    unsigned charSet;
    bool operator==(const ParamShape&) const = default;
};

} // namespace

struct Query::Impl {
    Database* db = nullptr;
    Transaction* tr = nullptr;
    int listener = 0;

    QString sql;
    QString converted;
    QStringList positions;
    std::map<QString, QVariant> params;
    bool readBlobs = true;
    bool rawRows = false;

    fb::Ref<IStatement> stmt;
    quint64 generation = 0;
    unsigned type = 0;
    fb::Ref<IMessageMetadata> outMeta;
    std::vector<unsigned char> outBuf;
    QStringList names;
    QVector<FieldInfo> infos;
    // The output layout, read once at prepare: asking the metadata object per
    // row and column costs more than the decoding itself on long lists.
    RowLayout layout;

    fb::Ref<IMessageMetadata> inMeta;
    fb::Ref<IMessageMetadata> inMsg;
    std::vector<ParamShape> inShapes;

    fb::Ref<IResultSet> rs;
    bool isOpen = false;
    bool atEof = true;
    QVector<QVariant> row;
    int affected = 0;

    ~Impl() { release(); }

    void closeCursor()
    {
        if (!rs)
            return;
        try {
            fb::guard([&] {
                fb::Status st;
                rs->close(&st);
                rs.take(); // close() released it
            });
        } catch (const DatabaseError&) {
            rs.reset();
        }
    }

    void release()
    {
        closeCursor();
        inMsg.reset();
        inShapes.clear();
        inMeta.reset();
        outMeta.reset();
        stmt.reset();
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
            stmt.reset(db->attachment()->prepare(&st, tra, 0, text.constData(), 1,
                                                 IStatement::PREPARE_PREFETCH_METADATA));
            generation = db->generation();
            type = stmt->getType(&st);
            inMeta.reset(stmt->getInputMetadata(&st));
            outMeta.reset(stmt->getOutputMetadata(&st));
            const unsigned count = outMeta->getCount(&st);
            std::vector<ColumnLayout> columns;
            for (unsigned i = 0; i < count; ++i) {
                const unsigned rawType = outMeta->getType(&st, i);
                const unsigned t = rawType & ~1u;
                const unsigned cs = outMeta->getCharSet(&st, i);
                ColumnLayout c;
                c.kind = kindOf(t, cs);
                c.scale = static_cast<qint8>(outMeta->getScale(&st, i));
                c.fixedLength = t == SQL_TEXT;
                c.textBlob = t == SQL_BLOB && outMeta->getSubType(&st, i) == 1;
                c.offset = outMeta->getOffset(&st, i);
                c.nullOffset = outMeta->getNullOffset(&st, i);
                c.length = outMeta->getLength(&st, i);
                columns.push_back(c);

                FieldInfo f;
                f.name = QString::fromUtf8(outMeta->getAlias(&st, i)).toUpper();
                f.relation = QString::fromUtf8(outMeta->getRelation(&st, i)).trimmed().toUpper();
                f.origin = QString::fromUtf8(outMeta->getField(&st, i)).trimmed().toUpper();
                f.nullable = outMeta->isNullable(&st, i);
                f.scale = -c.scale;
                f.blobSubType = t == SQL_BLOB ? outMeta->getSubType(&st, i) : 0;
                switch (c.kind) {
                case ColumnKind::Text:
                    f.type = FieldInfo::Type::Text;
                    f.size = static_cast<int>(c.length / (cs == kCsUtf8 ? 4 : cs == kCsUnicodeFss ? 3 : 1));
                    break;
                case ColumnKind::Bytes:
                    f.type = FieldInfo::Type::Bytes;
                    f.size = static_cast<int>(c.length);
                    break;
                case ColumnKind::Int16:
                case ColumnKind::Int32:
                case ColumnKind::Int64:
                    f.type = c.scale < 0 ? FieldInfo::Type::Numeric : FieldInfo::Type::Integer;
                    f.size = static_cast<int>(c.length);
                    break;
                case ColumnKind::Float:
                case ColumnKind::Double:
                    // Dialect-1 NUMERIC(15,2) is a double that carries its scale.
                    f.type = c.scale < 0 ? FieldInfo::Type::Numeric : FieldInfo::Type::Float;
                    f.size = static_cast<int>(c.length);
                    break;
                case ColumnKind::Timestamp:
                    f.type = FieldInfo::Type::DateTime;
                    f.size = 8;
                    break;
                case ColumnKind::Date:
                    f.type = FieldInfo::Type::Date;
                    f.size = 4;
                    break;
                case ColumnKind::Time:
                    f.type = FieldInfo::Type::Time;
                    f.size = 4;
                    break;
                case ColumnKind::Boolean:
                    f.type = FieldInfo::Type::Boolean;
                    f.size = 1;
                    break;
                case ColumnKind::Blob:
                    f.type = c.textBlob ? FieldInfo::Type::TextBlob : FieldInfo::Type::BinaryBlob;
                    f.size = 8;
                    break;
                }
                names.append(f.name);
                infos.append(f);
            }
            layout = RowLayout(std::move(columns));
            outBuf.assign(outMeta->getMessageLength(&st), 0);
        });
    }

    QByteArray textOf(const QVariant& v) const
    {
        return v.typeId() == QMetaType::QByteArray ? v.toByteArray() : v.toString().toUtf8();
    }

    // The input message for the current values. It is typed after the values
    // (the engine converts), except blobs: an unread one goes back by its id,
    // a long new one is written first and passed by id.
    IMessageMetadata* buildInput(fb::Status& st, ITransaction* tra, std::vector<unsigned char>& buf)
    {
        const unsigned count = inMeta->getCount(&st);
        if (count != static_cast<unsigned>(positions.size()))
            throw DataSetError(QStringLiteral("La sentencia espera %1 parámetros y tiene %2 con nombre")
                                   .arg(count)
                                   .arg(positions.size()));
        if (count == 0) {
            buf.clear();
            return inMeta.get();
        }
        enum class As { Null, Text, Int, Double, Timestamp, Bytes, BlobById, NewBlob };
        std::vector<QVariant> vals(count);
        std::vector<As> as(count);
        std::vector<ParamShape> shapes(count);
        for (unsigned i = 0; i < count; ++i) {
            QVariant v = params[positions[i]];
            const unsigned declared = inMeta->getType(&st, i) & ~1u;
            // Dialect 1 reads "05/01/2026" month first: a date that arrives
            // as the screens show it is passed as the date it means.
            if (v.typeId() == QMetaType::QString &&
                (declared == SQL_TIMESTAMP || declared == SQL_TYPE_DATE)) {
                const QDateTime shown = fromDisplayFormat(v.toString());
                if (shown.isValid())
                    v = shown;
            }
            vals[i] = v;
            ParamShape& s = shapes[i];
            if (isNullVariant(v)) {
                as[i] = As::Null;
                s = {declared, inMeta->getLength(&st, i), inMeta->getCharSet(&st, i)};
                continue;
            }
            if (v.typeId() == qMetaTypeId<BlobId>()) {
                as[i] = As::BlobById;
                s = {SQL_BLOB, sizeof(ISC_QUAD), inMeta->getCharSet(&st, i)};
                continue;
            }
            if (declared == SQL_BLOB) {
                const bool text = inMeta->getSubType(&st, i) == 1;
                if (!text || v.typeId() == QMetaType::QByteArray || textOf(v).size() > kSegment) {
                    as[i] = As::NewBlob;
                    s = {SQL_BLOB, sizeof(ISC_QUAD), inMeta->getCharSet(&st, i)};
                    continue;
                }
                // Short texts go as strings: the engine makes the blob and
                // transliterates to the column's charset.
            }
            const unsigned declaredLength = inMeta->getLength(&st, i);
            if (v.typeId() == QMetaType::QByteArray && declared != SQL_BLOB) {
                as[i] = As::Bytes;
                s = {SQL_VARYING, std::max<unsigned>({1u, declaredLength, static_cast<unsigned>(v.toByteArray().size())}),
                     kCsOctets};
            } else if (isIntegerVariant(v)) {
                as[i] = As::Int;
                s = {SQL_INT64, sizeof(ISC_INT64), 0};
            } else if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float) {
                as[i] = As::Double;
                s = {SQL_DOUBLE, sizeof(double), 0};
            } else if (v.typeId() == QMetaType::QDateTime || v.typeId() == QMetaType::QDate) {
                as[i] = As::Timestamp;
                s = {SQL_TIMESTAMP, sizeof(ISC_TIMESTAMP), 0};
            } else {
                // Sized to the larger of the column and the value, so the
                // shape stays put from row to row and an overlong value still
                // reaches the engine, which refuses it with its own message.
                as[i] = As::Text;
                s = {SQL_VARYING,
                     std::max<unsigned>({1u, declared == SQL_BLOB ? 0u : declaredLength,
                                         static_cast<unsigned>(textOf(v).size())}),
                     kCsUtf8};
            }
        }
        if (!inMsg || shapes != inShapes) {
            fb::Ref<IMetadataBuilder> b(inMeta->getBuilder(&st));
            for (unsigned i = 0; i < count; ++i) {
                if (as[i] == As::Null)
                    continue;
                if (as[i] == As::BlobById || as[i] == As::NewBlob) {
                    b->setType(&st, i, SQL_BLOB + 1);
                    continue;
                }
                b->setType(&st, i, shapes[i].type + 1);
                b->setLength(&st, i, shapes[i].length);
                if (shapes[i].type == SQL_VARYING)
                    b->setCharSet(&st, i, shapes[i].charSet);
                b->setScale(&st, i, 0);
            }
            inMsg.reset(b->getMetadata(&st));
            inShapes = shapes;
        }
        IMessageMetadata* msg = inMsg.get();

        buf.assign(msg->getMessageLength(&st), 0);
        for (unsigned i = 0; i < count; ++i) {
            const QVariant& v = vals[i];
            auto* nullFlag = reinterpret_cast<short*>(buf.data() + msg->getNullOffset(&st, i));
            unsigned char* data = buf.data() + msg->getOffset(&st, i);
            *nullFlag = 0;
            switch (as[i]) {
            case As::Null:
                *nullFlag = -1;
                break;
            case As::BlobById: {
                const BlobId id = v.value<BlobId>();
                ISC_QUAD q;
                q.gds_quad_high = static_cast<ISC_LONG>(id.high);
                q.gds_quad_low = id.low;
                std::memcpy(data, &q, sizeof q);
                break;
            }
            case As::NewBlob: {
                const ISC_QUAD id = writeBlob(st, tra, textOf(v), msg->getSubType(&st, i) == 1);
                std::memcpy(data, &id, sizeof id);
                break;
            }
            case As::Text:
            case As::Bytes: {
                const QByteArray bytes = textOf(v);
                const auto len = static_cast<unsigned short>(bytes.size());
                std::memcpy(data, &len, sizeof len);
                std::memcpy(data + sizeof len, bytes.constData(), static_cast<size_t>(bytes.size()));
                break;
            }
            case As::Int: {
                const ISC_INT64 x = v.toLongLong();
                std::memcpy(data, &x, sizeof x);
                break;
            }
            case As::Double: {
                const double x = v.toDouble();
                std::memcpy(data, &x, sizeof x);
                break;
            }
            case As::Timestamp: {
                const QDateTime dt = v.typeId() == QMetaType::QDate ? v.toDate().startOfDay() : v.toDateTime();
                quint32 date, time;
                encodeTimestamp(dt, &date, &time);
                ISC_TIMESTAMP ts;
                ts.timestamp_date = static_cast<ISC_DATE>(date);
                ts.timestamp_time = time;
                std::memcpy(data, &ts, sizeof ts);
                break;
            }
            }
        }
        return msg;
    }

    ISC_QUAD writeBlob(fb::Status& st, ITransaction* tra, const QByteArray& bytes, bool text)
    {
        ISC_QUAD id;
        fb::Ref<IBlob> bl;
        if (text) {
            // Text written as UTF-8; the engine converts to the column's charset.
            const unsigned char bpb[] = {isc_bpb_version1,
                                         isc_bpb_source_type, 1, 1,
                                         isc_bpb_source_interp, 1, kCsUtf8,
                                         isc_bpb_target_type, 1, 1,
                                         isc_bpb_target_interp, 1, kCsUtf8};
            bl.reset(db->attachment()->createBlob(&st, tra, &id, sizeof bpb, bpb));
        } else {
            bl.reset(db->attachment()->createBlob(&st, tra, &id, 0, nullptr));
        }
        for (qsizetype off = 0; off < bytes.size(); off += kSegment) {
            const qsizetype len = std::min<qsizetype>(kSegment, bytes.size() - off);
            bl->putSegment(&st, static_cast<unsigned>(len), bytes.constData() + off);
        }
        bl->close(&st);
        bl.take();
        return id;
    }

    // Text blobs reach a UTF8 attachment as converted temporary copies, made
    // as each row is fetched and valid only in this transaction: their ids
    // are worth nothing later, so raw rows carry their contents. Binary blobs
    // (photographs) keep their stored ids and are read when asked for.
    std::vector<std::optional<QByteArray>> inlineBlobs;

    void decodeRow(fb::Status& st, ITransaction* tra)
    {
        if (rawRows) {
            inlineBlobs.assign(static_cast<size_t>(layout.count()), std::nullopt);
            for (int i = 0; i < layout.count(); ++i) {
                const ColumnLayout& c = layout.column(i);
                if (c.kind != ColumnKind::Blob || !c.textBlob)
                    continue;
                const QVariant v = layout.decode(outBuf.data(), i);
                if (v.typeId() == qMetaTypeId<BlobId>())
                    inlineBlobs[static_cast<size_t>(i)] =
                        readBlobContents(st, *db, tra, v.value<BlobId>()).toString().toUtf8();
            }
            return;
        }
        const int count = layout.count();
        row.resize(count);
        for (int i = 0; i < count; ++i) {
            QVariant v = layout.decode(outBuf.data(), i);
            if (readBlobs && v.typeId() == qMetaTypeId<BlobId>())
                v = readBlobContents(st, *db, tra, v.value<BlobId>());
            row[i] = std::move(v);
        }
    }

    static QVariant readBlobContents(fb::Status& st, Database& database, ITransaction* tra, const BlobId& blob)
    {
        QByteArray out;
        ISC_QUAD q;
        q.gds_quad_high = static_cast<ISC_LONG>(blob.high);
        q.gds_quad_low = blob.low;
        fb::Ref<IBlob> bl(database.attachment()->openBlob(&st, tra, &q, 0, nullptr));
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
        bl.take();
        if (blob.text)
            return QString::fromUtf8(out);
        return out;
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
    d->infos.clear();
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

void Query::prepare()
{
    d->prepare();
}

Query::StatementType Query::statementType()
{
    d->prepare();
    switch (d->type) {
    case isc_info_sql_stmt_select:
    case isc_info_sql_stmt_select_for_upd:
        return StatementType::Select;
    case isc_info_sql_stmt_insert:
        return StatementType::Insert;
    case isc_info_sql_stmt_update:
        return StatementType::Update;
    case isc_info_sql_stmt_delete:
        return StatementType::Delete;
    case isc_info_sql_stmt_exec_procedure:
        return StatementType::Procedure;
    default:
        return StatementType::Other;
    }
}

void Query::setReadBlobs(bool read)
{
    d->readBlobs = read;
}

void Query::setRawRows(bool raw)
{
    d->rawRows = raw;
}

QByteArray Query::packedRow() const
{
    if (d->atEof || d->outBuf.empty())
        return {};
    return d->layout.pack(d->outBuf.data(), &d->inlineBlobs);
}

const RowLayout& Query::layout() const
{
    return d->layout;
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
        void* inData = inBuf.empty() ? nullptr : inBuf.data();
        if (d->type == isc_info_sql_stmt_select || d->type == isc_info_sql_stmt_select_for_upd) {
            d->rs.reset(d->stmt->openCursor(&st, tra, in, inData, d->outMeta.get(), 0));
            d->isOpen = true;
            d->fetch();
        } else {
            const bool hasOutput = !d->names.isEmpty();
            d->stmt->execute(&st, tra, in, inData, hasOutput ? d->outMeta.get() : nullptr,
                             hasOutput ? d->outBuf.data() : nullptr);
            d->isOpen = true;
            d->affected = static_cast<int>(d->stmt->getAffectedRecords(&st));
            if (!hasOutput) {
                d->atEof = true;
            } else {
                d->atEof = false;
                d->decodeRow(st, tra);
            }
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

FieldInfo Query::fieldInfo(int i) const
{
    return d->infos.value(i);
}

QVector<FieldInfo> Query::fieldInfos() const
{
    return d->infos;
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

QVariant Query::readBlob(Database& db, Transaction& tr, const BlobId& id)
{
    ITransaction* tra = tr.handleFor(db);
    return fb::guard([&] {
        fb::Status st;
        return Impl::readBlobContents(st, db, tra, id);
    });
}

} // namespace tv
