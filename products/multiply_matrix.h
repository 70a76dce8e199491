// keslMul on matrices: dst = src1 * src2, each element a sum of products in ascending order.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "products/any_size.h"
#include "products/records.h"
#include "products/small_orders.h"
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

// ---- Roads of orders 3 to 6 whose operands are known to the compiler; the others are in records.h and factors.h.

// By packs of objects.
template <class T, int n> [[gnu::always_inline]] inline void productsByPacks(auto a, auto b, auto dst, int count)
{
    eachPack<T>(count, [&]<class V>(Objects<V> k) { store(dst, k, times(load<n, n>(a, k), load<n, n>(b, k))); });
}
// One object of standard layout. All of b is read before anything is stored: dst may lie on it.
template <class T, int n> [[gnu::always_inline]] inline void productOfOne(auto a, auto b, auto dst)
{
    if constexpr (n == 3) store(dst, Objects<T>{0}, times(load<n, n>(a, Objects<T>{0}), load<n, n>(b, Objects<T>{0})));
    else {
        const auto from = a.object(0, n, n);
        const auto factor = b.object(0, n, n); // of another type, where one of them is transposed
        const auto to = dst.object(0, n, n);
        Row<T, n> rows[n];
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i)
            if constexpr (isTransposed<decltype(b)>) rows[i] = Row<T, n>::gathered([&](int j) { return factor(i, j); });
            else rows[i] = Row<T, n>::from(factor.row(i));
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i) rowTimes<false, 0>(from, i, rows).to(to.row(i));
    }
}

// Structures of arrays, in S2 and P, of a fixed order n or any.
template <class T, int n> [[gnu::always_inline]] inline void productsSideBySide(T start, auto a, int w1, auto b, int w2,
                                                                                auto dst, int M, int K, int N, int count)
{
    constexpr bool aVaries = decltype(a)::isArray, bVaries = decltype(b)::isArray;
    eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
        const auto x = seen(a, k.first, w1), y = seen(b, k.first, w2);
        const auto to = seen(dst, k.first, N);
        if constexpr (lanes<V> == 1) product<false>(start, x, y, to, M, N, K);
        else if constexpr (n > 0 && sizeof(V) == widest) productOfLanes<n, V, aVaries, bVaries>(x, y, to);
        else productOfLanes<V, aVaries, bVaries>(start, x, y, to, M, N, K);
    });
}

// ---- The family.
template <Starts starts> struct ProductOfMatrices {
    static constexpr Threshold threshold = thresholds::products;

    // Squares of order n.
    template <class T, Form F, int n> [[gnu::always_inline]] static void square(auto a, auto b, auto dst, auto count)
    {
        using A = decltype(a);
        using B = decltype(b);
        constexpr bool fromZero = starts.of(F) == Start::zero, array = decltype(dst)::isArray;
        constexpr bool fillsPack = n * sizeof(T) == 32; // such rows need no joining with others
        constexpr bool mayBeTall = F == S && A::isArray && !B::isArray && !isTransposed<A> && !fillsPack;
        constexpr bool asStored = !isTransposed<A> && !isTransposed<B>;

        if constexpr (F == S)
            if (count == 1) return productOfOne<T, n>(a, b, dst);
        if constexpr (mayBeTall)
            if (isPacked(a, n, n) && isPacked(dst, n, n))
                return tallProducts<n>(a.p, load<n, n>(b, Objects<T>{0}), dst.p, std::int64_t(n) * count);
        if constexpr (F == S && n == 3 && array && asStored) productsByPacks<T, n>(a, b, dst, count);
        else if constexpr (contiguousRows(F) && n > 3)
            productsByRows<fromZero, n, T>(objectsOrBlock<n>(a), objectsOrBlock<n>(b), rowsAtOf(dst), count);
        else {
            constexpr T start = fromZero ? plusZero<T> : noStart<T>;
            if constexpr (!contiguousRows(F) && !inL(F) && array && n > 4) // more than there are registers for
                if (isSideBySide(a) && isSideBySide(b) && isSideBySide(dst))
                    return productsSideBySide<T, n>(start, a, n, b, n, dst, n, n, n, count);
            productsAnywhere<n>(start, factor(a, n, n), factor(b, n, n), {dst, n, n}, count);
        }
    }

    // Other sizes: sums begin at zero.
    template <class T, Form F>
    [[gnu::always_inline]] static void rectangles(auto a, int w1, auto b, int w2, auto dst, int M, int K, int N, auto count)
    {
        using A = decltype(a);
        using B = decltype(b);
        constexpr bool array = decltype(dst)::isArray, rows = contiguousRows(F) && !isTransposed<B>;
        constexpr std::int64_t e = sizeof(T);

        if constexpr (F == S && array)
            if (M == K && K == N && smallProductsDone(N, count, a, b, dst)) return;
        bool tall = false;
        if constexpr (F == S && A::isArray && !B::isArray)
            if (isPacked(a, M, K) && isPacked(dst, M, N)) // one matrix, whose rows may be all there is of each object
                tall = true, a.stride1 = K * int(e), dst.stride1 = N * int(e);
        if constexpr (rows)
            if (areNarrow(N))
                return narrowProducts<T>(anywhere(a, M, K), anywhere(b, K, N), anywhere(dst, M, N), tall ? 1 : count,
                                         tall ? std::int64_t(M) * count : M, K, N);
        if constexpr (F == S && A::isArray && !B::isArray)
            if (tall)
                return product<rows>(plusZero<T>, Grid<const T>{a.p, a.stride1, e}, seen(b, 0, w2),
                                     Grid<T>{dst.p, dst.stride1, e}, std::int64_t(M) * count, N, K);
        if constexpr (!contiguousRows(F) && !inL(F) && array)
            if (isSideBySide(a) && isSideBySide(b) && isSideBySide(dst))
                return productsSideBySide<T, 0>(plusZero<T>, a, w1, b, w2, dst, M, K, N, count);
        if constexpr (array)
            if (!rows || N < 3)
                return productsOfAnySize<T>({M, K, N}, factor(a, isTransposed<A> ? K : M, w1),
                                            factor(b, isTransposed<B> ? N : K, w2), nullptr, {dst, M, N}, false, count);
        for (int k = 0; k < count; ++k) product<rows>(plusZero<T>, seen(a, k, w1), seen(b, k, w2), seen(dst, k, N), M, N, K);
    }

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto a, int w1, int h1, auto b, int w2, int h2, auto dst, auto count)
    {
        constexpr bool aTransposed = isTransposed<decltype(a)>, bTransposed = isTransposed<decltype(b)>;
        const int M = aTransposed ? w1 : h1, K = aTransposed ? h1 : w1, N = bTransposed ? h2 : w2;
        withOrder(M == K && K == N ? M : 0, [&](auto n) KESL_INLINE {
            if constexpr (n > 0) square<T, F, n>(a, b, dst, count);
            else rectangles<T, F>(a, w1, b, w2, dst, M, K, N, count);
        });
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
