// Element by element: dst(k, i, j) = f(src1(k, i, j), ...) over all objects and elements. A single source serves every
// object, a constant every element. f is a template over a value: an element or a pack of them. A vector is a matrix of one
// row, and says so by having One as its height.
//
// Each element is read before the same element is written, and nothing else is promised of overlap.
#pragma once
#include "frame/anywhere.h"
#include "frame/repeat.h"
#include "frame/transpose.h"

namespace kesl {

// f(h, w) with the sizes of square matrices and the length of vectors where they are 3 to 6.
[[gnu::always_inline]] inline void withShape(int height, int width, auto f)
{
    withOrder(width == height ? width : 0, [&](auto n) { f(n, n); });
}
[[gnu::always_inline]] inline void withShape(One, int length, auto f)
{
    withOrder(length, [&](auto n) { f(One{}, n); });
}

// The same for vectors of 1 or 2 elements, too, and for square matrices of order 2.
[[gnu::always_inline]] inline void withLength(int length, auto f)
{
    if (length == 1) return f(Fixed<1>{});
    if (length == 2) return f(Fixed<2>{});
    withOrder(length, f);
}
[[gnu::always_inline]] inline void withSquare(int height, int width, auto f)
{
    if (height == 2 && width == 2) return f(Fixed<2>{});
    withOrder(width == height ? width : 0, f);
}

// ---- Objects one after the other. An operand is what yields the address of object k, Turned where it is read transposed,
// or a constant: one for each object, or by value.
template <class At> struct ConstantOf {
    At at;
};
template <class At> ConstantOf(At) -> ConstantOf<At>;

auto recordOf(const auto& at, int k) { return at(k); }
template <class At> auto recordOf(const Turned<At>& src, int k) { return Turned{src.stored(k)}; }
template <class At> auto recordOf(const ConstantOf<At>& src, int k) { return Same{*src.at(k)}; }
template <class T> Same<T> recordOf(Same<T> src, int) { return src; }

// Records of n elements, or of `each` if n is 0.
template <int n> [[gnu::always_inline]] inline void eachRecord(std::int64_t each, int count, auto f, auto dst, auto... src)
{
    for (int k = 0; k < count; ++k) mapRun(n > 0 ? n : each, f, dst(k), recordOf(src, k)...);
}
template <int n> KESL_ONCE void mapRecords(std::int64_t each, int count, auto f, auto dst, auto... src)
{
    eachRecord<n>(each, count, f, dst, src...);
}
// Of order n, some of them to be transposed.
template <int n> KESL_ONCE void mapTransposedRecords(int count, auto f, auto dst, auto... src)
{
    for (int k = 0; k < count; ++k) mapTransposed<n>(f, dst(k), recordOf(src, k)...);
}

// Contiguous rows, and gaps between them.
template <class At> struct RowsAt {
    At at;
    std::int64_t stride1;
};
template <class At> RowsAt(At, std::int64_t) -> RowsAt<At>;

template <class At> auto rowsOf(const RowsAt<At>& a, int k) { return Rows{a.at(k), a.stride1}; }
template <class At> auto rowsOf(const Turned<RowsAt<At>>& a, int k) { return Transposed{rowsOf(a.stored, k)}; }
template <class At> auto rowsOf(const ConstantOf<At>& src, int k) { return Same{*src.at(k)}; }
template <class T> Same<T> rowsOf(Same<T> src, int) { return src; }

template <int h, int w> [[gnu::always_inline]] inline void mapObject(int height, int width, auto f, auto dst, auto... src)
{
    if constexpr (h > 0) height = h;
    if constexpr (w > 0) width = w;
    if constexpr (requires { mapRun(width, f, dst.row(0), src.row(0)...); })
#pragma GCC unroll 6
        for (int i = 0; i < height; ++i) mapRun(width, f, dst.row(i), src.row(i)...);
    else if constexpr (w > 0)
#pragma GCC unroll 1 // a row written out is enough
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) dst(i, j) = f(src(i, j)...);
    else moveTransposed(height, width, dst, src.stored...);
}
template <int h, int w> KESL_ONCE void mapRows(int height, int width, int count, auto f, auto dst, auto... src)
{
    for (int k = 0; k < count; ++k) mapObject<h, w>(height, width, f, rowsOf(dst, k), rowsOf(src, k)...);
}

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

