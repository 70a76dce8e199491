// Packs of what is not a block of fixed size: runs of any length, and single elements.
#pragma once
#include "frame/blocks.h"

#include <algorithm>

namespace kesl {

// ---- loadRun and storeRun of blocks.h with n as it comes, at least 16 bytes.
template <class V> [[gnu::always_inline]] inline void loadRun(auto at, V* x, int n)
{
    constexpr int most = perPiece<sizeof(V), V>, least = perPiece<16, V>;
    int e = 0;
    for (; e <= n - most; e += most) loadPieces<sizeof(V)>(at + e, x + e);
    for (; e < n; e += least) {
        const int from = std::min(e, n - least);
        loadPieces<16>(at + from, x + from);
    }
}
template <class V> [[gnu::always_inline]] inline void storeRun(auto at, const V* x, int n)
{
    constexpr int most = perPiece<sizeof(V), V>, least = perPiece<16, V>;
    int e = 0;
    for (; e <= n - most; e += most) storePieces<sizeof(V)>(at + e, x + e);
    for (; e < n; e += least) {
        const int from = std::min(e, n - least);
        storePieces<16>(at + from, x + from);
    }
}

template <class T> Spaced<T> spaced(T* first, std::int64_t stride0) { return {first, stride0}; }

// ---- Element (i, j) of objects first, first + 1, ..., where rows are not contiguous.
template <class V, class O> [[gnu::always_inline]] inline V loadElement(const O& o, int first, int i, int j, int width)
{
    if constexpr (inL(O::form)) return gathered<V>([&](int l) { return &o.stored(first + l, width)(i, j); });
    else {
        auto* const p = &o.stored(first, width)(i, j);
        return o.stride0 == o.elementSize ? loadPack<V>(p) : gathered<V>(spaced(p, o.stride0));
    }
}
template <class V, class O>
[[gnu::always_inline]] inline void storeElement(const O& o, int first, int i, int j, int width, V x)
{
    if constexpr (inL(O::form)) scatter([&](int l) { return &o.stored(first + l, width)(i, j); }, x);
    else {
        auto* const p = &o.stored(first, width)(i, j);
        if (o.stride0 == o.elementSize) storePack<V>(p, x);
        else scatter(spaced(p, o.stride0), x);
    }
}

} // namespace kesl
