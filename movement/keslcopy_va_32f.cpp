// keslCopy on arrays of vectors of float.
#include "movement/copy.h"

KESL_COPY(va, 32f, KESL_COPIED_V)