// ---- An operand as these loops take it: by the addresses of its objects, ...
template <class T> struct Alone {
    T* p;
    T* operator()(int) const { return p; }
};
template <class O> auto atOf(const O& o)
{
    using T = std::remove_pointer_t<decltype(o.address(0))>;
    if constexpr (!O::isArray) return Alone<T>{o.p};
    else if constexpr (inL(O::form)) return Listed<T>{o.p, o.shift};
    else return Spaced<T>{o.p, o.stride0};
}
template <class O> auto recordsOf(const O& o)
{
    if constexpr (isByValue<O>) return Same{o.x};
    else if constexpr (isConstant<O>) return ConstantOf{atOf(o)};
    else if constexpr (isTransposed<O>) return Turned{atOf(o)};
    else return atOf(o);
}
// ... with contiguous rows, ...
template <class O> auto rowsAtOf(const O& o)
{
    if constexpr (isConstant<O>) return recordsOf(o);
    else if constexpr (isTransposed<O>) return Turned{RowsAt{atOf(o), o.stride1}};
    else return RowsAt{atOf(o), o.stride1};
}
// ... or anywhere.
template <class O> auto anywhereOf(const O& o, int height, int width)
{
    if constexpr (isByValue<O>) return Same{o.x};
    else if constexpr (isConstant<O>) return ConstantOf{anywhere(o, 1, 1).objects(0, 0)};
    else return anywhere(o, height, width);
}
template <class O> auto lineOf(const O& o, int height, int width)
{
    if constexpr (isByValue<O>) return Same{o.x};
    else if constexpr (isTransposed<O>) return Turned{stored(o, height, width).objects(0, 0)};
    else return anywhere(o, height, width).objects(0, 0);
}

// ---- Road: arrays without gaps; whether it was taken.
template <class O> bool areTogether([[maybe_unused]] const O& o) // if they are constants
{
    if constexpr (isConstant<O> && O::isArray) return isSideBySide(o);
    else return true;
}
template <bool together = true, class O> auto packedOf(const O& o, [[maybe_unused]] int height, [[maybe_unused]] int width)
{
    using T = typename O::Element;
    if constexpr (isByValue<O>) return Everywhere<T>{{o.x}};
    else if constexpr (isConstant<O>) return OnePerObject<T, together>{o.p, o.stride0};
    else if constexpr (O::isArray) return WholeRun<T>{o.p};
    else return Repeated<T>{anywhere(o, height, width)};
}
template <class Dst, class... Src>
[[gnu::always_inline]] inline bool mapPacked(auto height, int width, int count, auto f, const Dst& dst, const Src&... src)
{
    constexpr bool constants = ((isConstant<Src> && Src::isArray) || ...); // of vectors only
    constexpr bool arrays = ((isArrayOfObjects<Src> || isConstant<Src>)&&...);
    const std::int64_t each = std::int64_t(height) * width;
    if (!isPacked(dst, height, width) || !(isPacked(src, height, width) && ...)) return false;
    if constexpr (constants) {
        if (width > 6) return false;
        withLength(width, [&](auto n) {
            if constexpr (n > 0) {
                if ((areTogether(src) && ...)) mapVectors<n>(count, f, dst.p, packedOf(src, 1, n)...);
                else mapVectors<n>(count, f, dst.p, packedOf<false>(src, 1, n)...);
            }
        });
    } else if constexpr (arrays) mapObjects(each * count, f, dst.p, packedOf(src, height, width).from(0)...);
    else {
        if (each > mostRepeated || count < fewObjects) return false;
        mapPieces(height, width, count, f, dst.p, packedOf(src, height, width)...);
    }
    return true;
}

