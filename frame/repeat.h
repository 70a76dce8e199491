// Arrays without any gap, and single operands and constants beside them.
#pragma once
#include "frame/anywhere.h"
#include "frame/stream.h"

#include <cstring>

namespace kesl {

// ---- Arrays without any gap, and single operands beside them.

// A source of the run: an array itself, or a single operand that is repeated to the length of a piece and of an object more.
// A piece is a multiple of 16 objects, so that all pieces are aligned alike.
constexpr int mostRepeated = 6 * 6, fewObjects = 4;
constexpr int objectsPerPiece(int each) { return mostRepeated / each * 16; }

// run() makes of each what is read in the loop: copied there, so that nothing can alias it.
template <class T> struct WholeRun {
    const T* p;
    WholeRun run(int, int, int) const { return *this; }
    const T* from(std::int64_t element) const { return p + element; }
    const T* object(int k, int n) const { return p + std::int64_t(k) * n; }
};
template <class T> struct RepeatedRun {
    int each;
    T e[mostRepeated * (16 + 1)];
    RepeatedRun(const Anywhere<const T>& single, int height, int width, int count) : each(height * width)
    {
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) e[i * width + j] = *single(0, i, j);
        const int all = each * (std::min(count, objectsPerPiece(each)) + 1);
        for (int done = each; done < all; done *= 2)
            std::memcpy(e + done, e, std::size_t(std::min(done, all - done)) * sizeof *e);
    }
    const T* from(std::int64_t element) const { return e + element % each; }
    const T* object(int, int) const { return e; }
};
template <class T> struct Repeated {
    Anywhere<const T> single;
    RepeatedRun<T> run(int height, int width, int count) const { return {single, height, width, count}; }
};
template <class T> struct Everywhere { // a constant by value
    Same<T> same;
    Everywhere run(int, int, int) const { return *this; }
    auto from(std::int64_t) const { return same; }
    auto object(int, int) const { return same; }
};
template <class T, bool together> struct OnePerObject { // constants in an array, without gaps between them or with
    const T* p;
    std::int64_t stride0;
    OnePerObject run(int, int, int) const { return *this; }
    template <class V> V each(int k) const
    {
        if constexpr (together) return loadPack<V>(p + k);
        else if constexpr (lanes<V> == 1) return *moved(p, k * stride0);
        else return gathered<V>(Spaced<const T>{moved(p, k * stride0), stride0});
    }
};

template <class T> [[gnu::always_inline]] inline void mapRuns(int each, int count, auto f, T* dst, const auto&... src)
{
    const std::int64_t n = std::int64_t(each) * count, piece = each * objectsPerPiece(each);
    mapFromHead(
        n, f, dst,
        [&](auto past, std::int64_t e) KESL_INLINE {
            for (; e < n; e += piece) mapBody<past>(0, std::min(piece, n - e), f, dst + e, src.from(e)...);
        },
        src.from(0)...);
}
template <class T> KESL_ONCE void mapPieces(int height, int width, int count, auto f, T* dst, auto... src)
{
    mapRuns(height * width, count, f, dst, src.run(height, width, count)...);
}

// Vectors of a fixed length n with a constant for each: as many as a pack has lanes are n packs, over which the constants
// are spread.
template <int n, int e, int lanes> struct OwnerOf {
    static constexpr int of(int l) { return (e * lanes + l) / n; }
};

// A source of the objects k, k + 1, ... in the lanes of V, as a function that gives pack e of their n.
template <int n, class V> [[gnu::always_inline]] inline auto packsOf(const auto& src, int k)
{
    if constexpr (requires { src.template each<V>(k); })
        return [x = src.template each<V>(k)](auto e) {
            if constexpr (lanes<V> == 1) return x;
            else return shuffled<OwnerOf<n, e, lanes<V>>, lanes<V>>(x, x);
        };
    else return [run = src.object(k, n)](auto e) { return valueAt<V>(run, e * lanes<V>); };
}
template <int n, class T> [[gnu::always_inline]] inline void mapVectorRuns(int count, auto f, T* dst, const auto&... src)
{
    eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
        T* const to = dst + std::int64_t(k.first) * n;
        const auto step = [&](auto... packs) KESL_INLINE {
            const auto store = [&](auto e) KESL_INLINE { storePack<V>(to + e * lanes<V>, f(packs(e)...)); };
            [&]<int... e>(std::integer_sequence<int, e...>)
                KESL_INLINE { (store(Fixed<e>{}), ...); }(std::make_integer_sequence<int, n>{});
        };
        step(packsOf<n, V>(src, k.first)...);
        return KeslStatus(keslStatusOk);
    });
}

template <int n, class T> KESL_ONCE void mapVectors(int count, auto f, T* dst, auto... src)
{
    mapVectorRuns<n>(count, f, dst, src.run(1, n, lanes<Pack<T>>)...);
}

} // namespace kesl
