// keslCholeskyBackSubst on one matrix and one vector.
#include "solvers/cholesky_back_subst.h"

KESL_CHOLESKYBACKSUBST_MV(KESL_SINGLE)
