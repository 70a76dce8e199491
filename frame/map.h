// Element by element: dst(k, i, j) = f(src1(k, i, j), ...) over all objects and elements. A single source serves every
// object. f is a template over a value: an element or a pack of them.
//
// Each element is read before the same element is written, and nothing else is promised of overlap.
#pragma once
#include "frame/objects.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace kesl {

// ---- Runs: dst[e] = f(src[e], ...) for n consecutive elements.

// A source of a run that has one value.
template <class T> struct Same { T x; };

template <class V, class T> V valueAt(const T* src, std::int64_t e) { return loadPack<V>(src + e); }
template <class V, class T> V valueAt(Same<T> src, std::int64_t) { return splat<V>(src.x); }

template <class T, int bytes> using PackOrElement = std::conditional_t<bytes == sizeof(T), T, Pack<T, bytes>>;

template <class V, class T> [[gnu::always_inline]] inline void mapStep(std::int64_t& e, auto f, T* dst, auto... src)
{
    storePack<V>(dst + e, f(valueAt<V>(src, e)...));
    e += lanes<V>;
}
// Steps of `bytes` and their doubles, to where dst is aligned for the widest pack.
template <int bytes, class T> [[gnu::always_inline]] inline void mapHead(std::int64_t& e, auto f, T* dst, auto... src)
{
    if (reinterpret_cast<std::uintptr_t>(dst + e) & bytes) mapStep<PackOrElement<T, bytes>>(e, f, dst, src...);
    if constexpr (2 * bytes < widest) mapHead<2 * bytes>(e, f, dst, src...);
}
// Steps of `bytes` and their halves, each of which is needed once at the most.
template <int bytes, class T> [[gnu::always_inline]] inline void mapTail(std::int64_t& e, std::int64_t n, auto f, T* dst, auto... src)
{
    using V = PackOrElement<T, bytes>;
    if (n - e >= lanes<V>) mapStep<V>(e, f, dst, src...);
    if constexpr (bytes > sizeof(T)) mapTail<bytes / 2>(e, n, f, dst, src...);
}
// From element e to n.
template <class T> [[gnu::always_inline]] inline void mapBody(std::int64_t e, std::int64_t n, auto f, T* dst, auto... src)
{
    using V = Pack<T>;
#pragma GCC unroll 4
    while (n - e >= lanes<V>) mapStep<V>(e, f, dst, src...);
    mapTail<widest / 2>(e, n, f, dst, src...);
}
template <class T> constexpr int longRun = 8 * lanes<Pack<T>>; // then stores should not cross cache lines
template <class T> [[gnu::always_inline]] inline void mapRun(std::int64_t n, auto f, T* dst, auto... src)
{
    std::int64_t e = 0;
    if (n >= longRun<T>) mapHead<sizeof(T)>(e, f, dst, src...);
    mapBody(e, n, f, dst, src...);
}

// ---- One object of any size, or square of order n, by any views.
template <int n> [[gnu::always_inline]] inline void mapObject(int height, int width, auto f, auto dst, auto... src)
{
    if constexpr (n > 0) height = width = n;
    if constexpr (requires { mapRun(width, f, dst.row(0), src.row(0)...); })
#pragma GCC unroll 6
        for (int i = 0; i < height; ++i) mapRun(width, f, dst.row(i), src.row(i)...);
    else
#pragma GCC unroll 1 // a row written out is enough
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) dst(i, j) = f(src(i, j)...);
}

// ---- What is known of an operand.
template <class O> constexpr bool isTransposed = O::kind == Kind::transposed;

// An object is a record if there is no gap between its rows, as it is stored.
template <class O> bool isRecord(const O& o, int height, int width)
{
    return o.stride1 == std::int64_t(isTransposed<O> ? height : width) * O::elementSize;
}
// It is one run of elements in the order in which it is read if it is not transposed besides.
template <class O> bool isOneRun(const O& o, int height, int width)
{
    return !isTransposed<O> && (height == 1 || isRecord(o, height, width));
}
// An array is one run if there is no gap between its objects either. (A single operand has no other objects.)
template <class O> bool isPacked(const O& o, int height, int width)
{
    return !O::isArray || (isOneRun(o, height, width) && o.stride0 == std::int64_t(height) * width * O::elementSize);
}

// ---- Arrays without any gap, and single operands beside them.

