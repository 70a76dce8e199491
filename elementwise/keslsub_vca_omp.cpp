// The threaded forms of keslSub on one vector and an array of constants.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_SUB_VCA(KESL_THREADED)
