// keslSub on an array of matrices and one matrix.
#include "elementwise/add_matrix.h"

KESL_SUB_MAM(KESL_ARRAY)
