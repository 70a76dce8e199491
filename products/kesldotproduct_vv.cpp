// keslDotProduct on two vectors.
#include "products/dot.h"

KESL_DOT_VV(KESL_SINGLE)
