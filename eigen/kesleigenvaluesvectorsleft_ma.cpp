// keslEigenValuesVectorsLeft on an array of matrices.
#include "eigen/general_vectors.h"

KESL_EIGENVALUESVECTORSLEFT_MA(KESL_ONE_ARRAY)
