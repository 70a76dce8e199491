// keslMul on a matrix and a vector: dst = src1 * src2.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "products/small_vectors.h"

namespace kesl {

// ---- keslMul. Sums are in ascending order and, where the matrix is square of order 3 to 6, begin with their first
// product; otherwise they begin at zero. Deliberate: in L functions on contiguous vectors they always begin at zero.
struct MatrixTimesVector {
    static constexpr Threshold threshold = setB;

    template <class T, Form F, class Count = One>
    [[gnu::always_inline]] static KeslStatus kernel(auto a, int width, int height, auto x, int, auto dst, Count count = {})
    {
        using A = decltype(a);
        using X = decltype(x);
        using D = decltype(dst);
        const int M = isTransposed<A> ? width : height, K = isTransposed<A> ? height : width;
        const int order = M == K ? M : 0;
        constexpr bool fromZero = F == L;
        const T start = fromZero || order < 3 || order > 6 ? plusZero<T> : noStart<T>;
        bool done = false;

        if constexpr (contiguousRows(F))
            done = withOrder(order, [&](auto n) {
                if constexpr (n == 0) return false;
                else {
                    if constexpr (F == S && !A::isArray && X::isArray && asRows<n, T>)
                        if (isRunOf(x, n) && isRunOf(dst, n)) {
                            const auto single = load<n, n>(a, Objects<T>{0});
                            tallProduct<fromZero, 0, n>(x.p, Flipped<Block<T, n, n>>{single}, dst.p, count);
                            return true;
                        }
                    if constexpr (n > 4 && sizeof(T) == 8 && A::isArray && !isTransposed<A>) {
                        for (int k = 0; k < count; ++k)
                            timesByPairs<fromZero, n>(a.object(k, n, n), x.address(X::isArray ? k : 0), dst.address(k));
                        return true;
                    }
                    int begin = 0;
                    if constexpr (n == 4 && F == S && A::isArray && X::isArray && !isTransposed<A> && widest == 64)
                        if (isRecord(a, n, n) && isRunOf(dst, n)) begin = fourObjects<fromZero, T>(a, x, dst, count);
                    withRuns<n>(
                        [&](auto from, auto to) {
                            const auto rest = [&]<class V>(Objects<V> k) KESL_INLINE {
                                k.first += begin;
                                store(to, k, timesVector<fromZero, 0>(load<n, n>(a, k), load<1, n>(from, k)));
                                return KeslStatus(keslStatusOk);
                            };
                            if constexpr (D::isArray) eachPack<T>(count - begin, rest);
                            else eachPack<T>(count, rest);
                        },
                        x, dst);
                    return true;
                }
            });
        else if constexpr (D::isArray && !inL(F))
            if (isSideBySide(a) && isSideBySide(x) && isSideBySide(dst)) {
                sideBySide<T>(0, count, [&]<class V>(V, std::int64_t at) {
                    const auto p = along(seen(a, 0, width), A::isArray ? at : 0),
                               q = along(seen(x, 0, 0), X::isArray ? at : 0);
                    productOfLanes<V, A::isArray, X::isArray>(start, p, q, along(seen(dst, 0, 0), at), M, 1, K);
                });
                done = true;
            }
        // Many vectors by one matrix are the rows of a tall one, if a row of dst is contiguous.
        constexpr int most = 16;
        if constexpr (F == S && !A::isArray && X::isArray)
            if (!done && M <= most && K <= most) {
                T kept[most * most];
                const auto from = seen(a, 0, width);
                for (int k = 0; k < K; ++k)
                    for (int i = 0; i < M; ++i) kept[k * M + i] = from(i, k);
                constexpr std::int64_t e = sizeof(T);
                product<true>(start, Grid<const T>{x.p, x.stride0, e}, Grid<const T>{kept, M * e, e},
                              Grid<T>{dst.p, dst.stride0, e}, count, M, K);
                done = true;
            }
        for (int k = 0; k < count && !done; ++k)
            product<false>(start, seen(a, k, width), seen(x, k, 0), seen(dst, k, 0), M, 1, K);
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
