// keslMul on a matrix and a vector, dst = src1 * src2, and keslGaxpy, dst = src1 * src2 + src3.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "products/rows.h"
#include "products/tiles.h"

namespace kesl {

// ---- Orders 3 to 6, by packs of objects.

template <bool fromZero, int ahead, int n, class V>
[[gnu::always_inline]] inline Block<V, 1, n> timesVector(const Block<V, n, n>& a, const Block<V, 1, n>& x)
{
    Block<V, 1, n> y;
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) {
        y(0, i) = begun<fromZero>(a(i, term(0, n, ahead)) * x(0, term(0, n, ahead)));
#pragma GCC unroll 8
        for (int k = 1; k < n; ++k) y(0, i) = y(0, i) + a(i, term(k, n, ahead)) * x(0, term(k, n, ahead));
    }
    return y;
}

template <int n, class V> [[gnu::always_inline]] inline Block<V, 1, n> plus(Block<V, 1, n> x, const Block<V, 1, n>& y)
{
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) x(0, i) = x(0, i) + y(0, i);
    return x;
}

// Order 4, four objects at a time, for packs of two rows or of four: the products of their elements are brought into the
// order of the terms, and the sums then from rows into objects.
template <class V> struct ByGroups { // of four lanes
    template <int a, int b, bool pairs> struct Of {
        // lanes a and b of a group, each from both sources; or, for pairs, these and the next
        static constexpr int of(int l)
        {
            const int group = l / 4 * 4, other = lanes<V>;
            return pairs ? group + a + l % 2 + (l % 4 / 2) * other : group + (l % 4 / 2 ? b : a) + l % 2 * other;
        }
    };
    [[gnu::always_inline]] static void transpose(V* x)
    {
        constexpr int n = lanes<V>;
        const V a = shuffled<Of<0, 1, false>, n>(x[0], x[1]), b = shuffled<Of<2, 3, false>, n>(x[0], x[1]);
        const V c = shuffled<Of<0, 1, false>, n>(x[2], x[3]), d = shuffled<Of<2, 3, false>, n>(x[2], x[3]);
        x[0] = shuffled<Of<0, 0, true>, n>(a, c), x[1] = shuffled<Of<2, 2, true>, n>(a, c);
        x[2] = shuffled<Of<0, 0, true>, n>(b, d), x[3] = shuffled<Of<2, 2, true>, n>(b, d);
    }
    static V repeated([[maybe_unused]] const ElementOf<V>* p)
    {
#if defined(__AVX512F__)
        if constexpr (sizeof(*p) == 4) return V(_mm512_broadcast_f32x4(_mm_loadu_ps(p)));
        else return V(_mm512_broadcast_f64x4(_mm256_loadu_pd(p)));
#else
        return V{};
#endif
    }
};
// Element (row, object) in lane row * 4 + object, to lane object * 4 + row, from `first` on.
template <int first> struct RowsToObjects {
    static constexpr int of(int l) { return (l + first) % 4 * 4 + (l + first) / 4; }
};
template <bool fromZero, class T> [[gnu::always_inline]] inline int fourObjects(auto a, auto x, auto dst, int count)
{
    using V = Pack<T>;
    constexpr int parts = 16 / lanes<V>; // of an object
    int k = 0;
    for (; k + 4 <= count; k += 4) {
        V sum[parts];
#pragma GCC unroll 2
        for (int p = 0; p < parts; ++p) {
            V term[4];
#pragma GCC unroll 4
            for (int o = 0; o < 4; ++o)
                term[o] = loadPack<V>(a.address(k + o) + p * lanes<V>) * ByGroups<V>::repeated(x.address(k + o));
            ByGroups<V>::transpose(term);
            sum[p] = begun<fromZero>(term[0]) + term[1];
            sum[p] = (sum[p] + term[2]) + term[3];
        }
        T* const to = dst.address(k);
        if constexpr (parts == 1) storePack<V>(to, shuffled<RowsToObjects<0>, 16>(sum[0], sum[0]));
        else {
            storePack<V>(to, shuffled<RowsToObjects<0>, 8>(sum[0], sum[1]));
            storePack<V>(to + 8, shuffled<RowsToObjects<8>, 8>(sum[0], sum[1]));
        }
    }
    return k;
}

