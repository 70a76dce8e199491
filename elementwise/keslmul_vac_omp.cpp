// The threaded forms of keslMul of an array of vectors and a constant.
#include "elementwise/mul_constant.h"
#include "frame/team.h"

KESL_MUL_VAC(KESL_THREADED)
