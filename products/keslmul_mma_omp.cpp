// The threaded forms of keslMul on one matrix and an array of matrices.
#include "frame/team.h"
#include "products/multiply_matrix.h"

KESL_MUL_MMA(KESL_THREADED)
