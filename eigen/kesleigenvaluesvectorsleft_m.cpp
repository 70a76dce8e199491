// keslEigenValuesVectorsLeft on one matrix.
#include "eigen/general_vectors.h"

KESL_EIGENVALUESVECTORSLEFT_M(KESL_ONE_SINGLE)
