// keslL2Norm on one vector.
#include "products/norms.h"

KESL_L2NORM_V(KESL_SINGLE)
