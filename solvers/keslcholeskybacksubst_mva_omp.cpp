// The threaded forms of keslCholeskyBackSubst on one matrix and an array of vectors.
#include "frame/team.h"
#include "solvers/cholesky_back_subst.h"

KESL_CHOLESKYBACKSUBST_MVA(KESL_THREADED)
