// keslCholeskyDecomp: the Cholesky factor by rows (Golub and Van Loan, Matrix Computations, 4.2), of one matrix or of each
// matrix of an array, with the reciprocals of its diagonal in place of the diagonal.
#pragma once
#include "frame/any_order.h"
#include "frame/arguments.h"
#include "frame/call.h"
#include "solvers/triangle.h"

// clang-format off
#define KESL_CHOLESKY(as, F, T, k)   as##_in(k, src, F, T), as##_out(k, dst, F, T), as##_size(widthHeight)
#define KESL_CHOLESKYS(as, F, T, k)  KESL_CHOLESKY(as, F, T, k), as##_count(count)
// clang-format on

namespace kesl {

// The reciprocal of a root. That of a float is formed in double precision and rounded once.
inline double reciprocalRoot(double d) { return 1 / sqrt(d); }
inline float reciprocalRoot(float d) { return float(1 / sqrt(double(d))); }
template <class V> requires(lanes<V> > 1) [[gnu::always_inline]] inline V reciprocalRoot(V d)
{
    if constexpr (sizeof(ElementOf<V>) == 8) return 1 / sqrt(d);
    else return narrowed<V>(1 / sqrt(widened<0>(d)), 1 / sqrt(widened<1>(d)));
}

// A row of the factor l depends on those above it. The elements left of the diagonal are written before it is tested. The
// comparison must hold to reject: a NaN passes.
template <class T>
[[gnu::always_inline]] inline KeslStatus choleskyRows(const auto& src, auto& l, const auto& dst, auto n, T bound, auto root)
{
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < i; ++j) {
            T t = src(i, j);
            for (int k = 0; k < j; ++k) t = t - l(i, k) * l(j, k);
            dst(i, j) = l(i, j) = t * l(j, j);
        }
        T d = src(i, i);
        for (int k = 0; k < i; ++k) d = d - l(i, k) * l(i, k);
        if (bound >= d) return keslStatusNotPositiveDefinite;
        dst(i, i) = l(i, i) = root(d);
    }
    return keslStatusOk;
}
template <class T, int n> [[gnu::noinline]] KeslStatus choleskyOne(const auto& src, const auto& dst, T bound)
{
    Block<T, n, n> l;
    return choleskyRows<T>(src, l, dst, Fixed<n>{}, bound, [](T d) { return reciprocalRoot(d); });
}
template <class T>
[[gnu::noinline]] KeslStatus choleskyCommon(const auto& src, const auto& dst, int n, T bound, bool rootNarrowed)
{
    return choleskyRows<T>(src, dst, dst, n, bound, [=](T d) { return rootNarrowed ? 1 / sqrt(d) : reciprocalRoot(d); });
}

// In place; false where a lane has no factor.
template <class V> [[gnu::always_inline]] inline bool choleskyLanes(const auto& l, auto order, ElementOf<V> bound, auto root)
{
    const int n = order; // known to the compiler, where it is Fixed
    MaskOf<V> bad{};
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) {
#pragma GCC unroll 8
        for (int j = 0; j < i; ++j) {
#pragma GCC unroll 8
            for (int k = 0; k < j; ++k) l(i, j) = l(i, j) - l(i, k) * l(j, k);
            l(i, j) = l(i, j) * l(j, j);
        }
#pragma GCC unroll 8
        for (int k = 0; k < i; ++k) l(i, i) = l(i, i) - l(i, k) * l(i, k);
        bad |= bound >= l(i, i);
        l(i, i) = root(l(i, i));
    }
    return !any(bad);
}
template <int n, class V> [[gnu::always_inline]] inline bool choleskyPack(Block<V, n, n>& l, ElementOf<V> bound)
{
    return choleskyLanes<V>([&](int i, int j) KESL_INLINE -> V& { return l(i, j); }, Fixed<n>{}, bound,
                            [](V d) KESL_INLINE { return reciprocalRoot(d); });
}
template <class V>
[[gnu::always_inline]] inline bool choleskyOfTile(Tile<V> l, auto n, ElementOf<V> bound, bool rootNarrowed)
{
    return choleskyLanes<V>(l, n, bound, [=](V d) KESL_INLINE { return rootNarrowed ? 1 / sqrt(d) : reciprocalRoot(d); });
}
template <class V> [[gnu::noinline]] bool choleskyTile(Tile<V> l, int n, ElementOf<V> bound, bool rootNarrowed)
{
    return choleskyOfTile(l, n, bound, rootNarrowed);
}
// Orders 5 and 6 are long: one copy serves all kernels.
template <int n, class V> [[gnu::noinline]] bool choleskyLong(Block<V, n, n>& l, ElementOf<V> bound)
{
    return choleskyPack<n>(l, bound);
}

