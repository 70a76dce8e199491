// Element by element: dst(k, i, j) = f(src1(k, i, j), ...) over all objects and elements. A single source serves every object.
//
// Each element is read before the same element is written, and nothing else is promised of overlap: so the loops may be
// vectorised as if there were none.
#pragma once
#include "frame/objects.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace kesl {

// dst[e] = f(src[e], ...) for a run of n elements.
template <class T> [[gnu::always_inline]] inline void mapRun(std::int64_t n, auto f, T* dst, const auto&... src)
{
#pragma GCC ivdep
    for (std::int64_t e = 0; e < n; ++e) dst[e] = f(src[e]...);
}

// One object of any size, or square of order n, by any views. Contiguous rows are read as a whole before they are written,
// so that the compiler joins elements to vectors.
template <int n> [[gnu::always_inline]] inline void mapObject(int height, int width, auto f, auto dst, auto... src)
{
    using Element = std::remove_cvref_t<decltype(dst(0, 0))>;
    if constexpr (n > 0 && std::is_same_v<decltype(dst), Rows<Element>>) {
        Block<Element, n, n> x;
        eachElement<n, n>([&](int i, int j) { x(i, j) = f(src(i, j)...); });
        eachElement<n, n>([&](int i, int j) { dst(i, j) = x(i, j); });
    } else if constexpr (n > 0)
        eachElement<n, n>([&](int i, int j) { dst(i, j) = f(src(i, j)...); });
    else
        for (int i = 0; i < height; ++i)
#pragma GCC ivdep
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

// ---- Arrays without any gap, beside them perhaps single operands.

// A source in pieces of some objects: an array itself, a single operand repeated often enough for one piece.
constexpr int mostRepeated = 6 * 6;
template <class O> struct Piecewise {
    const typename O::Element* p;
    Piecewise(const O& o, int, int, int) : p(o.address(0)) {}
    auto piece(std::int64_t element) const { return p + element; }
};
template <class O> requires (!O::isArray) struct Piecewise<O> {
    static constexpr int objects = widest / O::elementSize;
    typename O::Element e[mostRepeated * objects];
    Piecewise(const O& o, int height, int width, int count)
    {
        const auto single = o.object(0, height, width);
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) e[i * width + j] = single(i, j);
        const int each = height * width, all = each * std::min(count, objects);
        for (int done = each; done < all; done *= 2) std::memcpy(e + done, e, std::min(done, all - done) * sizeof *e);
    }
    auto piece(std::int64_t) const { return e; }
};

template <class T> void mapPacked(int height, int width, int count, auto f, T* dst, const auto&... src)
{
    constexpr int objects = widest / int(sizeof(T));
    const std::int64_t each = std::int64_t(height) * width;
    for (std::int64_t k = 0; k < count; k += objects)
        mapRun(std::min<std::int64_t>(objects, count - k) * each, f, dst + k * each, src.piece(k * each)...);
}

// ---- Roads for the layouts and strides of a call.

// A source along the objects, at one of its elements.
template <class T> struct Same {
    T x;
    T operator[](std::int64_t) const { return x; }
};
template <class O> auto alongObjects(const O& o, int i, int j, int height, int width)
{
    if constexpr (O::isArray) return &o.object(0, height, width)(i, j);
    else return Same<typename O::Element>{o.object(0, height, width)(i, j)};
}

template <class V, int n> [[gnu::always_inline]] inline void mapBlock(Block<V, n, n>& dst, auto f, const auto&... src)
{
    eachElement<n, n>([&](int i, int j) { dst(i, j) = f(src(i, j)...); });
}

// Object k that is one run, as rows of n elements.
template <int n> auto asRun(const auto& o, int k) { return Rows{o.address(k), n * o.elementSize}; }

template <class Dst, class... Src>
[[gnu::always_inline]] inline void map(int height, int width, auto count, auto f, const Dst& dst, const Src&... src)
{
    using T = typename Dst::Element;
    constexpr Form F = Dst::form;

    if constexpr (F == S && Dst::isArray)
        if (isPacked(dst, height, width) && (isPacked(src, height, width) && ...)) {
            const std::int64_t each = std::int64_t(height) * width;
            if constexpr ((Src::isArray && ...)) return mapRun(each * count, f, dst.address(0), src.address(0)...);
            else if (each <= mostRepeated)
                return mapPacked(height, width, count, f, dst.address(0), Piecewise<Src>(src, height, width, count)...);
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
            if (std::int64_t(height) * width <= INT_MAX && isOneRun(dst, height, width) && (isOneRun(src, height, width) && ...)) {
                for (int k = 0; k < count; ++k) mapObject<n>(1, height * width, f, asRun<n>(dst, k), asRun<n>(src, k)...);
                return;
            }
        }
        for (int k = 0; k < count; ++k)
            mapObject<n>(height, width, f, dst.object(k, height, width), src.object(k, height, width)...);
    });
}

} // namespace kesl
