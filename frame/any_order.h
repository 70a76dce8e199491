// Orders without a body of their own, 1, 2 and 7 upward, by packs of objects: blocks whose size is known at run time only stand
// row by row in local storage, and a body does in each lane what the common code does with one object. The same body serves
// order 2 as a size that the compiler knows, so that it stays in registers.
#pragma once
#include "frame/array_blocks.h"

namespace kesl {

constexpr int tallestSquare = 16, tileElements = tallestSquare * tallestSquare; // of a pack each: at most 16 KiB
constexpr bool fitsTile(int height, int width)
{
    return height <= tallest && width <= tallest && height * width <= tileElements;
}

template <class N> constexpr bool isFixed = !std::is_integral_v<N>; // a size: a Fixed one or an int
template <class N> constexpr int elementsOf = [] {                  // of a tile of order N
    if constexpr (isFixed<N>) return N::value * N::value;
    else return tileElements;
}();

template <class V> struct Tile {
    V* e;
    int width;
    V& operator()(int i, int j) const { return e[i * width + j]; }
    V* row(int i) const { return e + i * width; }
};

// f(order) for bodies that hold a tile: order 2 is Fixed.
[[gnu::always_inline]] inline auto withTileOrder(int order, auto f) { return order == 2 ? f(Fixed<2>{}) : f(order); }

// body(Objects<V>) as in eachPack, with the size of a block that a body has to hold; large ones go one by one. The code of a
// pack is a function where sizes come at run time, so that the tiles of packs of different widths are not on the stack at once.
template <class T, Packs packs = Packs{}>
[[gnu::always_inline]] inline KeslStatus eachTile(auto height, auto width, int count, const auto& src, auto body)
{
    if constexpr (isFixed<decltype(height)>) return eachPack<T, packs>(count, src, body);
    else {
        const auto apart = [&]<class V>(Objects<V> k) KESL_ONCE { return body(k); };
        if (fitsTile(height, width)) return eachPack<T, packs>(count, src, apart);
        return eachObject(count, [&](int k) { return apart(Objects<T>{k}); });
    }
}
// With `lower` nothing above the diagonal is used, nothing there is written, and read only inside a record.
template <bool lower = false, class V>
[[gnu::always_inline]] inline void load(const InPacks<const ElementOf<V>>& src, Objects<V> k, Tile<V> x, auto height)
{
    if constexpr (isFixed<decltype(height)>) {
        Block<V, height, height> block;
        load<lower>(src, k, block);
        eachOf<height, height, lower>([&](int i, int j) KESL_INLINE { x(i, j) = block(i, j); });
    } else if (lower && src.lie >= Lie::rows) loadRowsApart(src, k.first, x.e, height, x.width, true);
    else loadTile(src, k.first, x.e, height, x.width);
}
template <bool lower = false, class V>
[[gnu::always_inline]] inline void store(const InPacks<ElementOf<V>>& dst, Objects<V> k, Tile<V> x, auto height)
{
    if constexpr (isFixed<decltype(height)>) {
        Block<V, height, height> block;
        eachOf<height, height, lower>([&](int i, int j) KESL_INLINE { block(i, j) = x(i, j); });
        store<lower>(dst, k, block);
    } else if constexpr (lower) storeRowsApart(dst, k.first, x.e, height, x.width, true);
    else storeTile(dst, k.first, x.e, height, x.width);
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
