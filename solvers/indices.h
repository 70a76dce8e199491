// Tables of row numbers, n for each object back to back, and their packs: integers as wide as the elements.
#pragma once
#include "frame/blocks.h"

namespace kesl {

template <class Index> using Narrow = typename PackOf<int, lanes<Index>* int(sizeof(int))>::type;

template <int n, class Index> [[gnu::always_inline]] inline void storeIndices(int* table, const Index* p)
{
    Narrow<Index> x[n];
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) x[i] = __builtin_convertvector(p[i], Narrow<Index>);
    storeTable<n>(table, x);
}
template <int n, class Index> [[gnu::always_inline]] inline void loadIndices(const int* table, Index* p)
{
    Narrow<Index> x[n];
    loadTable<n>(table, x);
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) p[i] = __builtin_convertvector(x[i], Index);
}

} // namespace kesl
