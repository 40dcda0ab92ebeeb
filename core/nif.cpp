#include "nif.h"

#include <QStringView>

namespace tv {

namespace {

// Only ASCII digits: QChar::isDigit also takes other scripts' digits.
bool esDigito(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// Upper case without the separators people type inside numbers.
QString limpiar(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text.toUpper()) {
        if (c.isSpace() || c == u'-' || c == u'.' || c == u'/')
            continue;
        out += c;
    }
    return out;
}

// "digits[control]": 1..maxDigitos digits and at most one character after them.
struct Cuerpo {
    QString digitos;
    QChar control; // null when none was typed
};

bool leerCuerpo(QStringView s, qsizetype maxDigitos, Cuerpo* out)
{
    qsizetype n = 0;
    while (n < s.size() && esDigito(s[n]))
        ++n;
    if (n == 0 || n > maxDigitos || s.size() - n > 1)
        return false;
    out->digitos = s.left(n).toString();
    out->control = n < s.size() ? s[n] : QChar();
    return true;
}

// A personal number shown as `visible`, whose letter follows from `valor`.
QString conLetra(const QString& visible, qint64 valor, QChar tecleada)
{
    const QChar letra = kNifLetras[valor % kNifLetras.size()];
    if (!tecleada.isNull() && tecleada != letra)
        return kNifErroneo;
    return visible + letra;
}

QString dni(const QString& limpio)
{
    Cuerpo c;
    if (!leerCuerpo(limpio, 8, &c))
        return kNifErroneo;
    const QString numero = c.digitos.rightJustified(8, u'0');
    return conLetra(numero, numero.toLongLong(), c.control);
}

// NIE (X, Y, Z) and the special personal numbers (K, L, M): a letter and seven
// digits; the NIE's letter stands for a leading digit in the check.
QString personalConPrefijo(const QString& limpio)
{
    Cuerpo c;
    if (!leerCuerpo(QStringView(limpio).mid(1), 7, &c))
        return kNifErroneo;
    const QChar prefijo = limpio[0];
    const QString numero = c.digitos.rightJustified(7, u'0');
    const qsizetype nie = QStringLiteral("XYZ").indexOf(prefijo);
    const qint64 valor = (nie < 0 ? 0 : nie * 10000000LL) + numero.toLongLong();
    return conLetra(prefijo + numero, valor, c.control);
}

// The control value of a company code's seven digits.
int controlCif(QStringView digitos)
{
    int suma = 0;
    for (qsizetype i = 0; i < digitos.size(); ++i) {
        const int d = digitos[i].unicode() - u'0';
        if (i % 2 == 1) {
            suma += d; // 2nd, 4th, 6th
        } else {
            const int doble = 2 * d; // 1st, 3rd, 5th, 7th: digits of the double
            suma += doble / 10 + doble % 10;
        }
    }
    return (10 - suma % 10) % 10;
}

QString cif(const QString& limpio)
{
    if (limpio.size() < 8 || limpio.size() > 9)
        return kNifErroneo;
    const QStringView digitos = QStringView(limpio).mid(1, 7);
    for (const QChar c : digitos) {
        if (!esDigito(c))
            return kNifErroneo;
    }
    const QChar tipo = limpio[0];
    const int d = controlCif(digitos);
    const QChar letra = kCifControlLetras[d];
    const QChar digito = kCifControlDigitos[d];
    const bool pideLetra = kCifConControlLetra.contains(tipo);
    const bool pideDigito = kCifConControlDigito.contains(tipo);
    if (limpio.size() == 8)
        return limpio + (pideLetra ? letra : digito);
    const QChar control = limpio[8];
    if ((control == letra && !pideDigito) || (control == digito && !pideLetra))
        return limpio;
    return kNifErroneo;
}

} // namespace

bool esEspana(const QString& pais)
{
    // "España", "ESPAÑA" and "Espana" alike: compare without accents.
    QString base;
    for (const QChar c : pais.trimmed().normalized(QString::NormalizationForm_D)) {
        if (c.category() != QChar::Mark_NonSpacing)
            base += c;
    }
    return base.compare(QStringLiteral("ESPANA"), Qt::CaseInsensitive) == 0;
}

QString normalizarNif(const QString& text, const QString& pais)
{
    if (!esEspana(pais))
        return text;
    const QString limpio = limpiar(text);
    if (limpio.isEmpty())
        return QString();
    if (limpio.startsWith(kNifMarcaPersonaJuridica) || limpio.startsWith(kNifMarcaPersonaFisica))
        return limpio;
    const QChar primero = limpio[0];
    if (esDigito(primero))
        return dni(limpio);
    if (QStringLiteral("XYZKLM").contains(primero))
        return personalConPrefijo(limpio);
    if (kCifLetrasIniciales.contains(primero))
        return cif(limpio);
    return kNifErroneo;
}

} // namespace tv
