// keslAdd on two arrays of vectors.
#include "elementwise/add_vector.h"

KESL_ADD_VAVA(KESL_ARRAY)
