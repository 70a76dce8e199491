// keslEigenValuesVectors, keslEigenValuesVectorsRight, keslEigenValuesVectorsLeft: the eigenvalues and the eigenvectors of one
// general matrix, or of each matrix of an array.
#pragma once
#include "eigen/buffer_size.h"
#include "eigen/substitution.h"
#include "frame/arguments.h"
#include "frame/call.h"

// clang-format off
#define KESL_VECTORS_REST(as, T)       as##_table(KESL_T_##T, dstRe, widthHeight), as##_table(KESL_T_##T, dstIm, widthHeight), as##_size(widthHeight)
#define KESL_BOTH(as, F, T, k)                                                                                      \
    as##_in(k, src, F, T), as##_out(k, dstVectorsRight, F, T), as##_out(k, dstVectorsLeft, F, T), KESL_VECTORS_REST(as, T)
#define KESL_SIDE(as, F, T, k)         as##_in(k, src, F, T), as##_vectors(k, dst, F, T), KESL_VECTORS_REST(as, T)
#define KESL_BOTH_M(as, F, T, k)       KESL_BOTH(as, F, T, k), as##_buffer(buffer, T)
#define KESL_BOTH_MA(as, F, T, k)      KESL_BOTH(as, F, T, k), as##_count(count), as##_buffer(buffer, T)
#define KESL_SIDE_M(as, F, T, k)       KESL_SIDE(as, F, T, k), as##_buffer(buffer, T)
#define KESL_SIDE_MA(as, F, T, k)      KESL_SIDE(as, F, T, k), as##_count(count), as##_buffer(buffer, T)
// clang-format on

namespace kesl {

// Ends the kernel as a failure does, and is reported as keslStatusOk.
constexpr KeslStatus quietEnd = 1;

enum class Sides { right, left, both };

// The memory holds the input row by row, which is its transpose in columns; behind it two more matrices and 5 n elements. The
// second matrix ends as the vectors in columns, for both sides as the left ones, the third then as the right ones.
template <GeneralRules rules, Sides sides, class T, class N> [[gnu::noinline]] KeslStatus generalVectorsOf(T* memory, T* re, T* im, N n)
{
    const std::int64_t all = std::int64_t(n) * n;
    const Square<T, N> h{memory, n}, z{memory + all, n}, second{memory + 2 * all, n};
    T* const rest = memory + 3 * all;
    Schur<rules, T, N> schur{n, h, z, re, im, rest, rest + n};
    schur.reduce();
    if (!schur.iterate()) return keslStatusNoConvergence;

    const auto vectors = [&](Square<T, N> of, auto side) {
        Substitution<T, N> substitution{n, h, of, rest + 2 * n, rest + 3 * n, rest + 4 * n, rest, rest + n};
        const Substituted done = (substitution.*side)();
        if (done == Substituted::yes) substitution.normalise(im);
        return done == Substituted::yes ? keslStatusOk : done == Substituted::failed ? keslStatusFailed : quietEnd;
    };
    if constexpr (sides == Sides::both) std::copy(z.p, z.p + all, second.p);
    if constexpr (sides != Sides::left)
        if (const KeslStatus status = vectors(sides == Sides::both ? second : z, &Substitution<T, N>::right)) return status;
    if constexpr (sides != Sides::right) return vectors(z, &Substitution<T, N>::left);
    return keslStatusOk;
}

// ---- The families.
template <Sides sides> struct GeneralVectors {
    static constexpr Threshold threshold = Threshold::everywhere(7001);
    static constexpr bool canFail = true;

    // The matrices `right` and `left` are the same where there is one side.
    template <class T, GeneralRules rules>
    [[gnu::always_inline]] static KeslStatus vectors(auto src, auto right, auto left, Table<T> re, Table<T> im, Size order, auto count, Buffer<T> buffer)
    {
        const auto object = [&](int k, T* memory, auto n) -> KeslStatus {
            const auto from = src.object(k, n, n);
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) memory[std::int64_t(i) * n + j] = from(i, j);
            if (const KeslStatus failure = generalVectorsOf<rules, sides>(memory, re.object(k), im.object(k), n)) return failure;
            const auto write = [&](int matrix, auto dst) {
                const Square<T, decltype(n)> vector{memory + std::int64_t(n) * n * matrix, n};
                const auto to = dst.object(k, n, n);
                for (int i = 0; i < n; ++i)
                    for (int j = 0; j < n; ++j) to(i, j) = vector(i, j);
            };
            if constexpr (sides != Sides::left) write(sides == Sides::both ? 2 : 1, right);
            if constexpr (sides != Sides::right) write(1, left);
            return keslStatusOk;
        };
        const KeslStatus status = withOrder(order, [&](auto fixed) {
            return eachObject(count, [&](int k) {
                if constexpr (fixed > 0) {
                    T memory[vectorsBuffer(fixed)];
                    return object(k, memory, fixed);
                } else return order == 1 ? one<T>(k, src, right, left, re, im) : object(k, buffer, int(order));
            });
        });
        return status == quietEnd ? keslStatusOk : status;
    }
    template <class T> static KeslStatus one(int k, auto src, auto right, auto left, Table<T> re, Table<T> im)
    {
        re.object(k)[0] = src.object(k, 1, 1)(0, 0), im.object(k)[0] = 0;
        right.object(k, 1, 1)(0, 0) = 1, left.object(k, 1, 1)(0, 0) = 1;
        return keslStatusOk;
    }
};
template <GeneralRules rules> struct BothSides : GeneralVectors<Sides::both> {
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto right, auto left, Table<T> re, Table<T> im, Size n, Buffer<T> buffer)
    {
        return vectors<T, rules>(src, right, left, re, im, n, One{}, buffer);
    }
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto right, auto left, Table<T> re, Table<T> im, Size n, Count count, Buffer<T> buffer)
    {
        return vectors<T, rules>(src, right, left, re, im, n, count, buffer);
    }
};
template <Sides side> struct OneSide : GeneralVectors<side> {
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Table<T> re, Table<T> im, Size n, Buffer<T> buffer)
    {
        return OneSide::template vectors<T, generalVectors>(src, dst, dst, re, im, n, One{}, buffer);
    }
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Table<T> re, Table<T> im, Size n, Count count, Buffer<T> buffer)
    {
        return OneSide::template vectors<T, generalVectors>(src, dst, dst, re, im, n, count, buffer);
    }
};

