// keslCrossProduct on two arrays of vectors.
#include "products/cross.h"

KESL_CROSS_VAVA(KESL_ARRAY)
