// keslSub on two arrays of matrices.
#include "elementwise/add_matrix.h"

KESL_SUB_MAMA(KESL_ARRAY)
