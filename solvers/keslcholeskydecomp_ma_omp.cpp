// The threaded forms of keslCholeskyDecomp on an array of matrices.
#include "frame/team.h"
#include "solvers/cholesky_decomp.h"

KESL_CHOLESKYDECOMP_MA(KESL_THREADED)
