#pragma once

#include "fieldbinder.h"

class QPlainTextEdit;

namespace tv::ui {

// A multi-line plain text box on a text blob or long text column.
class MemoBinder : public FieldBinder {
    Q_OBJECT
public:
    MemoBinder(DataSet& dataSet, const QString& field, QPlainTextEdit* edit);
    QPlainTextEdit* edit() const { return mEdit; }

protected:
    void showValue(const QVariant& value) override;
    QVariant controlValue() const override;

private:
    QPlainTextEdit* mEdit;
};

} // namespace tv::ui
