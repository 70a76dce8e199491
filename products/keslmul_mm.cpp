// keslMul on single matrices.
#include "products/multiply_matrix.h"

KESL_MUL_MM(KESL_SINGLE)
