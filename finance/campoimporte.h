#pragma once

#include "money.h"

#include <QLineEdit>

namespace tv::finance {

// A box for an amount or a percentage typed the Spanish way. While it has
// the focus it holds the bare number ("1234,5"); otherwise it shows it
// grouped, with its decimals and unit ("1.234,50 €"). A typed "." becomes
// the decimal comma. A blank box stays blank (its value is zero).
class CampoImporte : public QLineEdit {
    Q_OBJECT
public:
    // unidad: "€", "%" or empty; digitos: the most whole digits accepted.
    CampoImporte(int decimales, const QString& unidad, int digitos, QWidget* parent = nullptr);

    Money value() const;
    bool isBlank() const;
    void setValue(Money value);
    // Turns a typed text into its shown form (blank and unreadable texts are left alone).
    void reformat();

    // The shown form of an amount with this box's decimals and unit.
    QString displayText(Money value) const;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString editText(Money value) const;

    int mDecimales;
    QString mUnidad;
};

} // namespace tv::finance
