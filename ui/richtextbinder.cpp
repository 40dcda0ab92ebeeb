#include "richtextbinder.h"

#include "plaintext.h"

#include <QTextEdit>

namespace tv::ui {

RichTextBinder::RichTextBinder(DataSet& dataSet, const QString& field, QTextEdit* edit)
    : FieldBinder(dataSet, field, edit), mEdit(edit)
{
    edit->setAcceptRichText(true);
    connect(edit, &QTextEdit::textChanged, this, [this] {
        if (!isShowing()) {
            // Before writing: a refusal's refresh must see that the box
            // differs from the field, or it keeps text that was never stored.
            mShown = controlValue();
            userChanged();
        }
    });
    refresh();
}

void RichTextBinder::showValue(const QVariant& value)
{
    // setHtml() reformats, so the box is only rewritten when the stored value
    // really is another one; otherwise the cursor would jump while typing.
    const bool isNull = !value.isValid() || value.isNull();
    if (mShown.isValid() && !isNull && mShown.toString() == value.toString())
        return;
    mShown = value;
    const QString text = isNull ? QString() : value.toString();
    switch (detectTextFormat(text)) {
    case TextFormat::Rtf:
        mEdit->setPlainText(rtfToPlainText(text));
        break;
    case TextFormat::Html:
        mEdit->setHtml(text);
        break;
    case TextFormat::Plain:
        mEdit->setPlainText(text);
        break;
    }
}

QVariant RichTextBinder::controlValue() const
{
    if (mEdit->document()->isEmpty())
        return {};
    return mEdit->toHtml();
}

} // namespace tv::ui
