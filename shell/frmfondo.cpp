#include "frmfondo.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tv::shell {

namespace {

const QSize kThumb(192, 120);

QIcon thumbnail(const QString& path)
{
    QImageReader reader(path);
    const QSize full = reader.size();
    if (full.isValid())
        reader.setScaledSize(full.scaled(kThumb, Qt::KeepAspectRatioByExpanding));
    const QImage img = reader.read();
    if (img.isNull())
        return {};
    const QImage cut = img.copy((img.width() - kThumb.width()) / 2, (img.height() - kThumb.height()) / 2,
                                kThumb.width(), kThumb.height());
    return QIcon(QPixmap::fromImage(cut));
}

QIcon plainThumbnail()
{
    QPixmap pm(kThumb);
    pm.fill(QColor(0xdd, 0xe5, 0xee));
    return QIcon(pm);
}

} // namespace

QStringList TfrmFondo::pictures(const QString& folder)
{
    return QDir(folder).entryList({QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"), QStringLiteral("*.png")},
                                  QDir::Files, QDir::Name | QDir::IgnoreCase);
}

TfrmFondo::TfrmFondo(const QString& folder, const QString& current, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Fondo de la ventana principal"));
    mList = new QListWidget(this);
    mList->setViewMode(QListView::IconMode);
    mList->setIconSize(kThumb);
    mList->setResizeMode(QListView::Adjust);
    mList->setMovement(QListView::Static);
    mList->setSpacing(8);
    mList->setMinimumSize(3 * (kThumb.width() + 28), 2 * (kThumb.height() + 48));

    auto* none = new QListWidgetItem(plainThumbnail(), QStringLiteral("Sin imagen"), mList);
    none->setData(Qt::UserRole, QString());
    if (current.isEmpty())
        mList->setCurrentItem(none);
    for (const QString& name : pictures(folder)) {
        auto* item = new QListWidgetItem(thumbnail(QDir(folder).filePath(name)), QFileInfo(name).baseName(), mList);
        item->setData(Qt::UserRole, name);
        if (name == current)
            mList->setCurrentItem(item);
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Aceptar"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Cancelar"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(mList, &QListWidget::itemDoubleClicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Elija la imagen de fondo:"), this));
    layout->addWidget(mList, 1);
    layout->addWidget(buttons);
}

QString TfrmFondo::choice() const
{
    const QListWidgetItem* item = mList->currentItem();
    return item ? item->data(Qt::UserRole).toString() : QString();
}

} // namespace tv::shell
