// The threaded forms of keslQRBackSubst on one matrix and an array of vectors.
#include "frame/team.h"
#include "solvers/qr_back_subst.h"

KESL_QRBACKSUBST_MVA(KESL_THREADED)
