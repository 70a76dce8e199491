// keslMul on an array of matrices and one matrix.
#include "products/multiply_matrix.h"

KESL_MUL_MAM(KESL_ARRAY)
