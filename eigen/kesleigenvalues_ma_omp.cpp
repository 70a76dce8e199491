// The threaded forms of keslEigenValues on an array of matrices.
#include "eigen/general_values.h"
#include "frame/team.h"

KESL_EIGENVALUES_MA(KESL_ONE_THREADED)
