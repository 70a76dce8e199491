// keslFrobNorm on one matrix.
#include "products/norms.h"

KESL_FROBNORM_M(KESL_ONE_SINGLE)
