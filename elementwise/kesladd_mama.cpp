// keslAdd on two arrays of matrices.
#include "elementwise/add_matrix.h"

KESL_ADD_MAMA(KESL_ARRAY)
