// keslSub on one vector and an array of constants.
#include "elementwise/add_vector.h"

KESL_SUB_VCA(KESL_ARRAY)
