// keslMul on an array of matrices and one vector.
#include "products/multiply_vector.h"

KESL_MUL_MAV(KESL_ARRAY)
