// keslEigenValuesVectorsRight on an array of matrices.
#include "eigen/general_vectors.h"

KESL_EIGENVALUESVECTORSRIGHT_MA(KESL_ONE_ARRAY)
