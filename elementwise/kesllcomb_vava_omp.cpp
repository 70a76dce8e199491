// The threaded forms of keslLComb on two arrays of vectors.
#include "elementwise/saxpy.h"
#include "frame/team.h"

KESL_LCOMB_VAVA(KESL_THREADED)
