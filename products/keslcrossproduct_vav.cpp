// keslCrossProduct on an array of vectors and one vector.
#include "products/cross.h"

KESL_CROSS_VAV(KESL_ARRAY)
