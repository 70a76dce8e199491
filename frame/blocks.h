// Blocks: the elements of one object, or of as many consecutive objects as a pack has lanes, read and written as a whole.
//
// Records, that is objects or rows that are contiguous runs, are read 16 bytes of an object at a time and transposed in
// registers. No load reaches outside the elements of an object, and no store writes a byte that is not one of its elements.
#pragma once
#include "frame/lanes.h"
#include "frame/operand.h"
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

// ---- The address of lane l, for objects that lie stride0 apart and for objects with pointers of their own.
template <class T> struct Spaced {
    T* first;
    std::int64_t stride0;
    T* operator()(int l) const { return moved(first, l * stride0); }
    Spaced operator+(int elements) const { return {first + elements, stride0}; }
};
template <class T> struct Listed {
    T* const* first;
    std::int64_t shift;
    T* operator()(int l) const { return moved(first[l], shift); }
    Listed operator+(int elements) const { return {first, shift + elements * int(sizeof(T))}; }
};
// The same addresses, to be read again: kept from one use to the next they would fill more registers than there are.
template <class At> At again(At at) { return at; }
template <class T> Listed<T> again(Listed<T> at)
{
    asm("" : "+r"(at.first));
    return at;
}
template <class T, Kind kind, Form F> auto lanesOf(const Operand<T, kind, true, F>& o, int first)
{
    if constexpr (inL(F)) return Listed<T>{o.p + first, o.shift};
    else return Spaced<T>{o.address(first), o.stride0};
}

// ---- One element of each object, lane by lane.
template <class V> [[gnu::always_inline]] inline V gathered(auto at)
{
    return [&]<int... l>(std::integer_sequence<int, l...>)
               KESL_INLINE { return V{*at(l)...}; }(std::make_integer_sequence<int, lanes<V>>{});
}
template <class V> [[gnu::always_inline]] inline void scatter(auto at, V x)
{
#pragma GCC unroll 16
    for (int l = 0; l < lanes<V>; ++l) *at(l) = x[l];
}

// ---- A pack in memory, at any address.
template <class T, int bytes> struct UnalignedOf {
    typedef T type __attribute__((vector_size(bytes), aligned(alignof(T)), may_alias));
};
template <class V> using Unaligned = typename UnalignedOf<ElementOf<V>, sizeof(V)>::type;
template <class V> V loadPack(const ElementOf<V>* p)
{
    if constexpr (lanes<V> == 1) return *p;
    else return *reinterpret_cast<const Unaligned<V>*>(p);
}
template <class V> void storePack(ElementOf<V>* p, V x)
{
    if constexpr (lanes<V> == 1) *p = x;
    else *reinterpret_cast<Unaligned<V>*>(p) = x;
}

// ---- A piece of some bytes (16, 32 or 64) of each object, c elements. Piece i of register r holds those of object r + i*c;
// a transposition of c rows inside the pieces then brings the objects into lane order, and back.
template <int bytes, class V> constexpr int perPiece = bytes / sizeof(ElementOf<V>);

template <int p, int lanes, bool upper> struct Interleaved { // the elements of two, inside 16 bytes
    static constexpr int of(int l) { return l / p * p + l % p / 2 + (upper ? p / 2 : 0) + l % 2 * lanes; }
};
template <int p, int lanes, int odd> struct Exchanged { // 16 bytes of two: 0 0 2 2, or 1 1 3 3
    static constexpr int of(int l) { return (l / p / 2 * 2 + odd) * p + l % p + l / p % 2 * lanes; }
};
template <int p, int lanes, int first, int step>
struct Chosen { // 16 bytes of two, each from `first` on: 0 1 0 1, or 0 2 0 2
    static constexpr int of(int l) { return (first + l / p % 2 * step) * p + l % p + l / p / 2 * lanes; }
};
template <bool upper, class V> V interleave(V a, V b)
{
    return shuffled<Interleaved<perPiece<16, V>, lanes<V>, upper>, lanes<V>>(a, b);
}
template <bool upper, class V> V interleavePairs(V a, V b)
{
    using D = Pack<double, sizeof(V)>;
    return V(interleave<upper>(D(a), D(b)));
}
template <int odd, class V> V exchange(V a, V b)
{
    return shuffled<Exchanged<perPiece<16, V>, lanes<V>, odd>, lanes<V>>(a, b);
}
template <int first, int step, class V> V choose(V a, V b)
{
    return shuffled<Chosen<perPiece<16, V>, lanes<V>, first, step>, lanes<V>>(a, b);
}

