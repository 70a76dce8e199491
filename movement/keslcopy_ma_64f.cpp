// keslCopy on arrays of matrices of double.
#include "movement/copy.h"

KESL_COPY(ma, 64f, KESL_COPIED_M)
