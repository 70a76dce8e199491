// keslCrossProduct on one vector and an array of vectors.
#include "products/cross.h"

KESL_CROSS_VVA(KESL_ARRAY)
KESL_CROSS_VVA_SERIAL(KESL_SERIAL)
