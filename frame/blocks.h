// Blocks: the elements of one object, or of as many consecutive objects as a pack has lanes, read and written as a whole.
//
// Records, that is objects or rows that are contiguous runs, are read 16 bytes of an object at a time and transposed in
// registers. No load reaches outside the elements of an object, and no store writes a byte that is not one of its elements.
#pragma once
#include "frame/lanes.h"
#include "frame/operand.h"

namespace kesl {

template <class V, int height, int width> struct Block {
    V e[height][width];
    V& operator()(int i, int j) { return e[i][j]; }
    const V& operator()(int i, int j) const { return e[i][j]; }
};

// Objects first, first + 1, ..., one in each lane of V.
template <class V> struct Objects { int first; };

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
template <class T, Kind kind, Form F> auto lanesOf(const Operand<T, kind, true, F>& o, int first)
{
    if constexpr (inL(F)) return Listed<T>{o.p + first, o.shift};
    else return Spaced<T>{o.address(first), o.stride0};
}

// ---- One element of each object, lane by lane.
template <class V> V gathered(auto at)
{
    return [&]<int... l>(std::integer_sequence<int, l...>) {
        return V{*at(l)...};
    }(std::make_integer_sequence<int, lanes<V>>{});
}
template <class V> void scatter(auto at, V x)
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

// ---- 16 bytes of each object, that is perPiece elements. Piece i of register r holds those of object r + i * perPiece;
// a transposition inside the pieces then brings the objects into lane order.
template <class V> constexpr int perPiece = 16 / sizeof(ElementOf<V>);

template <int perPiece, int lanes, bool upper> struct Interleaved {
    static constexpr int of(int l) { return l / perPiece * perPiece + l % perPiece / 2 + (upper ? perPiece / 2 : 0) + l % 2 * lanes; }
};
template <bool upper, class V> V interleave(V a, V b) { return shuffled<Interleaved<perPiece<V>, lanes<V>, upper>, lanes<V>>(a, b); }
template <bool upper, class V> V interleavePairs(V a, V b)
{
    using D = Pack<double, sizeof(V)>;
    return V(interleave<upper>(D(a), D(b)));
}
template <class V> [[gnu::always_inline]] inline void transpose(V* x)
{
    if constexpr (perPiece<V> == 2) {
        const V low = interleave<false>(x[0], x[1]), high = interleave<true>(x[0], x[1]);
        x[0] = low, x[1] = high;
    } else {
        const V a = interleave<false>(x[0], x[1]), b = interleave<true>(x[0], x[1]);
        const V c = interleave<false>(x[2], x[3]), d = interleave<true>(x[2], x[3]);
        x[0] = interleavePairs<false>(a, c), x[1] = interleavePairs<true>(a, c);
        x[2] = interleavePairs<false>(b, d), x[3] = interleavePairs<true>(b, d);
    }
}
template <class V> [[gnu::always_inline]] inline void loadPieces(auto at, V* x)
{
#pragma GCC unroll 4
    for (int r = 0; r < perPiece<V>; ++r) x[r] = joined<V>([&](int i) { return loadPack<Quarter<V>>(at(r + i * perPiece<V>)); });
    transpose(x);
}
template <class V> [[gnu::always_inline]] inline void storePieces(auto at, const V* from)
{
    V x[perPiece<V>];
#pragma GCC unroll 4
    for (int r = 0; r < perPiece<V>; ++r) x[r] = from[r];
    transpose(x);
    [&]<int... i>(std::integer_sequence<int, i...>) {
#pragma GCC unroll 4
        for (int r = 0; r < perPiece<V>; ++r) (storePack(at(r + i * perPiece<V>), pieceOf<i>(x[r])), ...);
    }(std::make_integer_sequence<int, int(sizeof(V)) / 16>{});
}

// ---- n contiguous elements of each object. A last partial piece overlaps the one before it.
template <int n, class V> [[gnu::always_inline]] inline void loadRun(auto at, V* x)
{
    constexpr int c = perPiece<V>, rest = n % c;
#pragma GCC unroll 16
    for (int e = 0; e + c <= n; e += c) loadPieces(at + e, x + e);
    if constexpr (rest == 1 || n < c) {
#pragma GCC unroll 4
        for (int e = n - rest; e < n; ++e) x[e] = gathered<V>(at + e);
    } else if constexpr (rest > 1) {
        V last[c];
        loadPieces(at + (n - c), last);
#pragma GCC unroll 4
        for (int e = n - rest; e < n; ++e) x[e] = last[e - (n - c)];
    }
}
template <int n, class V> [[gnu::always_inline]] inline void storeRun(auto at, const V* x)
{
    constexpr int c = perPiece<V>, rest = n % c;
#pragma GCC unroll 16
    for (int e = 0; e + c <= n; e += c) storePieces(at + e, x + e);
    if constexpr (rest == 1 || n < c) {
#pragma GCC unroll 4
        for (int e = n - rest; e < n; ++e) scatter(at + e, x[e]);
    } else if constexpr (rest > 1) storePieces(at + (n - c), x + (n - c));
}

// ---- Packs of objects as they are stored, in rows of `width` elements.
template <class T> Spaced<T> movedRow(Spaced<T> at, std::int64_t bytes) { return {moved(at.first, bytes), at.stride0}; }
template <class T> Listed<T> movedRow(Listed<T> at, std::int64_t bytes) { return {at.first, at.shift + bytes}; }

template <bool record, int height, int width, class V, class T, Kind kind, Form F>
[[gnu::always_inline]] inline void loadStored(const Operand<T, kind, true, F>& src, int first, Block<V, height, width>& x)
{
    if constexpr (contiguousRows(F)) {
        const auto at = lanesOf(src, first);
        if (record || src.stride1 == width * src.elementSize) return loadRun<height * width>(at, x.e[0]);
#pragma GCC unroll 8
        for (int i = 0; i < height; ++i) loadRun<width>(movedRow(at, std::int64_t(i) * src.stride1), x.e[i]);
    } else if constexpr (inL(F))
        eachElement<height, width>([&](int i, int j) {
            x(i, j) = gathered<V>([&](int l) { return &src.stored(first + l, width)(i, j); });
        });
    else {
        const auto object = src.stored(first, width);
        if (src.stride0 == src.elementSize)
            eachElement<height, width>([&](int i, int j) { x(i, j) = loadPack<V>(&object(i, j)); });
        else
            eachElement<height, width>([&](int i, int j) { x(i, j) = gathered<V>(Spaced<T>{&object(i, j), src.stride0}); });
    }
}
template <bool record, int height, int width, class V, class T, Kind kind, Form F>
[[gnu::always_inline]] inline void storeStored(const Operand<T, kind, true, F>& dst, int first, const Block<V, height, width>& x)
{
    if constexpr (contiguousRows(F)) {
        const auto at = lanesOf(dst, first);
        if (record || dst.stride1 == width * dst.elementSize) return storeRun<height * width>(at, x.e[0]);
#pragma GCC unroll 8
        for (int i = 0; i < height; ++i) storeRun<width>(movedRow(at, std::int64_t(i) * dst.stride1), x.e[i]);
    } else if constexpr (inL(F))
        eachElement<height, width>([&](int i, int j) {
            scatter([&](int l) { return &dst.stored(first + l, width)(i, j); }, x(i, j));
        });
    else {
        const auto object = dst.stored(first, width);
        if (dst.stride0 == dst.elementSize)
            eachElement<height, width>([&](int i, int j) { storePack(&object(i, j), x(i, j)); });
        else
            eachElement<height, width>([&](int i, int j) { scatter(Spaced<T>{&object(i, j), dst.stride0}, x(i, j)); });
    }
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
    } else loadStored<record>(src, k.first, x);
    return x;
}
template <bool record = false, int height, int width, class V, class O>
[[gnu::always_inline]] inline void store(const O& dst, Objects<V> k, const Block<V, height, width>& x)
{
    if constexpr (lanes<V> == 1) {
        const auto object = dst.object(k.first, height, width);
        eachElement<height, width>([&](int i, int j) { object(i, j) = x(i, j); });
    } else storeStored<record>(dst, k.first, x);
}

} // namespace kesl
