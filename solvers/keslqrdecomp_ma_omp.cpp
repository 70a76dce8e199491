// The threaded forms of keslQRDecomp on an array of matrices.
#include "frame/team.h"
#include "solvers/qr_decomp.h"

KESL_QRDECOMP_MA(KESL_THREADED)
