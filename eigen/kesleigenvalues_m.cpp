// keslEigenValues on one matrix.
#include "eigen/general_values.h"

KESL_EIGENVALUES_M(KESL_ONE_SINGLE)
