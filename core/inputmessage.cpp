#include "inputmessage.h"

#include "query.h"
#include "rowbuffer.h"

#include <QDateTime>

#include <ibase.h>

#include <algorithm>
#include <cstring>

using namespace Firebird;

namespace tv {

namespace {

const unsigned kCsUtf8 = 4;
const unsigned kCsOctets = 1;
const int kSegment = 32000;

bool isNullVariant(const QVariant& v)
{
    // An empty date is NULL, not a timestamp out of range.
    return !v.isValid() || v.isNull() || (v.typeId() == QMetaType::QDateTime && !v.toDateTime().isValid()) ||
           (v.typeId() == QMetaType::QDate && !v.toDate().isValid());
}

} // namespace

QByteArray InputMessage::textOf(const QVariant& v)
{
    return v.typeId() == QMetaType::QByteArray ? v.toByteArray() : v.toString().toUtf8();
}

// The input message for the current values. It is typed after the values
// (the engine converts), except blobs: an unread one goes back by its id,
// a long new one is written first and passed by id.
IMessageMetadata* InputMessage::build(fb::Status& st, IAttachment* att, ITransaction* tra, const QStringList& positions,
                                      std::map<QString, QVariant>& params, std::vector<unsigned char>& buf)
{
    const unsigned count = mMeta->getCount(&st);
    if (count != static_cast<unsigned>(positions.size()))
        throw DataSetError(QStringLiteral("La sentencia espera %1 parámetros y tiene %2 con nombre")
                               .arg(count)
                               .arg(positions.size()));
    if (count == 0) {
        buf.clear();
        return mMeta.get();
    }
    enum class As { Null, Text, Int, Double, Timestamp, Bytes, BlobById, NewBlob };
    std::vector<QVariant> vals(count);
    std::vector<As> as(count);
    std::vector<ParamShape> shapes(count);
    for (unsigned i = 0; i < count; ++i) {
        QVariant v = params[positions[i]];
        const unsigned declared = mMeta->getType(&st, i) & ~1u;
        // Dialect 1 reads "05/01/2026" month first: a date that arrives
        // as the screens show it is passed as the date it means.
        if (v.typeId() == QMetaType::QString &&
            (declared == SQL_TIMESTAMP || declared == SQL_TYPE_DATE)) {
            const QDateTime shown = dateTimeFromText(v.toString());
            if (shown.isValid())
                v = shown;
        }
        vals[i] = v;
        ParamShape& s = shapes[i];
        if (isNullVariant(v)) {
            as[i] = As::Null;
            s = {declared, mMeta->getLength(&st, i), mMeta->getCharSet(&st, i)};
            continue;
        }
        if (v.typeId() == qMetaTypeId<BlobId>()) {
            as[i] = As::BlobById;
            s = {SQL_BLOB, sizeof(ISC_QUAD), mMeta->getCharSet(&st, i)};
            continue;
        }
        if (declared == SQL_BLOB) {
            const bool text = mMeta->getSubType(&st, i) == 1;
            if (!text || v.typeId() == QMetaType::QByteArray || textOf(v).size() > kSegment) {
                as[i] = As::NewBlob;
                s = {SQL_BLOB, sizeof(ISC_QUAD), mMeta->getCharSet(&st, i)};
                continue;
            }
            // Short texts go as strings: the engine makes the blob and
            // transliterates to the column's charset.
        }
        const unsigned declaredLength = mMeta->getLength(&st, i);
        if (v.typeId() == QMetaType::QByteArray && declared != SQL_BLOB) {
            as[i] = As::Bytes;
            s = {SQL_VARYING, std::max<unsigned>({1u, declaredLength, static_cast<unsigned>(v.toByteArray().size())}),
                 kCsOctets};
        } else if (isIntegerVariant(v) || v.typeId() == QMetaType::Bool) {
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
    if (!mMsg || shapes != mShapes) {
        fb::Ref<IMetadataBuilder> b(mMeta->getBuilder(&st));
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
        mMsg.reset(b->getMetadata(&st));
        mShapes = shapes;
    }
    IMessageMetadata* msg = mMsg.get();

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
            const ISC_QUAD id = writeBlob(st, att, tra, textOf(v), msg->getSubType(&st, i) == 1);
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

ISC_QUAD InputMessage::writeBlob(fb::Status& st, IAttachment* att, ITransaction* tra, const QByteArray& bytes, bool text)
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
        bl.reset(att->createBlob(&st, tra, &id, sizeof bpb, bpb));
    } else {
        bl.reset(att->createBlob(&st, tra, &id, 0, nullptr));
    }
    for (qsizetype off = 0; off < bytes.size(); off += kSegment) {
        const qsizetype len = std::min<qsizetype>(kSegment, bytes.size() - off);
        bl->putSegment(&st, static_cast<unsigned>(len), bytes.constData() + off);
    }
    bl->close(&st);
    bl.take();
    return id;
}

} // namespace tv
