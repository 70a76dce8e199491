// The threaded forms of keslLUBackSubst on one matrix and an array of vectors.
#include "frame/team.h"
#include "solvers/lu_back_subst.h"

KESL_LUBACKSUBST_MVA(KESL_THREADED)
