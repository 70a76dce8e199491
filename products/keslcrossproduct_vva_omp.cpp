// The threaded forms of keslCrossProduct on one vector and an array of vectors.
#include "frame/team.h"
#include "products/cross.h"

KESL_CROSS_VVA(KESL_THREADED)
