// Orders without a body of their own, 1, 2 and 7 upward, by packs of objects: blocks whose size is known at run time only stand
// row by row in local storage, and a body does in each lane what the common code does with one object.
#pragma once
#include "frame/array_blocks.h"

namespace kesl {

constexpr int tallestSquare = 16, tileElements = tallestSquare * tallestSquare; // of a pack each: at most 16 KiB
constexpr bool fitsTile(int height, int width)
{
    return height <= tallest && width <= tallest && height * width <= tileElements;
}

template <class V> struct Tile {
    V* e;
    int width;
    V& operator()(int i, int j) const { return e[i * width + j]; }
    V* row(int i) const { return e + i * width; }
};

// body(Objects<V>) as in eachPack, with the size of a block that a body has to hold; large ones go one by one. A body is
// KESL_ONCE, so that the tiles of packs of different widths are not on the stack at once.
template <class T, Packs packs = Packs{}>
[[gnu::always_inline]] inline KeslStatus eachTile(int height, int width, int count, const auto& src, auto body)
{
    if (fitsTile(height, width)) return eachPack<T, packs>(count, src, body);
    return eachObject(count, [&](int k) { return body(Objects<T>{k}); });
}
template <class V>
[[gnu::always_inline]] inline void load(const InPacks<const ElementOf<V>>& src, Objects<V> k, Tile<V> x, int height)
{
    loadTile(src, k.first, x.e, height, x.width);
}
template <class V>
[[gnu::always_inline]] inline void store(const InPacks<ElementOf<V>>& dst, Objects<V> k, Tile<V> x, int height)
{
    storeTile(dst, k.first, x.e, height, x.width);
}
// A lower triangle, and nothing above the diagonal but what lies inside a record.
template <class V>
[[gnu::always_inline]] inline void loadLower(const InPacks<const ElementOf<V>>& src, Objects<V> k, Tile<V> x, int n)
{
    if (src.lie < Lie::rows) loadTile(src, k.first, x.e, n, n);
    else loadRowsApart(src, k.first, x.e, n, n, true);
}
template <class V>
[[gnu::always_inline]] inline void storeLower(const InPacks<ElementOf<V>>& dst, Objects<V> k, Tile<V> x, int n)
{
    storeRowsApart(dst, k.first, x.e, n, n, true);
}

// n elements of each object, which a table holds one behind another.
template <class V> [[gnu::always_inline]] inline void storeTable(Table<ElementOf<V>> table, Objects<V> k, const V* x, int n)
{
    ElementOf<V>* const first = table.object(k.first);
    if (n == 1) storePack(first, x[0]);
    else if (n == 2) storeTable<2>(first, x);
    else storeRun(Spaced<ElementOf<V>>{first, n * std::int64_t(sizeof(ElementOf<V>))}, x, n);
}

// Lane l of x[row[l]].
template <class V> [[gnu::always_inline]] inline V fromRows(const V* x, MaskOf<V> row, int width = 1)
{
    const auto* const elements = reinterpret_cast<const Unaligned<V>*>(x);
    V result;
#pragma GCC unroll 16
    for (int l = 0; l < lanes<V>; ++l) result[l] = elements[row[l] * width][l];
    return result;
}

// ---- Elimination with partial pivoting: rows are exchanged lane by lane.
template <class V> [[gnu::always_inline]] inline void exchange(MaskOf<V> where, V& x, V& y)
{
    const V t = x;
    x = where ? y : x;
    y = where ? t : y;
}
// Where |a(i, k)| is greatest, for i = k .. n - 1; of equal ones the first.
template <class V> [[gnu::always_inline]] inline MaskOf<V> pivotRow(Tile<V> a, int k, int n, V& best)
{
    MaskOf<V> q = MaskOf<V>{} + k;
    best = abs(a(k, k));
    for (int i = k + 1; i < n; ++i) {
        const V x = abs(a(i, k));
        q = x > best ? MaskOf<V>{} + i : q;
        best = x > best ? x : best;
    }
    return q;
}
// Rows k and q from column k on.
template <class V> [[gnu::always_inline]] inline void exchangeRows(Tile<V> a, int k, MaskOf<V> q, int n)
{
    for (int i = k + 1; i < n; ++i)
        if (const MaskOf<V> here = q == i; any(here))
            for (int j = k; j < n; ++j) exchange(here, a(k, j), a(i, j));
}

} // namespace kesl
