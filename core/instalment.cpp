#include "instalment.h"

#include <cmath>

namespace tv {

Money calculaCuota(double interes, int anos, Money importe)
{
    if (anos <= 0)
        return Money();
    const long double p = importe.toLongDouble();
    const long double n = 12.0L * anos;
    if (interes == 0.0)
        return Money::fromLongDouble(p / n).roundHalfAwayFromZero(0);
    const long double i = static_cast<long double>(interes) * 30.0L / 36000.0L;
    // P i (1+i)^n / ((1+i)^n - 1) = P i / (1 - (1+i)^-n); log1p/expm1 keep
    // the small-rate, many-month cases exact where pow() would cancel.
    const long double denom = -std::expm1l(-n * std::log1pl(i));
    const long double cuota = p * i / denom;
    return Money::fromLongDouble(cuota).roundHalfAwayFromZero(2);
}

} // namespace tv
