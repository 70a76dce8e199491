// keslAffineTransform3DH.
#include "geometry/affine.h"

KESL_AFFINE_MVA(KESL_ARRAY_S)
