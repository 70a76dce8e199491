// keslTranspose on an array of matrices.
#include "movement/transpose.h"

KESL_TRANSPOSE_MA(KESL_SERIAL)
