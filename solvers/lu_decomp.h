// keslLUDecomp: LU decomposition with partial pivoting (Golub and Van Loan, Matrix Computations, 3.4), of one matrix or of
// each matrix of an array. Rows stay where they are: a table p names the row that stands i-th.
#pragma once
#include "frame/any_order.h"
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/constants.h"
#include "solvers/indices.h"

// clang-format off
#define KESL_LU(as, F, T, k)  as##_in(k, src, F, T), as##_table(int, dstIndex, widthHeight), as##_out(k, dst, F, T), as##_size(widthHeight)
#define KESL_LUS(as, F, T, k) KESL_LU(as, F, T, k), as##_count(count)

// The common code of orders 1, 2 and 7 upward has functions of its own.
#define KESL_LU_COMMON(X)                                                                                           \
    X(LUDecomp, m, 32f, S, _S, KESL_LU, m)  X(LUDecomp, m, 32f, S2, _S2, KESL_LU, m)  X(LUDecomp, m, 32f, P, _P, KESL_LU, m) \
    X(LUDecomp, m, 64f, S, _S, KESL_LU, m)  X(LUDecomp, m, 64f, S2, _S2, KESL_LU, m)  X(LUDecomp, m, 64f, P, _P, KESL_LU, m)
namespace kesl { template <class T, Form F> constexpr int* LUDecomp_com = nullptr; }
KESL_LU_COMMON(KESL_COMMON)
// clang-format on

namespace kesl {

// Where |column(i)| is greatest, for i = k .. n - 1; of equal ones the first. `best` is its magnitude. A NaN is never
// greater, and nothing is greater than it.
template <class T> int pivot(int k, int n, T& best, auto column)
{
    int q = k;
    best = abs(column(k));
    for (int i = k + 1; i < n; ++i)
        if (const T x = abs(column(i)); x > best) best = x, q = i;
    return q;
}

// ---- Orders 3 to 6: the matrix is held in local storage, and its rows are written as they become final.

// A pivot below this is singular. The comparison must hold to reject: a NaN passes.
template <class T> constexpr T pivotBelow = Precision<T>::safeMin;

template <class T, int n> [[gnu::noinline]] KeslStatus luOne(const auto& src, int* p, const auto& dst)
{
    T a[n][n];
    eachElement<n, n>([&](int i, int j) { a[i][j] = src(i, j); });
    for (int i = 0; i < n; ++i) p[i] = i;
    for (int k = 0; k < n; ++k) {
        T best;
        std::swap(p[k], p[pivot(k, n, best, [&](int i) { return a[p[i]][k]; })]);
        if (best < pivotBelow<T>) return keslStatusSingular;
        const T* const rk = a[p[k]];
        for (int j = 0; j < n; ++j) dst(p[k], j) = rk[j];
        const T r = 1 / rk[k];
        for (int i = k + 1; i < n; ++i) {
            T* const ri = a[p[i]];
            ri[k] = ri[k] * r;
            for (int j = k + 1; j < n; ++j) ri[j] = ri[j] - ri[k] * rk[j];
        }
    }
    return keslStatusOk;
}

// The same on packs: rows are exchanged by selection, lane by lane, and back at the end. Neither is needed for what lies
// left of the pivot's column, since only the exchange back would undo the exchange.
template <class V, int n> struct LUPack {
    using Index = MaskOf<V>;
    Block<V, n, n> a;
    Index p[n];

    [[gnu::always_inline]] void exchangeRows(int k, Index q)
    {
#pragma GCC unroll 8
        for (int i = k + 1; i < n; ++i)
#pragma GCC unroll 8
            for (int j = k; j < n; ++j) exchange(q == i, a(k, j), a(i, j));
    }
    // False where a lane is singular; then nothing here means anything. With `atOnce` nothing is divided by such a pivot.
    template <class T, bool atOnce> [[gnu::always_inline]] bool run()
    {
        Index q[n], bad{};
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i) p[i] = Index{} + i;
#pragma GCC unroll 8
        for (int k = 0; k < n; ++k) {
            V best = abs(a(k, k));
            q[k] = Index{} + k;
#pragma GCC unroll 8
            for (int i = k + 1; i < n; ++i) {
                const V x = abs(a(i, k));
                q[k] = x > best ? Index{} + i : q[k];
                best = x > best ? x : best;
            }
            exchangeRows(k, q[k]);
#pragma GCC unroll 8
            for (int i = k + 1; i < n; ++i) exchange(q[k] == i, p[k], p[i]);
            bad |= best < pivotBelow<T>;
            if (atOnce && any(bad)) return false;
            if (k == n - 1) break;
            const V r = T(1) / a(k, k);
#pragma GCC unroll 8
            for (int i = k + 1; i < n; ++i) {
                a(i, k) = a(i, k) * r;
#pragma GCC unroll 8
                for (int j = k + 1; j < n; ++j) a(i, j) = a(i, j) - a(i, k) * a(k, j);
            }
        }
        if (any(bad)) return false;
#pragma GCC unroll 8
        for (int k = n - 2; k >= 0; --k) exchangeRows(k, q[k]);
        return true;
    }
};
// Orders 5 and 6 are long: one copy serves all kernels.
template <class T, bool atOnce, class V, int n> [[gnu::noinline]] bool luLong(LUPack<V, n>& lu)
{
    return lu.template run<T, atOnce>();
}

