// Element-wise work on elements that lie at any distance.
#pragma once
#include "frame/map_objects.h"

namespace kesl {

// ---- Road: rows and elements at any distance, but one pointer for each object.
template <class T> Grid<T> gridOf(const Anywhere<T>& a, int k) { return {a(k, 0, 0), a.stride1, a.stride2}; }
template <class At> auto gridOf(const ConstantOf<At>& src, int k) { return Same{*src.at(k)}; }
template <class T> Same<T> gridOf(Same<T> src, int) { return src; }
template <class T> bool isGrid(const Anywhere<T>& a) { return a.pitch1 == 0 && a.pitch2 == 0; }
bool isGrid(const auto&) { return true; } // constants

template <int h, int w> KESL_ONCE void mapGrids(int count, auto f, auto dst, auto... src)
{
    for (int k = 0; k < count; ++k) mapObject<h, w>(h, w, f, gridOf(dst, k), gridOf(src, k)...);
}

// ---- Road: elements that lie anywhere, along the objects or along rows.
template <class T> Line<T> objectsOf(const Anywhere<T>& a, int i, int j) { return a.objects(i, j); }
template <class T> Line<T> objectsOf(const ConstantOf<Line<T>>& src, int, int) { return src.at; }
template <class T> Same<T> objectsOf(Same<T> src, int, int) { return src; }

template <class T> Line<T> rowOf(const Anywhere<T>& a, int k, int i) { return a.row(k, i); }
template <class T> Line<T> rowOf(const ConstantOf<Line<T>>& src, int k, int)
{
    return {src.at.list + k * src.at.pitch, 0, src.at.shift + k * src.at.stride, 0};
}
template <class T> Same<T> rowOf(Same<T> src, int, int) { return src; }

template <class T> Line<T> partOf(const Line<T>& line, int first) { return line.from(first); }
template <class T> Same<T> partOf(Same<T> constant, int) { return constant; }
template <class T> Spaced<T> spacedOf(const Line<T>& line) { return line.spaced(); }
template <class T> Same<T> spacedOf(Same<T> constant) { return constant; }
template <class T> bool hasList(const Line<T>& line) { return line.pitch != 0; }
template <class T> bool hasList(Same<T>) { return false; }
template <class T> T& firstOf(Spaced<T> places) { return *places.first; }
template <class T> T& firstOf(const Line<T>& places) { return *moved(*places.list, places.shift); }
template <class T> T firstOf(Same<T> constant) { return constant.x; }
template <class T> void step(Spaced<T>& places) { places.first = moved(places.first, places.stride0); }
template <class T> void step(Line<T>& places) { places.list += places.pitch, places.shift += places.stride; }
template <class T> void step(Same<T>&) {}

[[gnu::always_inline]] inline void mapPlaces(int n, auto f, auto dst, auto... src)
{
#pragma GCC unroll 4
    for (; n > 0; --n) {
        firstOf(dst) = f(firstOf(src)...);
        step(dst), (step(src), ...);
    }
}
KESL_ONCE void mapLine(int n, auto f, auto dst, auto... src)
{
    if (hasList(dst) || (hasList(src) || ...)) mapPlaces(n, f, dst, src...);
    else mapPlaces(n, f, spacedOf(dst), spacedOf(src)...);
}
KESL_ONCE void mapElements(int height, int width, int count, auto f, const auto& dst, const auto&... src)
{
    constexpr int few = 8, block = 32; // objects that are in cache from one element to the next
    if (count < few)
        for (int k = 0; k < count; ++k)
            for (int i = 0; i < height; ++i) mapLine(width, f, rowOf(dst, k, i), rowOf(src, k, i)...);
    else
        for (int k = 0, n = 0; k < count; k += n) {
            n = std::min(block, count - k);
            for (int i = 0; i < height; ++i)
                for (int j = 0; j < width; ++j)
                    mapLine(n, f, partOf(objectsOf(dst, i, j), k), partOf(objectsOf(src, i, j), k)...);
        }
}

// The one of these that suits.
KESL_ONCE void mapApart(auto height, int width, int count, auto f, const auto& dst, const auto&... src)
{
    bool done = false;
    if (isGrid(dst) && (isGrid(src) && ...))
        withShape(height, width, [&](auto h, auto w) {
            if constexpr (w > 0) mapGrids<h, w>(count, f, dst, src...), done = true;
        });
    if (!done) mapElements(height, width, count, f, dst, src...);
}

} // namespace kesl
