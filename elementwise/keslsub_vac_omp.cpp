// The threaded forms of keslSub on an array of vectors and a constant.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_SUB_VAC(KESL_THREADED)
