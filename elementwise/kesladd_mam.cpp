// keslAdd on an array of matrices and one matrix.
#include "elementwise/add_matrix.h"

KESL_ADD_MAM(KESL_ARRAY)
