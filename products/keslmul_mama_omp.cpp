// The threaded forms of keslMul on two arrays of matrices.
#include "frame/team.h"
#include "products/multiply_matrix.h"

KESL_MUL_MAMA(KESL_THREADED)
