// keslGaxpy on one matrix and one vector.
#include "products/multiply_vector.h"

KESL_GAXPY_MV(KESL_SINGLE)
