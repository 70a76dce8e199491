// The threaded forms of keslFrobNorm on an array of matrices.
#include "frame/team.h"
#include "products/norms.h"

KESL_FROBNORM_MA(KESL_THREADED)
