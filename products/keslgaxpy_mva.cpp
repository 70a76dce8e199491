// keslGaxpy on one matrix and an array of vectors.
#include "products/multiply_vector.h"

KESL_GAXPY_MVA(KESL_ARRAY)
