// keslEigenValuesVectorsRight on one matrix.
#include "eigen/general_vectors.h"

KESL_EIGENVALUESVECTORSRIGHT_M(KESL_ONE_SINGLE)
