// keslL2Norm, keslFrobNorm and keslTrace. A norm is the root of a sum of squares, formed in the element type: nothing
// is scaled against overflow. (The root of a float taken in double precision and rounded is the root in single
// precision.)
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "products/sums.h"

namespace kesl {

template <class V> V squared(V x) { return x * x; }
template <class V> V rootOf(V x) { return sqrt(x); }
constexpr auto toSquare = [](auto x) { return squared(x); };
constexpr auto toRoot = [](auto sum) { return rootOf(sum); };

// ---- The order of the sums in lengths and orders 3 to 6: how many of the last terms come ahead of the others, which
// ascend.
// clang-format off
//                                   length 3  4  5  6
constexpr int aheadInNorm[4]  =           { 0, 1, 1, 1 }; // all but the next
constexpr int aheadInNormOfP[4] =         { 0, 0, 0, 0 }; // deliberate: a single vector in P
constexpr int aheadInTrace[4] =           { 0, 1, 1, 2 };
// clang-format on

struct L2Norm {
    static constexpr Threshold threshold = Threshold::everywhere(20001);

    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src, Table<T> dst, int len, auto count)
    {
        using Src = decltype(src);
        constexpr bool single = !Src::isArray;
        return withOrder(len, [&](auto n) {
            if constexpr (n > 0) {
                constexpr int ahead = (F == P && single ? aheadInNormOfP : aheadInNorm)[n - 3];
                return withRuns<n>(
                    [&](auto x) {
                        return eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                            V p[+n];
                            termsOf<n>(k, p, toSquare, x);
                            storePack<V>(dst.p + k.first, rootOf(sumOfFew<n, ahead>(p)));
                            return KeslStatus(keslStatusOk);
                        });
                    },
                    src);
            } else if constexpr (F == S && single)
                *dst.p = rootOf(sumOfMany<T>(len, [&]<class V>(std::int64_t k) { return squared(loadPack<V>(src.p + k)); }));
            else {
                if constexpr (F == S && !single)
                    if (len == 2 && isRunOf(src, 2)) {
                        sumsOfRuns<2>(dst.p, count, src.p, toSquare, toRoot);
                        return KeslStatus(keslStatusOk);
                    }
                bool packs = false;
                if constexpr (!single && !inL(F)) packs = isSideBySide(src);
                sumsInOrder(
                    dst.p, count, len, packs,
                    [&]<class V>(int k, std::int64_t j) { return squared(valueIn<true, V>(seen(src, k, 0), j, 0)); },
                    toRoot);
            }
            return KeslStatus(keslStatusOk);
        });
    }
};
struct L2Norm_v : L2Norm {};
struct L2Norm_va : L2Norm {
    static unsigned measure(unsigned len, unsigned count) { return len * count; }
};

// ---- keslFrobNorm. How the squares of an object are added:
//     many       sumOfMany, as one run of elements
//     ascending  row by row
//     pairs      row by row, the elements of a row-major list by twos, the two added first
//                                            no gap between rows           gaps, square of order 3 to 6    gaps
// clang-format off
//     single, 32f   square below order 7:    ascending                     ascending                       -
//                   others, element stride:  many                          -                               many, row after row
//                   others, any stride2:     ascending                     -                               ascending
//     single, 64f                            ascending                     ascending                       ascending
//     S, L                                   many                          many                            ascending
//     S2, LS2                                ascending                     ascending                       ascending
//     P                                      pairs                         pairs                           pairs
// clang-format on
// Deliberate: 32f and 64f differ in single matrices, and the layouts in the low bits.
struct FrobNorm {
    static constexpr Threshold threshold = thresholds::usual;

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, int width, int height, Table<T> dst, auto count)
    {
        using Src = decltype(src);
        if constexpr (F == S || F == L) {
            const bool record = src.stride1 == std::int64_t(width) * src.elementSize;
            const int order = width == height ? width : 0;
            return withOrder(order, [&](auto n) {
                if constexpr (n > 0)
                    return eachPack<T>(count, [&]<class V>(Objects<V> k) {
                        auto x = load<n, n>(src, k);
                        eachElement<n, n>([&](int i, int j) { x(i, j) = squared(x(i, j)); });
                        storePack<V>(dst.p + k.first, rootOf(sumOfMany<n * n>(x.e[0])));
                        return KeslStatus(keslStatusOk);
                    });
                if constexpr (F == S && Src::isArray) { // orders 1 and 2
                    const std::int64_t each = std::int64_t(width) * height;
                    const auto ofRuns = [&](auto elements) {
                        return sumsOfRuns<elements>(dst.p, count, src.p, toSquare, toRoot), KeslStatus(keslStatusOk);
                    };
                    const bool runs = record && src.stride0 == each * src.elementSize;
                    if (runs && each == 1) return ofRuns(Fixed<1>{});
                    if (runs && each == 4) return ofRuns(Fixed<4>{});
                }
                for (int k = 0; k < count; ++k)
                    dst.p[k] = rootOf(record ? run<T>(src.address(k), std::int64_t(width) * height)
                                             : byRows<T>(src, k, width, height));
                return KeslStatus(keslStatusOk);
            });
        } else if constexpr (!Src::isArray && F == S2 && sizeof(T) == 4) {
            const bool contiguous = src.stride2 == src.elementSize, square = width == height && width < 7;
            T sum = 0;
            if (square || !contiguous) sum = byRows<T>(src, 0, width, height);
            else if (src.stride1 == std::int64_t(width) * src.elementSize) sum = run<T>(src.p, std::int64_t(width) * height);
            else
                for (int i = 0; i < height; ++i) sum = run<T>(&src.object(0, height, width)(i, 0), width, sum);
            *dst.p = rootOf(sum);
            return keslStatusOk;
        } else {
            bool packs = false;
            if constexpr (Src::isArray && !inL(F)) packs = isSideBySide(src);
            const auto at = [&]<class V>(int k, int i, int j) {
                return squared(valueIn<true, V>(seen(src, k, width), i, j));
            };
            const auto sum = [&]<class V>(int k) {
                V s{};
                if constexpr (F == P) {
                    const std::int64_t all = std::int64_t(width) * height;
                    const ListedElements<const T> e = {src.p, seen(src, k, width).shift, 0, 1};
                    for (std::int64_t j = 0; j + 1 < all; j += 2)
                        s = s + (squared(valueIn<true, V>(e, 0, j)) + squared(valueIn<true, V>(e, 0, j + 1)));
                    if (all % 2) s = s + squared(valueIn<true, V>(e, 0, all - 1));
                } else
                    for (int i = 0; i < height; ++i)
                        for (int j = 0; j < width; ++j) s = s + at.template operator()<V>(k, i, j);
                return rootOf(s);
            };
            int k = 0;
            if (packs)
                for (; count - k >= lanes<Pack<T>>; k += lanes<Pack<T>>)
                    storePack(dst.p + k, sum.template operator()<Pack<T>>(k));
            for (; k < count; ++k) dst.p[k] = sum.template operator()<T>(k);
            return keslStatusOk;
        }
    }

    template <class T> static T run(const T* p, std::int64_t n, T sum = 0)
    {
        return sumOfMany<T>(
            n, [=]<class V>(std::int64_t k) { return squared(loadPack<V>(p + k)); }, sum);
    }
    template <class T> static T byRows(const auto& src, int k, int width, int height)
    {
        const auto a = seen(src, k, width);
        T sum = 0;
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) sum = sum + squared(a(i, j));
        return sum;
    }
};
struct FrobNorm_m : FrobNorm {};
struct FrobNorm_ma : FrobNorm {
    static unsigned measure(unsigned width, unsigned height, unsigned count) { return width * height * count; }
};

