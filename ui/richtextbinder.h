#pragma once

#include "fieldbinder.h"

class QTextEdit;

namespace tv::ui {

// A rich text box on a text blob. What the user writes is stored as HTML;
// stored HTML and plain text are shown as they are, stored RTF (from older
// editors) as its plain text until the user edits it.
class RichTextBinder : public FieldBinder {
    Q_OBJECT
public:
    RichTextBinder(DataSet& dataSet, const QString& field, QTextEdit* edit);
    QTextEdit* edit() const { return mEdit; }

protected:
    void showValue(const QVariant& value) override;
    QVariant controlValue() const override;

private:
    QTextEdit* mEdit;
    QVariant mShown; // the stored value the box shows now
};

} // namespace tv::ui
