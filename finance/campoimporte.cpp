#include "campoimporte.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <QTimer>
#include <QValidator>

namespace tv::finance {

namespace {

// Accepts a blank box, a bare number ("1234,56") and the shown form
// ("1.234,56 €"), with at most the given whole digits and decimals.
class ValidadorImporte : public QValidator {
public:
    ValidadorImporte(int decimales, const QString& unidad, int digitos, QObject* parent)
        : QValidator(parent), mUnidad(unidad), mDigitos(digitos)
    {
        const QString dec = decimales > 0 ? QStringLiteral("(,\\d{0,%1})?").arg(decimales) : QString();
        mPlano = QRegularExpression(QStringLiteral("^\\d*%1$").arg(dec));
        mAgrupado = QRegularExpression(QStringLiteral("^\\d{1,3}(\\.\\d{3})+%1$").arg(dec));
    }

    State validate(QString& input, int&) const override
    {
        QString t = input.trimmed();
        if (!mUnidad.isEmpty() && t.endsWith(mUnidad))
            t.chop(mUnidad.size());
        t = t.trimmed();
        if (t.isEmpty())
            return Acceptable;
        const bool agrupado = mAgrupado.match(t).hasMatch();
        if (!agrupado && !mPlano.match(t).hasMatch())
            return Invalid;
        QString enteros = t.section(QLatin1Char(','), 0, 0);
        enteros.remove(QLatin1Char('.'));
        return enteros.size() <= mDigitos ? Acceptable : Invalid;
    }

private:
    QString mUnidad;
    int mDigitos;
    QRegularExpression mPlano;
    QRegularExpression mAgrupado;
};

} // namespace

CampoImporte::CampoImporte(int decimales, const QString& unidad, int digitos, QWidget* parent)
    : QLineEdit(parent), mDecimales(decimales), mUnidad(unidad)
{
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setValidator(new ValidadorImporte(decimales, unidad, digitos, this));
    connect(this, &QLineEdit::editingFinished, this, &CampoImporte::reformat);
}

Money CampoImporte::value() const
{
    QString t = text().trimmed();
    if (!mUnidad.isEmpty() && t.endsWith(mUnidad))
        t.chop(mUnidad.size());
    t = t.trimmed();
    // "1234," while the decimals are still being typed.
    if (t.endsWith(QLatin1Char(',')))
        t.chop(1);
    Money m;
    if (!Money::parse(t, &m))
        return Money();
    return m;
}

bool CampoImporte::isBlank() const
{
    return text().trimmed().isEmpty();
}

void CampoImporte::setValue(Money value)
{
    setText(hasFocus() ? editText(value) : displayText(value));
}

void CampoImporte::reformat()
{
    if (isBlank() || hasFocus())
        return;
    const QString shown = displayText(value());
    if (shown != text())
        setText(shown);
}

QString CampoImporte::displayText(Money value) const
{
    QString s = value.toSpanish(mDecimales);
    if (!mUnidad.isEmpty())
        s += QLatin1Char(' ') + mUnidad;
    return s;
}

QString CampoImporte::editText(Money value) const
{
    // Bare number with a comma and no trailing zeros: what one would type.
    QString s = value.toPlainString(mDecimales);
    if (s.contains(QLatin1Char('.'))) {
        while (s.endsWith(QLatin1Char('0')))
            s.chop(1);
        if (s.endsWith(QLatin1Char('.')))
            s.chop(1);
    }
    s.replace(QLatin1Char('.'), QLatin1Char(','));
    return s;
}

void CampoImporte::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    if (!isBlank()) {
        const QString bare = editText(value());
        if (bare != text())
            setText(bare);
    }
    // After the click that gave the focus has placed the caret.
    QTimer::singleShot(0, this, [this] {
        if (hasFocus())
            selectAll();
    });
}

void CampoImporte::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    reformat();
}

void CampoImporte::keyPressEvent(QKeyEvent* event)
{
    if (event->text() == QLatin1String(".") && mDecimales > 0) {
        if (!text().contains(QLatin1Char(',')) || selectedText().contains(QLatin1Char(',')))
            insert(QStringLiteral(","));
        return;
    }
    QLineEdit::keyPressEvent(event);
}

} // namespace tv::finance
