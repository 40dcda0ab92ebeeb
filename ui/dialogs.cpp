#include "dialogs.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace tv::ui {

namespace {

Dialogs* gInstalled = nullptr;

QString title()
{
    const QString name = QApplication::applicationDisplayName();
    return name.isEmpty() ? QStringLiteral("tejavista") : name;
}

} // namespace

Dialogs& Dialogs::instance()
{
    static MessageBoxDialogs boxes;
    return gInstalled ? *gInstalled : boxes;
}

void Dialogs::install(Dialogs* d)
{
    gInstalled = d;
}

void MessageBoxDialogs::warning(const QString& text, QWidget* parent)
{
    QMessageBox::warning(parent, title(), text, QMessageBox::Ok);
}

void MessageBoxDialogs::error(const QString& text, QWidget* parent)
{
    QMessageBox::critical(parent, title(), text, QMessageBox::Ok);
}

void MessageBoxDialogs::information(const QString& text, QWidget* parent)
{
    QMessageBox::information(parent, title(), text, QMessageBox::Ok);
}

bool MessageBoxDialogs::confirmation(const QString& text, QWidget* parent)
{
    QMessageBox box(QMessageBox::Question, title(), text, QMessageBox::Yes | QMessageBox::No, parent);
    box.button(QMessageBox::Yes)->setText(QStringLiteral("Sí"));
    box.button(QMessageBox::No)->setText(QStringLiteral("No"));
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

} // namespace tv::ui
