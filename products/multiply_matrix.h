// keslMul on matrices: dst = src1 * src2, each element a sum of products in ascending order.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "products/rows.h"
#include "products/tiles.h"

namespace kesl {

// ---- How the sums begin where all four sizes are the same order of 3 to 6: with their first product, or at zero, as
// they do for all other sizes. It shows in nothing but the sign of a sum of products that are all -0.
enum class Start { product, zero };

struct Starts {
    Start S, S2, L, LS2, P;
    constexpr Start of(Form f) const
    {
        return f == kesl::S ? S : f == kesl::S2 ? S2 : f == kesl::L ? L : f == kesl::LS2 ? LS2 : P;
    }
};

// clang-format off
//                                  S               S2              L               LS2             P
constexpr Starts singleStarts   = { Start::product, Start::product, Start::product, Start::product, Start::product };
// Deliberate: objects of an L array with contiguous rows begin at zero, where src2 is an array.
constexpr Starts arraySrc2      = { Start::product, Start::product, Start::zero,    Start::product, Start::product };
// clang-format on

// ---- Orders 3 to 6 with contiguous rows.

template <bool fromZero, int n, class V>
[[gnu::always_inline]] inline Block<V, n, n> times(const Block<V, n, n>& a, const Block<V, n, n>& b)
{
    Block<V, n, n> x;
    eachElement<n, n>([&](int i, int j) {
        const V first = a(i, 0) * b(0, j);
        V sum = fromZero ? V{} + first : first;
#pragma GCC unroll 8
        for (int k = 1; k < n; ++k) sum = sum + a(i, k) * b(k, j);
        x(i, j) = sum;
    });
    return x;
}

// By packs of objects.
template <bool fromZero, class T, int n>
[[gnu::always_inline]] inline void productByPacks(auto a, auto b, auto dst, auto count)
{
    eachPack<T>(count, [&]<class V>(Objects<V> k) {
        store(dst, k, times<fromZero>(load<n, n>(a, k), load<n, n>(b, k)));
        return KeslStatus(keslStatusOk);
    });
}

// By rows. All of b is read before anything is stored: dst may lie on it, where both are single objects.
template <bool fromZero, class T, int n>
[[gnu::always_inline]] inline void productByRows(auto a, auto b, auto dst, auto count)
{
    using A = decltype(a);
    using B = decltype(b);
    Row<T, n> rows[n];
    const auto readB = [&](int k) {
        const auto from = b.object(k, n, n);
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i)
            if constexpr (isTransposed<B>) rows[i] = Row<T, n>::gathered([&](int j) { return from(i, j); });
            else rows[i] = Row<T, n>::from(from.row(i));
    };
    const auto product = [&](auto from, int k) {
        if constexpr (B::isArray) readB(k);
        const auto to = dst.object(k, n, n);
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i) rowTimes<fromZero, 0>(from, i, rows).to(to.row(i));
    };
    if constexpr (!B::isArray) readB(0);
    // A single a is kept, unless the rows of b take so many registers that its elements would be spilled as packs.
    if constexpr (!A::isArray && B::isArray && n * Row<T, n>::pieces < 12) {
        const auto kept = load<n, n>(a, Objects<T>{0});
        for (int k = 0; k < count; ++k) product(kept, k);
    } else
        for (int k = 0; k < count; ++k) product(a.object(A::isArray ? k : 0, n, n), k);
}

