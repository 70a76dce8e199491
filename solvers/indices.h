// Tables of row numbers, n for each object back to back, and their packs: integers as wide as the elements.
#pragma once
#include "frame/blocks.h"

namespace kesl {

template <class Index> using Narrow = typename PackOf<int, lanes<Index> * int(sizeof(int))>::type;

template <int n, class Index> [[gnu::always_inline]] inline void storeIndices(int* table, const Index* p)
{
    const Spaced<int> at{table, n * std::int64_t(sizeof(int))};
    Narrow<Index> x[n];
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) x[i] = __builtin_convertvector(p[i], Narrow<Index>);
    if constexpr (sizeof(Narrow<Index>) >= 16) storeRun<n>(at, x);
    else
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i) scatter(at + i, x[i]);
}
template <int n, class Index> [[gnu::always_inline]] inline void loadIndices(const int* table, Index* p)
{
    const Spaced<const int> at{table, n * std::int64_t(sizeof(int))};
    Narrow<Index> x[n];
    if constexpr (sizeof(Narrow<Index>) >= 16) loadRun<n>(at, x);
    else
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i) x[i] = gathered<Narrow<Index>>(at + i);
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) p[i] = __builtin_convertvector(x[i], Index);
}

} // namespace kesl
