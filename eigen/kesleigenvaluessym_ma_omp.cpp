// The threaded forms of keslEigenValuesSym on an array of matrices.
#include "eigen/symmetric_values.h"
#include "frame/team.h"

KESL_EIGENVALUESSYM_MA(KESL_THREADED)
