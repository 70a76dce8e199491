// dst = src, which may have different layouts: what they are is found out at run time.
#pragma once
#include "frame/map.h"

namespace kesl {

// Records from or to a structure of arrays, several objects at once.
template <int h, int w, class T> KESL_ONCE void toPlanes(int count, const Anywhere<T>& dst, Spaced<const T> records)
{
    const Planes<h, w, T> planes(dst);
    eachPack<T>(count, [&, at = records]<class V>(Objects<V> k) KESL_INLINE {
        V x[h * w];
        if constexpr (lanes<V> == 1) std::copy_n(at(k.first), h * w, x);
        else loadRun<h * w>(Spaced<const T>{at(k.first), at.stride0}, x);
#pragma GCC unroll 36
        for (int e = 0; e < h * w; ++e) storePack<V>(planes.p[e] + k.first, x[e]);
        return KeslStatus(keslStatusOk);
    });
}
template <int h, int w, class T> KESL_ONCE void toRecords(int count, Spaced<T> records, const Anywhere<const T>& src)
{
    const Planes<h, w, const T> planes(src);
    eachPack<T>(count, [&, at = records]<class V>(Objects<V> k) KESL_INLINE {
        V x[h * w];
#pragma GCC unroll 36
        for (int e = 0; e < h * w; ++e) x[e] = loadPack<V>(planes.p[e] + k.first);
        if constexpr (lanes<V> == 1) std::copy_n(x, h * w, at(k.first));
        else storeRun<h * w>(Spaced<T>{at(k.first), at.stride0}, x);
        return KeslStatus(keslStatusOk);
    });
}

// ---- Contiguous rows of both, or of the destination and the columns of the source.
template <int h, int w, class T>
void moveContiguous(int height, int width, int count, bool turned, auto to, std::int64_t to1, auto from, std::int64_t from1)
{
    const std::int64_t e = sizeof(T), each = std::int64_t(height) * width;
    const bool records = (height == 1 || to1 == width * e) && from1 == (turned ? height : width) * e;
    if (!turned) {
        if (records) mapRecords<h * w>(each, count, Move{}, to, from);
        else mapRows<h, w>(height, width, count, Move{}, RowsAt{to, to1}, RowsAt{from, from1});
    } else if constexpr (h == w) {
        if constexpr (w > 0)
            if (records) return mapTransposedRecords<w>(count, Move{}, to, Turned{from});
        mapRows<h, w>(height, width, count, Move{}, RowsAt{to, to1}, Turned{RowsAt{from, from1}});
    }
}
template <class T>
KESL_ONCE void moveObjects(auto height, int width, int count, const Anywhere<T>& dst, const Anywhere<const T>& src)
{
    constexpr bool vector = std::is_same_v<decltype(height), One>;
    if (dst.isPacked(height, width, count) && src.isPacked(height, width, count))
        return mapObjects(std::int64_t(height) * width * count, Move{}, dst(0, 0, 0), src(0, 0, 0));
    if (dst.isSideBySide() && src.isSideBySide()) {
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) mapPlane(count, Move{}, dst(0, i, j), src(0, i, j));
        return;
    }
    const Anywhere<const T> across = src.transposed();
    const bool straight = src.rowsAreContiguous(), turned = !vector && !straight && across.rowsAreContiguous();
    const Line<T> to = dst.objects(0, 0);
    const Line<const T> from = src.objects(0, 0);
    const bool standard = to.pitch == 0 && from.pitch == 0;
    const bool listed = to.isListed() && from.isListed();
    bool done = false;
    withShape(height, width, [&](auto h, auto w) {
        if constexpr (w > 0)
            if (standard) {
                done = true;
                if (dst.isSideBySide() && src.isRecord(h, w)) return toPlanes<h, w>(count, dst, from.spaced());
                if (dst.isRecord(h, w) && src.isSideBySide()) return toRecords<h, w>(count, to.spaced(), src);
            }
        done = dst.rowsAreContiguous() && (straight || turned);
        if (!done) return;
        const std::int64_t to1 = dst.stride1, from1 = turned ? across.stride1 : src.stride1;
        if (standard) moveContiguous<h, w, T>(height, width, count, turned, to.spaced(), to1, from.spaced(), from1);
        else if (listed) moveContiguous<h, w, T>(height, width, count, turned, to.listed(), to1, from.listed(), from1);
        else moveContiguous<h, w, T>(height, width, count, turned, to, to1, from, from1);
    });
    if (!done) mapApart(height, width, count, Move{}, dst, src);
}

template <class Dst, class Src>
[[gnu::always_inline]] inline void move(auto height, int width, int count, const Dst& dst, const Src& src)
{
    if constexpr (!inL(Dst::form) && Dst::form != P && !inL(Src::form) && Src::form != P && !isTransposed<Src>) {
        const std::int64_t each = std::int64_t(height) * width, bytes = each * dst.elementSize;
        const auto packed = [&](const auto& o) {
            return o.rowsAreContiguous() && isRecord(o, height, width) && (count == 1 || o.stride0 == bytes);
        };
        if (packed(dst) && packed(src)) return mapObjects(each * count, Move{}, dst.p, src.p);
    }
    moveObjects(height, width, count, anywhere(dst, height, width), anywhere(src, height, width));
}

} // namespace kesl
