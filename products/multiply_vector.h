// keslMul on a matrix and a vector: dst = src1 * src2.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "products/any_size.h"
#include "products/small_orders.h"
#include "products/small_vectors.h"

namespace kesl {

// ---- keslMul. Sums are in ascending order and, where the matrix is square of order 3 to 6, begin with their first
// product; otherwise they begin at zero. Deliberate: in L functions on contiguous vectors they always begin at zero.
struct MatrixTimesVector {
    static constexpr Threshold threshold = thresholds::products;

    // Structures of arrays, in S2 and P.
    template <class T>
    [[gnu::always_inline]] static void timesSideBySide(T start, auto a, int width, auto x, auto dst, int M, int K, int count)
    {
        constexpr bool matrices = decltype(a)::isArray, vectors = decltype(x)::isArray;
        eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
            const auto p = seen(a, k.first, width), q = seen(x, k.first, 0);
            const auto to = seen(dst, k.first, 0);
            if constexpr (lanes<V> == 1) product<false>(start, p, q, to, M, 1, K);
            else productOfLanes<V, matrices, vectors>(start, p, q, to, M, 1, K);
        });
    }

    // Square matrices of order n.
    template <class T, Form F, int n> [[gnu::always_inline]] static void square(auto a, auto x, auto dst, auto count)
    {
        using A = decltype(a);
        using X = decltype(x);
        constexpr bool array = decltype(dst)::isArray, asStored = !isTransposed<A>, fromZero = F == L;
        constexpr bool matrices = A::isArray && asStored;
        constexpr T start = fromZero ? plusZero<T> : noStart<T>;

        if constexpr (F == S)
            if (count == 1)
                return store(dst, Objects<T>{0}, timesVector<0>(load<n, n>(a, Objects<T>{0}), load<1, n>(x, Objects<T>{0})));
        if constexpr (F == S && !A::isArray && array && asRows<n, T>)
            if (isRunOf(x, n) && isRunOf(dst, n)) {
                const auto single = load<n, n>(a, Objects<T>{0});
                Block<T, n, n> flipped;
                eachElement<n, n>([&](int i, int j) { flipped(i, j) = single(j, i); });
                return tallProducts<n>(x.p, flipped, dst.p, count);
            }
        if constexpr (contiguousRows(F) && matrices && n > 4 && sizeof(T) == 8)
            for (int k = 0; k < count; ++k)
                timesByPairs<fromZero, n>(a.object(k, n, n), x.address(X::isArray ? k : 0), dst.address(k));
        else if constexpr (contiguousRows(F) && array && (asStored || !A::isArray)) {
            int done = 0;
            if constexpr (n == 4 && F == S && matrices && X::isArray && widest == 64)
                if (isRecord(a, n, n) && isRunOf(dst, n)) done = fourObjects<fromZero, T>(a, x, dst, count);
            const auto rest = [done](const auto& o) { return o.slice(done, 0, nullptr); };
            timesVectors<fromZero, n>(rest(a), rest(x), rest(dst), count - done);
        } else if constexpr (!array || A::isArray) {
            if constexpr (!contiguousRows(F) && !inL(F) && array && n > 4) // more than there are registers for
                if (isSideBySide(a) && isSideBySide(x) && isSideBySide(dst))
                    return timesSideBySide<T>(start, a, n, x, dst, n, n, count);
            vectorProductsAnywhere<n>(start, factor(a, n, n), factor(x, 1, n), {dst, 1, n}, count);
        } else vectorsByOneAnywhere<n>(start, factor(a, n, n), {x, 1, n}, {dst, 1, n}, count);
    }

    // Other sizes: sums begin at zero.
    template <class T, Form F>
    [[gnu::always_inline]] static void rectangles(auto a, int width, auto x, auto dst, int M, int K, auto count)
    {
        using A = decltype(a);
        using X = decltype(x);
        constexpr bool array = decltype(dst)::isArray;
        constexpr int most = 16;

        if constexpr (F == S && array)
            if (M == K && smallProductsDone(M, count, a, x, dst)) return;
        if constexpr (!contiguousRows(F) && !inL(F) && array)
            if (isSideBySide(a) && isSideBySide(x) && isSideBySide(dst))
                return timesSideBySide<T>(plusZero<T>, a, width, x, dst, M, K, count);
        // Many vectors by one matrix are the rows of a tall one, if a row of dst is contiguous.
        if constexpr (F == S && !A::isArray && X::isArray)
            if (M <= most && K <= most) {
                T kept[most * most];
                const auto from = seen(a, 0, width);
                for (int k = 0; k < K; ++k)
                    for (int i = 0; i < M; ++i) kept[k * M + i] = from(i, k);
                constexpr std::int64_t e = sizeof(T);
                if (areNarrow(M)) {
                    const T *const vectors = x.p, *const matrix = kept;
                    T* const to = dst.p;
                    return narrowProducts<T>({&vectors, 0, 0, 0, 0, 0, x.stride0, e}, {&matrix, 0, 0, 0, 0, 0, M * e, e},
                                             {&to, 0, 0, 0, 0, 0, dst.stride0, e}, 1, count, K, M);
                }
                return product<true>(plusZero<T>, Grid<const T>{x.p, x.stride0, e}, Grid<const T>{kept, M * e, e},
                                     Grid<T>{dst.p, dst.stride0, e}, count, M, K);
            }
        if constexpr (array)
            return productsOfAnySize<T>({M, K, 1}, factor(a, isTransposed<A> ? K : M, width), column(x, K), nullptr,
                                        {dst, 1, M}, true, count);
        for (int k = 0; k < count; ++k)
            product<false>(plusZero<T>, seen(a, k, width), seen(x, k, 0), seen(dst, k, 0), M, 1, K);
    }

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto a, int width, int height, auto x, int, auto dst, auto count)
    {
        constexpr bool transposed = isTransposed<decltype(a)>;
        const int M = transposed ? width : height, K = transposed ? height : width;
        withOrder(M == K ? M : 0, [&](auto n) KESL_INLINE {
            if constexpr (n > 0) square<T, F, n>(a, x, dst, count);
            else rectangles<T, F>(a, width, x, dst, M, K, count);
        });
        return keslStatusOk;
    }
};

