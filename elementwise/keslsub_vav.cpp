// keslSub on an array of vectors and one vector.
#include "elementwise/add_vector.h"

KESL_SUB_VAV(KESL_ARRAY)
