// Blocks of array operands: how their elements are read and written.
//
//              lie                     read and written
//     S, L     record, run or rows     16 to 64 bytes of an object at a time, transposed in registers (blocks.h, runs.h)
//     S2, P    side by side            a pack at a time
//     S2, LS2  columns                 as rows, by functions of the library
//     others   apart                   element by element, likewise
//
// Blocks of up to 16 elements are read and written in line, so that a body finds them in registers: it stands once, behind a
// choice that is the same for all packs of a call. Larger ones go by functions that are compiled once (array_32f.cpp,
// array_64f.cpp).
#pragma once
#include "frame/array_tiles.h"

#include <cstring>

namespace kesl {

// Two elements of each object, of 4 bytes each, as one of 8.
template <class V> [[gnu::always_inline]] inline void scatterPairs(auto at, V x, V y)
{
    using D = Pack<double, sizeof(V)>;
    const D low = D(interleave<false>(x, y)), high = D(interleave<true>(x, y));
#pragma GCC unroll 16
    for (int l = 0; l < lanes<D>; ++l) {
        const double pair = low[l], next = high[l];
        std::memcpy(at(l / 2 * 4 + l % 2), &pair, sizeof pair);
        std::memcpy(at(l / 2 * 4 + l % 2 + 2), &next, sizeof next);
    }
}
// The first n elements of a row.
template <int n, class V> [[gnu::always_inline]] inline void storeLowerRow(auto at, const V* x)
{
    if constexpr (sizeof(ElementOf<V>) == 4 && (n == 2 || n == 3)) {
        scatterPairs(at, x[0], x[1]);
        if constexpr (n == 3) scatter(at + 2, x[2]);
    } else storeRun<n>(at, x);
}
template <int height, int width, bool lower> [[gnu::always_inline]] inline void eachOf(auto f)
{
#pragma GCC unroll 8
    for (int i = 0; i < height; ++i)
#pragma GCC unroll 8
        for (int j = 0; j < (lower ? i + 1 : width); ++j) f(i, j);
}
// Columns of a fixed order: a block of rows, transposed.
template <int height, int width> constexpr bool columnsAreBlocks = height == width && width >= 3;
template <class V, int n> [[gnu::noinline]] void loadColumns(const InPacks<const ElementOf<V>>& src, int first, V* x)
{
    const auto at = src.objects(first);
    Block<V, n, n> column;
    if (src.stride2 == n * int(sizeof(ElementOf<V>))) loadRun<n * n>(at, column.e[0]);
    else
#pragma GCC unroll 8
        for (int j = 0; j < n; ++j) loadRun<n>(movedRow(at, j * src.stride2), column.e[j]);
    eachElement<n, n>([&](int i, int j) KESL_INLINE { x[i * n + j] = column(j, i); });
}
template <class V, int n> [[gnu::noinline]] void storeColumns(const InPacks<ElementOf<V>>& dst, int first, const V* x)
{
    const auto at = dst.objects(first);
    Block<V, n, n> column;
    eachElement<n, n>([&](int i, int j) KESL_INLINE { column(j, i) = x[i * n + j]; });
    if (dst.stride2 == n * int(sizeof(ElementOf<V>))) return storeRun<n * n>(at, column.e[0]);
#pragma GCC unroll 8
    for (int j = 0; j < n; ++j) storeRun<n>(movedRow(at, j * dst.stride2), column.e[j]);
}
template <bool lower, class V, int height, int width>
[[gnu::always_inline]] inline void loadInLine(const InPacks<const ElementOf<V>>& src, int first, Block<V, height, width>& x)
{
    using T = const ElementOf<V>;
    const std::int64_t along = src.shift + first * src.stride0;
    const auto cell = [&](int i, int j) KESL_INLINE { return moved(src.list[i * width + j], along); };
    if constexpr (lanes<V> == 1) {
        const Grid<T> grid{src.cells ? nullptr : src.object(first), src.stride1, src.stride2};
        if (src.cells) eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = *cell(i, j); });
        else eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = grid(i, j); });
    } else if (height == 1 && src.lie == Lie::run) {
        loadTable<width>(moved(src.first, first * src.stride0), x.e[0]);
    } else if (src.lie <= Lie::rows) {
        const Listed<T> at = src.objects(first);
        if (!src.list) prefetchNext<height * width, V>(Spaced<T>{src.object(first), src.stride0});
        if (height > 1 && src.lie == Lie::rows)
            [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
                (loadRun<(lower ? i + 1 : width)>(movedRow(at, i * src.stride1), x.e[i]), ...);
            }(std::make_integer_sequence<int, height>{});
        else if constexpr (lower) { // what is above the diagonal lies between what is below
            Block<V, height, width> all;
            loadRun<height * width>(at, all.e[0]);
            eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = all(i, j); });
        } else loadRun<height * width>(at, x.e[0]);
    } else if (src.lie == Lie::sideBySide) {
        if (src.cells) eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = loadPack<V>(cell(i, j)); });
        else {
            const Grid<T> grid{moved(src.first, first * src.stride0), src.stride1, src.stride2};
            eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = loadPack<V>(&grid(i, j)); });
        }
    } else {
        Block<V, height, width> other; // so that x may stay in registers
        const bool whole = !lower || src.stride2 == width * int(sizeof(T));
        if (columnsAreBlocks<height, width> && whole && src.lie == Lie::columns)
            loadColumns<V, width>(src, first, other.e[0]);
        else loadRowsApart(src, first, other.e[0], height, width, lower);
        eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = other(i, j); });
    }
}
template <bool lower, class V, int height, int width>
[[gnu::always_inline]] inline void storeInLine(const InPacks<ElementOf<V>>& dst, int first, const Block<V, height, width>& x)
{
    using T = ElementOf<V>;
    const std::int64_t along = dst.shift + first * dst.stride0;
    const auto cell = [&](int i, int j) KESL_INLINE { return moved(dst.list[i * width + j], along); };
    if constexpr (lanes<V> == 1) {
        const Grid<T> grid{dst.cells ? nullptr : dst.object(first), dst.stride1, dst.stride2};
        if (dst.cells) eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { *cell(i, j) = x(i, j); });
        else eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { grid(i, j) = x(i, j); });
    } else if (height == 1 && dst.lie == Lie::run) {
        storeTable<width>(moved(dst.first, first * dst.stride0), x.e[0]);
    } else if (dst.lie <= Lie::rows) {
        const Listed<T> at = dst.objects(first);
        if (!dst.list) prefetchNext<height * width, V>(Spaced<T>{dst.object(first), dst.stride0});
        if constexpr (lower)
            [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
                (storeLowerRow<i + 1>(movedRow(at, i * dst.stride1), x.e[i]), ...);
            }(std::make_integer_sequence<int, height>{});
        else if (height == 1 || dst.lie != Lie::rows) storeRun<height * width>(at, x.e[0]);
        else
#pragma GCC unroll 8
            for (int i = 0; i < height; ++i) storeRun<width>(movedRow(at, i * dst.stride1), x.e[i]);
    } else if (dst.lie == Lie::sideBySide) {
        if (dst.cells) eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { storePack<V>(cell(i, j), x(i, j)); });
        else {
            const Grid<T> grid{moved(dst.first, first * dst.stride0), dst.stride1, dst.stride2};
            eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { storePack<V>(&grid(i, j), x(i, j)); });
        }
    } else {
        Block<V, height, width> other;
        eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { other(i, j) = x(i, j); });
        if (columnsAreBlocks<height, width> && !lower && dst.lie == Lie::columns)
            storeColumns<V, width>(dst, first, other.e[0]);
        else storeRowsApart(dst, first, other.e[0], height, width, lower);
    }
}
template <bool lower, class V, int height, int width>
[[gnu::noinline]] void loadLong(const InPacks<const ElementOf<V>>& src, int first, Block<V, height, width>& x)
{
    loadInLine<lower>(src, first, x);
}
template <bool lower, class V, int height, int width>
[[gnu::noinline]] void storeLong(const InPacks<ElementOf<V>>& dst, int first, const Block<V, height, width>& x)
{
    storeInLine<lower>(dst, first, x);
}

