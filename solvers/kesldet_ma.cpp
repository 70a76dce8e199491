// keslDet on an array of matrices.
#include "solvers/det.h"

KESL_DET_MA(KESL_ARRAY)
