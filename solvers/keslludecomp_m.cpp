// keslLUDecomp on one matrix, and the common code.
#include "solvers/lu_decomp.h"

KESL_LU_COMMON(KESL_COMMON_BODY)
KESL_LUDECOMP_M(KESL_SINGLE)
