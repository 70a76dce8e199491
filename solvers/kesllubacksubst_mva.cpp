// keslLUBackSubst on one matrix and an array of vectors.
#include "solvers/lu_back_subst.h"

KESL_LUBACKSUBST_MVA(KESL_ARRAY)
