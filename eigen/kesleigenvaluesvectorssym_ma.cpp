// keslEigenValuesVectorsSym on an array of matrices.
#include "eigen/symmetric_vectors.h"

KESL_EIGENVALUESVECTORSSYM_MA(KESL_ARRAY)
