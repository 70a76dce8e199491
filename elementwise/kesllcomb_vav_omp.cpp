// The threaded forms of keslLComb on an array of vectors and one vector.
#include "elementwise/saxpy.h"
#include "frame/team.h"

KESL_LCOMB_VAV(KESL_THREADED)
