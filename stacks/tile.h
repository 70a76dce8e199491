// Tiles: n by m packs on the stack, one object in each lane. The sizes are Fixed<n> or come with the call; the same text
// serves both: the compiler writes out loops up to a fixed n.
#pragma once
#include "frame/lanes.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace kesl::stacks {

template <int n> using Fixed = std::integral_constant<int, n>;
constexpr int largestSize = 32; // the largest size that comes with the call

template <class N> struct Rows {
    int n;
    N rows() const { return n; }
};
template <class M> struct Columns {
    int m;
    M columns() const { return m; }
};
template <int size> struct Rows<Fixed<size>> {
    static constexpr int n = size;
    explicit Rows(Fixed<size>) {}
    Fixed<size> rows() const { return {}; }
};
template <int size> struct Columns<Fixed<size>> {
    static constexpr int m = size;
    explicit Columns(Fixed<size>) {}
    Fixed<size> columns() const { return {}; }
};

template <class N> constexpr int most = largestSize;
template <int n> constexpr int most<Fixed<n>> = n;
template <class N> constexpr bool isFixed = !std::is_integral_v<N>;

template <class V, class N, class M> struct Tile : Rows<N>, Columns<M> {
    V e[most<N> * most<M>];

    Tile(N height, M width) : Rows<N>{height}, Columns<M>{width} {}
    V& operator()(int i, int j) { return e[i * this->m + j]; }
    const V& operator()(int i, int j) const { return e[i * this->m + j]; }
};

// f(tile, column) for all columns of an n by k matrix: one by one if n is Fixed, otherwise as many as a tile has.
template <class V, class N> [[gnu::always_inline]] inline void eachPanel(N n, std::ptrdiff_t k, auto f)
{
    if constexpr (isFixed<N>)
        for (std::ptrdiff_t column = 0; column < k; ++column) {
            Tile<V, N, Fixed<1>> panel(n, {});
            f(panel, column);
        }
    else
        for (std::ptrdiff_t column = 0; column < k; column += largestSize) {
            Tile<V, N, int> panel(n, int(std::min<std::ptrdiff_t>(k - column, largestSize)));
            f(panel, column);
        }
}

// f(i) for i = from .. to - 1. Where the size N is fixed it is written out, so that tiles live in registers.
template <class N> [[gnu::always_inline]] inline void loop(int from, int to, auto f)
{
    if constexpr (isFixed<N>)
#pragma GCC unroll 16
        for (int i = from; i < to; ++i) f(i);
    else
#pragma GCC unroll 1
        for (int i = from; i < to; ++i) f(i);
}

// The same downwards, from to - 1 to from.
template <class N> [[gnu::always_inline]] inline void loopDown(int from, int to, auto f)
{
    loop<N>(from, to, [&](int i) KESL_INLINE { f(from + to - 1 - i); });
}

// f(i, j) for all elements of a tile, row by row; and for those of the lower triangle.
template <class V, class N, class M> [[gnu::always_inline]] inline void each(const Tile<V, N, M>& x, auto f)
{
    loop<N>(0, x.n, [&](int i) KESL_INLINE { loop<M>(0, x.m, [&](int j) KESL_INLINE { f(i, j); }); });
}
template <class V, class N> [[gnu::always_inline]] inline void eachOfLower(const Tile<V, N, N>& x, auto f)
{
    loop<N>(0, x.n, [&](int i) KESL_INLINE { loop<N>(0, i + 1, [&](int j) KESL_INLINE { f(i, j); }); });
}

// One int for each lane, as wide as the lane: a mask, an index, an info.
template <class V> using IndexOf = MaskOf<V>;
template <class V> IndexOf<V> index(int i) { return IndexOf<V>{} + i; }

template <class V> V notANumber() { return splat<V>(std::numeric_limits<ElementOf<V>>::quiet_NaN()); }

// Lanes where an element of the tile is NaN or infinite.
template <class V, class N, class M> IndexOf<V> notFinite(const Tile<V, N, M>& x)
{
    V zeros{};
    each(x, [&](int i, int j) KESL_INLINE { zeros += x(i, j) - x(i, j); });
    return zeros != 0;
}

// The same for what is read of a symmetric matrix or a factor: its lower triangle.
template <class V, class N> IndexOf<V> lowerNotFinite(const Tile<V, N, N>& x)
{
    V zeros{};
    eachOfLower(x, [&](int i, int j) KESL_INLINE { zeros += x(i, j) - x(i, j); });
    return zeros != 0;
}

// Puts the identity into the lanes of a mask, so that an iteration ends there; and NaN, as the results of a failure.
template <class V, class N, class M> [[gnu::always_inline]] inline void makeHarmless(IndexOf<V> where, Tile<V, N, M>& x)
{
    each(x, [&](int i, int j) KESL_INLINE { x(i, j) = where ? splat<V>(i == j) : x(i, j); });
}
template <class V, class N, class M> [[gnu::always_inline]] inline void spoil(IndexOf<V> where, Tile<V, N, M>& x)
{
    each(x, [&](int i, int j) KESL_INLINE { x(i, j) = where ? notANumber<V>() : x(i, j); });
}

// f(Fixed<n>) for orders that have code of their own, and f(Rest) for any other.
template <class Rest = int> [[gnu::always_inline]] inline auto withOrder(std::ptrdiff_t n, auto f)
{
    switch (n) {
    case 1: return f(Fixed<1>{});
    case 2: return f(Fixed<2>{});
    case 3: return f(Fixed<3>{});
    case 4: return f(Fixed<4>{});
    case 5: return f(Fixed<5>{});
    case 6: return f(Fixed<6>{});
    default: return f(Rest(n));
    }
}

} // namespace kesl::stacks
