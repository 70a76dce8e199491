// The threaded forms of keslAdd on an array of vectors and one vector.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_ADD_VAV(KESL_THREADED)
