#include "memobinder.h"

#include <QPlainTextEdit>

namespace tv::ui {

MemoBinder::MemoBinder(DataSet& dataSet, const QString& field, QPlainTextEdit* edit)
    : FieldBinder(dataSet, field, edit), mEdit(edit)
{
    connect(edit, &QPlainTextEdit::textChanged, this, [this] {
        if (!isShowing())
            userChanged();
    });
    refresh();
}

void MemoBinder::showValue(const QVariant& value)
{
    const QString text = (value.isValid() && !value.isNull()) ? value.toString() : QString();
    if (mEdit->toPlainText() != text)
        mEdit->setPlainText(text);
}

QVariant MemoBinder::controlValue() const
{
    const QString text = mEdit->toPlainText();
    return text.isEmpty() ? QVariant() : QVariant(text);
}

} // namespace tv::ui
