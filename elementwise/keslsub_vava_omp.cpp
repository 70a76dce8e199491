// The threaded forms of keslSub on two arrays of vectors.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_SUB_VAVA(KESL_THREADED)