// A source of the run: an array itself, or a single operand that is repeated to the length of a piece and of an object more.
// A piece is a multiple of 16 objects, so that all pieces are aligned alike.
constexpr int mostRepeated = 6 * 6, fewObjects = 4;
constexpr int objectsPerPiece(int each) { return mostRepeated / each * 16; }

template <class O> struct Periodic {
    const typename O::Element* p;
    Periodic(const O& o, int, int, int) : p(o.address(0)) {}
    const auto* from(std::int64_t element) const { return p + element; }
};
template <class O> requires (!O::isArray) struct Periodic<O> {
    using T = typename O::Element;
    int each;
    T e[mostRepeated * (16 + 1)];
    Periodic(const O& o, int height, int width, int count) : each(height * width)
    {
        const auto single = o.object(0, height, width);
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) e[i * width + j] = single(i, j);
        const int all = each * (std::min(count, objectsPerPiece(each)) + 1);
        for (int done = each; done < all; done *= 2) std::memcpy(e + done, e, std::size_t(std::min(done, all - done)) * sizeof *e);
    }
    const T* from(std::int64_t element) const { return e + element % each; }
};

template <class T> void mapPieces(int each, int count, auto f, T* dst, const auto&... src)
{
    const std::int64_t n = std::int64_t(each) * count, piece = each * objectsPerPiece(each);
    std::int64_t e = 0;
    if (n >= longRun<T>) mapHead<sizeof(T)>(e, f, dst, src.from(0)...);
    for (; e < n; e += piece) mapBody(0, std::min(piece, n - e), f, dst + e, src.from(e)...);
}

// ---- Roads for the layouts and strides of a call.

// A source along the objects, at one of its elements.
template <class O> auto alongObjects(const O& o, int i, int j, int height, int width)
{
    auto& first = o.object(0, height, width)(i, j);
    if constexpr (O::isArray) return &first;
    else return Same<typename O::Element>{first};
}

template <class V, int n> [[gnu::always_inline]] inline void mapBlock(Block<V, n, n>& dst, auto f, const auto&... src)
{
    eachElement<n, n>([&](int i, int j) { dst(i, j) = f(src(i, j)...); });
}

template <class Dst, class... Src>
[[gnu::always_inline]] inline void map(int height, int width, auto count, auto f, const Dst& dst, const Src&... src)
{
    using T = typename Dst::Element;
    constexpr Form F = Dst::form;
    const std::int64_t each = std::int64_t(height) * width;

    if constexpr (F == S && Dst::isArray)
        if (isPacked(dst, height, width) && (isPacked(src, height, width) && ...)) {
            if constexpr ((Src::isArray && ...)) return mapRun(each * count, f, dst.address(0), src.address(0)...);
            else if (each <= mostRepeated && count >= fewObjects)
                return mapPieces(int(each), count, f, dst.address(0), Periodic<Src>(src, height, width, count)...);
        }
    if constexpr ((F == S2 || F == P) && Dst::isArray) // structure of arrays
        if (dst.stride0 == dst.elementSize && ((!Src::isArray || src.stride0 == src.elementSize) && ...)) {
            for (int i = 0; i < height; ++i)
                for (int j = 0; j < width; ++j)
                    mapRun(count, f, &dst.object(0, height, width)(i, j), alongObjects(src, i, j, height, width)...);
            return;
        }
    withOrder(width == height ? width : 0, [&](auto n) {
        if constexpr (contiguousRows(F)) {
            if constexpr (n > 0 && ((isTransposed<Src> && Src::isArray) || ...))
                if (isRecord(dst, n, n) && ((!Src::isArray || isRecord(src, n, n)) && ...)) {
                    eachPack<T>(count, [&]<class V>(Objects<V> k) { // transposed in registers
                        Block<V, n, n> x;
                        mapBlock(x, f, load<n, n, true>(src, k)...);
                        store<true>(dst, k, x);
                        return KeslStatus(keslStatusOk);
                    });
                    return;
                }
            if (isOneRun(dst, height, width) && (isOneRun(src, height, width) && ...)) {
                for (int k = 0; k < count; ++k) mapRun(n > 0 ? n * n : each, f, dst.address(k), src.address(k)...);
                return;
            }
        }
        for (int k = 0; k < count; ++k)
            mapObject<n>(height, width, f, dst.object(k, height, width), src.object(k, height, width)...);
    });
}

} // namespace kesl
