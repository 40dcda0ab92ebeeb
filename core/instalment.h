#pragma once

#include "money.h"

namespace tv {

// Monthly instalment: zero rate gives P / (12 y) rounded to a whole amount;
// otherwise the French formula with i = r * 30 / 36000 and n = 12 y, kept to
// four decimals and then rounded to two (halves away from zero).
Money calculaCuota(double interes, int anos, Money importe);

} // namespace tv
