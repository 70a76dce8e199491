// keslSaxpy on an array of vectors and one vector.
#include "elementwise/saxpy.h"

KESL_SAXPY_VAV(KESL_ARRAY)
