// keslQRDecomp on an array of matrices.
#include "solvers/qr_decomp.h"

KESL_QRDECOMP_MA(KESL_ARRAY)
