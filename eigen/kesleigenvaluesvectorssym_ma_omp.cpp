// The threaded forms of keslEigenValuesVectorsSym on an array of matrices.
#include "eigen/symmetric_vectors.h"
#include "frame/team.h"

KESL_EIGENVALUESVECTORSSYM_MA(KESL_THREADED)
