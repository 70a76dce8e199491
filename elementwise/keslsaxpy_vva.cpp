// keslSaxpy on one vector and an array of vectors.
#include "elementwise/saxpy.h"

KESL_SAXPY_VVA(KESL_ARRAY)