// x[0], x[step], ...
template <int bytes, int step, class V> [[gnu::always_inline]] inline void transposeSteps(V* x)
{
    V &a = x[0], &b = x[step];
    if constexpr (bytes == 32) {
        const V low = exchange<0>(a, b), high = exchange<1>(a, b);
        a = low, b = high;
    } else {
        V &c = x[2 * step], &d = x[3 * step];
        const V ab0 = choose<0, 1>(a, b), ab2 = choose<2, 1>(a, b), cd0 = choose<0, 1>(c, d), cd2 = choose<2, 1>(c, d);
        a = choose<0, 2>(ab0, cd0), b = choose<1, 2>(ab0, cd0), c = choose<0, 2>(ab2, cd2), d = choose<1, 2>(ab2, cd2);
    }
}
template <int bytes, class V> [[gnu::always_inline]] inline void transpose(V* x)
{
    constexpr int p = perPiece<16, V>;
#pragma GCC unroll 4
    for (V* y = x; y < x + perPiece<bytes, V>; y += p)
        if constexpr (p == 2) {
            const V low = interleave<false>(y[0], y[1]), high = interleave<true>(y[0], y[1]);
            y[0] = low, y[1] = high;
        } else {
            const V a = interleave<false>(y[0], y[1]), b = interleave<true>(y[0], y[1]);
            const V c = interleave<false>(y[2], y[3]), d = interleave<true>(y[2], y[3]);
            y[0] = interleavePairs<false>(a, c), y[1] = interleavePairs<true>(a, c);
            y[2] = interleavePairs<false>(b, d), y[3] = interleavePairs<true>(b, d);
        }
    if constexpr (bytes > 16)
#pragma GCC unroll 4
        for (int e = 0; e < p; ++e) transposeSteps<bytes, p>(x + e);
}
template <int bytes, class V> [[gnu::always_inline]] inline void loadPieces(auto at, V* x)
{
    constexpr int c = perPiece<bytes, V>;
    at = again(at);
#pragma GCC unroll 16
    for (int r = 0; r < c; ++r)
        x[r] = joined<V, bytes>([&](int i) { return loadPack<Pack<ElementOf<V>, bytes>>(at(r + i * c)); });
    transpose<bytes>(x);
}
template <int bytes, class V> [[gnu::always_inline]] inline void storePieces(auto at, const V* from)
{
    constexpr int c = perPiece<bytes, V>;
    V x[c];
#pragma GCC unroll 16
    for (int r = 0; r < c; ++r) x[r] = from[r];
    transpose<bytes>(x);
    at = again(at);
    [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
#pragma GCC unroll 16
        for (int r = 0; r < c; ++r) (storePack(at(r + i * c), pieceOf<i, bytes>(x[r])), ...);
    }(std::make_integer_sequence<int, int(sizeof(V)) / bytes>{});
}

// ---- n contiguous elements of each object, by the largest pieces first. A last partial piece overlaps the one before it.
template <int n, class V, int bytes = sizeof(V)> [[gnu::always_inline]] inline void loadRun(auto at, V* x)
{
    constexpr int c = perPiece<bytes, V>, pieces = n / c * c, rest = n - pieces;
#pragma GCC unroll 16
    for (int e = 0; e < pieces; e += c) loadPieces<bytes>(at + e, x + e);
    if constexpr (rest > 0 && bytes > 16) {
        if constexpr (rest < perPiece<16, V> && rest > 1 && pieces > 0) {
            V last[perPiece<16, V>];
            loadPieces<16>(at + (n - perPiece<16, V>), last);
#pragma GCC unroll 4
            for (int e = 0; e < rest; ++e) x[pieces + e] = last[perPiece<16, V> - rest + e];
        } else loadRun<rest, V, bytes / 2>(at + pieces, x + pieces);
    } else
#pragma GCC unroll 4
        for (int e = pieces; e < n; ++e) x[e] = gathered<V>(at + e);
}
template <int n, class V, int bytes = sizeof(V)> [[gnu::always_inline]] inline void storeRun(auto at, const V* x)
{
    constexpr int c = perPiece<bytes, V>, pieces = n / c * c, rest = n - pieces;
#pragma GCC unroll 16
    for (int e = 0; e < pieces; e += c) storePieces<bytes>(at + e, x + e);
    if constexpr (rest > 0 && bytes > 16) {
        if constexpr (rest < perPiece<16, V> && rest > 1 && pieces > 0)
            storePieces<16>(at + (n - perPiece<16, V>), x + (n - perPiece<16, V>));
        else storeRun<rest, V, bytes / 2>(at + pieces, x + pieces);
    } else
#pragma GCC unroll 4
        for (int e = pieces; e < n; ++e) scatter(at + e, x[e]);
}

// ---- Packs of objects as they are stored, in rows of `width` elements.

// Asks for the objects of a later pack, where packs are long: the next one to be written; and to be read, one that comes
// some 4 KiB later, as much as arrives in the time that memory takes to answer. With short packs, and objects of a cache
// line, the hardware does well by itself.
template <int elements, class V, bool write, class T> [[gnu::always_inline]] inline void prefetchNext(Spaced<T> at)
{
    constexpr int bytes = elements * int(sizeof(V)), each = elements * int(sizeof(T));
    constexpr int ahead = (write ? 1 : (4096 + bytes - 1) / bytes) * lanes<V>;
    if constexpr (bytes >= 1024 && each > 64)
#pragma GCC unroll 16
        for (int l = ahead; l < ahead + lanes<V>; ++l)
            for (int byte = 0; byte < each; byte += 64)
                __builtin_prefetch(reinterpret_cast<const char*>(at(l)) + byte, write, 3);
}
template <int elements, class V, bool write, class T> void prefetchNext(Listed<T>) {} // nobody says that there is a next one

template <class T> Spaced<T> movedRow(Spaced<T> at, std::int64_t bytes) { return {moved(at.first, bytes), at.stride0}; }
template <class T> Listed<T> movedRow(Listed<T> at, std::int64_t bytes) { return {at.first, at.shift + bytes}; }

template <bool record, int height, int width, class V, class T, Kind kind, Form F>
[[gnu::always_inline]] inline void loadStored(const Operand<T, kind, true, F>& src, int first, Block<V, height, width>& x)
{
    if constexpr (contiguousRows(F)) {
        const auto at = lanesOf(src, first);
        prefetchNext<height * width, V, false>(at);
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
        prefetchNext<height * width, V, true>(at);
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
