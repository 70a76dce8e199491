// keslCopy on arrays of vectors of double.
#include "movement/copy.h"

KESL_COPY(va, 64f, KESL_COPIED_V)
