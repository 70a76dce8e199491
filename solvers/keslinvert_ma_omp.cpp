// The threaded forms of keslInvert on an array of matrices.
#include "frame/team.h"
#include "solvers/invert.h"

KESL_INVERT_MA(KESL_THREADED)
