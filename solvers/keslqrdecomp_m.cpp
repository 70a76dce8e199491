// keslQRDecomp on one matrix.
#include "solvers/qr_decomp.h"

KESL_QRDECOMP_M(KESL_SINGLE)
