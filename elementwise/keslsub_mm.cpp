// keslSub on single matrices.
#include "elementwise/add_matrix.h"

KESL_SUB_MM(KESL_SINGLE)
