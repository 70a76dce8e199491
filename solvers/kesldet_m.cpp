// keslDet on one matrix.
#include "solvers/det.h"

KESL_DET_M(KESL_SINGLE)
