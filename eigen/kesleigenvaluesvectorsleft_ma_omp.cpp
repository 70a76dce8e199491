// The threaded forms of keslEigenValuesVectorsLeft on an array of matrices.
#include "eigen/general_vectors.h"
#include "frame/team.h"

KESL_EIGENVALUESVECTORSLEFT_MA(KESL_ONE_THREADED)
