#include "cuadrofinanciacion.h"

#include "instalment.h"


namespace tv::finance {

namespace {

// price * percent / 100, kept to four decimals (halves away from zero).
Money porcentaje(Money importe, Money porCiento)
{
    const __int128 producto = static_cast<__int128>(importe.raw()) * porCiento.raw();
    // raw * raw carries the scale twice; / 100 for the percent.
    const __int128 divisor = static_cast<__int128>(Money::kScale) * 100;
    const __int128 magnitud = producto < 0 ? -producto : producto;
    __int128 q = magnitud / divisor;
    if ((magnitud % divisor) * 2 >= divisor)
        ++q;
    return Money::fromRaw(static_cast<int64_t>(producto < 0 ? -q : q));
}

} // namespace

void CuadroFinanciacion::recalcular(bool importeVacio)
{
    importeVariable = porcentaje(importeInmueble, variable);
    if (importeVacio) {
        importeInmueble = Money();
        importeFijo = Money();
        importeVariable = Money();
        totalOperacion = Money();
        importeEntrada = Money();
    }
    totalOperacion = importeInmueble + importeFijo + importeVariable;
    importeHipoteca = totalOperacion - importeEntrada;
    cuota = hayCuota() ? calculaCuota(intereses, anos, importeHipoteca) : Money();
    for (int f = 0; f < kFilas; ++f)
        interes[f] = intereses + Money::fromRaw(kDesviosInteres[f]);
    for (int f = 0; f < kFilas; ++f)
        for (int c = 0; c < kColumnas; ++c)
            celdas[f][c] = calculaCuota(interes[f], kPlazos[c], importeHipoteca);
}

bool CuadroFinanciacion::hayCuota() const
{
    return importeHipoteca > Money() && anos >= 1;
}

} // namespace tv::finance
