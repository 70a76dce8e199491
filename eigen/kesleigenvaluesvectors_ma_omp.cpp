// The threaded forms of keslEigenValuesVectors on an array of matrices.
#include "eigen/general_vectors.h"
#include "frame/team.h"

KESL_EIGENVALUESVECTORS_MA(KESL_ONE_THREADED)
