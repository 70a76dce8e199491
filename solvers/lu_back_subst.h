// keslLUBackSubst: solves A x = b from what keslLUDecomp leaves of A.
#pragma once
#include "frame/any_order.h"
#include "frame/arguments.h"
#include "frame/array_vectors.h"
#include "frame/call.h"
#include "solvers/indices.h"

// clang-format off
#define KESL_LU_SOLVE(as, F, T, matrix, vector, each)                                                               \
    as##_in(matrix, src1, F, T), as##_table(const int, srcIndex, each), as##_in(vector, src2, F, T), as##_out(vector, dst, F, T), \
    as##_size(widthHeight)
#define KESL_LU_SOLVES(as, F, T, matrix, vector, each) KESL_LU_SOLVE(as, F, T, matrix, vector, each), as##_count(count)
// clang-format on

namespace kesl {

// ---- Orders 3 to 6. Here the elements a(i, j) of the factors and b, which becomes x, are in the order of elimination; each
// may have one value or a pack of them. r has the reciprocals of the diagonal of U.
template <int n, class V> [[gnu::always_inline]] inline void luSolve(const auto& a, const auto* r, V* x)
{
#pragma GCC unroll 8
    for (int i = 1; i < n; ++i) {
#pragma GCC unroll 8
        for (int j = 1; j < i; ++j) x[i] = x[i] - a(i, j) * x[j];
        x[i] = x[i] - a(i, 0) * x[0]; // the first comes last
    }
#pragma GCC unroll 8
    for (int i = n - 1; i >= 0; --i) {
#pragma GCC unroll 8
        for (int j = n - 1; j > i; --j) x[i] = x[i] - a(i, j) * x[j];
        x[i] = x[i] * r[i];
    }
}
template <int n, class V> [[gnu::always_inline]] inline void reciprocals(const auto& a, V* r)
{
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) r[i] = 1 / a(i, i);
}

// Of a matrix and a table for each lane.
template <int n, class V>
[[gnu::always_inline]] inline void luSolvePack(const Block<V, n, n>& stored, const MaskOf<V>* p, Block<V, 1, n>& b)
{
    const auto ordered = [&](int i, auto element) KESL_INLINE {
        V x = element(0);
#pragma GCC unroll 8
        for (int row = 1; row < n; ++row) x = p[i] == row ? element(row) : x;
        return x;
    };
    Block<V, n, n> a;
    V x[n], r[n];
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) {
        x[i] = ordered(i, [&](int row) KESL_INLINE { return b(0, row); });
#pragma GCC unroll 8
        for (int j = 0; j < n; ++j) a(i, j) = ordered(i, [&](int row) KESL_INLINE { return stored(row, j); });
    }
    reciprocals<n>(a, r);
    luSolve<n>(a, r, x);
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) b(0, i) = x[i];
}
// Orders 5 and 6 are long: one copy serves all kernels.
template <int n, class V>
[[gnu::noinline]] void luSolveLong(const Block<V, n, n>& stored, const MaskOf<V>* p, Block<V, 1, n>& b)
{
    luSolvePack<n>(stored, p, b);
}
// Of one matrix and vector.
template <class T, int n> [[gnu::noinline]] void luSolveOne(const auto& stored, const int* p, const auto& b, const auto& dst)
{
    int order[n];
    T x[n], r[n];
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) order[i] = p[i], x[i] = b(0, p[i]);
    const auto a = [&](int i, int j) KESL_INLINE { return stored(order[i], j); };
    reciprocals<n>(a, r);
    luSolve<n>(a, r, x);
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) dst(0, i) = x[i];
}

