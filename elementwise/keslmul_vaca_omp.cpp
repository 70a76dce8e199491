// The threaded forms of keslMul of an array of vectors and one of constants.
#include "elementwise/mul_constant.h"
#include "frame/team.h"

KESL_MUL_VACA(KESL_THREADED)
