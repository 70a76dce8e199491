// keslEigenValuesVectors, keslEigenValuesVectorsRight, keslEigenValuesVectorsLeft: the eigenvalues and the eigenvectors of
// one general matrix, or of each matrix of an array.
#pragma once
#include "eigen/buffer_size.h"
#include "eigen/general.h"
#include "frame/arguments.h"
#include "frame/call.h"

// clang-format off
#define KESL_VECTORS_REST(as, T)                                                                                    \
    as##_table(KESL_T_##T, dstRe, widthHeight), as##_table(KESL_T_##T, dstIm, widthHeight), as##_size(widthHeight)
#define KESL_BOTH(as, F, T, k)                                                                                      \
    as##_in(k, src, F, T), as##_out(k, dstVectorsRight, F, T), as##_out(k, dstVectorsLeft, F, T), KESL_VECTORS_REST(as, T)
#define KESL_SIDE(as, F, T, k)         as##_in(k, src, F, T), as##_vectors(k, dst, F, T), KESL_VECTORS_REST(as, T)
#define KESL_BOTH_M(as, F, T, k)       KESL_BOTH(as, F, T, k), as##_buffer(buffer, T)
#define KESL_BOTH_MA(as, F, T, k)      KESL_BOTH(as, F, T, k), as##_count(count), as##_buffer(buffer, T)
#define KESL_SIDE_M(as, F, T, k)       KESL_SIDE(as, F, T, k), as##_buffer(buffer, T)
#define KESL_SIDE_MA(as, F, T, k)      KESL_SIDE(as, F, T, k), as##_count(count), as##_buffer(buffer, T)
// clang-format on

namespace kesl {

// Of one matrix and of arrays: compiled once, in general_vectors.cpp. `right` and `left` are the same where there is one
// side.
template <class T> struct Vectors {
    Sides sides;
    Array<T> right, left;
};
template <GeneralRules rules, class T> KeslStatus eigenVectors(const Array<const T>& src, const Vectors<T>& dst, Table<T> re,
                                                               Table<T> im, int order, int count, T* buffer);

// ---- The families.
struct GeneralVectors : Iterative {
    static constexpr Threshold threshold = Threshold::everywhere(7001);
    static constexpr bool canFail = true;
};
template <GeneralRules rules> struct BothSides : GeneralVectors {
    template <class T, Form> [[gnu::always_inline]] static KeslStatus
    kernel(auto src, auto right, auto left, Table<T> re, Table<T> im, Size n, Buffer<T> buffer, int count)
    {
        constexpr GeneralRules own = sizeof(T) == 4 ? generalVectors : rules; // floats have the same shifts by both
        return eigenVectors<own, T>({src, n, n}, {Sides::both, {right, n, n}, {left, n, n}}, re, im, n, count, buffer);
    }
};
template <Sides side> struct OneSide : GeneralVectors {
    template <class T, Form> [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Table<T> re, Table<T> im,
                                                                             Size n, Buffer<T> buffer, int count)
    {
        const Array<T> to(dst, n, n);
        return eigenVectors<generalVectors, T>({src, n, n}, {side, to, to}, re, im, n, count, buffer);
    }
};

// clang-format off
// ---- The members.
struct OverArrays {
    // In L and P the source is tested whole, and then the destinations.
    template <class T> static constexpr Checks checks = {"NSCB", "NSCR<B<R>B>", "NSCR<B<R>B>"};
    static unsigned measure(unsigned n, unsigned count) { return n * (3 * n + 1) * count; }
    static std::size_t scratch(std::size_t n, std::size_t) { return vectorsBuffer(n); } // elements for a thread
};
struct EigenValuesVectors_m : BothSides<generalVectorsSingle> {};
struct EigenValuesVectors_ma : BothSides<generalVectors>, OverArrays {};
struct EigenValuesVectorsRight_m : OneSide<Sides::right> {};
struct EigenValuesVectorsRight_ma : OneSide<Sides::right>, OverArrays {};
struct EigenValuesVectorsLeft_m : OneSide<Sides::left> {};
struct EigenValuesVectorsLeft_ma : OneSide<Sides::left>, OverArrays {};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_EIGENVALUESVECTORS_M(X) X(EigenValuesVectors, m, KESL_BOTH_M, m)
#define KESL_EIGENVALUESVECTORS_MA(X) X(EigenValuesVectors, ma, KESL_BOTH_MA, ma)
#define KESL_EIGENVALUESVECTORSRIGHT_M(X) X(EigenValuesVectorsRight, m, KESL_SIDE_M, m)
#define KESL_EIGENVALUESVECTORSRIGHT_MA(X) X(EigenValuesVectorsRight, ma, KESL_SIDE_MA, ma)
#define KESL_EIGENVALUESVECTORSLEFT_M(X) X(EigenValuesVectorsLeft, m, KESL_SIDE_M, m)
#define KESL_EIGENVALUESVECTORSLEFT_MA(X) X(EigenValuesVectorsLeft, ma, KESL_SIDE_MA, ma)
