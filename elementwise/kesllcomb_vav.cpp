// keslLComb on an array of vectors and one vector.
#include "elementwise/saxpy.h"

KESL_LCOMB_VAV(KESL_ARRAY)
