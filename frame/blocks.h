// Blocks: the elements of one object, or of as many consecutive objects as a pack has lanes, read and written as a whole. No
// load reaches outside the elements of an object, and no store writes a byte that is not one of its elements.
#pragma once
#include "frame/operand.h"
#include "frame/pieces.h"
#include "frame/runs.h"

namespace kesl {

template <class V, int height, int width> struct Block {
    V e[height][width];
    V& operator()(int i, int j) { return e[i][j]; }
    const V& operator()(int i, int j) const { return e[i][j]; }
};

// Objects first, first + 1, ..., one in each lane of V, or in each lane of several packs.
template <class V, int most = 1> struct Objects {
    int first, packs = 1;
    Objects<V> pack(int p) const { return {first + p * lanes<V>}; }
};

// f(i, j) row by row, written out.
template <int height, int width> [[gnu::always_inline]] inline void eachElement(auto f)
{
#pragma GCC unroll 8
    for (int i = 0; i < height; ++i)
#pragma GCC unroll 8
        for (int j = 0; j < width; ++j) f(i, j);
}

// ---- Packs of objects as they are stored, in rows of `width` elements.

// Asks for the objects of a later pack, where packs are long: what comes some 4 KiB later arrives in the time that memory takes to
// answer. It goes to the second cache, also what will be written: the few misses that the first one can wait for at a time are
// those of the pack at hand. With short packs, and objects of a cache line, the hardware does well by itself.
template <int elements, class V, class T> [[gnu::always_inline]] inline void prefetchNext(Spaced<T> at)
{
    constexpr int bytes = elements * int(sizeof(V)), each = elements * int(sizeof(T));
    constexpr int ahead = (4096 + bytes - 1) / bytes * lanes<V>;
    if constexpr (bytes >= 1024 && each > 64)
#pragma GCC unroll 16
        for (int l = ahead; l < ahead + lanes<V>; ++l)
            for (int byte = 0; byte < each; byte += 64)
                __builtin_prefetch(reinterpret_cast<const char*>(at(l)) + byte, 0, 2);
}
template <int elements, class V, class T> void prefetchNext(Listed<T>) {} // nobody says that there is a next one

template <class T, Kind kind, Form F> auto lanesOf(const Operand<T, kind, true, F>& o, int first)
{
    if constexpr (inL(F)) return Listed<T>{o.p + first, o.shift};
    else return Spaced<T>{o.address(first), o.stride0};
}

template <bool record, int height, int width, class V, class T, Kind kind, Form F>
[[gnu::always_inline]] inline void loadStored(const Operand<T, kind, true, F>& src, int first, Block<V, height, width>& x)
{
    if constexpr (contiguousRows(F)) {
        const auto at = lanesOf(src, first);
        prefetchNext<height * width, V>(at);
        if (record || src.stride1 == width * src.elementSize) return loadRun<height * width>(at, x.e[0]);
#pragma GCC unroll 8
        for (int i = 0; i < height; ++i) loadRun<width>(movedRow(at, std::int64_t(i) * src.stride1), x.e[i]);
    } else if constexpr (inL(F))
        eachElement<height, width>(
            [&](int i, int j) { x(i, j) = gathered<V>([&](int l) { return &src.stored(first + l, width)(i, j); }); });
    else {
        const auto object = src.stored(first, width);
        if (src.stride0 == src.elementSize)
            eachElement<height, width>([&](int i, int j) { x(i, j) = loadPack<V>(&object(i, j)); });
        else eachElement<height, width>([&](int i, int j) { x(i, j) = gathered<V>(Spaced<T>{&object(i, j), src.stride0}); });
    }
}
template <bool record, int height, int width, class V, class T, Kind kind, Form F> [[gnu::always_inline]] inline void
storeStored(const Operand<T, kind, true, F>& dst, int first, const Block<V, height, width>& x)
{
    if constexpr (contiguousRows(F)) {
        const auto at = lanesOf(dst, first);
        prefetchNext<height * width, V>(at);
        if (record || dst.stride1 == width * dst.elementSize) return storeRun<height * width>(at, x.e[0]);
#pragma GCC unroll 8
        for (int i = 0; i < height; ++i) storeRun<width>(movedRow(at, std::int64_t(i) * dst.stride1), x.e[i]);
    } else if constexpr (inL(F))
        eachElement<height, width>(
            [&](int i, int j) { scatter([&](int l) { return &dst.stored(first + l, width)(i, j); }, x(i, j)); });
    else {
        const auto object = dst.stored(first, width);
        if (dst.stride0 == dst.elementSize)
            eachElement<height, width>([&](int i, int j) { storePack(&object(i, j), x(i, j)); });
        else eachElement<height, width>([&](int i, int j) { scatter(Spaced<T>{&object(i, j), dst.stride0}, x(i, j)); });
    }
}

// ---- Vectors one behind another, without a gap.

// Of a table: n elements of each object.
template <int n, class V> [[gnu::always_inline]] inline void loadTable(const ElementOf<V>* table, V* x)
{
    V run[n];
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) run[i] = loadPack<V>(table + i * lanes<V>);
    runToObjects<n>(run, x);
}
template <int n, class V> [[gnu::always_inline]] inline void storeTable(ElementOf<V>* table, const V* x)
{
    V run[n];
    objectsToRun<n>(x, run);
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) storePack(table + i * lanes<V>, run[i]);
}

