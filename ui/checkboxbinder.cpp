#include "checkboxbinder.h"

#include "sqltext.h"

#include <QCheckBox>

namespace tv::ui {

CheckBoxBinder::CheckBoxBinder(DataSet& dataSet, const QString& field, QCheckBox* box)
    : FieldBinder(dataSet, field, box), mBox(box)
{
    box->setTristate(false);
    // clicked() fires for the user only (mouse, space, shortcut), never for setChecked.
    connect(box, &QCheckBox::clicked, this, [this] { userChanged(); });
    refresh();
}

void CheckBoxBinder::showValue(const QVariant& value)
{
    mBox->setChecked(sql::isSet(value));
}

QVariant CheckBoxBinder::controlValue() const
{
    return sql::flag(mBox->isChecked());
}

} // namespace tv::ui