// ---- What a body uses. With `lower` nothing above the diagonal is used, and nothing there is written.
template <bool lower = false, class V, int height, int width>
[[gnu::always_inline]] inline void load(const InPacks<const ElementOf<V>>& src, Objects<V> k, Block<V, height, width>& x)
{
    if constexpr (height * width <= 16) loadInLine<lower>(src, k.first, x);
    else loadLong<lower>(src, k.first, x);
}
template <bool lower = false, class V, int height, int width>
[[gnu::always_inline]] inline void store(const InPacks<ElementOf<V>>& dst, Objects<V> k, const Block<V, height, width>& x)
{
    if constexpr (height * width <= 16) storeInLine<lower>(dst, k.first, x);
    else storeLong<lower>(dst, k.first, x);
}

// ---- The functions of the library.
// clang-format off
#define KESL_BLOCK_FUNCTIONS(how, V)                                                                                \
    KESL_LONG_FUNCTIONS(how, false, V, 5) KESL_LONG_FUNCTIONS(how, false, V, 6)                                       \
    KESL_LONG_FUNCTIONS(how, true, V, 5) KESL_LONG_FUNCTIONS(how, true, V, 6)
#define KESL_LONG_FUNCTIONS(how, lower, V, n)                                                                       \
    how template void loadLong<lower, V, n, n>(const InPacks<const ElementOf<V>>&, int, Block<V, n, n>&);               \
    how template void storeLong<lower, V, n, n>(const InPacks<ElementOf<V>>&, int, const Block<V, n, n>&);
