// keslFrobNorm on an array of matrices.
#include "products/norms.h"

KESL_FROBNORM_MA(KESL_ARRAY)
