// keslInvert on one matrix, and the common code.
#include "solvers/invert.h"

KESL_INVERT_COMMON(KESL_COMMON_BODY)
KESL_INVERT_M(KESL_SINGLE)
