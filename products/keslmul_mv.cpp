// keslMul on a matrix and a vector.
#include "products/multiply_vector.h"

KESL_MUL_MV(KESL_SINGLE)
