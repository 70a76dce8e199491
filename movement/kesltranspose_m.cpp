// keslTranspose on a single matrix.
#include "movement/transpose.h"

KESL_TRANSPOSE_M(KESL_SINGLE)