// ---- The family.
template <Starts starts> struct ProductOfMatrices {
    static constexpr Threshold threshold = setB;

    template <class T, Form F, class Count = One> [[gnu::always_inline]] static KeslStatus
    kernel(auto a, int w1, int h1, auto b, int w2, int h2, auto dst, Count count = {})
    {
        using A = decltype(a);
        using B = decltype(b);
        using D = decltype(dst);
        const int M = isTransposed<A> ? w1 : h1, K = isTransposed<A> ? h1 : w1, N = isTransposed<B> ? h2 : w2;
        const int order = M == K && K == N ? M : 0;
        constexpr bool fromZero = starts.of(F) == Start::zero;
        const T start = fromZero || order < 3 || order > 6 ? plusZero<T> : noStart<T>;

        if constexpr (contiguousRows(F))
            withOrder(order, [&](auto n) {
                constexpr bool fills = n * sizeof(T) == 32; // a row as long as a pack needs no joining with others
                if constexpr (n > 0 && !fills && F == S && A::isArray && !B::isArray && !isTransposed<A>)
                    if (isPacked(a, n, n) && isPacked(dst, n, n)) {
                        const auto single = load<n, n>(b, Objects<T>{0});
                        return tallProduct<fromZero, 0, n>(a.p, single, dst.p, std::int64_t(n) * count);
                    }
                if constexpr (n == 3) productByPacks<fromZero, T, n>(a, b, dst, count);
                else if constexpr (n > 0) productByRows<fromZero, T, n>(a, b, dst, count);
                else {
                    if constexpr (F == S && A::isArray && !B::isArray)
                        if (isPacked(a, M, K) && isPacked(dst, M, N)) { // one tall matrix
                            constexpr std::int64_t e = sizeof(T);
                            product<!isTransposed<B>>(start, Grid<const T>{a.p, K * e, e}, seen(b, 0, w2),
                                                      Grid<T>{dst.p, N * e, e}, std::int64_t(M) * count, N, K);
                            return;
                        }
                    withOrder(isTransposed<B> ? 0 : N, [&](auto columns) {
                        if constexpr (columns > 0 && !isTransposed<B>) {
                            const int atOnce = F == S ? int(count) : 1;
                            for (int k = 0; k < count; k += atOnce)
                                narrowProducts<columns>(start, equidistant<const T>(a, k, w1),
                                                        equidistant<const T>(b, k, w2), equidistant<T>(dst, k, N), atOnce, M,
                                                        K);
                        } else
                            for (int k = 0; k < count; ++k)
                                product<!isTransposed<B>>(start, seen(a, k, w1), seen(b, k, w2), seen(dst, k, N), M, N, K);
                    });
                }
            });
        else {
            if constexpr (D::isArray && !inL(F))
                if (isSideBySide(a) && isSideBySide(b) && isSideBySide(dst)) {
                    sideBySide<T>(0, count, [&]<class V>(V, std::int64_t at) {
                        const auto x = along(seen(a, 0, w1), A::isArray ? at : 0),
                                   y = along(seen(b, 0, w2), B::isArray ? at : 0);
                        const auto z = along(seen(dst, 0, N), at);
                        withOrder(order, [&](auto n) {
                            if constexpr (n > 0 && sizeof(V) == widest)
                                productOfLanes<n, V, A::isArray, B::isArray>(x, y, z);
                            else productOfLanes<V, A::isArray, B::isArray>(start, x, y, z, M, N, K);
                        });
                    });
                    return keslStatusOk;
                }
            for (int k = 0; k < count; ++k)
                if (order >= 3 && order <= 6)
                    productAfterReading<T>(start, seen(a, k, w1), seen(b, k, w2), seen(dst, k, N), order);
                else product<false>(start, seen(a, k, w1), seen(b, k, w2), seen(dst, k, N), M, N, K);
        }
        return keslStatusOk;
    }
};