// One matrix, in every lane of a short pack: rows are exchanged without branches, which nobody foresees for random pivots.
// What is singular is done again above, where the rows before are written, too.
template <class T, int n> [[gnu::noinline]] KeslStatus luAlone(const auto& src, int* p, const auto& dst)
{
    using V = typename PackOf<T, 16>::type;
    LUPack<V, n> lu;
    eachElement<n, n>([&](int i, int j) { lu.a(i, j) = splat<V>(src(i, j)); });
    if (!(n < 5 ? lu.template run<T, true>() : luLong<T, true>(lu))) return luOne<T, n>(src, p, dst);
    for (int i = 0; i < n; ++i) p[i] = int(lu.p[i][0]);
    eachElement<n, n>([&](int i, int j) { dst(i, j) = lu.a(i, j)[0]; });
    return keslStatusOk;
}

// ---- Other orders, in dst itself.
template <class T> [[gnu::noinline]] KeslStatus luCommon(const auto& src, int* p, const auto& a, int n)
{
    constexpr T eps = Precision<T>::eps; // an absolute bound of the pivots, and a pivot of eps is singular
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) a(i, j) = src(i, j);
    for (int i = 0; i < n; ++i) p[i] = i;
    for (int k = 0; k < n - 1; ++k) {
        T best;
        const int q = pivot(k, n, best, [&](int i) { return a(p[i], k); });
        if (eps >= best) return keslStatusSingular;
        std::swap(p[k], p[q]);
        const T r = 1 / a(p[k], k);
        for (int i = k + 1; i < n; ++i) {
            const T f = a(p[i], k) = a(p[i], k) * r;
#pragma GCC ivdep
            for (int j = k + 1; j < n; ++j) a(p[i], j) = a(p[i], j) - f * a(p[k], j);
        }
    }
    return eps >= abs(a(p[n - 1], n - 1)) ? keslStatusSingular : keslStatusOk;
}

// The same on packs, as LUPack has it; false where a lane is singular.
template <class V> [[gnu::always_inline]] inline bool luOfTile(Tile<V> a, MaskOf<V>* p, auto n)
{
    using T = ElementOf<V>;
    using Index = MaskOf<V>;
    Index q[tallest];
    V best;
    for (int i = 0; i < n; ++i) p[i] = Index{} + i;
    for (int k = 0; k < n - 1; ++k) {
        q[k] = pivotRow(a, k, n, best);
        if (any(Precision<T>::eps >= best)) return false;
        exchangeRows(a, k, q[k], n);
        for (int i = k + 1; i < n; ++i) exchange(q[k] == i, p[k], p[i]);
        const V* const rk = a.row(k);
        const V r = T(1) / rk[k];
        for (int i = k + 1; i < n; ++i) {
            V* const ri = a.row(i);
            const V f = ri[k] = ri[k] * r;
            for (int j = k + 1; j < n; ++j) ri[j] = ri[j] - f * rk[j];
        }
    }
    if (any(Precision<T>::eps >= abs(a(n - 1, n - 1)))) return false;
    for (int k = n - 2; k >= 0; --k) exchangeRows(a, k, q[k], n);
    return true;
}
template <class V> [[gnu::noinline]] bool luTile(Tile<V> a, MaskOf<V>* p, int n) { return luOfTile(a, p, n); }

