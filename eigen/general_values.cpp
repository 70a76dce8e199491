// The eigenvalues of general matrices: what the kernels call.
#include "eigen/schur.h"

// clang-format off
KESL_SCHUR(generalValues, float)  KESL_SCHUR_AT(generalValues, float, int)
KESL_SCHUR(generalValues, double) KESL_SCHUR_AT(generalValues, double, int)
KESL_SCHUR(generalValues, kesl::Pack<float>)
#ifdef __AVX2__ // two lanes are not enough
KESL_SCHUR(generalValues, kesl::Pack<double>)
#endif
