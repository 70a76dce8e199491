// The buffer sizes of keslEigenValues and keslEigenValuesVectors.
#include "eigen/buffer_size.h"

KESL_BUFSIZE(EigenValuesGetBufSize, 32f)
KESL_BUFSIZE(EigenValuesGetBufSize, 64f)
KESL_BUFSIZE(EigenValuesVectorsGetBufSize, 32f)
KESL_BUFSIZE(EigenValuesVectorsGetBufSize, 64f)
