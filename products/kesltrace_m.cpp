// keslTrace on one matrix.
#include "products/norms.h"

KESL_TRACE_M(KESL_SINGLE)
