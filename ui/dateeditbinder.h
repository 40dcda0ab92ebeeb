#pragma once

#include "fieldbinder.h"

#include <QDate>

class QDateEdit;

namespace tv::ui {

// A date box (dd/MM/yyyy) on a date column. A NULL date shows an empty box:
// the box's minimum date stands for "no date", and choosing it clears the field.
class DateEditBinder : public FieldBinder {
    Q_OBJECT
public:
    DateEditBinder(DataSet& dataSet, const QString& field, QDateEdit* edit);
    QDateEdit* dateEdit() const { return mEdit; }

    static QDate noDate() { return QDate(1899, 12, 30); }

protected:
    void showValue(const QVariant& value) override;
    QVariant controlValue() const override;

private:
    QDateEdit* mEdit;
};

} // namespace tv::ui
