// How the C functions are written, both element types at once, in namespace kesl::stacks. The compiler compares
// them with kesl.h. Macros only spell names and argument lists:
//
//     #define INV(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_MATRIX_OF(T, x), int *info
//     KESL_FUNCTIONS(inv, INV, call<Inv>(sizes(n), count, info, KESL_MATRIX(a), KESL_MATRIX(x)))
#pragma once
#include "kesl.h"
#include "stacks/call.h"

#define KESL_MATRIX_OF(T, a) T *a, std::ptrdiff_t a##Stride0, std::ptrdiff_t a##Stride1, std::ptrdiff_t a##Stride2
#define KESL_VECTOR_OF(T, a) T *a, std::ptrdiff_t a##Stride0, std::ptrdiff_t a##Stride1
#define KESL_NUMBER_OF(T, a) T *a, std::ptrdiff_t a##Stride0

#define KESL_MATRIX(a) matrix(a, a##Stride0, a##Stride1, a##Stride2)
#define KESL_VECTOR(a) vector(a, a##Stride0, a##Stride1)
#define KESL_NUMBER(a) number(a, a##Stride0)

#define KESL_FUNCTIONS(NAME, PARAMETERS, ...)                                                                               \
    extern "C" [[gnu::visibility("default")]] std::ptrdiff_t kesl_##NAME##_32f(PARAMETERS(float)) { return __VA_ARGS__; }   \
    extern "C" [[gnu::visibility("default")]] std::ptrdiff_t kesl_##NAME##_64f(PARAMETERS(double)) { return __VA_ARGS__; }

namespace kesl::stacks {

template <class... N> std::array<std::ptrdiff_t, sizeof...(N)> sizes(N... n) { return {n...}; }

} // namespace kesl::stacks
