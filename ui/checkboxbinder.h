#pragma once

#include "fieldbinder.h"

class QCheckBox;

namespace tv::ui {

// A check box on a yes/no column: checked is "S", unchecked "N". Anything
// else the column may hold (NULL, blank, "s", garbage) shows unchecked and
// is left untouched until the user clicks.
class CheckBoxBinder : public FieldBinder {
    Q_OBJECT
public:
    CheckBoxBinder(DataSet& dataSet, const QString& field, QCheckBox* box);
    QCheckBox* checkBox() const { return mBox; }

protected:
    void showValue(const QVariant& value) override;
    QVariant controlValue() const override;

private:
    QCheckBox* mBox;
};

} // namespace tv::ui
