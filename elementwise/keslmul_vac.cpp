// keslMul of an array of vectors and a constant.
#include "elementwise/mul_constant.h"

KESL_MUL_VAC(KESL_ARRAY)
