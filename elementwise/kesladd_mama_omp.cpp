// The threaded forms of keslAdd on two arrays of matrices.
#include "elementwise/add_matrix.h"
#include "frame/team.h"

KESL_ADD_MAMA(KESL_THREADED)
