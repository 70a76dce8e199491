// keslCholeskyBackSubst: solves A x = b from what keslCholeskyDecomp leaves of A.
#pragma once
#include "frame/any_order.h"
#include "frame/arguments.h"
#include "frame/array_vectors.h"
#include "frame/call.h"
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

template <class T> [[gnu::noinline]] void choleskySolveCommon(const auto& l, const auto& b, const auto& dst, int n)
{
    choleskySolve<T>(
        l, [&](int i) { return b(0, i); }, [&](int i) -> T& { return dst(0, i); }, n);
}

template <class V> [[gnu::noinline]] void choleskySolveTile(auto l, V* b, int n)
{
    const auto at = [&](int i) -> V& { return b[i]; };
    choleskySolve<V>(l, at, at, n);
}

// ---- The family.
struct CholeskyBackSubst {
    // A matrix for each vector, or one for all.
    template <class T, int n, bool forAll> [[gnu::noinline]] static void
    fixed(const Array<const T>& matrices, const Array<const T>& from, const Array<T>& to, int count)
    {
        const InPacks matrix(matrices, forAll ? 1 : count);
        Block<T, n, n> one;
        if constexpr (forAll) load<true>(matrix, Objects<T>{0}, one);
        const auto solve = [&](const auto& src, const auto& dst) KESL_INLINE {
            eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                Block<V, 1, n> b;
                if constexpr (forAll) {
                    load(src, k, b);
                    choleskySolveBlock<n>(one, b);
                } else {
                    Block<V, n, n> l;
                    load<true>(matrix, k, l);
                    load(src, k, b);
                    if constexpr (n < 5 && lanes<V> > 1) choleskySolveBlock<n>(l, b);
                    else choleskySolveLong<n>(l, b);
                }
                store(dst, k, b);
            });
        };
        if constexpr (forAll) withVectors<n>(count, solve, from, to);
        else solve(InPacks(from, count), InPacks(to, count));
    }
    template <class T, bool forAll> [[gnu::noinline]] static void
    other(const Array<const T>& matrices, const Array<const T>& from, const Array<T>& to, int n, int count)
    {
        const InPacks matrix(matrices, forAll ? 1 : count), src(from, count);
        const InPacks dst(to, count);
        eachTile<T>(n, n, count, Argument{}, [&]<class V>(Objects<V> k) KESL_INLINE {
            if constexpr (lanes<V> == 1)
                withRowViews(
                    k.first, [&](auto l, auto b, auto x) { choleskySolveCommon<T>(l, b, x, n); }, matrix, src, dst);
            else {
                V elements[tileElements], b[tallest];
                load(src, k, Tile<V>{b, n}, 1);
                if constexpr (forAll)
                    withRowViews(
                        0, [&](auto l) { choleskySolveTile(l, b, n); }, matrix);
                else {
                    const Tile<V> l{elements, n};
                    load<true>(matrix, k, l, n);
                    choleskySolveTile(l, b, n);
                }
                store(dst, k, Tile<V>{b, n}, 1);
            }
        });
    }
    template <class T, bool forAll> [[gnu::noinline]] static void
    all(const Array<const T>& matrix, const Array<const T>& src, const Array<T>& dst, int order, int count)
    {
        withOrder(order, [&](auto n) {
            if constexpr (n > 0) fixed<T, n, forAll>(matrix, src, dst, count);
            else other<T, forAll>(matrix, src, dst, order, count);
        });
    }

    template <class T, Form>
    [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, Size order, Count count)
    {
        all<T, !src1.isArray>({src1, order, order}, {src2, 1, order}, {dst, 1, order}, order, count);
        return keslStatusOk;
    }
    template <class T, Form> [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, Size order, One)
    {
        const auto matrix = src1.object(0, order, order);
        withOrder(order, [&](auto n) {
            if constexpr (n == 0) choleskySolveCommon<T>(matrix, src2.object(0, 1, order), dst.object(0, 1, order), order);
            else {
                auto b = load<1, n>(src2, Objects<T>{0});
                choleskySolveBlock<n>(lowerOf<T, n>(matrix), b);
                store(dst, Objects<T>{0}, b);
            }
        });
        return keslStatusOk;
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
