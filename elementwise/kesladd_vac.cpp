// keslAdd on an array of vectors and a constant.
#include "elementwise/add_vector.h"

KESL_ADD_VAC(KESL_ARRAY)
