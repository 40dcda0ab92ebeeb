#include "fondomdiarea.h"

#include <QLinearGradient>
#include <QPainter>
#include <QResizeEvent>

namespace tv::shell {

FondoMdiArea::FondoMdiArea(QWidget* parent) : QMdiArea(parent)
{
    setObjectName(QStringLiteral("mdiArea"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

void FondoMdiArea::setPicture(const QString& path)
{
    mPath = path;
    mPicture = path.isEmpty() ? QPixmap() : QPixmap(path);
    mScaled = QPixmap();
    viewport()->update();
}

void FondoMdiArea::resizeEvent(QResizeEvent* event)
{
    mScaled = QPixmap();
    QMdiArea::resizeEvent(event);
}

void FondoMdiArea::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event);
    QPainter p(viewport());
    const QRect r = viewport()->rect();
    if (mPicture.isNull()) {
        QLinearGradient g(r.topLeft(), r.bottomRight());
        g.setColorAt(0, QColor(0xe9, 0xef, 0xf5));
        g.setColorAt(1, QColor(0xc9, 0xd6, 0xe3));
        p.fillRect(r, g);
        return;
    }
    if (mScaled.isNull() || mScaled.size() != r.size()) {
        const QPixmap cover = mPicture.scaled(r.size(), Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        mScaled = cover.copy((cover.width() - r.width()) / 2, (cover.height() - r.height()) / 2, r.width(),
                             r.height());
    }
    p.drawPixmap(r.topLeft(), mScaled);
}

} // namespace tv::shell
