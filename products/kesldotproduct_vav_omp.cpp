// The threaded forms of keslDotProduct on an array of vectors and one vector.
#include "frame/team.h"
#include "products/dot.h"

KESL_DOT_VAV(KESL_THREADED)
