// keslL2Norm on an array of vectors.
#include "products/norms.h"

KESL_L2NORM_VA(KESL_ARRAY)
