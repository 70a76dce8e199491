// keslMul of an array of vectors and one of constants.
#include "elementwise/mul_constant.h"

KESL_MUL_VACA(KESL_ARRAY)
