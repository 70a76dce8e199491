// keslCopy on arrays of matrices of float.
#include "movement/copy.h"

KESL_COPY(ma, 32f, KESL_COPIED_M)
