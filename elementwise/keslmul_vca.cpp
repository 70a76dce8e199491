// keslMul of one vector and an array of constants.
#include "elementwise/mul_constant.h"

KESL_MUL_VCA(KESL_ARRAY)