// ---- The family.
struct LUDecomp {
    static constexpr Threshold threshold = thresholds::usual;
    static constexpr bool canFail = true;

    template <class T, int n>
    [[gnu::noinline]] static KeslStatus fixed(const Array<const T>& from, Table<int> index, const Array<T>& to, int count)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        return eachPack<T>(count, src, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            if constexpr (lanes<V> == 1)
                return withViews(
                    k.first, [&](auto a, auto lu) { return luOne<T, n>(a, index.object(k.first), lu); }, src, dst);
            else {
                LUPack<V, n> lu;
                load(src, k, lu.a);
                if (!(n < 5 ? lu.template run<T, false>() : luLong<T, false>(lu))) return keslStatusSingular;
                store(dst, k, lu.a);
                storeIndices<n>(index.object(k.first), lu.p);
                return keslStatusOk;
            }
        });
    }
    template <class T, class N> [[gnu::noinline]] static KeslStatus other(const Array<const T>& from, Table<int> index,
                                                                          const Array<T>& to, N order, int count)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        constexpr Packs packs{.least = isFixed<N> ? 2 : 4}; // two lanes do not make up for exchanges in both
        return eachTile<T, packs>(order, order, count, src, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            if constexpr (lanes<V> == 1)
                return withRowViews(
                    k.first, [&](auto x, auto a) { return luCommon<T>(x, index.object(k.first), a, order); }, src, dst);
            else {
                V elements[elementsOf<N>];
                MaskOf<V> p[tallest];
                const Tile<V> a{elements, order};
                load(src, k, a, order);
                if (!(isFixed<N> ? luOfTile(a, p, order) : luTile(a, p, order))) return keslStatusSingular;
                store(dst, k, a, order);
                if constexpr (isFixed<N>) storeIndices<N::value>(index.object(k.first), p);
                else
                    for (int l = 0; l < lanes<V>; ++l)
                        for (int i = 0; i < order; ++i) index.object(k.first + l)[i] = int(p[i][l]);
                return keslStatusOk;
            }
        });
    }
    template <class T> [[gnu::noinline]] static KeslStatus all(const Array<const T>& src, Table<int> index,
                                                               const Array<T>& dst, int order, int count)
    {
        return withOrder(order, [&](auto n) {
            if constexpr (n > 0) return fixed<T, n>(src, index, dst, count);
            else return withTileOrder(order, [&](auto size) { return other<T>(src, index, dst, size, count); });
        });
    }

    template <class T, Form>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Table<int> index, auto dst, Size order, Count count)
    {
        return all<T>({src, order, order}, index, {dst, order, order}, order, count);
    }
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Table<int> index, auto dst, Size order, One)
    {
        return withOrder(order, [&](auto n) {
            if constexpr (n == 0) return call<F>(LUDecomp_com<T, F>, src, index, dst, order);
            else {
                const auto a = src.object(0, n, n);
                const auto lu = dst.object(0, n, n);
                if constexpr (n < 5 || widest > 16) return luAlone<T, n>(a, index.p, lu);
                else return luOne<T, n>(a, index.p, lu); // a selection is three operations where packs have 16 bytes
            }
        });
    }
    template <class T> static KeslStatus common(auto src, Table<int> index, auto dst, Size order)
    {
        return luCommon<T>(src.object(0, order, order), index.p, dst.object(0, order, order), order);
    }
};

// clang-format off
// ---- The members.
struct LUDecomp_m : LUDecomp {};
struct LUDecomp_ma : LUDecomp {
    static unsigned measure(unsigned n, unsigned count) { return n * n * count; }
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_LUDECOMP_M(X)  X(LUDecomp, m, KESL_LU, m)
#define KESL_LUDECOMP_MA(X) X(LUDecomp, ma, KESL_LUS, ma)
