// The threaded forms of keslCrossProduct on two arrays of vectors.
#include "frame/team.h"
#include "products/cross.h"

KESL_CROSS_VAVA(KESL_THREADED)
