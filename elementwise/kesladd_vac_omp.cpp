// The threaded forms of keslAdd on an array of vectors and a constant.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_ADD_VAC(KESL_THREADED)
