// The elements of a pack of objects: where they lie, and how contiguous runs of them are read and written: 16 to 64 bytes of an
// object at a time, transposed in registers.
#pragma once
#include "frame/lanes.h"

#include <algorithm>

namespace kesl {

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
// The same, some bytes further in each object.
template <class T> Spaced<T> movedRow(Spaced<T> at, std::int64_t bytes) { return {moved(at.first, bytes), at.stride0}; }
template <class T> Listed<T> movedRow(Listed<T> at, std::int64_t bytes) { return {at.first, at.shift + bytes}; }

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
    V y[c]; // and not x, which may be in memory
    at = again(at);
#pragma GCC unroll 16
    for (int r = 0; r < c; ++r)
        y[r] = joined<V, bytes>([&](int i) { return loadPack<Pack<ElementOf<V>, bytes>>(at(r + i * c)); });
    transpose<bytes>(y);
#pragma GCC unroll 16
    for (int r = 0; r < c; ++r) x[r] = y[r];
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
// The same with n as it comes, at least 16 bytes.
template <class V> [[gnu::always_inline]] inline void loadRun(auto at, V* x, int n)
{
    constexpr int most = perPiece<sizeof(V), V>, least = perPiece<16, V>;
    int e = 0;
    for (; e <= n - most; e += most) loadPieces<sizeof(V)>(at + e, x + e);
    for (; e < n; e += least) {
        const int from = std::min(e, n - least);
        loadPieces<16>(at + from, x + from);
    }
}
template <class V> [[gnu::always_inline]] inline void storeRun(auto at, const V* x, int n)
{
    constexpr int most = perPiece<sizeof(V), V>, least = perPiece<16, V>;
    int e = 0;
    for (; e <= n - most; e += most) storePieces<sizeof(V)>(at + e, x + e);
    for (; e < n; e += least) {
        const int from = std::min(e, n - least);
        storePieces<16>(at + from, x + from);
    }
}

} // namespace kesl
