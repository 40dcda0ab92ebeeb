#include "outputcolumns.h"

#include <ibase.h>

using namespace Firebird;

namespace tv {

namespace {

const unsigned kCsUtf8 = 4;
const unsigned kCsOctets = 1;
const unsigned kCsUnicodeFss = 3;

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

} // namespace

std::vector<OutputColumn> describeOutput(fb::Status& st, IMessageMetadata* outMeta)
{
    const unsigned count = outMeta->getCount(&st);
    std::vector<OutputColumn> out;
    out.reserve(count);
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
        out.push_back({c, f});
    }
    return out;
}

} // namespace tv
