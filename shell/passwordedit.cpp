#include "passwordedit.h"

#include <QKeyEvent>

namespace tv::shell {

PasswordEdit::PasswordEdit(QWidget* parent) : QLineEdit(parent)
{
    setEchoMode(QLineEdit::Password);
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (text.contains(QLatin1Char(' '))) {
            const int pos = cursorPosition() - text.left(cursorPosition()).count(QLatin1Char(' '));
            QString clean = text;
            clean.remove(QLatin1Char(' '));
            setText(clean);
            setCursorPosition(pos);
        }
    });
}

void PasswordEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
        backspace();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

} // namespace tv::shell
