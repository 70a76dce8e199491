// keslSub on an array of vectors and one of constants.
#include "elementwise/add_vector.h"

KESL_SUB_VACA(KESL_ARRAY)
