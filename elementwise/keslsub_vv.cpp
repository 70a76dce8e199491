// keslSub on single vectors and constants.
#include "elementwise/add_vector.h"

KESL_SUB_VV(KESL_SINGLE)
