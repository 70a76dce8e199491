// The threaded forms of keslTrace on an array of matrices.
#include "frame/team.h"
#include "products/norms.h"

KESL_TRACE_MA(KESL_THREADED)
