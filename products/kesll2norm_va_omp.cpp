// The threaded forms of keslL2Norm on an array of vectors.
#include "frame/team.h"
#include "products/norms.h"

KESL_L2NORM_VA(KESL_THREADED)
