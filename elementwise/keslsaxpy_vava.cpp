// keslSaxpy on two arrays of vectors.
#include "elementwise/saxpy.h"

KESL_SAXPY_VAVA(KESL_ARRAY)
