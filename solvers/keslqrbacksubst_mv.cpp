// keslQRBackSubst on one matrix and one vector.
#include "solvers/qr_back_subst.h"

KESL_QRBACKSUBST_MV(KESL_SINGLE)
