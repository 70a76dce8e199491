// keslGaxpy on one matrix and an array of vectors.
#include "products/gaxpy.h"

KESL_GAXPY_MVA(KESL_ARRAY)
