// The threaded forms of keslDotProduct on two arrays of vectors.
#include "frame/team.h"
#include "products/dot.h"

KESL_DOT_VAVA(KESL_THREADED)
