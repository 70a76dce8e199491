// Runs: dst[e] = f(src[e], ...) for n consecutive elements, by packs; long ones past the caches. f is a template over a
// value: an element or a pack of them.
#pragma once
#include "frame/objects.h"

#include <algorithm>

namespace kesl {

// A source of a run is a pointer, or one value for all elements.
template <class V, class T> V valueAt(const T* src, std::int64_t e) { return loadPack<V>(src + e); }
template <class V, class T> V valueAt(Same<T> src, std::int64_t) { return splat<V>(src.x); }

template <class T, int bytes> using PackOrElement = std::conditional_t<bytes == sizeof(T), T, Pack<T, bytes>>;

template <class V, class T> [[gnu::always_inline]] inline void mapStep(std::int64_t& e, auto f, T* dst, auto... src)
{
    storePack<V>(dst + e, f(valueAt<V>(src, e)...));
    e += lanes<V>;
}
// So many bytes of results, with at least as many of sources, leave the caches of usual processors: they are written past
// them, which saves reading what is overwritten.
constexpr std::int64_t leavesCaches = 32 << 20;
// Steps of `bytes` and their doubles, to where dst is aligned for the widest pack.
template <int bytes, class T> [[gnu::always_inline]] inline void mapHead(std::int64_t& e, auto f, T* dst, auto... src)
{
    if (reinterpret_cast<std::uintptr_t>(dst + e) & bytes) mapStep<PackOrElement<T, bytes>>(e, f, dst, src...);
    if constexpr (2 * bytes < widest) mapHead<2 * bytes>(e, f, dst, src...);
}
// Steps of `bytes` and their halves, each of which is needed once at the most.
template <int bytes, class T>
[[gnu::always_inline]] inline void mapTail(std::int64_t& e, std::int64_t n, auto f, T* dst, auto... src)
{
    using V = PackOrElement<T, bytes>;
    if (n - e >= lanes<V>) mapStep<V>(e, f, dst, src...);
    if constexpr (bytes > sizeof(T)) mapTail<bytes / 2>(e, n, f, dst, src...);
}
// From element e to n. `past` the caches: dst is aligned then, and the caller waits for it.
template <bool past = false, class T>
[[gnu::always_inline]] inline void mapBody(std::int64_t e, std::int64_t n, auto f, T* dst, auto... src)
{
    using V = Pack<T>;
    if constexpr (past)
#pragma GCC unroll 4
        for (; n - e >= lanes<V>; e += lanes<V>) storePastCaches(dst + e, f(valueAt<V>(src, e)...));
    else
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

// body(Fixed<past>, e) with the place e behind the head.
template <class T> [[gnu::always_inline]] inline void mapFromHead(std::int64_t n, auto f, T* dst, auto body, auto... src)
{
    std::int64_t e = 0;
    if (n >= longRun<T>) mapHead<sizeof(T)>(e, f, dst, src...);
    if (n > leavesCaches / std::int64_t(sizeof(T)) && reinterpret_cast<std::uintptr_t>(dst + e) % widest == 0) {
        body(Fixed<true>{}, e);
        drained();
    } else body(Fixed<false>{}, e);
}
// A run of whole objects.
template <class T> KESL_ONCE void mapObjects(std::int64_t n, auto f, T* dst, auto... src)
{
    mapFromHead(
        n, f, dst, [&](auto past, std::int64_t e) KESL_INLINE { mapBody<past>(e, n, f, dst, src...); }, src...);
}

// Data as they are: nothing that could alter the bits of a NaN.
struct Move {
    auto operator()(auto x) const { return x; }
};

} // namespace kesl
