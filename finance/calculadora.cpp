#include "calculadora.h"

namespace tv::finance {

QString anadirDigito(const QString& texto, int digito)
{
    if (digito < 0 || digito > 9 || texto.size() >= kMaxDigitosImporte)
        return texto;
    if (digito == 0 && importeTecleado(texto) <= Money())
        return texto;
    return texto + QString::number(digito);
}

Money importeTecleado(const QString& texto)
{
    Money m;
    if (!Money::parse(texto, &m))
        return Money();
    return m;
}

DatoCalculadora datoQueFalta(Money importe, int anos, Money interes)
{
    if (importe <= Money())
        return DatoCalculadora::Importe;
    if (anos <= 0)
        return DatoCalculadora::Plazo;
    if (interes <= Money())
        return DatoCalculadora::Interes;
    return DatoCalculadora::Ninguno;
}

QString mensajeDatoQueFalta(DatoCalculadora dato)
{
    switch (dato) {
    case DatoCalculadora::Importe:
        return QStringLiteral("Debe indicar el importe solicitado");
    case DatoCalculadora::Plazo:
        return QStringLiteral("Debe el plazo de amortización");
    case DatoCalculadora::Interes:
        return QStringLiteral("Debe indicar el tipo de interes");
    case DatoCalculadora::Ninguno:
        break;
    }
    return QString();
}

} // namespace tv::finance