// ---- The family.
struct CholeskyDecomp {
    // { S, S2, L, LS2, P }, by 32f and 64f: contiguous rows have a threshold of their own only in the L layout of 64f.
    static constexpr Threshold threshold = {{7501, 2001}, {7501, 2001}, {2001, 721}, 2001, 2001};
    static constexpr bool canFail = true;

    // A pivot not above this is rejected. It is 0 but for two deliberate exceptions: order 3 in the P layout, with the
    // single precision's epsilon in both types; and order 6 and the common orders of double arrays with gaps in their rows.
    template <class T, Form F, bool array> static constexpr T bound(int n)
    {
        if (F == P && n == 3) return T(0x1p-23);
        if (F == S2 && array && sizeof(T) == 8 && !(n >= 3 && n <= 5)) return T(0x1p-52);
        return 0;
    }

    template <class T, int n>
    [[gnu::noinline]] static KeslStatus fixed(const Array<const T>& from, const Array<T>& to, int count, T limit)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        return eachPack<T>(count, src, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            if constexpr (lanes<V> == 1)
                return withViews(
                    k.first, [&](auto a, auto l) { return choleskyOne<T, n>(a, l, limit); }, src, dst);
            else {
                Block<V, n, n> l;
                load<true>(src, k, l);
                if (!(n < 5 ? choleskyPack<n>(l, limit) : choleskyLong<n>(l, limit))) return keslStatusNotPositiveDefinite;
                store<true>(dst, k, l);
                return keslStatusOk;
            }
        });
    }
    // Deliberately in P the root of a float is narrowed before it is inverted, at orders of no fixed body.
    template <class T, class N>
    [[gnu::noinline]] static KeslStatus other(const Array<const T>& from, const Array<T>& to, N n, int count, T limit)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        return eachTile<T>(n, n, count, src, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            if constexpr (lanes<V> == 1)
                return withRowViews(
                    k.first, [&](auto a, auto l) { return choleskyCommon<T>(a, l, n, limit, src.cells); }, src, dst);
            else {
                V elements[elementsOf<N>];
                const Tile<V> l{elements, n};
                load<true>(src, k, l, n);
                if (!(isFixed<N> ? choleskyOfTile(l, n, limit, src.cells) : choleskyTile(l, n, limit, src.cells)))
                    return keslStatusNotPositiveDefinite;
                store<true>(dst, k, l, n);
                return keslStatusOk;
            }
        });
    }
    template <class T>
    [[gnu::noinline]] static KeslStatus all(const Array<const T>& src, const Array<T>& dst, int order, int count, T limit)
    {
        return withOrder(order, [&](auto n) {
            if constexpr (n > 0) return fixed<T, n>(src, dst, count, limit);
            else return withTileOrder(order, [&](auto size) { return other<T>(src, dst, size, count, limit); });
        });
    }

    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Size order, Count count)
    {
        return all<T>({src, order, order}, {dst, order, order}, order, count, bound<T, F, true>(order));
    }
    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Size order, One)
    {
        const auto to = dst.object(0, order, order);
        const T limit = bound<T, F, false>(order);
        return withOrder(order, [&](auto n) {
            if constexpr (n == 0) return choleskyCommon<T>(src.object(0, order, order), to, order, limit, F == P);
            else return choleskyOne<T, n>(src.object(0, n, n), to, limit);
        });
    }
};

// clang-format off
// ---- The members.
struct CholeskyDecomp_m : CholeskyDecomp {};
struct CholeskyDecomp_ma : CholeskyDecomp {
    static unsigned measure(unsigned n, unsigned count) { return n * n * count; }
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_CHOLESKYDECOMP_M(X)  X(CholeskyDecomp, m, KESL_CHOLESKY, m)
#define KESL_CHOLESKYDECOMP_MA(X) X(CholeskyDecomp, ma, KESL_CHOLESKYS, ma)