template <bool t> struct VectorFits { // whether the matrix is transposed
    static constexpr auto sizesMatch = [](unsigned w, unsigned h, unsigned len, auto...) { return (t ? h : w) == len; };
};
template <bool t> struct Mul_oneVector : MatrixTimesVector, VectorFits<t> {};
template <bool t> struct Mul_arrayAndVector : MatrixTimesVector, VectorFits<t> {
    static unsigned measure(unsigned w, unsigned h, unsigned, unsigned count)
    {
        return t ? w * (h + 1) * count + h : h * (w + 1) * count + w;
    }
};
template <bool t> struct Mul_singleAndVectors : MatrixTimesVector, VectorFits<t> {
    static unsigned measure(unsigned w, unsigned h, unsigned, unsigned count) { return w * h + (w + h) * count; }
};
template <bool t> struct Mul_arrayAndVectors : MatrixTimesVector, VectorFits<t> {
    static unsigned measure(unsigned w, unsigned h, unsigned, unsigned count) { return (w * (h + 1) + h) * count; }
};
struct Mul_mv : Mul_oneVector<false> {};
struct Mul_tv : Mul_oneVector<true> {};
struct Mul_mav : Mul_arrayAndVector<false> {};
struct Mul_tav : Mul_arrayAndVector<true> {};
struct Mul_mva : Mul_singleAndVectors<false> {};
struct Mul_tva : Mul_singleAndVectors<true> {};
struct Mul_mava : Mul_arrayAndVectors<false> {};
struct Mul_tava : Mul_arrayAndVectors<true> {};

} // namespace kesl

// clang-format off
// ---- Their functions, by module: the kinds of the operands.
#define KESL_TIMES(as, F, T, a, b, d)                                                                                       \
    as##_in(a, src1, F, T), as##_size(src1Width), as##_size(src1Height), as##_in(b, src2, F, T), as##_size(src2Len),        \
        as##_out(d, dst, F, T)
#define KESL_TIMES_ALL(as, F, T, a, b, d) KESL_TIMES(as, F, T, a, b, d), as##_count(count)

#define KESL_MUL_MV(X) X(Mul, mv, KESL_TIMES, m, v, v) X(Mul, tv, KESL_TIMES, t, v, v)
#define KESL_MUL_MAV(X) X(Mul, mav, KESL_TIMES_ALL, ma, v, va) X(Mul, tav, KESL_TIMES_ALL, ta, v, va)
#define KESL_MUL_MVA(X) X(Mul, mva, KESL_TIMES_ALL, m, va, va) X(Mul, tva, KESL_TIMES_ALL, t, va, va)
#define KESL_MUL_MAVA(X) X(Mul, mava, KESL_TIMES_ALL, ma, va, va) X(Mul, tava, KESL_TIMES_ALL, ta, va, va)
