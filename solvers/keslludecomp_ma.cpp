// keslLUDecomp on an array of matrices.
#include "solvers/lu_decomp.h"

KESL_LUDECOMP_MA(KESL_ARRAY)