// clang-format off
// ---- The members: which sizes must match, and the measure of work.
template <bool a, bool b> struct Fit { // whether src1 and src2 are transposed
    static constexpr auto sizesMatch = [](unsigned w1, unsigned h1, unsigned w2, unsigned h2, auto...) {
        return (a ? h1 : w1) == (b ? w2 : h2);
    };
};
template <bool a, bool b> struct Mul_single : ProductOfMatrices<singleStarts>, Fit<a, b> {};
template <bool a, bool b> struct Mul_arrayAndSingle : ProductOfMatrices<singleStarts>, Fit<a, b> {
    static unsigned measure(unsigned w1, unsigned h1, unsigned w2, unsigned h2, unsigned count)
    {
        return w2 * h2 + ((b ? h2 : w2) + (a ? h1 : w1)) * (a ? w1 : h1) * count;
    }
};
template <bool a, bool b> struct Mul_singleAndArray : ProductOfMatrices<arraySrc2>, Fit<a, b> {
    static unsigned measure(unsigned w1, unsigned h1, unsigned w2, unsigned h2, unsigned count)
    {
        return w1 * h1 + ((a ? w1 : h1) + (b ? w2 : h2)) * (b ? h2 : w2) * count;
    }
};
template <bool a, bool b> struct Mul_twoArrays : ProductOfMatrices<arraySrc2>, Fit<a, b> {
    static unsigned measure(unsigned w1, unsigned h1, unsigned w2, unsigned h2, unsigned count)
    {
        return (((a ? h1 : w1) + (b ? h2 : w2)) * (a ? w1 : h1) + w2 * h2) * count;
    }
};
struct Mul_mm : Mul_single<false, false> {};
struct Mul_mt : Mul_single<false, true> {};
struct Mul_tm : Mul_single<true, false> {};
struct Mul_tt : Mul_single<true, true> {};
struct Mul_mam : Mul_arrayAndSingle<false, false> {};
struct Mul_mat : Mul_arrayAndSingle<false, true> {};
struct Mul_tam : Mul_arrayAndSingle<true, false> {};
struct Mul_tat : Mul_arrayAndSingle<true, true> {};
struct Mul_mma : Mul_singleAndArray<false, false> {};
struct Mul_mta : Mul_singleAndArray<false, true> {};
struct Mul_tma : Mul_singleAndArray<true, false> {};
struct Mul_tta : Mul_singleAndArray<true, true> {};
struct Mul_mama : Mul_twoArrays<false, false> {};
struct Mul_mata : Mul_twoArrays<false, true> {};
struct Mul_tama : Mul_twoArrays<true, false> {};
struct Mul_tata : Mul_twoArrays<true, true> {};

} // namespace kesl

// ---- Their functions, by module: the kinds of src1, src2 and dst.
#define KESL_PRODUCT(as, F, T, a, b, d)  as##_in(a, src1, F, T), as##_size(src1Width), as##_size(src1Height), \
                                         as##_in(b, src2, F, T), as##_size(src2Width), as##_size(src2Height), as##_out(d, dst, F, T)
#define KESL_PRODUCTS(as, F, T, a, b, d) KESL_PRODUCT(as, F, T, a, b, d), as##_count(count)

#define KESL_MUL_MM(X)   X(Mul, mm, KESL_PRODUCT, m, m, m)       X(Mul, mt, KESL_PRODUCT, m, t, m) \
                         X(Mul, tm, KESL_PRODUCT, t, m, m)       X(Mul, tt, KESL_PRODUCT, t, t, m)
#define KESL_MUL_MAM(X)  X(Mul, mam, KESL_PRODUCTS, ma, m, ma)   X(Mul, mat, KESL_PRODUCTS, ma, t, ma) \
                         X(Mul, tam, KESL_PRODUCTS, ta, m, ma)   X(Mul, tat, KESL_PRODUCTS, ta, t, ma)
#define KESL_MUL_MMA(X)  X(Mul, mma, KESL_PRODUCTS, m, ma, ma)   X(Mul, mta, KESL_PRODUCTS, m, ta, ma) \
                         X(Mul, tma, KESL_PRODUCTS, t, ma, ma)   X(Mul, tta, KESL_PRODUCTS, t, ta, ma)
#define KESL_MUL_MAMA(X) X(Mul, mama, KESL_PRODUCTS, ma, ma, ma) X(Mul, mata, KESL_PRODUCTS, ma, ta, ma) \
                         X(Mul, tama, KESL_PRODUCTS, ta, ma, ma) X(Mul, tata, KESL_PRODUCTS, ta, ta, ma)
