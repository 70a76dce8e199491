// The threaded forms of keslSub on an array of vectors and one of constants.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_SUB_VACA(KESL_THREADED)
