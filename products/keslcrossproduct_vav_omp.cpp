// The threaded forms of keslCrossProduct on an array of vectors and one vector.
#include "frame/team.h"
#include "products/cross.h"

KESL_CROSS_VAV(KESL_THREADED)
