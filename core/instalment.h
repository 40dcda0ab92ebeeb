#pragma once

#include "money.h"

namespace tv {

// Monthly instalment of a loan: annual rate in percent, term in years, loan.
// A zero rate gives P / (12 y) rounded to a whole amount; any other rate
// (negative ones too) the French formula with i = r * 30 / 36000 and n = 12 y,
// kept to four decimals and then rounded to two. Both roundings take halves
// away from zero. The result is exact: the formula is evaluated in integer
// arithmetic on the four-decimal values, so no power loses digits however
// many months. A term below one year, or a rate of -1200 % or less, gives 0.
Money calculaCuota(Money interes, int anos, Money importe);
// The rate as a double is first taken to four decimals, like any money value.
Money calculaCuota(double interes, int anos, Money importe);

} // namespace tv
