// keslCrossProduct on two vectors.
#include "products/cross.h"

KESL_CROSS_VV(KESL_SINGLE)
