// The threaded forms of keslEigenValuesVectorsRight on an array of matrices.
#include "eigen/general_vectors.h"
#include "frame/team.h"

KESL_EIGENVALUESVECTORSRIGHT_MA(KESL_ONE_THREADED)
