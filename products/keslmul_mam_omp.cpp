// The threaded forms of keslMul on an array of matrices and one matrix.
#include "frame/team.h"
#include "products/multiply_matrix.h"

KESL_MUL_MAM(KESL_THREADED)
