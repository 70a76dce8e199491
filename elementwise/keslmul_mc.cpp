// keslMul of a single matrix or vector and a constant.
#include "elementwise/mul_constant.h"

KESL_MUL_MC(KESL_SINGLE)