// One object of doubles of order 5 or 6, two rows at a time, whose pairs of elements change places: less than it takes to
// bring as many objects as a pack has lanes into their lanes.
template <bool fromZero, int n, class T> [[gnu::always_inline]] inline void timesByPairs(auto a, const T* x, T* dst)
{
    using Pair = Pack<T, 2 * sizeof(T)>;
    T y[n + 1];
#pragma GCC unroll 3
    for (int i = 0; i < n; i += 2) {
        const int below = std::min(i + 1, n - 1); // of an odd order the last row is its own neighbour
        Pair sum;
#pragma GCC unroll 3
        for (int j = 0; j + 1 < n; j += 2) {
            const Pair upper = loadPack<Pair>(a.row(i) + j), lower = loadPack<Pair>(a.row(below) + j);
            const Pair product = shuffled<OfPairs<0>, 2>(upper, lower) * splat<Pair>(x[j]);
            sum = j == 0 ? begun<fromZero>(product) : sum + product;
            sum = sum + shuffled<OfPairs<1>, 2>(upper, lower) * splat<Pair>(x[j + 1]);
        }
        if constexpr (n % 2 == 1) sum = sum + Pair{a(i, n - 1), a(below, n - 1)} * splat<Pair>(x[n - 1]);
        storePack(y + i, sum);
    }
#pragma GCC unroll 6
    for (int i = 0; i < n; ++i) dst[i] = y[i];
}

// The matrix as the right factor of vectors that are rows.
template <class A> struct Flipped {
    const A& a;
    auto operator()(int i, int j) const { return a(j, i); }
};

