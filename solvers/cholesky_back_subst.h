// keslCholeskyBackSubst: solves A x = b from what keslCholeskyDecomp leaves of A.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/objects.h"
#include "solvers/triangle.h"

// clang-format off
#define KESL_CHOLESKY_SOLVE(as, F, T, matrix, vector)                                                               \
    as##_in(matrix, src1, F, T), as##_in(vector, src2, F, T), as##_out(vector, dst, F, T), as##_size(widthHeight)
#define KESL_CHOLESKY_SOLVES(as, F, T, matrix, vector) KESL_CHOLESKY_SOLVE(as, F, T, matrix, vector), as##_count(count)
// clang-format on

namespace kesl {

// L y = b, then L' x = y; l has the reciprocals of its diagonal there. All orders take the terms of a row in this order, so
// that they give the same bits with and without a fixed order.
template <class V> [[gnu::always_inline]] inline void choleskySolve(const auto& l, auto b, auto x, auto order)
{
    const int n = order; // known to the compiler, where it is Fixed
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) {
        V t = b(i);
#pragma GCC unroll 8
        for (int j = 0; j < i; ++j) t = t - l(i, j) * x(j);
        x(i) = t * l(i, i);
    }
#pragma GCC unroll 8
    for (int i = n - 1; i >= 0; --i) {
        V t = x(i);
#pragma GCC unroll 8
        for (int j = n - 1; j > i; --j) t = t - l(j, i) * x(j);
        x(i) = t * l(i, i);
    }
}
// In place, on packs or single elements.
template <int n, class V> [[gnu::always_inline]] inline void choleskySolveBlock(const auto& l, Block<V, 1, n>& b)
{
    const auto at = [&](int i) KESL_INLINE -> V& { return b(0, i); };
    choleskySolve<V>(l, at, at, Fixed<n>{});
}
// Orders 5 and 6 are long: one copy serves all kernels.
template <int n, class V> [[gnu::noinline]] void choleskySolveLong(const Block<V, n, n>& l, Block<V, 1, n>& b)
{
    choleskySolveBlock<n>(l, b);
}

template <class T, int n> [[gnu::noinline]] void choleskySolveOne(auto stored, auto b, auto dst)
{
    Block<T, n, n> l;
    Block<T, 1, n> x;
    eachLower<n>([&](int i, int j) KESL_INLINE { l(i, j) = stored(i, j); });
    for (int i = 0; i < n; ++i) x(0, i) = b(0, i);
    choleskySolveBlock<n>(l, x);
    for (int i = 0; i < n; ++i) dst(0, i) = x(0, i);
}
template <class T> [[gnu::noinline]] void choleskySolveCommon(auto l, auto b, auto dst, int n)
{
    choleskySolve<T>(
        l, [&](int i) { return b(0, i); }, [&](int i) -> T& { return dst(0, i); }, n);
}

// ---- The family.
struct CholeskyBackSubst {
    template <class T, Form F, class Count = One>
    [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, Size order, Count count = {})
    {
        return withOrder(order, [&](auto n) {
            if constexpr (n == 0)
                return eachObject(count, [&](int k) {
                    choleskySolveCommon<T>(src1.object(k, order, order), src2.object(k, 1, order), dst.object(k, 1, order),
                                           order);
                    return KeslStatus(keslStatusOk);
                });
            else if constexpr (src1.isArray || !src2.isArray)
                return withRuns<n>(
                    [&](auto from, auto to) {
                        return eachPack<T>(count, [&]<class V>(Objects<V> k) {
                            if constexpr (lanes<V> == 1)
                                choleskySolveOne<T, n>(src1.object(k.first, n, n), from.object(k.first, 1, n),
                                                       to.object(k.first, 1, n));
                            else {
                                const auto l = loadLower<n>(src1, k);
                                auto b = load<1, n, true>(from, k);
                                if constexpr (n < 5) choleskySolveBlock<n>(l, b);
                                else choleskySolveLong<n>(l, b);
                                store<true>(to, k, b);
                            }
                            return KeslStatus(keslStatusOk);
                        });
                    },
                    src2, dst);
            else { // one matrix for all vectors
                const auto stored = src1.object(0, n, n);
                Block<T, n, n> l;
                eachLower<n>([&](int i, int j) { l(i, j) = stored(i, j); });
                return withRuns<n>(
                    [&](auto from, auto to) {
                        return eachPack<T>(count, [&]<class V>(Objects<V> k) {
                            auto b = load<1, n, true>(from, k);
                            choleskySolveBlock<n>(l, b);
                            store<true>(to, k, b);
                            return KeslStatus(keslStatusOk);
                        });
                    },
                    src2, dst);
            }
        });
    }
};

// clang-format off
// ---- The members. Thresholds: { S, S2, L, LS2, P }, by 32f and 64f.
struct CholeskyBackSubst_mv : CholeskyBackSubst {};
struct CholeskyBackSubst_mva : CholeskyBackSubst {
    static constexpr Threshold threshold = {{1201, 721}, {1201, 721}, 721, 721, 721};
    // In L the sizes and the count come last, deliberately.
    template <class T> static constexpr Checks checks = {"NCSB", "NBRSC", "NCSBR"};
    static unsigned measure(unsigned n, unsigned count) { return (n + 2 * count) * n; }
};
struct CholeskyBackSubst_mava : CholeskyBackSubst {
    static constexpr Threshold threshold = {{2051, 1701}, 1701, 1701, 1701, {1701, 2051}};
    static unsigned measure(unsigned n, unsigned count) { return (n + 2) * n * count; }
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_CHOLESKYBACKSUBST_MV(X)   X(CholeskyBackSubst, mv, KESL_CHOLESKY_SOLVE, m, v)
#define KESL_CHOLESKYBACKSUBST_MVA(X)  X(CholeskyBackSubst, mva, KESL_CHOLESKY_SOLVES, m, va)
#define KESL_CHOLESKYBACKSUBST_MAVA(X) X(CholeskyBackSubst, mava, KESL_CHOLESKY_SOLVES, ma, va)
