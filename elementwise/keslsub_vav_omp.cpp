// The threaded forms of keslSub on an array of vectors and one vector.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_SUB_VAV(KESL_THREADED)
