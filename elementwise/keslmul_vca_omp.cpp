// The threaded forms of keslMul of one vector and an array of constants.
#include "elementwise/mul_constant.h"
#include "frame/team.h"

KESL_MUL_VCA(KESL_THREADED)
