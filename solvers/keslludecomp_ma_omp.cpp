// The threaded forms of keslLUDecomp on an array of matrices.
#include "frame/team.h"
#include "solvers/lu_decomp.h"

KESL_LUDECOMP_MA(KESL_THREADED)