// ---- Other orders, in dst itself: sums of their own and true divisions, so that the last bits differ from those above.
// a(i, j) and b(i) are in the order of elimination.
template <class V> [[gnu::always_inline]] inline void luSolveOther(const auto& a, const auto& b, const auto& x, int n)
{
    x(0) = b(0);
    for (int i = 1; i < n; ++i) {
        V s{};
        for (int j = 0; j < i; ++j) s = s + a(i, j) * x(j);
        x(i) = b(i) - s;
    }
    x(n - 1) = x(n - 1) / a(n - 1, n - 1);
    for (int i = n - 2; i >= 0; --i) {
        V s{};
        for (int j = i + 1; j < n; ++j) s = s + a(i, j) * x(j);
        x(i) = (x(i) - s) / a(i, i);
    }
}
template <class T> [[gnu::noinline]] void luSolveCommon(const auto& a, const int* p, const auto& b, const auto& x, int n)
{
    luSolveOther<T>([&](int i, int j) { return a(p[i], j); }, [&](int i) { return b(0, p[i]); },
                    [&](int i) -> T& { return x(0, i); }, n);
}
template <class V> [[gnu::noinline]] void luSolveTile(const auto& a, const V* b, V* x, int n)
{
    luSolveOther<V>(
        a, [&](int i) { return b[i]; }, [&](int i) -> V& { return x[i]; }, n);
}

// ---- The family.
struct LUBackSubst {
    static constexpr Threshold threshold = Threshold::everywhere(1701);

