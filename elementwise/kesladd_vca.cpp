// keslAdd on one vector and an array of constants.
#include "elementwise/add_vector.h"

KESL_ADD_VCA(KESL_ARRAY)
