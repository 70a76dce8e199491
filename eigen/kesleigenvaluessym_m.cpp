// keslEigenValuesSym on one matrix.
#include "eigen/symmetric_values.h"

KESL_EIGENVALUESSYM_M(KESL_SINGLE)
