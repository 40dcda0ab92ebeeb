#include "query.h"

#include <cmath>

namespace tv {

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

} // namespace tv
