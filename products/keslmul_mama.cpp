// keslMul on two arrays of matrices.
#include "products/multiply_matrix.h"

KESL_MUL_MAMA(KESL_ARRAY)
