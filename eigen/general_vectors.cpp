// The Schur forms and eigenvectors of general matrices: what the kernels call.
#include "eigen/substitution.h"

// clang-format off
KESL_SCHUR(generalVectors, float)        KESL_SCHUR_AT(generalVectors, float, int)
KESL_SCHUR(generalVectors, double)       KESL_SCHUR_AT(generalVectors, double, int)
KESL_SCHUR(generalVectorsSingle, float)  KESL_SCHUR_AT(generalVectorsSingle, float, int)
KESL_SCHUR(generalVectorsSingle, double) KESL_SCHUR_AT(generalVectorsSingle, double, int)
KESL_SCHUR(generalVectors, kesl::Pack<float>)
#ifdef __AVX2__ // two lanes are not enough
KESL_SCHUR(generalVectors, kesl::Pack<double>)
#endif

#define KESL_EIGENVECTORS(T, N) template KeslStatus kesl::eigenvectors<T, N>(kesl::Sides, T*, const T*, N);
KESL_EIGENVECTORS(float, kesl::Fixed<3>)  KESL_EIGENVECTORS(float, kesl::Fixed<4>)  KESL_EIGENVECTORS(float, kesl::Fixed<5>)
KESL_EIGENVECTORS(float, kesl::Fixed<6>)  KESL_EIGENVECTORS(float, int)
KESL_EIGENVECTORS(double, kesl::Fixed<3>) KESL_EIGENVECTORS(double, kesl::Fixed<4>) KESL_EIGENVECTORS(double, kesl::Fixed<5>)
KESL_EIGENVECTORS(double, kesl::Fixed<6>) KESL_EIGENVECTORS(double, int)