// An operand that is known to be such a run.
template <class O> struct Run : O {};
template <class O> constexpr bool isRun = false;
template <class O> constexpr bool isRun<Run<O>> = true;

// f(o...), with all arrays as runs if that is what they are; single operands stay. It is found out once for a call.
template <class O> constexpr bool mayBeRun = !O::isArray || (O::kind == Kind::vector && O::form == S);
template <class O> bool isRunOf(const O& o, int n)
{
    if constexpr (O::isArray) return o.stride0 == n * O::elementSize;
    else return true;
}
template <class O> constexpr auto asRun(const O& o)
{
    if constexpr (O::isArray) return Run<O>{o};
    else return o;
}
template <int n> [[gnu::always_inline]] inline auto withRuns(auto f, const auto&... o)
{
    if constexpr ((mayBeRun<std::decay_t<decltype(o)>> && ...))
        if ((isRunOf(o, n) && ...)) return f(asRun(o)...);
    return f(o...);
}

// ---- What a body uses: all elements of its object or objects, as they are read, and back. `record` is the caller's word
// that the objects have no gaps between their rows; otherwise that is found out here.
template <int height, int width, bool record = false, class V, class O>
[[gnu::always_inline]] inline Block<V, height, width> load(const O& src, Objects<V> k)
{
    Block<V, height, width> x;
    if constexpr (lanes<V> == 1 || !O::isArray) {
        const auto object = src.object(k.first, height, width);
        eachElement<height, width>([&](int i, int j) { x(i, j) = splat<V>(object(i, j)); });
    } else if constexpr (O::kind == Kind::transposed) {
        Block<V, width, height> stored;
        loadStored<record>(src, k.first, stored);
        eachElement<height, width>([&](int i, int j) { x(i, j) = stored(j, i); });
    } else if constexpr (isRun<O>) {
        loadTable<width>(src.address(k.first), x.e[0]);
    } else loadStored<record>(src, k.first, x);
    return x;
}
template <bool record = false, int height, int width, class V, class O>
[[gnu::always_inline]] inline void store(const O& dst, Objects<V> k, const Block<V, height, width>& x)
{
    if constexpr (lanes<V> == 1) {
        const auto object = dst.object(k.first, height, width);
        eachElement<height, width>([&](int i, int j) { object(i, j) = x(i, j); });
    } else if constexpr (isRun<O>) {
        storeTable<width>(dst.address(k.first), x.e[0]);
    } else storeStored<record>(dst, k.first, x);
}

} // namespace kesl
