#pragma once

#include "fieldbinder.h"

class QLineEdit;

namespace tv::ui {

// A line edit on a text or number field. Texts: an empty box is NULL.
// Numbers are shown and typed the Spanish way ("1.234,56"); a number that
// does not read yet (a lone "12,") is kept in the box and written once it does.
class LineEditBinder : public FieldBinder {
    Q_OBJECT
public:
    enum class Kind { Text, Integer, Number, Money };

    LineEditBinder(DataSet& dataSet, const QString& field, QLineEdit* edit, Kind kind = Kind::Text);
    QLineEdit* lineEdit() const { return mEdit; }

protected:
    void showValue(const QVariant& value) override;
    QVariant controlValue() const override;

private:
    void onEdited();
    QLineEdit* mEdit;
    Kind mKind;
};

} // namespace tv::ui
