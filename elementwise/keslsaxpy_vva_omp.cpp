// The threaded forms of keslSaxpy on one vector and an array of vectors.
#include "elementwise/saxpy.h"
#include "frame/team.h"

KESL_SAXPY_VVA(KESL_THREADED)
