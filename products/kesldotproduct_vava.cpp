// keslDotProduct on two arrays of vectors.
#include "products/dot.h"

KESL_DOT_VAVA(KESL_ARRAY)
