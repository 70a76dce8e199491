// The threaded forms of keslSub on one vector and an array of vectors.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_SUB_VVA(KESL_THREADED)
