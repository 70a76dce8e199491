// keslEigenValuesVectors on one matrix.
#include "eigen/general_vectors.h"

KESL_EIGENVALUESVECTORS_M(KESL_ONE_SINGLE)
