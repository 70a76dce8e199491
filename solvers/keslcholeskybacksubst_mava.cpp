// keslCholeskyBackSubst on an array of matrices and one of vectors.
#include "solvers/cholesky_back_subst.h"

KESL_CHOLESKYBACKSUBST_MAVA(KESL_ARRAY)
