// The threaded forms of keslMul on one matrix and an array of vectors.
#include "frame/team.h"
#include "products/multiply_vector.h"

KESL_MUL_MVA(KESL_THREADED)
