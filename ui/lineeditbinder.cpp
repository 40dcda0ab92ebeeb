#include "lineeditbinder.h"

#include "money.h"

#include <QLineEdit>

namespace tv::ui {

namespace {

// Reads "1.234,56", "1234,56" or "1234.56"; false on anything else.
bool readNumber(const QString& text, double* out)
{
    Money m;
    if (!Money::parse(text.trimmed(), &m))
        return false;
    *out = m.toDouble();
    return true;
}

} // namespace

LineEditBinder::LineEditBinder(DataSet& dataSet, const QString& field, QLineEdit* edit, Kind kind)
    : FieldBinder(dataSet, field, edit), mEdit(edit), mKind(kind)
{
    if (kind != Kind::Text)
        edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connect(edit, &QLineEdit::textEdited, this, &LineEditBinder::onEdited);
    // Once the user leaves the box, show the value as stored (formatted).
    connect(edit, &QLineEdit::editingFinished, this, &FieldBinder::refresh);
    refresh();
}

void LineEditBinder::onEdited()
{
    if (mKind != Kind::Text && !mEdit->text().trimmed().isEmpty()) {
        double d = 0;
        bool ok = false;
        if (mKind == Kind::Integer)
            mEdit->text().trimmed().toLongLong(&ok);
        else
            ok = readNumber(mEdit->text(), &d);
        if (!ok)
            return;
    }
    userChanged();
}

void LineEditBinder::showValue(const QVariant& value)
{
    QString text;
    if (value.isValid() && !value.isNull()) {
        switch (mKind) {
        case Kind::Text:
            text = value.toString();
            break;
        case Kind::Integer:
            text = QString::number(value.toLongLong());
            break;
        case Kind::Number:
        case Kind::Money:
            try {
                text = Money::fromDouble(value.toDouble()).toSpanish(2);
            } catch (const MoneyOverflow&) {
                text = QString::number(value.toDouble(), 'f', 2); // beyond an amount: shown plainly
            }
            break;
        }
    }
    // While the user types, the stored value comes back in another form
    // ("12" for "12,"): leave the box alone when it already means the same.
    if (mEdit->hasFocus() && mKind != Kind::Text) {
        double shown = 0;
        if (readNumber(mEdit->text(), &shown) && value.isValid() && qFuzzyCompare(shown + 1, value.toDouble() + 1))
            return;
    }
    if (mEdit->text() != text)
        mEdit->setText(text);
}

QVariant LineEditBinder::controlValue() const
{
    const QString text = mEdit->text();
    if (text.trimmed().isEmpty())
        return {};
    switch (mKind) {
    case Kind::Text:
        return text;
    case Kind::Integer:
        return text.trimmed().toLongLong();
    case Kind::Number:
    case Kind::Money: {
        double d = 0;
        readNumber(text, &d);
        return d;
    }
    }
    return text;
}

} // namespace tv::ui
