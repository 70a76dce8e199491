// keslMul of an array of matrices and a constant.
#include "elementwise/mul_constant.h"

KESL_MUL_MAC(KESL_ARRAY)
