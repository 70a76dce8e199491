// keslAdd on single matrices.
#include "elementwise/add_matrix.h"

KESL_ADD_MM(KESL_SINGLE)
