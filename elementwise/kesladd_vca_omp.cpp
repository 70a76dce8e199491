// The threaded forms of keslAdd on one vector and an array of constants.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_ADD_VCA(KESL_THREADED)
