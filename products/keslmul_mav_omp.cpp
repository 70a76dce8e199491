// The threaded forms of keslMul on an array of matrices and one vector.
#include "frame/team.h"
#include "products/multiply_vector.h"

KESL_MUL_MAV(KESL_THREADED)
