// One value for each object, from a sum of terms: dot products, norms and traces.
#pragma once
#include "frame/map.h"
#include "products/rows.h"
#include "products/tiles.h"

namespace kesl {

// ---- term(x(j), y(j) ...) for each of the n elements of vectors x, y ...: of runs before their elements are sorted.
template <int n, class V> [[gnu::always_inline]] inline void termsOf(Objects<V> k, V* p, auto term, const auto&... x)
{
    if constexpr (lanes<V> > 1 && (isRun<std::decay_t<decltype(x)>> && ...)) {
        V run[n];
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i) run[i] = term(loadPack<V>(x.address(k.first) + i * lanes<V>)...);
        return runToObjects<n>(run, p);
    }
    [&](const auto&... block) KESL_INLINE {
#pragma GCC unroll 8
        for (int j = 0; j < n; ++j) p[j] = term(block(0, j)...);
    }(load<1, n>(x, k)...);
}

// ---- The sum of many terms of one object, in an order that is the same on every processor: sixteen sums, the l-th of
// which takes the terms l, l + 16, l + 32 ... from zero on, and then the upper half of these is added to the lower,
// four times. Fewer than eight terms are added in ascending order, to `sum`.
constexpr int manySums = 16;

template <class T> T ascending(std::int64_t n, auto term, T sum = 0)
{
    for (std::int64_t k = 0; k < n; ++k) sum = sum + term.template operator()<T>(k);
    return sum;
}
// term.operator()<V>(k) gives the terms k, k + 1 ... of as many as V has lanes.
template <class T> T sumOfMany(std::int64_t n, auto term, T sum = 0)
{
    if (n < 8) return ascending(n, term, sum);
    using V = Pack<T, std::min(widest, manySums * int(sizeof(T)))>;
    constexpr int packs = manySums / lanes<V>;
    V sums[packs] = {};
    T s[manySums];
    std::int64_t k = 0;
    for (; k + manySums <= n; k += manySums)
#pragma GCC unroll 8
        for (int p = 0; p < packs; ++p) sums[p] = sums[p] + term.template operator()<V>(k + p * lanes<V>);
    for (int p = 0; p < packs; ++p) storePack<V>(s + p * lanes<V>, sums[p]);
    for (int l = 0; k < n; ++k, ++l) s[l] = s[l] + term.template operator()<T>(k);
    for (int half = manySums / 2; half > 0; half /= 2)
        for (int l = 0; l < half; ++l) s[l] = s[l] + s[l + half];
    return sum + s[0];
}
// The same sum of n terms that are at hand, in each lane.
template <int n, class V> [[gnu::always_inline]] inline V sumOfMany(const V* term)
{
    static_assert(n >= 8);
    V s[manySums];
#pragma GCC unroll 16
    for (int l = 0; l < manySums; ++l) {
        s[l] = V{};
#pragma GCC unroll 4
        for (int k = l; k < n; k += manySums) s[l] = s[l] + term[k];
    }
#pragma GCC unroll 4
    for (int half = manySums / 2; half > 0; half /= 2)
#pragma GCC unroll 8
        for (int l = 0; l < half; ++l) s[l] = s[l] + s[l + half];
    return s[0];
}
// The sum of n terms with the last `ahead` of them first.
template <int n, int ahead, class V> [[gnu::always_inline]] inline V sumOfFew(const V* x)
{
    V sum = x[term(0, n, ahead)];
#pragma GCC unroll 36
    for (int k = 1; k < n; ++k) sum = sum + x[term(k, n, ahead)];
    return sum;
}

// ---- dst[k] = finish(sum) for all objects, where the sums are in ascending order from zero.
// at.operator()<V>(k, j) is term j of the objects k, k + 1 ... in the lanes of V; packs only if `sideBySide`.
template <class T>
[[gnu::always_inline]] inline void sumsInOrder(T* dst, auto count, std::int64_t n, bool packs, auto at, auto finish)
{
    int done = 0;
    if (packs)
        for (; count - done >= lanes<Pack<T>>; done += lanes<Pack<T>>) {
            auto sum = Pack<T>{};
            for (std::int64_t j = 0; j < n; ++j) sum = sum + at.template operator()<Pack<T>>(done, j);
            storePack(dst + done, finish(sum));
        }
    // Four objects at a time, as each sum has to wait for itself.
    byFours(count - done, [&](auto r, std::int64_t i) {
        T sum[+r] = {};
        for (std::int64_t j = 0; j < n; ++j)
            for (int o = 0; o < r; ++o) sum[o] = sum[o] + at.template operator()<T>(done + int(i) + o, j);
        for (int o = 0; o < r; ++o) dst[done + i + o] = finish(sum[o]);
    });
}
// The same for runs of n elements without gaps between them, by packs: of every step-th of them.
template <int n, int step = 1, class T>
[[gnu::always_inline]] inline void sumsOfRuns(T* dst, int count, const T* run, auto term, auto finish)
{
    eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
        V x[n], sum{};
        if constexpr (n == 1) x[0] = loadPack<V>(run + k.first);
        else loadTable<n>(run + std::int64_t(k.first) * n, x);
#pragma GCC unroll 4
        for (int i = 0; i < n; i += step) sum = sum + term(x[i]);
        storePack<V>(dst + k.first, finish(sum));
    });
}

} // namespace kesl
