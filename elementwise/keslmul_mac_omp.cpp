// The threaded forms of keslMul of an array of matrices and a constant.
#include "elementwise/mul_constant.h"
#include "frame/team.h"

KESL_MUL_MAC(KESL_THREADED)
