// Element by element: dst(k, i, j) = f(src1(k, i, j), ...) over all objects and elements. A single source serves every
// object, a constant every element. f is a template over a value: an element or a pack of them. A vector is a matrix of one
// row, and says so by having One as its height.
//
// Each element is read before the same element is written, and nothing else is promised of overlap.
#pragma once
#include "frame/map_apart.h"

namespace kesl {

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
