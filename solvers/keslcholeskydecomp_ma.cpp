// keslCholeskyDecomp on an array of matrices.
#include "solvers/cholesky_decomp.h"

KESL_CHOLESKYDECOMP_MA(KESL_ARRAY)
