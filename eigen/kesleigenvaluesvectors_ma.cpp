// keslEigenValuesVectors on an array of matrices.
#include "eigen/general_vectors.h"

KESL_EIGENVALUESVECTORS_MA(KESL_ONE_ARRAY)
