// keslDotProduct on an array of vectors and one vector.
#include "products/dot.h"

KESL_DOT_VAV(KESL_ARRAY)
