// keslMul on an array of matrices and one of vectors.
#include "products/multiply_vector.h"

KESL_MUL_MAVA(KESL_ARRAY)
