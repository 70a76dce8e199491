// The threaded forms of keslSub on one matrix and an array of matrices.
#include "elementwise/add_matrix.h"
#include "frame/team.h"

KESL_SUB_MMA(KESL_THREADED)
