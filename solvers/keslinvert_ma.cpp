// keslInvert on an array of matrices.
#include "solvers/invert.h"

KESL_INVERT_MA(KESL_ARRAY)
