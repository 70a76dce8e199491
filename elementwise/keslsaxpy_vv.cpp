// keslSaxpy on single vectors.
#include "elementwise/saxpy.h"

KESL_SAXPY_VV(KESL_SINGLE)
