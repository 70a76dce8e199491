// keslCholeskyDecomp on one matrix.
#include "solvers/cholesky_decomp.h"

KESL_CHOLESKYDECOMP_M(KESL_SINGLE)
