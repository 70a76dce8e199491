// The threaded forms of keslSub on two arrays of matrices.
#include "elementwise/add_matrix.h"
#include "frame/team.h"

KESL_SUB_MAMA(KESL_THREADED)
