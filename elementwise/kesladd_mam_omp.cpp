// The threaded forms of keslAdd on an array of matrices and one matrix.
#include "elementwise/add_matrix.h"
#include "frame/team.h"

KESL_ADD_MAM(KESL_THREADED)
