// The threaded forms of keslSub on an array of matrices and one matrix.
#include "elementwise/add_matrix.h"
#include "frame/team.h"

KESL_SUB_MAM(KESL_THREADED)