    // A matrix for each vector.
    template <class T, int n> [[gnu::noinline]] static void fixed(const Array<const T>& matrices, Table<const int> index,
                                                                  const Array<const T>& from, const Array<T>& to, int count)
    {
        const InPacks matrix(matrices, count), src(from, count);
        const InPacks dst(to, count);
        const auto one = [&](int k, const auto& a, const auto& b, const auto& x) {
            luSolveOne<T, n>(a, index.object(k), b, x);
        };
        // Few lanes do not make up for the selections, nor for the pieces of which contiguous rows of five are joined.
        constexpr bool alone = (n >= 5 && sizeof(T) == 8) || sizeof(Pack<T>) == 16;
        if (alone && matrix.lie <= Lie::rows) eachView(count, one, matrix, src, dst);
        else
            eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                if constexpr (lanes<V> == 1)
                    withRowViews(
                        k.first, [&](const auto&... views) { one(k.first, views...); }, matrix, src, dst);
                else {
                    Block<V, n, n> a;
                    Block<V, 1, n> b;
                    MaskOf<V> p[n];
                    load(matrix, k, a);
                    load(src, k, b);
                    loadIndices<n>(index.object(k.first), p);
                    if constexpr (n < 5) luSolvePack<n>(a, p, b);
                    else luSolveLong<n>(a, p, b);
                    store(dst, k, b);
                }
            });
    }
    // One matrix for all vectors.
    template <class T, int n> [[gnu::noinline]] static void forAll(const Array<const T>& matrices, Table<const int> index,
                                                                   const Array<const T>& from, const Array<T>& to, int count)
    {
        const InPacks matrix(matrices, 1);
        int p[n];
        Block<T, n, n> stored, a;
        T r[n];
        load(matrix, Objects<T>{0}, stored);
        for (int i = 0; i < n; ++i) p[i] = index.p[i];
        eachElement<n, n>([&](int i, int j) { a(i, j) = stored(p[i], j); });
        reciprocals<n>(a, r);
        const auto solve = [&](const auto& src, const auto& dst) KESL_INLINE {
            eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                Block<V, 1, n> b, x;
                load(src, k, b);
                for (int i = 0; i < n; ++i) x(0, i) = b(0, p[i]);
                luSolve<n>(a, r, x.e[0]);
                store(dst, k, x);
            });
        };
        withVectors<n>(count, solve, from, to);
    }
    template <class T, bool one> [[gnu::noinline]] static void other(const Array<const T>& matrices, Table<const int> index,
                                                                     const Array<const T>& from, const Array<T>& to, int n,
                                                                     int count)
    {
        const InPacks matrix(matrices, one ? 1 : count), src(from, count);
        const InPacks dst(to, count);
        T elements[tileElements];
        const Tile<T> factors{elements, n}; // of the one matrix
        if (one && fitsTile(n, n))
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) factors(i, j) = *matrix.element(0, index.p[i], j);
        eachTile<T>(n, n, count, Argument{}, [&]<class V>(Objects<V> k) KESL_INLINE {
            if constexpr (lanes<V> == 1)
                withRowViews(
                    k.first, [&](auto a, auto b, auto x) { luSolveCommon<T>(a, index.object(k.first), b, x, n); }, matrix,
                    src, dst);
            else {
                V right[tallest], b[tallest], x[tallest];
                load(src, k, Tile<V>{right, n}, 1);
                if constexpr (one) {
                    for (int i = 0; i < n; ++i) b[i] = right[index.p[i]];
                    luSolveTile(factors, b, x, n);
                } else {
                    V stored[tileElements], a[tileElements];
                    MaskOf<V> p[tallest];
                    load(matrix, k, Tile<V>{stored, n}, n);
                    for (int i = 0; i < n; ++i) {
                        for (int l = 0; l < lanes<V>; ++l) p[i][l] = index.object(k.first + l)[i];
                        b[i] = fromRows(right, p[i]);
                        for (int j = 0; j < n; ++j) a[i * n + j] = fromRows(stored + j, p[i], n);
                    }
                    luSolveTile(Tile<V>{a, n}, b, x, n);
                }
                store(dst, k, Tile<V>{x, n}, 1);
            }
        });
    }
    template <class T, bool one> [[gnu::noinline]] static void all(const Array<const T>& matrix, Table<const int> index,
                                                                   const Array<const T>& src, const Array<T>& dst, int order,
                                                                   int count)
    {
        withOrder(order, [&](auto n) {
            if constexpr (n == 0) other<T, one>(matrix, index, src, dst, order, count);
            else if constexpr (one) forAll<T, n>(matrix, index, src, dst, count);
            else fixed<T, n>(matrix, index, src, dst, count);
        });
    }

    template <class T, Form> [[gnu::always_inline]] static KeslStatus kernel(auto src1, Table<const int> index, auto src2,
                                                                             auto dst, Size order, Count count)
    {
        all<T, !src1.isArray>({src1, order, order}, index, {src2, 1, order}, {dst, 1, order}, order, count);
        return keslStatusOk;
    }
    template <class T, Form>
    [[gnu::always_inline]] static KeslStatus kernel(auto src1, Table<const int> index, auto src2, auto dst, Size order, One)
    {
        withOrder(order, [&](auto n) {
            if constexpr (n == 0)
                luSolveCommon<T>(src1.object(0, order, order), index.p, src2.object(0, 1, order), dst.object(0, 1, order),
                                 order);
            else luSolveOne<T, n>(src1.object(0, n, n), index.p, src2.object(0, 1, n), dst.object(0, 1, n));
        });
        return keslStatusOk;
    }
};

// clang-format off
// ---- The members.
struct LUBackSubst_mv : LUBackSubst {};
struct LUBackSubst_mva : LUBackSubst {
    static unsigned measure(unsigned n, unsigned count) { return (n + 2 * count) * n; }
};
struct LUBackSubst_mava : LUBackSubst {
    static unsigned measure(unsigned n, unsigned count) { return (n + 2) * n * count; }
};

} // namespace kesl

// ---- Their functions, by module: the kinds of the matrix and the vectors, and the table's entries for each object.
#define KESL_LUBACKSUBST_MV(X)   X(LUBackSubst, mv, KESL_LU_SOLVE, m, v, 0)
#define KESL_LUBACKSUBST_MVA(X)  X(LUBackSubst, mva, KESL_LU_SOLVES, m, va, 0)
#define KESL_LUBACKSUBST_MAVA(X) X(LUBackSubst, mava, KESL_LU_SOLVES, ma, va, widthHeight)
