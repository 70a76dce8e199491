// Elements of array operands that lie apart, or in columns: compiled once for each kind of pack (array_32f.cpp, array_64f.cpp).
#pragma once
#include "frame/array.h"

namespace kesl {

// f(p, i, j) for the elements of a block, of a lower triangle those not above the diagonal: p is the place of element (i, j) in
// object `first`, or what yields it in the objects of a pack.
template <class T> [[gnu::always_inline]] inline void eachApart(const Array<T>& a, int first, int height, auto width, auto f)
{
    const std::int64_t along = a.shift + first * a.stride0;
    const auto each = [&](auto placeOf) KESL_INLINE {
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width(i); ++j) f(placeOf(i, j), i, j);
    };
    if (!a.cells && a.list) {
        const auto listed = [&](int i, int j) { return Listed<T>{a.list + first, a.shift + i * a.stride1 + j * a.stride2}; };
        return each(listed);
    }
    const auto in = [&](auto place) KESL_INLINE {
        if (a.lie == Lie::sideBySide) each(place);
        else each([&](int i, int j) { return Spaced<T>{place(i, j), a.stride0}; });
    };
    if (a.cells) in([&](int i, int j) { return moved(a.list[std::int64_t(i) * a.width + j], along); });
    else in([&](int i, int j) { return moved(a.first, along + i * a.stride1 + j * a.stride2); });
}
template <class V> V loadApart(const ElementOf<V>* p) { return loadPack<V>(p); }
template <class V> [[gnu::always_inline]] inline V loadApart(auto at) { return gathered<V>(at); }
template <class V> void storeApart(ElementOf<V>* p, V x) { storePack<V>(p, x); }
template <class V> [[gnu::always_inline]] inline void storeApart(auto at, V x) { scatter(at, x); }

constexpr int tallest = 32; // rows of the matrices that go by packs

// A column of a block; single elements where it has less than 16 bytes.
template <class V> [[gnu::always_inline]] inline void loadColumn(auto at, V* x, int height, int width)
{
    V column[tallest];
    if (height >= perPiece<16, V>) loadRun(at, column, height);
    else
        for (int i = 0; i < height; ++i) column[i] = gathered<V>(at + i);
    for (int i = 0; i < height; ++i) x[i * width] = column[i];
}
template <class V> [[gnu::always_inline]] inline void storeColumn(auto at, const V* x, int height, int width)
{
    V column[tallest];
    for (int i = 0; i < height; ++i) column[i] = x[i * width];
    if (height >= perPiece<16, V>) storeRun(at, column, height);
    else
        for (int i = 0; i < height; ++i) scatter(at + i, column[i]);
}

// Columns one behind another, whose elements are all read and written at once.
constexpr int shortRecord = 16;
template <class T> bool isShortRecord(const InPacks<T>& o, int height, int width)
{
    const int bytes = height * width * int(sizeof(T));
    return o.stride2 == height * int(sizeof(T)) && height * width <= shortRecord && bytes >= 16;
}

// The rows of a block; of a lower triangle what is not above the diagonal.
template <class V> [[gnu::noinline]] void loadRowsApart(const InPacks<const ElementOf<V>>& src, int first, V* x, int height,
                                                        int width, bool lower)
{
    if (src.lie == Lie::columns && !lower) {
        const auto at = src.objects(first);
        if (isShortRecord(src, height, width)) {
            V all[shortRecord];
            loadRun(at, all, height * width);
            for (int j = 0; j < width; ++j)
                for (int i = 0; i < height; ++i) x[i * width + j] = all[j * height + i];
            return;
        }
        for (int j = 0; j < width; ++j) loadColumn(movedRow(at, j * src.stride2), x + j, height, width);
        return;
    }
    eachApart(
        src, first, height, [=](int i) { return lower ? i + 1 : width; },
        [=](auto p, int i, int j) KESL_INLINE { x[i * width + j] = loadApart<V>(p); });
}
template <class V> [[gnu::noinline]] void storeRowsApart(const InPacks<ElementOf<V>>& dst, int first, const V* x, int height,
                                                         int width, bool lower)
{
    if (dst.lie == Lie::columns && !lower) {
        const auto at = dst.objects(first);
        if (isShortRecord(dst, height, width)) {
            V all[shortRecord];
            for (int j = 0; j < width; ++j)
                for (int i = 0; i < height; ++i) all[j * height + i] = x[i * width + j];
            storeRun(at, all, height * width);
            return;
        }
        for (int j = 0; j < width; ++j) storeColumn(movedRow(at, j * dst.stride2), x + j, height, width);
        return;
    }
    eachApart(
        dst, first, height, [=](int i) { return lower ? i + 1 : width; },
        [=](auto p, int i, int j) KESL_INLINE { storeApart<V>(p, x[i * width + j]); });
}

} // namespace kesl
