// keslSub on an array of vectors and a constant.
#include "elementwise/add_vector.h"

KESL_SUB_VAC(KESL_ARRAY)
