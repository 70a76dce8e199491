// keslLComb on two arrays of vectors.
#include "elementwise/saxpy.h"

KESL_LCOMB_VAVA(KESL_ARRAY)
