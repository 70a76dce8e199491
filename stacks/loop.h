// Tiles and their transposes; sizes that have code of their own.
#pragma once
#include "stacks/tile.h"

namespace kesl::stacks {

// y = the transpose of x.
template <class V, class N, class M> [[gnu::always_inline]] inline void transpose(const Tile<V, N, M>& x, Tile<V, M, N>& y)
{
    loop<N>(0, x.n, [&](int i) KESL_INLINE { loop<M>(0, x.m, [&](int j) KESL_INLINE { y(j, i) = x(i, j); }); });
}
template <class V, class N> [[gnu::always_inline]] inline void transpose(Tile<V, N, N>& x)
{
    loop<N>(0, x.n, [&](int i) KESL_INLINE { loop<N>(0, i, [&](int j) KESL_INLINE { std::swap(x(i, j), x(j, i)); }); });
}

// f(Fixed<n>) for sizes up to `last`, which have code of their own, and f(int) for any other.
template <int last> [[gnu::always_inline]] inline auto withFixed(std::ptrdiff_t n, auto f)
{
    if constexpr (last == 0) return f(int(n));
    else return n == last ? f(Fixed<last>{}) : withFixed<last - 1>(n, f);
}
// The same for square matrices, f(Fixed<n>, Fixed<n>), and f(int, int) for any other.
template <int last> [[gnu::always_inline]] inline auto withSquare(std::ptrdiff_t m, std::ptrdiff_t n, auto f)
{
    const auto square = [&]<class N>(N order) {
        if constexpr (isFixed<N>) return f(order, order);
        else return f(int(m), int(n));
    };
    return withFixed<last>(m == n ? n : largestSize, square);
}

} // namespace kesl::stacks
