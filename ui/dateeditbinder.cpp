#include "dateeditbinder.h"

#include <QDateEdit>

namespace tv::ui {

DateEditBinder::DateEditBinder(DataSet& dataSet, const QString& field, QDateEdit* edit)
    : FieldBinder(dataSet, field, edit), mEdit(edit)
{
    edit->setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
    edit->setMinimumDate(noDate());
    edit->setSpecialValueText(QStringLiteral(" "));
    edit->setCalendarPopup(true);
    connect(edit, &QDateEdit::dateChanged, this, [this] {
        if (!isShowing())
            userChanged();
    });
    refresh();
}

void DateEditBinder::showValue(const QVariant& value)
{
    const QDate d = (value.isValid() && !value.isNull()) ? value.toDateTime().date() : QDate();
    mEdit->setDate(d.isValid() ? d : noDate());
}

QVariant DateEditBinder::controlValue() const
{
    const QDate d = mEdit->date();
    if (!d.isValid() || d == noDate())
        return {};
    return d.startOfDay();
}

} // namespace tv::ui
