// keslGaxpy on one matrix and one vector.
#include "products/gaxpy.h"

KESL_GAXPY_MV(KESL_SINGLE)
