// keslSub on one vector and an array of vectors.
#include "elementwise/add_vector.h"

KESL_SUB_VVA(KESL_ARRAY)
KESL_SUB_VVA_SERIAL(KESL_SERIAL)
