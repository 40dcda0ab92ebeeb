#include "reportformat.h"

#include "money.h"

#include <QBuffer>
#include <QDateTime>
#include <QImage>
#include <QImageReader>

#include <cmath>

namespace tv::reports {

namespace {

bool isNull(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

QDateTime toDateTime(const QVariant& v)
{
    if (isNull(v))
        return {};
    if (v.typeId() == QMetaType::QDate)
        return v.toDate().startOfDay();
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime();
    const QString s = v.toString().trimmed();
    for (const char* f : {"dd.MM.yyyy", "dd/MM/yyyy", "yyyy-MM-dd"}) {
        const QDate d = QDate::fromString(s.left(10), QLatin1String(f));
        if (d.isValid())
            return d.startOfDay();
    }
    return v.toDateTime();
}

} // namespace

QString fecha(const QVariant& v)
{
    const QDateTime dt = toDateTime(v);
    return dt.isValid() ? dt.date().toString(QStringLiteral("dd/MM/yyyy")) : QString();
}

QString fechaHora(const QVariant& v)
{
    const QDateTime dt = toDateTime(v);
    if (!dt.isValid())
        return {};
    if (dt.time() == QTime(0, 0))
        return dt.date().toString(QStringLiteral("dd/MM/yyyy"));
    return dt.toString(QStringLiteral("dd/MM/yyyy hh:mm"));
}

QString euros(const QVariant& v)
{
    if (isNull(v))
        return {};
    bool ok = false;
    const double d = v.toDouble(&ok);
    return ok ? formatEuros(d) : QString();
}

QString numero(double value, int decimals)
{
    if (!std::isfinite(value))
        return {};
    QString s = Money::fromDouble(value).toSpanish(decimals, false);
    if (s.contains(QLatin1Char(','))) {
        while (s.endsWith(QLatin1Char('0')))
            s.chop(1);
        if (s.endsWith(QLatin1Char(',')))
            s.chop(1);
    }
    if (s == QLatin1String("-0"))
        s = QStringLiteral("0");
    return s;
}

QString numero(const QVariant& v, int decimals, bool zeroIsEmpty)
{
    if (isNull(v))
        return {};
    bool ok = false;
    const double d = v.toString().trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    if (!ok || (zeroIsEmpty && d == 0))
        return {};
    return numero(d, decimals);
}

QString metros(const QVariant& v)
{
    const QString n = numero(v);
    return n.isEmpty() ? n : n + QStringLiteral(" m²");
}

QString texto(const QVariant& v)
{
    return isNull(v) ? QString() : v.toString().trimmed();
}

QString dataUri(const QImage& image, const char* format, int quality)
{
    QByteArray out;
    QBuffer buffer(&out);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, quality))
        return {};
    return QStringLiteral("data:image/%1;base64,").arg(QString::fromLatin1(format).toLower()) +
           QString::fromLatin1(out.toBase64());
}

QString imagenDataUri(const QByteArray& bytes, int width, int height)
{
    if (bytes.isEmpty() || width <= 0 || height <= 0)
        return {};
    // Camera photographs are large: let the decoder scale down while reading
    // (JPEG decodes at a fraction of the size), then finish the crop.
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize full = reader.size();
    if (full.isValid() && full.width() > 2 * width && full.height() > 2 * height)
        reader.setScaledSize(full.scaled(2 * width, 2 * height, Qt::KeepAspectRatioByExpanding));
    QImage img = reader.read();
    if (img.isNull())
        return {};
    img = img.scaled(width, height, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    img = img.copy((img.width() - width) / 2, (img.height() - height) / 2, width, height);
    return dataUri(img.convertToFormat(QImage::Format_RGB32), "jpeg", 82);
}

QString logoDataUri(const QByteArray& bytes, int maxWidth, int maxHeight)
{
    QImage img = QImage::fromData(bytes);
    if (img.isNull())
        return {};
    if (img.width() > maxWidth || img.height() > maxHeight)
        img = img.scaled(maxWidth, maxHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return dataUri(img, "png");
}

} // namespace tv::reports