// ---- keslTrace: the sum of the diagonal; other orders than 3 to 6 in ascending order from zero.
struct Trace {
    static constexpr Threshold threshold = thresholds::usual;

    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src, int order, Table<T> dst, auto count)
    {
        bool packs = false;
        if constexpr (decltype(src)::isArray && !inL(F)) packs = isSideBySide(src);
        const auto at = [&]<class V>(int k, std::int64_t i) { return valueIn<true, V>(seen(src, k, order), i, i); };
        const auto same = [](auto x) { return x; };
        if constexpr (F == S && decltype(src)::isArray) {
            const int row = 2 * src.elementSize;
            if (order == 2 && src.stride1 == row && src.stride0 == 2 * row)
                return sumsOfRuns<4, 3>(dst.p, count, src.p, same, same), KeslStatus(keslStatusOk);
        }
        withOrder(order, [&](auto n) {
            if constexpr (n > 0) {
                const auto sum = [&]<class V>(int k) {
                    V d[+n];
                    eachElement<1, n>([&](int, int i) { d[i] = at.template operator()<V>(k, i); });
                    storePack<V>(dst.p + k, sumOfFew<n, aheadInTrace[n - 3]>(d));
                };
                int k = 0;
                if (packs)
                    for (; count - k >= lanes<Pack<T>>; k += lanes<Pack<T>>) sum.template operator()<Pack<T>>(k);
                for (; k < count; ++k) sum.template operator()<T>(k);
            } else sumsInOrder(dst.p, count, order, packs, at, same);
        });
        return keslStatusOk;
    }
};
struct Trace_m : Trace {};
struct Trace_ma : Trace {
    static unsigned measure(unsigned order, unsigned count) { return order * count; }
};

} // namespace kesl

// clang-format off
// ---- Their functions, by module: the kind of src.
#define KESL_L2NORM(as, F, T, k) as##_in(k, src, F, T), as##_table(KESL_T_##T, dst, 1), as##_size(len)
#define KESL_L2NORMS(as, F, T, k) KESL_L2NORM(as, F, T, k), as##_count(count)
#define KESL_FROBNORM(as, F, T, k) as##_in(k, src, F, T), as##_size(width), as##_size(height), as##_table(KESL_T_##T, dst, 1)
#define KESL_FROBNORMS(as, F, T, k) KESL_FROBNORM(as, F, T, k), as##_count(count)
#define KESL_TRACE(as, F, T, k) as##_in(k, src, F, T), as##_size(widthHeight), as##_table(KESL_T_##T, dst, 1)
#define KESL_TRACES(as, F, T, k) KESL_TRACE(as, F, T, k), as##_count(count)

#define KESL_L2NORM_V(X) X(L2Norm, v, KESL_L2NORM, v)
#define KESL_L2NORM_VA(X) X(L2Norm, va, KESL_L2NORMS, va)
#define KESL_FROBNORM_M(X) X(FrobNorm, m, KESL_FROBNORM, m)
#define KESL_FROBNORM_MA(X) X(FrobNorm, ma, KESL_FROBNORMS, ma)
#define KESL_TRACE_M(X) X(Trace, m, KESL_TRACE, m)
#define KESL_TRACE_MA(X) X(Trace, ma, KESL_TRACES, ma)
