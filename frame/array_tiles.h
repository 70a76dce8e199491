// Blocks and vectors of array operands with the number of rows, or of elements, as it comes.
#pragma once
#include "frame/array_apart.h"

namespace kesl {

template <class V, int width>
[[gnu::noinline]] void loadTall(const InPacks<const ElementOf<V>>& src, int first, V* x, int rows)
{
    if (src.lie > Lie::rows) return loadRowsApart(src, first, x, rows, width, false);
    const auto at = src.objects(first);
    if (src.lie == Lie::record) return loadRun(at, x, rows * width);
    for (int i = 0; i < rows; ++i) loadRun<width>(movedRow(at, i * src.stride1), x + i * width);
}
template <class V, int width>
[[gnu::noinline]] void storeTall(const InPacks<ElementOf<V>>& dst, int first, const V* x, int rows)
{
    if (dst.lie > Lie::rows) return storeRowsApart(dst, first, x, rows, width, false);
    const auto at = dst.objects(first);
    if (dst.lie == Lie::record) return storeRun(at, x, rows * width);
    for (int i = 0; i < rows; ++i) storeRun<width>(movedRow(at, i * dst.stride1), x + i * width);
}
// The same with the number of columns as it comes.
template <class V>
[[gnu::noinline]] void loadTile(const InPacks<const ElementOf<V>>& src, int first, V* x, int height, int width)
{
    const bool rowIsLong = width >= perPiece<16, V>, together = height == 1 || src.lie < Lie::rows;
    if (src.lie > Lie::rows || !(rowIsLong || (together && height * width >= perPiece<16, V>)))
        return loadRowsApart(src, first, x, height, width, false);
    const auto at = src.objects(first);
    if (together) return loadRun(at, x, height * width);
    for (int i = 0; i < height; ++i) loadRun(movedRow(at, i * src.stride1), x + i * width, width);
}
template <class V>
[[gnu::noinline]] void storeTile(const InPacks<ElementOf<V>>& dst, int first, const V* x, int height, int width)
{
    const bool rowIsLong = width >= perPiece<16, V>, together = height == 1 || dst.lie < Lie::rows;
    if (dst.lie > Lie::rows || !(rowIsLong || (together && height * width >= perPiece<16, V>)))
        return storeRowsApart(dst, first, x, height, width, false);
    const auto at = dst.objects(first);
    if (together) return storeRun(at, x, height * width);
    for (int i = 0; i < height; ++i) storeRun(movedRow(at, i * dst.stride1), x + i * width, width);
}
template <class V> [[gnu::noinline]] void loadVector(const InPacks<const ElementOf<V>>& src, int first, V* x, int length)
{
    if (src.lie > Lie::rows) return loadRowsApart(src, first, x, 1, length, false);
    loadRun(src.objects(first), x, length);
}

} // namespace kesl
