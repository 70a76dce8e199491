// The threaded forms of keslSaxpy on two arrays of vectors.
#include "elementwise/saxpy.h"
#include "frame/team.h"

KESL_SAXPY_VAVA(KESL_THREADED)