// ---- The members.
struct OverArrays {
    // In L and P the source is tested whole, and then the destinations.
    template <class T> static constexpr Checks checks = {"NSCB", "NSCR<B<R>B>", "NSCR<B<R>B>"};
    static unsigned measure(unsigned n, unsigned count) { return n * (3 * n + 1) * count; }
    static unsigned scratch(unsigned n, unsigned) { return vectorsBuffer(n); } // elements for a thread
};
struct EigenValuesVectors_m : BothSides<generalVectorsSingle> {};
struct EigenValuesVectors_ma : BothSides<generalVectors>, OverArrays {};
struct EigenValuesVectorsRight_m : OneSide<Sides::right> {};
struct EigenValuesVectorsRight_ma : OneSide<Sides::right>, OverArrays {};
struct EigenValuesVectorsLeft_m : OneSide<Sides::left> {};
struct EigenValuesVectorsLeft_ma : OneSide<Sides::left>, OverArrays {};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_EIGENVALUESVECTORS_M(X)       X(EigenValuesVectors, m, KESL_BOTH_M, m)
#define KESL_EIGENVALUESVECTORS_MA(X)      X(EigenValuesVectors, ma, KESL_BOTH_MA, ma)
#define KESL_EIGENVALUESVECTORSRIGHT_M(X)  X(EigenValuesVectorsRight, m, KESL_SIDE_M, m)
#define KESL_EIGENVALUESVECTORSRIGHT_MA(X) X(EigenValuesVectorsRight, ma, KESL_SIDE_MA, ma)
#define KESL_EIGENVALUESVECTORSLEFT_M(X)   X(EigenValuesVectorsLeft, m, KESL_SIDE_M, m)
#define KESL_EIGENVALUESVECTORSLEFT_MA(X)  X(EigenValuesVectorsLeft, ma, KESL_SIDE_MA, ma)
