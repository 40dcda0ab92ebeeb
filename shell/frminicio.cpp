#include "frminicio.h"

#include "icons.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

namespace tv::shell {

TfrmInicio::TfrmInicio(QWidget* parent) : QDialog(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmInicio"));
    setModal(true);
    setFixedSize(440, 240);
    setStyleSheet(QStringLiteral(
        "#frmInicio { background: qlineargradient(x1:0, y1:0, x2:1, y2:1, stop:0 #1f4e79, stop:1 #2e75b6);"
        " border: 1px solid #173a5a; }"
        "QLabel { color: white; }"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 20);
    auto* logo = new QLabel(this);
    logo->setPixmap(ui::tintedIcon(QStringLiteral("tejavista"), Qt::white, 64).pixmap(64, 64));
    logo->setAlignment(Qt::AlignCenter);
    auto* name = new QLabel(QStringLiteral("tejavista"), this);
    QFont big = name->font();
    big.setPointSize(big.pointSize() * 2 + 4);
    big.setBold(true);
    name->setFont(big);
    name->setAlignment(Qt::AlignCenter);
    auto* subtitle = new QLabel(QStringLiteral("Gestión inmobiliaria"), this);
    subtitle->setAlignment(Qt::AlignCenter);
    auto* loading = new QLabel(QStringLiteral("Cargando..."), this);
    loading->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    layout->addWidget(logo);
    layout->addWidget(name);
    layout->addWidget(subtitle);
    layout->addStretch(1);
    layout->addWidget(loading);

    mTimer = new QTimer(this);
    mTimer->setInterval(1500);
    connect(mTimer, &QTimer::timeout, this, &TfrmInicio::Timer1Timer);
    mTimer->start();
}

void TfrmInicio::Timer1Timer()
{
    mTimer->stop();
    accept();
}

} // namespace tv::shell
