// keslEigenValuesSym on an array of matrices.
#include "eigen/symmetric_values.h"

KESL_EIGENVALUESSYM_MA(KESL_ARRAY)
