// keslLComb on single vectors.
#include "elementwise/saxpy.h"

KESL_LCOMB_VV(KESL_SINGLE)
