// Vectors one behind another, without a gap: a run of n packs holds n elements of as many objects as a pack has lanes.
// Whole packs and shuffles of two cost half of what pieces of each object take, and less.
#pragma once
#include "frame/lanes.h"

#include <algorithm>

namespace kesl {

// A run of three packs of four lanes, n = 3 (object.element), and the same elements sorted by index:
//
//     memory   0.0 0.1 0.2 1.0 | 1.1 1.2 2.0 2.1 | 2.2 3.0 3.1 3.2
//     sorted   0.0 1.0 2.0 3.0 | 0.1 1.1 2.1 3.1 | 0.2 1.2 2.2 3.2
//
// Each sorted pack takes elements of all packs of the run: it is built in steps, and in step s what comes from pack s joins
// what came from those before it. If n is even and above 2, halves of packs are sorted: pack j then gets element 2j of half of the
// objects and behind them 2j + 1 of the same ones; two such rounds serve all objects, and halves are exchanged in the end.
template <int n> constexpr int partsOfRun = n == 2 ? 1 : 2 - n % 2;
template <int n, int lanes, int parts> struct Sorting {
    static constexpr int objects = lanes / parts;
    template <int j, int s> struct Sort {
        static constexpr int of(int l)
        {
            const int flat = l % objects * n + parts * j + l / objects, from = flat / lanes;
            return from == s ? lanes + flat % lanes : s == 1 && from == 0 ? flat % lanes : l;
        }
    };
    template <int j, int s> struct Unsort {
        static constexpr int of(int l)
        {
            const int flat = j * lanes + l, element = flat % n, from = element / parts;
            const int lane = element % parts * objects + flat / n;
            return from == s ? lanes + lane : s == 1 && from == 0 ? lane : l;
        }
    };
};
template <template <int, int> class Step, int m, class V> [[gnu::always_inline]] inline void inSteps(const V* x, V* y)
{
    [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
        ((y[i % m] = shuffled<Step<i % m, 1 + i / m>, lanes<V>>(i < m ? x[0] : y[i % m], x[1 + i / m])), ...);
    }(std::make_integer_sequence<int, m*(m - 1)>{});
}

template <int lanes, bool upper> struct Halves { // of two packs
    static constexpr int of(int l) { return l % (lanes / 2) + upper * lanes / 2 + l / (lanes / 2) * lanes; }
};
template <class V> [[gnu::always_inline]] inline void exchangeHalves(const V* x, const V* y, V* low, V* high)
{
    const V a = *x, b = *y;
    *low = shuffled<Halves<lanes<V>, false>, lanes<V>>(a, b), *high = shuffled<Halves<lanes<V>, true>, lanes<V>>(a, b);
}

// x: a run as it lies in memory; y: element j of all objects in y[j]. And back.
template <int n, class V> [[gnu::always_inline]] inline void runToObjects(const V* x, V* y)
{
    constexpr int parts = partsOfRun<n>, m = n / parts;
    using By = Sorting<n, lanes<V>, parts>;
    if constexpr (lanes<V> == 1) std::copy_n(x, n, y);
    else if constexpr (parts == 1) inSteps<By::template Sort, n>(x, y);
    else {
        V first[m], second[m];
        inSteps<By::template Sort, m>(x, first), inSteps<By::template Sort, m>(x + m, second);
#pragma GCC unroll 4
        for (int j = 0; j < m; ++j) exchangeHalves(first + j, second + j, y + 2 * j, y + 2 * j + 1);
    }
}
template <int n, class V> [[gnu::always_inline]] inline void objectsToRun(const V* y, V* x)
{
    constexpr int parts = partsOfRun<n>, m = n / parts;
    using By = Sorting<n, lanes<V>, parts>;
    if constexpr (lanes<V> == 1) std::copy_n(y, n, x);
    else if constexpr (parts == 1) inSteps<By::template Unsort, n>(y, x);
    else {
        V first[m], second[m];
#pragma GCC unroll 4
        for (int j = 0; j < m; ++j) exchangeHalves(y + 2 * j, y + 2 * j + 1, first + j, second + j);
        inSteps<By::template Unsort, m>(first, x), inSteps<By::template Unsort, m>(second, x + m);
    }
}

} // namespace kesl
