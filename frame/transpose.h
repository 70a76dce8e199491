// Records that are read transposed: of fixed order, with their elements exchanged in registers; and large ones, by blocks.
#pragma once
#include "frame/stream.h"

namespace kesl {

// What is stored transposed: a pointer to a record, or what yields such pointers.
template <class Stored> struct Turned {
    Stored stored;
};
template <class Stored> Turned(Stored) -> Turned<Stored>;
template <class S> constexpr bool isTurned = false;
template <class S> constexpr bool isTurned<Turned<S>> = true;

// ---- Records of order n, of which at least one is read transposed. Where a few packs hold a record, its elements are
// exchanged in registers, but for doubles: too few of them are in a pack for that to be faster than pairs.
template <int n, class T> constexpr int packOfRecord() // the lanes of the packs, or 0
{
    int most = widest / int(sizeof(T));
    while (most > n * n) most /= 2;
    const int packs = (n * n + most - 1) / most;
    return packs <= (widest < 64 ? 2 : 5) && sizeof(T) == 4 ? most : 0;
}
template <int n, class V> struct RecordInPacks { // the last pack ends with the record
    static constexpr int packs = (n * n + lanes<V> - 1) / lanes<V>;
    static constexpr int at(int pack) { return std::min(pack * lanes<V>, n * n - lanes<V>); }
    V x[packs];

    template <int j, int s> struct Transposed {
        static constexpr int of(int l)
        {
            const int i = at(j) + l, e = i % n * n + i / n, from = e / lanes<V>, lane = e - at(from);
            return from == s ? lanes<V> + lane : s == 1 && from == 0 ? lane : l;
        }
    };
    template <class T> [[gnu::always_inline]] static RecordInPacks read(const T* src)
    {
        RecordInPacks r;
#pragma GCC unroll 8
        for (int i = 0; i < packs; ++i) r.x[i] = loadPack<V>(src + at(i));
        return r;
    }
    template <class T> [[gnu::always_inline]] static RecordInPacks read(Turned<const T*> src)
    {
        const RecordInPacks stored = read(src.stored);
        RecordInPacks r;
        if constexpr (packs == 1) r.x[0] = shuffled<Transposed<0, 1>, lanes<V>>(stored.x[0], stored.x[0]);
        else inSteps<Transposed, packs>(stored.x, r.x);
        return r;
    }
    template <class T> [[gnu::always_inline]] static RecordInPacks read(Same<T> src)
    {
        RecordInPacks r;
#pragma GCC unroll 8
        for (V& x : r.x) x = splat<V>(src.x);
        return r;
    }
};

// Element (i, j) of a record as it is read.
template <int n, class T> T elementAt(const T* src, int i, int j) { return src[i * n + j]; }
template <int n, class T> T elementAt(Turned<const T*> src, int i, int j) { return src.stored[j * n + i]; }
template <int n, class T> T elementAt(Same<T> src, int, int) { return src.x; }

// Elements (i + which, j) and (i + which, j + 1).
template <int which> struct OfPairs {
    static constexpr int of(int l) { return which + 2 * l; }
};
template <int which, int n, class V, class T> [[gnu::always_inline]] inline V pairAt(const T* src, int i, int j)
{
    return loadPack<V>(src + (i + which) * n + j);
}
template <int which, int n, class V, class T> [[gnu::always_inline]] inline V pairAt(Turned<const T*> src, int i, int j)
{
    const T* const p = src.stored + j * n + i;
    return shuffled<OfPairs<which>, 2>(loadPack<V>(p), loadPack<V>(p + n));
}
template <int which, int n, class V, class T> [[gnu::always_inline]] inline V pairAt(Same<T> src, int, int)
{
    return splat<V>(src.x);
}

template <int n, class T> [[gnu::always_inline]] inline void mapTransposed(auto f, T* dst, auto... src)
{
    if constexpr (constexpr int lanes = packOfRecord<n, T>(); lanes > 0) {
        using R = RecordInPacks<n, Pack<T, lanes * sizeof(T)>>;
        [&](const auto&... r) KESL_INLINE {
#pragma GCC unroll 8
            for (int i = 0; i < R::packs; ++i) storePack(dst + R::at(i), f(r.x[i]...));
        }(R::read(src)...);
    } else if constexpr (n < 5) { // all is read before anything is written, so that the compiler may choose the order
        T x[n * n];
#pragma GCC unroll 16
        for (int e = 0; e < n * n; ++e) x[e] = f(elementAt<n>(src, e / n, e % n)...);
#pragma GCC unroll 16
        for (int e = 0; e < n * n; ++e) dst[e] = x[e];
    } else { // likewise, two by two
        using Pair = Pack<T, 2 * sizeof(T)>;
        constexpr int even = n / 2 * 2;
        Pair x[n][n / 2];
        T last[2][n];
#pragma GCC unroll 6
        for (int i = 0; i < even; i += 2)
#pragma GCC unroll 3
            for (int j = 0; j < n / 2; ++j) {
                x[i][j] = f(pairAt<0, n, Pair>(src, i, 2 * j)...);
                x[i + 1][j] = f(pairAt<1, n, Pair>(src, i, 2 * j)...);
            }
        if constexpr (n > even)
#pragma GCC unroll 6
            for (int i = 0; i < n; ++i) {
                last[0][i] = f(elementAt<n>(src, even, i)...);
                last[1][i] = f(elementAt<n>(src, i, even)...);
            }
#pragma GCC unroll 6
        for (int i = 0; i < even; ++i)
#pragma GCC unroll 3
            for (int j = 0; j < n / 2; ++j) storePack(dst + i * n + 2 * j, x[i][j]);
        if constexpr (n > even)
#pragma GCC unroll 6
            for (int i = 0; i < n; ++i) dst[even * n + i] = last[0][i], dst[i * n + even] = last[1][i];
    }
}

// A large object that is transposed: by blocks, in registers. The lanes of V are rows of the source.
template <class V, class T> int moveTransposed(int j, int first, int last, int width, Rows<T> dst, Rows<const T> src)
{
    constexpr int c = lanes<V>;
    for (; j + c <= width; j += c) {
        int i = first;
        for (; i + c <= last; i += c) {
            V x[c];
            loadPieces<sizeof(V)>(Spaced<const T>{src.row(j) + i, src.stride1}, x);
#pragma GCC unroll 16
            for (int r = 0; r < c; ++r) storePack(dst.row(i + r) + j, x[r]);
        }
        for (; i < last; ++i) storePack(dst.row(i) + j, gathered<V>(Spaced<const T>{src.row(j) + i, src.stride1}));
    }
    return j;
}
template <class T> void moveTransposed(int height, int width, Rows<T> dst, Rows<const T> src)
{
    constexpr int block = 64; // rows of dst, so that their pages stay known
    for (int i = 0; i < height; i += std::min(block, height - i)) {
        const int last = i + std::min(block, height - i);
        int j = moveTransposed<Pack<T>>(0, i, last, width, dst, src);
        j = moveTransposed<Pack<T, 16>>(j, i, last, width, dst, src);
        for (; j < width; ++j)
            for (int r = i; r < last; ++r) dst(r, j) = src(j, r);
    }
}

} // namespace kesl
