// keslDotProduct: the inner product of two vectors.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "products/sums.h"

#include <functional>

namespace kesl {

// ---- The order of a sum in lengths 3 to 6: how many of the last products come ahead of the others, which ascend.
// Deliberate: one or two of them in the kernels for any stride2.
// clang-format off
//                                      length 3  4  5  6
constexpr int aheadInDot[2][4] =  {          { 0, 0, 0, 0 },   // S  L  P
                                             { 0, 1, 1, 2 } }; // S2  LS2
// clang-format on

struct DotProduct {
    static constexpr Threshold threshold = thresholds::dotProducts;

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto a, auto b, Table<T> dst, int len, auto count)
    {
        using A = decltype(a);
        using B = decltype(b);
        const auto ofLength = [&](auto n, auto sum) {
            return withRuns<n>(
                [&](auto x, auto y) {
                    return eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                        V p[+n];
                        termsOf<n>(k, p, std::multiplies{}, x, y);
                        storePack<V>(dst.p + k.first, sum(p));
                        return KeslStatus(keslStatusOk);
                    });
                },
                a, b);
        };
        if constexpr (F == S && A::isArray)
            if (len == 2) return ofLength(Fixed<2>{}, []<class V>(const V* p) { return V{} + p[0] + p[1]; });
        return withOrder(len, [&](auto n) {
            if constexpr (n > 0) {
                constexpr int length = n, ahead = aheadInDot[F == S2 || F == LS2][n - 3];
                return ofLength(n, [](const auto* p) { return sumOfFew<length, ahead>(p); });
            } else if constexpr (F == S && !A::isArray && !B::isArray) {
                *dst.p =
                    sumOfMany<T>(len, [&]<class V>(std::int64_t k) { return loadPack<V>(a.p + k) * loadPack<V>(b.p + k); });
            } else {
                bool packs = false;
                if constexpr (A::isArray && !inL(F)) packs = isSideBySide(a) && isSideBySide(b);
                sumsInOrder(
                    dst.p, count, len, packs,
                    [&]<class V>(int k, std::int64_t j) {
                        return valueIn<A::isArray, V>(seen(a, k, 0), j, 0) * valueIn<B::isArray, V>(seen(b, k, 0), j, 0);
                    },
                    [](auto sum) { return sum; });
            }
            return KeslStatus(keslStatusOk);
        });
    }
};
struct DotProduct_vv : DotProduct {};
struct DotProduct_vav : DotProduct {
    static unsigned measure(unsigned len, unsigned count) { return len * (count + 1); }
};
struct DotProduct_vava : DotProduct {
    static unsigned measure(unsigned len, unsigned count) { return 2 * len * count; }
};

} // namespace kesl

// clang-format off
// ---- Their functions, by module: the kinds of src1 and src2.
#define KESL_DOT(as, F, T, a, b) as##_in(a, src1, F, T), as##_in(b, src2, F, T), as##_table(KESL_T_##T, dst, 1), as##_size(len)
#define KESL_DOTS(as, F, T, a, b) KESL_DOT(as, F, T, a, b), as##_count(count)

#define KESL_DOT_VV(X) X(DotProduct, vv, KESL_DOT, v, v)
#define KESL_DOT_VAV(X) X(DotProduct, vav, KESL_DOTS, va, v)
#define KESL_DOT_VAVA(X) X(DotProduct, vava, KESL_DOTS, va, va)
