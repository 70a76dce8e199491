// keslSub on one matrix and an array of matrices.
#include "elementwise/add_matrix.h"

KESL_SUB_MMA(KESL_ARRAY)
