// keslMul on one matrix and an array of matrices.
#include "products/multiply_matrix.h"

KESL_MUL_MMA(KESL_ARRAY)
