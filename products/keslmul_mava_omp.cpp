// The threaded forms of keslMul on an array of matrices and one of vectors.
#include "frame/team.h"
#include "products/multiply_vector.h"

KESL_MUL_MAVA(KESL_THREADED)
