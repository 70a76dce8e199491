// The threaded forms of keslAdd on two arrays of vectors.
#include "elementwise/add_vector.h"
#include "frame/team.h"

KESL_ADD_VAVA(KESL_THREADED)
