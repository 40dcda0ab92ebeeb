#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

class QImage;

// How values read from the database are written on a report: Spanish
// numbers and amounts, dates as dd/mm/yyyy, photographs as data: URIs.
namespace tv::reports {

// "15/03/2026"; empty for a null or invalid date.
QString fecha(const QVariant& v);
// "15/03/2026 10:30" (the time only when there is one).
QString fechaHora(const QVariant& v);
// "1.234,56 €"; empty for NULL.
QString euros(const QVariant& v);
// Spanish number with up to `decimals` decimals, trailing zeros dropped: "1.234,5".
QString numero(double value, int decimals = 2);
// A number read from the database, empty for NULL or (when zeroIsEmpty) 0.
QString numero(const QVariant& v, int decimals = 2, bool zeroIsEmpty = true);
// "95 m²"; empty for NULL or 0.
QString metros(const QVariant& v);
// A trimmed text value (CHAR columns come padded from some queries).
QString texto(const QVariant& v);

// An image as a data: URI, cropped to the aspect width:height and scaled to
// that size (JPEG for photographs); empty when the bytes are no image.
QString imagenDataUri(const QByteArray& bytes, int width, int height);
// Keeps the whole image (logos): scaled down to fit, PNG.
QString logoDataUri(const QByteArray& bytes, int maxWidth, int maxHeight);
QString dataUri(const QImage& image, const char* format, int quality = -1);

} // namespace tv::reports
