// Matrices at least as high as wide. Of 3 to 6 columns they have fixed bodies: square ones with all sizes known to the
// compiler, the others, up to a height, with the number of rows as it comes.
#pragma once
#include "frame/any_order.h"

namespace kesl {

// f(width, height), each an int or a Fixed; width Fixed<0> stands for what has no fixed body. width <= height.
[[gnu::always_inline]] inline auto withShape(int width, int height, auto f)
{
    return withOrder(width == height || height <= tallest ? width : 0, [&](auto w) KESL_INLINE {
        if constexpr (w == 0) return f(w, height);
        else if (width == height) return f(w, w);
        else if (height > w) return f(w, height);
        else __builtin_unreachable();
    });
}
template <class H> constexpr int rowsOf = [] {
    if constexpr (isFixed<H>) return H::value;
    else return tallest;
}();

// g(i) for i = first .. n - 1, written out if n is Fixed.
[[gnu::always_inline]] inline void upTo(int first, auto n, auto g)
{
    const int end = n;
    if constexpr (isFixed<decltype(n)>)
#pragma GCC unroll 8
        for (int i = first; i < end; ++i) g(i);
    else
        for (int i = first; i < end; ++i) g(i);
}
// The same for rows. The compiler would gather the columns of a single matrix to packs, which takes longer than it saves: what
// it cannot see through keeps it from that.
[[gnu::always_inline]] inline void downTo(int first, auto n, auto g)
{
    upTo(first, n, [&](int i) KESL_INLINE {
        asm("");
        g(i);
    });
}

// One reflector for each column, but none for the last of a square matrix.
template <class W, class H> constexpr auto reflectors(W width, H height)
{
    if constexpr (isFixed<H>) return Fixed<W::value - (W::value == H::value)>{};
    else if constexpr (isFixed<W>) return width; // square ones have a Fixed height
    else return width < height ? width : width - 1;
}

// ---- Rows of a block, or the elements of a vector, from and to memory.
template <int height, int width, class V> [[gnu::always_inline]] inline void
loadRows(const InPacks<const ElementOf<V>>& src, Objects<V> k, Block<V, height, width>& x, auto rows)
{
    if constexpr (isFixed<decltype(rows)>) load(src, k, x);
    else loadTall<V, width>(src, k.first, x.e[0], rows);
}
template <int height, int width, class V> [[gnu::always_inline]] inline void
storeRows(const InPacks<ElementOf<V>>& dst, Objects<V> k, const Block<V, height, width>& x, auto rows)
{
    if constexpr (isFixed<decltype(rows)>) store(dst, k, x);
    else storeTall<V, width>(dst, k.first, x.e[0], rows);
}
template <int height, class V>
[[gnu::always_inline]] inline void loadLength(const auto& src, Objects<V> k, Block<V, 1, height>& x, auto length)
{
    if constexpr (isFixed<decltype(length)>) load(src, k, x);
    else loadVector<V>(src, k.first, x.e[0], length);
}

} // namespace kesl
