// The threaded forms of keslDet on an array of matrices.
#include "frame/team.h"
#include "solvers/det.h"

KESL_DET_MA(KESL_THREADED)
