// The threaded forms of keslGaxpy on one matrix and an array of vectors.
#include "frame/team.h"
#include "products/gaxpy.h"

KESL_GAXPY_MVA(KESL_THREADED)
