// keslAdd on single vectors and constants.
#include "elementwise/add_vector.h"

KESL_ADD_VV(KESL_SINGLE)
