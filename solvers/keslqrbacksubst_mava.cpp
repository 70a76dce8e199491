// keslQRBackSubst on an array of matrices and one of vectors.
#include "solvers/qr_back_subst.h"

KESL_QRBACKSUBST_MAVA(KESL_ARRAY)
