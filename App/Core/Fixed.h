// Numbers in fixed notation, the same in every locale.
#pragma once

#include <QString>

// As C's "%.<decimals>f" has it: rounded from the exact binary value, a tie to the even digit.
QString fixed(double value, int decimals);
