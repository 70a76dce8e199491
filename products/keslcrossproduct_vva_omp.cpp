// The threaded forms of keslCrossProduct on one vector and an array of vectors.
#include "frame/team.h"
#include "products/cross.h"

KESL_CROSS_VVA_32F(KESL_THREADED_T)
KESL_CROSS_VVA_64F(KESL_THREADED_S)
KESL_CROSS_VVA_64F(KESL_THREADED_L)
