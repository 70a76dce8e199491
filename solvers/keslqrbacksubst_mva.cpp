// keslQRBackSubst on one matrix and an array of vectors.
#include "solvers/qr_back_subst.h"

KESL_QRBACKSUBST_MVA(KESL_ARRAY)
