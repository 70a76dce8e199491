// Products of any size of operands that lie anywhere, by packs of objects: these are brought into tiles, multiplied there like structures of
// arrays, and brought back. Sums begin at zero.
#pragma once
#include "frame/any_order.h"
#include "products/factors.h"
#include "products/tiles.h"

namespace kesl {

struct ProductSize {
    int M, K, N;
};
constexpr int mostInTile = 144; // elements of an object; three tiles of them are in the nearest cache
inline bool fitTiles(const ProductSize& s)
{
    return std::max({s.M, s.K, s.N}) <= tallest && std::max({s.M * s.K, s.K * s.N, s.M * s.N}) <= mostInTile;
}

// A vector as a factor is a column.
template <class T, Kind kind, bool array, Form F> Factor<T> column(const Operand<const T, kind, array, F>& o, int length)
{
    return {{o, 1, length}, array, true};
}

// Object k of an array, or a tile, element by element; `turned` if it is read transposed.
template <class T> ListedElements<T> listedIn(const Array<T>& a, int k, bool turned)
{
    return {a.list, a.shift + k * a.stride0, turned ? 1 : a.width, turned ? a.width : 1};
}
template <class T> Grid<T> gridIn(const Array<T>& a, int k, bool turned)
{
    return {a.object(k), turned ? a.stride2 : a.stride1, turned ? a.stride1 : a.stride2};
}
template <class T> Grid<const T> gridOf(const T* tile, int bytes, int width, bool turned)
{
    const std::int64_t row = std::int64_t(width) * bytes;
    return {tile, turned ? bytes : row, turned ? row : bytes};
}

// A factor in a loop over packs. A single one is copied: it lies as in a tile then.
template <class T> struct FactorInTiles {
    const Factor<T>& factor;
    int height, width; // as it is stored
    InPacks<const T> objects;
    T single[mostInTile];

    FactorInTiles(const Factor<T>& f, int h, int w, int count)
        : factor(f), height(f.isTransposed ? w : h), width(f.isTransposed ? h : w), objects(f.stored, f.isArray ? count : 0)
    {
        for (int i = 0; i < height && !f.isArray; ++i)
            for (int j = 0; j < width; ++j) single[i * width + j] = *f.stored.element(0, i, j);
    }
    template <class V> [[gnu::always_inline]] Grid<const T> in(V* tile, Objects<V> k) const
    {
        if (!factor.isArray) return gridOf(single, sizeof(T), width, factor.isTransposed);
        loadTile(objects, k.first, tile, height, width);
        return gridOf(reinterpret_cast<const T*>(tile), sizeof(V), width, factor.isTransposed);
    }
};

// One object.
template <class T> [[gnu::noinline]] void productAnywhere(const ProductSize& s, const Factor<T>& a, const Factor<T>& b,
                                                          const Factor<T>* added, const Array<T>& dst, bool turned, int k)
{
    const auto add = [&](auto to, auto y) {
        for (int i = 0; i < s.M; ++i) to(i, 0) = to(i, 0) + y(i, 0);
    };
    if (dst.cells) {
        const auto to = listedIn(dst, k, turned);
        product<false>(plusZero<T>, listedIn(a.stored, k, a.isTransposed), listedIn(b.stored, k, b.isTransposed), to, s.M,
                       s.N, s.K);
        if (added) add(to, listedIn(added->stored, k, true));
    } else {
        const auto to = gridIn(dst, k, turned);
        product<false>(plusZero<T>, gridIn(a.stored, k, a.isTransposed), gridIn(b.stored, k, b.isTransposed), to, s.M, s.N,
                       s.K);
        if (added) add(to, gridIn(added->stored, k, true));
    }
}

// All objects. `added` are vectors; `turned` says that the products are columns.
template <class T> [[gnu::noinline]] void productsOfAnySize(const ProductSize& s, const Factor<T>& a, const Factor<T>& b,
                                                            const Factor<T>* added, const Array<T>& dst, bool turned,
                                                            int count)
{
    const auto one = [&](int k) { productAnywhere(s, a, b, added, dst, turned, k); };
    if (!fitTiles(s) || count < InPacks<T>::leastLanes) {
        for (int k = 0; k < count; ++k) one(k);
        return;
    }
    const FactorInTiles<T> left(a, s.M, s.K, count), right(b, s.K, s.N, count),
        summand(added ? *added : b, added ? s.M : 0, 1, count);
    const InPacks<T> to(dst, count);
    eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_ONCE {
        if constexpr (lanes<V> == 1) one(k.first);
        else {
            V x[mostInTile], y[mostInTile], sums[mostInTile];
            const auto p = left.in(x, k), q = right.in(y, k);
            const Grid<T> r{reinterpret_cast<T*>(sums), s.N * int(sizeof(V)), sizeof(V)};
            if (!a.isArray) productOfLanes<V, false, true>(plusZero<T>, p, q, r, s.M, s.N, s.K);
            else if (!b.isArray) productOfLanes<V, true, false>(plusZero<T>, p, q, r, s.M, s.N, s.K);
            else productOfLanes<V, true, true>(plusZero<T>, p, q, r, s.M, s.N, s.K);
            if (added) {
                const auto more = summand.in(y, k);
                for (int i = 0; i < s.M; ++i)
                    sums[i] = sums[i] + (added->isArray ? loadPack<V>(&more(i, 0)) : splat<V>(more(i, 0)));
            }
            storeTile(to, k.first, sums, turned ? 1 : s.M, turned ? s.M : s.N);
        }
    });
}

// ---- Compiled once (any_layout_32f.cpp, any_layout_64f.cpp).
// clang-format off
#define KESL_ANY_SIZE_FUNCTION(how, T)                                                                                \
    how template void productsOfAnySize<T>(const ProductSize&, const Factor<T>&, const Factor<T>&, const Factor<T>*,  \
                                           const Array<T>&, bool, int);
KESL_ANY_SIZE_FUNCTION(extern, float)
KESL_ANY_SIZE_FUNCTION(extern, double)
// clang-format on

} // namespace kesl