// Vectors without any gap.
template <class O> bool isRowAfterRow(const O& o, int n) { return o.stride0 == n * O::elementSize; }
// They go as the rows of a tall matrix, but not those of three doubles by packs of eight, where shuffles within the
// whole pack and stores across cache lines cost more than sorting the elements.
template <int n, class T> constexpr bool asRows = !(n == 3 && sizeof(T) == 8 && widest == 64);

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
                        if (isRowAfterRow(x, n) && isRowAfterRow(dst, n)) {
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
                        if (isRecord(a, n, n) && isRowAfterRow(dst, n)) begin = fourObjects<fromZero, T>(a, x, dst, count);
                    withRuns<n>(
                        [&](auto from, auto to) {
                            const auto rest = [&]<class V>(Objects<V> k) {
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
            if (areSideBySide(a) && areSideBySide(x) && areSideBySide(dst)) {
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

// y, an array without gaps or a single vector, added to a pack of rows at element e, or to one row.
template <int n, class Y> struct PlusRows {
    using T = typename Y::Element;
    static constexpr int most = std::max(widest / int(sizeof(T)), n); // elements that are read at once
    T repeated[most];
    const T* p;
    explicit PlusRows(const Y& y) : repeated(), p(y.p)
    {
        for (int l = 0; l < most && !Y::isArray; ++l) repeated[l] = p[l % n];
    }
    const T* at(std::int64_t e) const { return Y::isArray ? p + e : repeated; }
    template <class V> V operator()(V sum, std::int64_t e) const { return sum + loadPack<V>(at(e)); }
    Row<T, n> operator()(Row<T, n> sum, std::int64_t e) const
    {
        const Row<T, n> more = Row<T, n>::from(at(e));
        for (int i = 0; i < Row<T, n>::pieces; ++i) sum.v[i] = sum.v[i] + more.v[i];
        return sum;
    }
};
template <int n, class Y> PlusRows<n, Y> plusRows(const Y& y) { return PlusRows<n, Y>(y); }

// ---- keslGaxpy, alike in all kernels. Deliberate: in orders 4 to 6 the product of the last column comes first, unlike
// in order 3 and in keslMul; in other sizes the sum is ascending from zero. The element of y is added last.
struct MatrixTimesVectorPlusVector {
    static constexpr Threshold threshold = Threshold::everywhere(5001);
    static constexpr auto sizesMatch = [](unsigned w, unsigned h, unsigned len2, unsigned len3, auto...) {
        return w == len2 && h == len3;
    };

    template <class T, Form F, class Count = One> [[gnu::always_inline]] static KeslStatus
    kernel(auto a, int width, int height, auto x, int, auto y, int, auto dst, Count count = {})
    {
        using X = decltype(x);
        using Y = decltype(y);
        return withOrder(width == height ? width : 0, [&](auto n) {
            if constexpr (n == 0) {
                for (int k = 0; k < count; ++k) {
                    const auto p = seen(a, k, width);
                    const auto q = seen(x, k, 0), r = seen(y, k, 0);
                    const auto to = seen(dst, k, 0);
                    product<false>(plusZero<T>, p, q, to, height, 1, width);
                    for (int i = 0; i < height; ++i) to(i, 0) = to(i, 0) + r(i, 0);
                }
                return KeslStatus(keslStatusOk);
            } else {
                constexpr int ahead = n > 3; // of the last column, comes first
                if constexpr (F == S && X::isArray)
                    if (isRowAfterRow(x, n) && isRowAfterRow(dst, n) && (!Y::isArray || isRowAfterRow(y, n))) {
                        const auto single = load<n, n>(a, Objects<T>{0});
                        tallProduct<false, ahead, n>(x.p, Flipped<Block<T, n, n>>{single}, dst.p, count, plusRows<n>(y));
                        return KeslStatus(keslStatusOk);
                    }
                return eachPack<T>(count, [&]<class V>(Objects<V> k) {
                    store(dst, k, plus(timesVector<false, ahead>(load<n, n>(a, k), load<1, n>(x, k)), load<1, n>(y, k)));
                    return KeslStatus(keslStatusOk);
                });
            }
        });
    }
};
struct Gaxpy_mv : MatrixTimesVectorPlusVector {};
struct Gaxpy_mva : MatrixTimesVectorPlusVector {
    static unsigned measure(unsigned, unsigned, unsigned len2, unsigned len3, unsigned count)
    {
        return (len2 + 2 * len3) * count;
    }
};
struct Gaxpy_mvav : MatrixTimesVectorPlusVector {
    static unsigned measure(unsigned, unsigned, unsigned len2, unsigned len3, unsigned count)
    {
        return (len2 + len3) * count + len3;
    }
};

} // namespace kesl

// clang-format off
// ---- Their functions, by module: the kinds of the operands.
#define KESL_TIMES(as, F, T, a, b, d)                                                                                       \
    as##_in(a, src1, F, T), as##_size(src1Width), as##_size(src1Height), as##_in(b, src2, F, T), as##_size(src2Len),        \
        as##_out(d, dst, F, T)
#define KESL_TIMES_ALL(as, F, T, a, b, d) KESL_TIMES(as, F, T, a, b, d), as##_count(count)
#define KESL_GAXPY(as, F, T, a, b, c, d)                                                                                    \
    as##_in(a, src1, F, T), as##_size(src1Width), as##_size(src1Height), as##_in(b, src2, F, T), as##_size(src2Len),        \
        as##_in(c, src3, F, T), as##_size(src3Len), as##_out(d, dst, F, T)
#define KESL_GAXPY_ALL(as, F, T, a, b, c, d) KESL_GAXPY(as, F, T, a, b, c, d), as##_count(count)

#define KESL_MUL_MV(X) X(Mul, mv, KESL_TIMES, m, v, v) X(Mul, tv, KESL_TIMES, t, v, v)
#define KESL_MUL_MAV(X) X(Mul, mav, KESL_TIMES_ALL, ma, v, va) X(Mul, tav, KESL_TIMES_ALL, ta, v, va)
#define KESL_MUL_MVA(X) X(Mul, mva, KESL_TIMES_ALL, m, va, va) X(Mul, tva, KESL_TIMES_ALL, t, va, va)
#define KESL_MUL_MAVA(X) X(Mul, mava, KESL_TIMES_ALL, ma, va, va) X(Mul, tava, KESL_TIMES_ALL, ta, va, va)
#define KESL_GAXPY_MV(X) X(Gaxpy, mv, KESL_GAXPY, m, v, v, v)
#define KESL_GAXPY_MVA(X) X(Gaxpy, mva, KESL_GAXPY_ALL, m, va, va, va) X(Gaxpy, mvav, KESL_GAXPY_ALL, m, va, v, va)
