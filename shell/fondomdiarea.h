#pragma once

#include <QMdiArea>
#include <QPixmap>

namespace tv::shell {

// The container of the child windows, painted with the chosen background
// picture (scaled to cover the area, centred) or a quiet gradient.
class FondoMdiArea : public QMdiArea {
    Q_OBJECT
public:
    explicit FondoMdiArea(QWidget* parent = nullptr);

    // A picture file; an empty or unreadable path gives the plain background.
    void setPicture(const QString& path);
    QString picture() const { return mPath; }
    bool hasPicture() const { return !mPicture.isNull(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QString mPath;
    QPixmap mPicture;
    QPixmap mScaled; // mPicture at the viewport's size
};

} // namespace tv::shell
