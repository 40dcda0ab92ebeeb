#include "rowbuffer.h"

#include <QDateTime>

#include <cmath>
#include <cstring>

namespace tv {

namespace {

constexpr quint16 kWideOffsets = 0x8000;
constexpr quint8 kBlobById = 0;
constexpr quint8 kBlobInline = 1;
// ISC dates count days from 17 November 1858.
constexpr qint64 kJulianOfIscZero = 2400001;

template <typename T>
T load(const unsigned char* p)
{
    T x;
    std::memcpy(&x, p, sizeof x);
    return x;
}

template <typename T>
void append(QByteArray& out, T x)
{
    out.append(reinterpret_cast<const char*>(&x), sizeof x);
}

QVariant scaled(qint64 raw, int scale)
{
    if (scale >= 0)
        return raw;
    return static_cast<double>(raw) / std::pow(10.0, -scale);
}

qint64 unscaled(const QVariant& v, int scale)
{
    if (scale >= 0)
        return v.toLongLong();
    return std::llround(v.toDouble() * std::pow(10.0, -scale));
}

QDateTime toDateTime(const QVariant& v)
{
    if (v.typeId() == QMetaType::QDate)
        return v.toDate().startOfDay();
    if (v.typeId() == QMetaType::QString)
        return dateTimeFromText(v.toString());
    return v.toDateTime();
}

// Writes one column's value in its packed form; false means NULL.
bool encodeValue(const ColumnLayout& c, const QVariant& v, QByteArray& out)
{
    if (!v.isValid() || v.isNull())
        return false;
    switch (c.kind) {
    case ColumnKind::Text:
        out += v.typeId() == QMetaType::QByteArray ? v.toByteArray() : v.toString().toUtf8();
        return true;
    case ColumnKind::Bytes:
        out += v.typeId() == QMetaType::QByteArray ? v.toByteArray() : v.toString().toUtf8();
        return true;
    case ColumnKind::Int16:
        append(out, static_cast<qint16>(unscaled(v, c.scale)));
        return true;
    case ColumnKind::Int32:
        append(out, static_cast<qint32>(unscaled(v, c.scale)));
        return true;
    case ColumnKind::Int64:
        append(out, static_cast<qint64>(unscaled(v, c.scale)));
        return true;
    case ColumnKind::Float:
        append(out, static_cast<float>(v.toDouble()));
        return true;
    case ColumnKind::Double:
        append(out, v.toDouble());
        return true;
    case ColumnKind::Timestamp: {
        const QDateTime dt = toDateTime(v);
        if (!dt.isValid())
            return false;
        quint32 d, t;
        encodeTimestamp(dt, &d, &t);
        append(out, d);
        append(out, t);
        return true;
    }
    case ColumnKind::Date: {
        const QDate d = toDateTime(v).date();
        if (!d.isValid())
            return false;
        append(out, static_cast<qint32>(d.toJulianDay() - kJulianOfIscZero));
        return true;
    }
    case ColumnKind::Time: {
        const QTime t = v.toTime();
        append(out, static_cast<quint32>(t.msecsSinceStartOfDay() * 10));
        return true;
    }
    case ColumnKind::Boolean:
        append(out, static_cast<quint8>(v.toBool() ? 1 : 0));
        return true;
    case ColumnKind::Blob:
        if (v.canConvert<BlobId>() && v.typeId() == qMetaTypeId<BlobId>()) {
            const BlobId id = v.value<BlobId>();
            append(out, kBlobById);
            append(out, id.high);
            append(out, id.low);
        } else {
            append(out, kBlobInline);
            out += v.typeId() == QMetaType::QByteArray ? v.toByteArray() : v.toString().toUtf8();
        }
        return true;
    }
    return false;
}

// Reads a packed value back; p points at the column's bytes, len their count.
QVariant decodePacked(const ColumnLayout& c, const unsigned char* p, unsigned len)
{
    switch (c.kind) {
    case ColumnKind::Text:
        return QString::fromUtf8(reinterpret_cast<const char*>(p), len);
    case ColumnKind::Bytes:
        return QByteArray(reinterpret_cast<const char*>(p), len);
    case ColumnKind::Int16: {
        const auto x = load<qint16>(p);
        return c.scale < 0 ? scaled(x, c.scale) : QVariant(int(x));
    }
    case ColumnKind::Int32: {
        const auto x = load<qint32>(p);
        return c.scale < 0 ? scaled(x, c.scale) : QVariant(int(x));
    }
    case ColumnKind::Int64:
        return scaled(load<qint64>(p), c.scale);
    case ColumnKind::Float:
        return double(load<float>(p));
    case ColumnKind::Double:
        return load<double>(p);
    case ColumnKind::Timestamp:
        return decodeTimestamp(load<quint32>(p), load<quint32>(p + 4));
    case ColumnKind::Date:
        return QDate::fromJulianDay(load<qint32>(p) + kJulianOfIscZero);
    case ColumnKind::Time:
        return QTime::fromMSecsSinceStartOfDay(static_cast<int>(load<quint32>(p) / 10));
    case ColumnKind::Boolean:
        return bool(*p);
    case ColumnKind::Blob:
        if (len >= 1 && p[0] == kBlobById && len == 9) {
            BlobId id;
            id.high = load<quint32>(p + 1);
            id.low = load<quint32>(p + 5);
            id.text = c.textBlob;
            return QVariant::fromValue(id);
        }
        if (c.textBlob)
            return QString::fromUtf8(reinterpret_cast<const char*>(p + 1), len - 1);
        return QByteArray(reinterpret_cast<const char*>(p + 1), len - 1);
    }
    return {};
}

// The bytes of one column of an engine message, in packed form.
void appendFromMessage(const ColumnLayout& c, const unsigned char* data, QByteArray& out)
{
    switch (c.kind) {
    case ColumnKind::Text:
    case ColumnKind::Bytes: {
        const char* p;
        unsigned len;
        if (c.fixedLength) {
            p = reinterpret_cast<const char*>(data);
            len = c.length;
            if (c.kind == ColumnKind::Text)
                while (len > 0 && p[len - 1] == ' ')
                    --len;
        } else {
            const auto n = load<quint16>(data);
            p = reinterpret_cast<const char*>(data + 2);
            len = n;
        }
        out.append(p, static_cast<qsizetype>(len));
        return;
    }
    case ColumnKind::Int16:
        out.append(reinterpret_cast<const char*>(data), 2);
        return;
    case ColumnKind::Int32:
    case ColumnKind::Float:
    case ColumnKind::Date:
    case ColumnKind::Time:
        out.append(reinterpret_cast<const char*>(data), 4);
        return;
    case ColumnKind::Int64:
    case ColumnKind::Double:
    case ColumnKind::Timestamp:
        out.append(reinterpret_cast<const char*>(data), 8);
        return;
    case ColumnKind::Boolean:
        out.append(static_cast<char>(*data ? 1 : 0));
        return;
    case ColumnKind::Blob: {
        // ISC_QUAD: gds_quad_high then gds_quad_low.
        append(out, kBlobById);
        out.append(reinterpret_cast<const char*>(data), 8);
        return;
    }
    }
}

struct Header {
    int count;
    bool wide;
    const unsigned char* nulls;
    const unsigned char* offsets;
    const unsigned char* data;
};

Header header(const QByteArray& row)
{
    const auto* p = reinterpret_cast<const unsigned char*>(row.constData());
    const auto tag = load<quint16>(p);
    Header h;
    h.count = tag & ~kWideOffsets;
    h.wide = tag & kWideOffsets;
    h.nulls = p + 2;
    h.offsets = h.nulls + (h.count + 7) / 8;
    h.data = h.offsets + static_cast<size_t>(h.count + 1) * (h.wide ? 4 : 2);
    return h;
}

unsigned offsetAt(const Header& h, int i)
{
    return h.wide ? load<quint32>(h.offsets + 4 * i) : load<quint16>(h.offsets + 2 * i);
}

// Assembles the packed row from the values' bytes and where each one ends.
QByteArray assemble(int count, const std::vector<bool>& nulls, const std::vector<unsigned>& ends, const QByteArray& data)
{
    const bool wide = data.size() > 0xFFFF;
    QByteArray out;
    out.reserve(2 + (count + 7) / 8 + (count + 1) * (wide ? 4 : 2) + data.size());
    append(out, static_cast<quint16>(count | (wide ? kWideOffsets : 0)));
    QByteArray bits((count + 7) / 8, '\0');
    for (int i = 0; i < count; ++i)
        if (nulls[static_cast<size_t>(i)])
            bits[i / 8] = static_cast<char>(bits[i / 8] | (1 << (i % 8)));
    out += bits;
    unsigned start = 0;
    for (int i = 0; i <= count; ++i) {
        const unsigned o = i == 0 ? start : ends[static_cast<size_t>(i - 1)];
        if (wide)
            append(out, static_cast<quint32>(o));
        else
            append(out, static_cast<quint16>(o));
    }
    out += data;
    return out;
}

} // namespace

QDateTime decodeTimestamp(quint32 date, quint32 time)
{
    const QDate d = QDate::fromJulianDay(static_cast<qint64>(static_cast<qint32>(date)) + kJulianOfIscZero);
    const int secs = static_cast<int>(time / 10000);
    const int msec = static_cast<int>((time % 10000) / 10);
    return QDateTime(d, QTime(secs / 3600, (secs / 60) % 60, secs % 60, msec));
}

void encodeTimestamp(const QDateTime& dt, quint32* date, quint32* time)
{
    *date = static_cast<quint32>(static_cast<qint32>(dt.date().toJulianDay() - kJulianOfIscZero));
    const QTime t = dt.time();
    *time = static_cast<quint32>((t.hour() * 3600 + t.minute() * 60 + t.second()) * 10000 + t.msec() * 10);
}

QDateTime dateTimeFromText(const QString& text)
{
    const QString t = text.trimmed();
    for (const char* f : {"dd/MM/yyyy", "d/M/yyyy", "dd/MM/yyyy hh:mm", "dd/MM/yyyy hh:mm:ss", "dd.MM.yyyy", "d.M.yyyy",
                          "dd.MM.yyyy hh:mm", "dd.MM.yyyy hh:mm:ss", "yyyy-MM-dd", "yyyy-MM-ddThh:mm:ss",
                          "yyyy-MM-dd hh:mm:ss"}) {
        const QDateTime d = QDateTime::fromString(t, QLatin1String(f));
        if (d.isValid())
            return d;
    }
    return {};
}

QByteArray RowLayout::pack(const unsigned char* message, const std::vector<std::optional<QByteArray>>* inlineBlobs) const
{
    const int n = count();
    std::vector<bool> nulls(static_cast<size_t>(n));
    std::vector<unsigned> ends(static_cast<size_t>(n));
    QByteArray data;
    data.reserve(256);
    for (int i = 0; i < n; ++i) {
        const ColumnLayout& c = mColumns[static_cast<size_t>(i)];
        const bool isNull = load<qint16>(message + c.nullOffset) != 0;
        nulls[static_cast<size_t>(i)] = isNull;
        if (!isNull) {
            const std::optional<QByteArray>* contents =
                inlineBlobs && static_cast<size_t>(i) < inlineBlobs->size() ? &(*inlineBlobs)[static_cast<size_t>(i)]
                                                                            : nullptr;
            if (c.kind == ColumnKind::Blob && contents && contents->has_value()) {
                append(data, kBlobInline);
                data += **contents;
            } else {
                appendFromMessage(c, message + c.offset, data);
            }
        }
        ends[static_cast<size_t>(i)] = static_cast<unsigned>(data.size());
    }
    return assemble(n, nulls, ends, data);
}

QByteArray RowLayout::pack(const QVector<QVariant>& values) const
{
    const int n = count();
    std::vector<bool> nulls(static_cast<size_t>(n));
    std::vector<unsigned> ends(static_cast<size_t>(n));
    QByteArray data;
    for (int i = 0; i < n; ++i) {
        const bool has = i < values.size() && encodeValue(mColumns[static_cast<size_t>(i)], values[i], data);
        nulls[static_cast<size_t>(i)] = !has;
        ends[static_cast<size_t>(i)] = static_cast<unsigned>(data.size());
    }
    return assemble(n, nulls, ends, data);
}

bool RowLayout::isNull(const QByteArray& row, int column) const
{
    if (row.isEmpty())
        return true;
    const Header h = header(row);
    if (column < 0 || column >= h.count)
        return true;
    return (h.nulls[column / 8] >> (column % 8)) & 1;
}

QVariant RowLayout::value(const QByteArray& row, int column) const
{
    if (isNull(row, column))
        return {};
    const Header h = header(row);
    const unsigned from = offsetAt(h, column);
    const unsigned to = offsetAt(h, column + 1);
    return decodePacked(mColumns[static_cast<size_t>(column)], h.data + from, to - from);
}

QVector<QVariant> RowLayout::values(const QByteArray& row) const
{
    QVector<QVariant> out(count());
    for (int i = 0; i < count(); ++i)
        out[i] = value(row, i);
    return out;
}

QVariant RowLayout::decode(const unsigned char* message, int column) const
{
    const ColumnLayout& c = mColumns[static_cast<size_t>(column)];
    if (load<qint16>(message + c.nullOffset) != 0)
        return {};
    const unsigned char* data = message + c.offset;
    if (c.kind == ColumnKind::Text || c.kind == ColumnKind::Bytes) {
        const char* p = reinterpret_cast<const char*>(data);
        unsigned len = c.length;
        if (!c.fixedLength) {
            len = load<quint16>(data);
            p += 2;
        } else if (c.kind == ColumnKind::Text) {
            while (len > 0 && p[len - 1] == ' ')
                --len;
        }
        if (c.kind == ColumnKind::Text)
            return QString::fromUtf8(p, len);
        return QByteArray(p, len);
    }
    QByteArray bytes;
    appendFromMessage(c, data, bytes);
    return decodePacked(c, reinterpret_cast<const unsigned char*>(bytes.constData()),
                        static_cast<unsigned>(bytes.size()));
}

} // namespace tv
