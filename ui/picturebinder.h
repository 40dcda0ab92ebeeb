#pragma once

#include "fieldbinder.h"

#include <QByteArray>

class QLabel;

namespace tv::ui {

// A picture column (a logo, a photograph) shown scaled in a label. The user
// changes it through setPicture (a chosen file's bytes), never by typing.
class PictureBinder : public FieldBinder {
    Q_OBJECT
public:
    PictureBinder(DataSet& dataSet, const QString& field, QLabel* label);
    QLabel* label() const { return mLabel; }
    // Puts the data set in edit and stores the bytes (empty: no picture).
    // False when the bytes are not a picture or the edit was refused.
    bool setPicture(const QByteArray& bytes);
    bool setPictureFromFile(const QString& path);
    QByteArray picture() const { return mBytes; }

protected:
    void showValue(const QVariant& value) override;
    QVariant controlValue() const override;

private:
    QLabel* mLabel;
    QByteArray mBytes;
};

} // namespace tv::ui
