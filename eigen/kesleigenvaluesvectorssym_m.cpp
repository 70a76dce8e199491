// keslEigenValuesVectorsSym on one matrix.
#include "eigen/symmetric_vectors.h"

KESL_EIGENVALUESVECTORSSYM_M(KESL_SINGLE)
