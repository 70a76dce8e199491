// Lower triangles: blocks of which only the elements on and below the diagonal are used, and no other is written.
#pragma once
#include "frame/elements.h"

#include <cstring>

namespace kesl {

// f(i, j) row by row, written out.
template <int n> [[gnu::always_inline]] inline void eachLower(auto f)
{
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i)
#pragma GCC unroll 8
        for (int j = 0; j <= i; ++j) f(i, j);
}

// Two elements of each object, of 4 bytes each, as one of 8.
template <class V> [[gnu::always_inline]] inline void scatterPairs(auto at, V x, V y)
{
    using D = Pack<double, sizeof(V)>;
    const D low = D(interleave<false>(x, y)), high = D(interleave<true>(x, y));
#pragma GCC unroll 16
    for (int l = 0; l < lanes<D>; ++l) {
        const double pair = low[l], next = high[l];
        std::memcpy(at(l / 2 * 4 + l % 2), &pair, sizeof pair);
        std::memcpy(at(l / 2 * 4 + l % 2 + 2), &next, sizeof next);
    }
}

template <int n, class V, class O> [[gnu::always_inline]] inline Block<V, n, n> loadLower(const O& src, Objects<V> k)
{
    Block<V, n, n> x;
    if constexpr (!O::isArray) {
        const auto object = src.object(0, n, n);
        eachLower<n>([&](int i, int j) KESL_INLINE { x(i, j) = splat<V>(object(i, j)); });
    } else if constexpr (contiguousRows(O::form)) {
        if (src.stride1 == n * O::elementSize) return load<n, n, true>(src, k); // what is above lies between what is below
        const auto at = lanesOf(src, k.first);
        [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
            (loadRun<i + 1>(movedRow(at, std::int64_t(i) * src.stride1), x.e[i]), ...);
        }(std::make_integer_sequence<int, n>{});
    } else eachLower<n>([&](int i, int j) KESL_INLINE { x(i, j) = loadElement<V>(src, k.first, i, j, n); });
    return x;
}
template <int n, class V, class O>
[[gnu::always_inline]] inline void storeLower(const O& dst, Objects<V> k, const Block<V, n, n>& x)
{
    if constexpr (contiguousRows(O::form)) {
        const auto at = lanesOf(dst, k.first);
        [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
            (
                [&]() KESL_INLINE {
                    const auto row = movedRow(at, std::int64_t(i) * dst.stride1);
                    if constexpr (O::elementSize == 4 && (i == 1 || i == 2)) {
                        scatterPairs(row, x(i, 0), x(i, 1));
                        if constexpr (i == 2) scatter(row + 2, x(i, 2));
                    } else storeRun<i + 1>(row, x.e[i]);
                }(),
                ...);
        }(std::make_integer_sequence<int, n>{});
    } else eachLower<n>([&](int i, int j) KESL_INLINE { storeElement(dst, k.first, i, j, n, x(i, j)); });
}

} // namespace kesl
