// keslEigenValues on an array of matrices.
#include "eigen/general_values.h"

KESL_EIGENVALUES_MA(KESL_ONE_ARRAY)
