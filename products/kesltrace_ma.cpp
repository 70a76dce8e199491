// keslTrace on an array of matrices.
#include "products/norms.h"

KESL_TRACE_MA(KESL_ARRAY)