// ---- Road: structures of arrays, along the objects.
template <class O> auto planeOf(const O& o, int i, int j, int height, int width)
{
    using T = typename O::Element;
    if constexpr (isConstant<O> && O::isArray) return o.address(0);
    else if constexpr (O::isArray) return static_cast<const T*>(&o.object(0, height, width)(i, j));
    else return Same<T>{o.object(0, height, width)(i, j)};
}
KESL_ONCE void mapPlane(int count, auto f, auto dst, auto... src) { mapRun(count, f, dst, src...); }
[[gnu::always_inline]] inline void mapSideBySide(int height, int width, int count, auto f, const auto& dst,
                                                 const auto&... src)
{
    for (int i = 0; i < height; ++i)
        for (int j = 0; j < width; ++j)
            mapPlane(count, f, &dst.object(0, height, width)(i, j), planeOf(src, i, j, height, width)...);
}

// ---- Road: contiguous rows. Several objects share code with one that stands alone, but for the fixed sizes.
[[gnu::always_inline]] inline void mapContiguous(auto height, int width, auto count, auto f, const auto& dst,
                                                 const auto&... src)
{
    constexpr bool alone = std::is_same_v<decltype(count), One>;
    constexpr bool turned = (isTransposed<std::decay_t<decltype(src)>> || ...);
    const std::int64_t each = std::int64_t(height) * width;
    const bool records = isRecord(dst, height, width) && (isRecord(src, height, width) && ...);
    if constexpr (turned) {
        bool done = false;
        if (records)
            withSquare(height, width, [&](auto n) {
                if constexpr (n > 0) mapTransposedRecords<n>(count, f, atOf(dst), recordsOf(src)...), done = true;
            });
        if (done) return;
    }
    withShape(height, width, [&](auto h, auto w) {
        if constexpr (!turned)
            if (records) {
                if constexpr (alone) return eachRecord<h * w>(each, 1, f, atOf(dst), recordsOf(src)...);
                else return mapRecords<h * w>(each, count, f, atOf(dst), recordsOf(src)...);
            }
        mapRows<h, w>(height, width, count, f, rowsAtOf(dst), rowsAtOf(src)...);
    });
}
// Records of sources that are transposed besides others that are not, from any form; whether it was taken.
[[gnu::always_inline]] inline bool mapSomeTransposed(int height, int width, int count, auto f, const auto& dst,
                                                     const auto&... src)
{
    if (height < 2 || height > 6 || height != width) return false;
    if (!isRecord(dst, height, width) || !(isRecord(src, height, width) && ...)) return false;
    withSquare(height, width, [&](auto n) {
        if constexpr (n > 0) mapTransposedRecords<n>(count, f, lineOf(dst, height, width), lineOf(src, height, width)...);
    });
    return true;
}

template <class Dst, class... Src>
[[gnu::always_inline]] inline void map(auto height, int width, auto count, auto f, const Dst& dst, const Src&... src)
{
    constexpr bool array = Dst::isArray, moved = std::is_same_v<decltype(f), Move>;
    constexpr bool standard = Dst::form == S && ((isConstant<Src> || Src::form == S) && ...);
    constexpr bool contiguous = contiguousRows(Dst::form) && ((isConstant<Src> || contiguousRows(Src::form)) && ...);
    constexpr bool noneContiguous =
        !contiguousRows(Dst::form) && ((!isArrayOfObjects<Src> || !contiguousRows(Src::form)) && ...);
    constexpr bool turned = (isTransposed<Src> || ...);

    if constexpr (standard && array)
        if (mapPacked(height, width, count, f, dst, src...)) return;
    if constexpr (noneContiguous && array)
        if (isSideBySide(dst) && (isSideBySide(src) && ...)) return mapSideBySide(height, width, count, f, dst, src...);
    if constexpr (contiguous && (!turned || moved)) return mapContiguous(height, width, count, f, dst, src...);
    if constexpr (contiguous && turned && !moved)
        if (mapSomeTransposed(height, width, count, f, dst, src...)) return;
    mapApart(height, width, count, f, anywhere(dst, height, width), anywhereOf(src, height, width)...);
}

} // namespace kesl
