// keslSub on two arrays of vectors.
#include "elementwise/add_vector.h"

KESL_SUB_VAVA(KESL_ARRAY)
