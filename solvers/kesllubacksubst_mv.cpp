// keslLUBackSubst on one matrix and one vector.
#include "solvers/lu_back_subst.h"

KESL_LUBACKSUBST_MV(KESL_SINGLE)
