// The threaded form of keslAffineTransform3DH.
#include "frame/team.h"
#include "geometry/affine.h"

KESL_AFFINE_MVA(KESL_THREADED_S)
