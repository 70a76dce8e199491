// keslCrossProduct on one vector and an array of vectors.
#include "products/cross.h"

KESL_CROSS_VVA_32F(KESL_ARRAY_T)
KESL_CROSS_VVA_64F(KESL_ARRAY_S)
KESL_CROSS_VVA_64F(KESL_ARRAY_L)
KESL_CROSS_VVA_64F(KESL_SERIAL_P)
