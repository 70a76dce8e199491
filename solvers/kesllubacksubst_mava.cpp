// keslLUBackSubst on an array of matrices and one of vectors.
#include "solvers/lu_back_subst.h"

KESL_LUBACKSUBST_MAVA(KESL_ARRAY)
