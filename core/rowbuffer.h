#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <QVector>

#include <cstdint>
#include <optional>
#include <vector>

namespace tv {

// A blob column's id as fetched. Data sets keep the id and read the contents
// only when the field is read; passed back as a parameter, the engine copies
// the blob without the program ever reading it.
struct BlobId {
    quint32 high = 0;
    quint32 low = 0;
    bool text = false;
    bool operator==(const BlobId& o) const { return high == o.high && low == o.low; }
    bool operator!=(const BlobId& o) const { return !(*this == o); }
};

// What a column holds, as the data layer stores it.
enum class ColumnKind : quint8 { Text, Bytes, Int16, Int32, Int64, Float, Double, Timestamp, Date, Time, Boolean, Blob };

// One column of a result as laid out in the engine's output message.
struct ColumnLayout {
    ColumnKind kind = ColumnKind::Text;
    qint8 scale = 0;
    bool fixedLength = false; // CHAR: blank-padded to its length, trimmed when read
    bool textBlob = false;
    unsigned offset = 0;
    unsigned nullOffset = 0;
    unsigned length = 0;
};

// The compact form of one row: a null bitmap, an offset per column and the
// values in their binary form (texts as UTF-8, blobs as ids or, once set by
// the program, as their contents). A row of a 350-column table costs its data
// plus about 750 bytes instead of a QVariant per column.
// The layout is shared by every row of a result; not thread-safe.
class RowLayout {
public:
    RowLayout() = default;
    explicit RowLayout(std::vector<ColumnLayout> columns) : mColumns(std::move(columns)) {}

    int count() const { return static_cast<int>(mColumns.size()); }
    const ColumnLayout& column(int i) const { return mColumns[static_cast<size_t>(i)]; }

    // Packs the row that the engine wrote into its output message; blob
    // columns given contents in `inlineBlobs` carry them instead of the id.
    QByteArray pack(const unsigned char* message,
                    const std::vector<std::optional<QByteArray>>* inlineBlobs = nullptr) const;
    // Packs values in the form Query and DataSet hand out.
    QByteArray pack(const QVector<QVariant>& values) const;

    bool isNull(const QByteArray& row, int column) const;
    QVariant value(const QByteArray& row, int column) const;
    QVector<QVariant> values(const QByteArray& row) const;

    // Decodes one column of an output message (eager reads of Query).
    QVariant decode(const unsigned char* message, int column) const;

private:
    std::vector<ColumnLayout> mColumns;
};

// Conversions between the engine's timestamp and Qt's.
QDateTime decodeTimestamp(quint32 date, quint32 time);
void encodeTimestamp(const QDateTime& dt, quint32* date, quint32* time);
// A date, or date and time, written by a person or the screens: day first
// with slashes or dots, or ISO; invalid for anything else.
QDateTime dateTimeFromText(const QString& text);

} // namespace tv

Q_DECLARE_METATYPE(tv::BlobId)
