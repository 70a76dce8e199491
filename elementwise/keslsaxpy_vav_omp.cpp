// The threaded forms of keslSaxpy on an array of vectors and one vector.
#include "elementwise/saxpy.h"
#include "frame/team.h"

KESL_SAXPY_VAV(KESL_THREADED)
