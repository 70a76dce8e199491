// The threaded forms of keslAdd on an array of vectors and one of constants.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_ADD_VACA(KESL_THREADED)