#define KESL_PACK_FUNCTIONS(how, V)                                                                                 \
    how template void loadRowsApart<V>(const InPacks<const ElementOf<V>>&, int, V*, int, int, bool);                           \
    how template void storeRowsApart<V>(const InPacks<ElementOf<V>>&, int, const V*, int, int, bool);                          \
    how template void loadTile<V>(const InPacks<const ElementOf<V>>&, int, V*, int, int);                             \
    how template void storeTile<V>(const InPacks<ElementOf<V>>&, int, const V*, int, int);                            \
    how template void loadVector<V>(const InPacks<const ElementOf<V>>&, int, V*, int);                                  \
    KESL_WIDTH_FUNCTIONS(how, V, 3) KESL_WIDTH_FUNCTIONS(how, V, 4)                                                   \
    KESL_WIDTH_FUNCTIONS(how, V, 5) KESL_WIDTH_FUNCTIONS(how, V, 6)                                                   \
    KESL_BLOCK_FUNCTIONS(how, V)
#define KESL_WIDTH_FUNCTIONS(how, V, n)                                                                             \
    how template void loadTall<V, n>(const InPacks<const ElementOf<V>>&, int, V*, int);                                 \
    how template void storeTall<V, n>(const InPacks<ElementOf<V>>&, int, const V*, int);                              \
    how template void loadColumns<V, n>(const InPacks<const ElementOf<V>>&, int, V*);                                 \
    how template void storeColumns<V, n>(const InPacks<ElementOf<V>>&, int, const V*);
#ifdef __AVX2__
#define KESL_FLOAT_FUNCTIONS(how) \
    KESL_PACK_FUNCTIONS(how, Pack<float>) KESL_PACK_FUNCTIONS(how, Four<float>) KESL_BLOCK_FUNCTIONS(how, float)
#else
#define KESL_FLOAT_FUNCTIONS(how) KESL_PACK_FUNCTIONS(how, Pack<float>) KESL_BLOCK_FUNCTIONS(how, float)
#endif
#ifdef __AVX512F__
#define KESL_DOUBLE_FUNCTIONS(how) \
    KESL_PACK_FUNCTIONS(how, Pack<double>) KESL_PACK_FUNCTIONS(how, Four<double>) KESL_BLOCK_FUNCTIONS(how, double)
#else
#define KESL_DOUBLE_FUNCTIONS(how) KESL_PACK_FUNCTIONS(how, Pack<double>) KESL_BLOCK_FUNCTIONS(how, double)
#endif
KESL_FLOAT_FUNCTIONS(extern)
KESL_DOUBLE_FUNCTIONS(extern)
// clang-format on

} // namespace kesl
