#include "picturebinder.h"

#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPixmap>

namespace tv::ui {

PictureBinder::PictureBinder(DataSet& dataSet, const QString& field, QLabel* label)
    : FieldBinder(dataSet, field, label), mLabel(label)
{
    label->setAlignment(Qt::AlignCenter);
    label->setMinimumSize(96, 96);
    label->setFrameShape(QFrame::StyledPanel);
    refresh();
}

bool PictureBinder::setPicture(const QByteArray& bytes)
{
    if (!bytes.isEmpty() && QImage::fromData(bytes).isNull())
        return false;
    mBytes = bytes;
    userChanged();
    // A refused edit has shown the field again, which put the old bytes back;
    // an accepted one is drawn now.
    if (mBytes != bytes)
        return false;
    refresh();
    return true;
}

bool PictureBinder::setPictureFromFile(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    return setPicture(f.readAll());
}

void PictureBinder::showValue(const QVariant& value)
{
    mBytes = value.isValid() && !value.isNull() ? value.toByteArray() : QByteArray();
    QPixmap pixmap;
    if (!mBytes.isEmpty() && pixmap.loadFromData(mBytes)) {
        const QSize room = mLabel->size().expandedTo(mLabel->minimumSize());
        mLabel->setPixmap(pixmap.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        mLabel->setText({});
    } else {
        mLabel->setPixmap({});
        mLabel->setText(mBytes.isEmpty() ? QStringLiteral("Sin imagen") : QStringLiteral("Imagen no válida"));
    }
}

QVariant PictureBinder::controlValue() const
{
    return mBytes.isEmpty() ? QVariant() : QVariant(mBytes);
}

} // namespace tv::ui
