// Operands: a stack as a pack of objects reads and writes it, by the shortest road that its strides allow.
#pragma once
#include "frame/blocks.h"
#include "stacks/stack.h"
#include "stacks/tile.h"

namespace kesl::stacks {

enum class Road {
    planes,  // element (i, j) of all objects side by side: a structure of arrays
    rows,    // contiguous rows, transposed in registers
    columns, // contiguous columns: the same with rows and columns exchanged
    one,     // a single object for all lanes
    any      // lane by lane
};

// The objects of a pack: the first one, and how many there are. Lanes beyond these hold the last one once more.
struct Objects {
    std::ptrdiff_t first;
    int count;
};

// The addresses of one element in all objects of a pack.
template <class T> struct Addresses {
    T* first;
    const std::ptrdiff_t* offset; // in bytes, one for each lane
    T* operator()(int l) const { return moved(first, offset[l]); }
    Addresses operator+(int elements) const { return {first + elements, offset}; }
};

// n contiguous elements of each object, n being known or not.
template <class V, class N> [[gnu::always_inline]] inline void loadElements(auto at, N n, V* x)
{
    if constexpr (isFixed<N>) loadRun<N::value>(at, x);
    else {
        constexpr int wide = perPiece<sizeof(V), V>, narrow = perPiece<16, V>;
        int e = 0;
        for (; e + wide <= n; e += wide) loadPieces<sizeof(V)>(at + e, x + e);
        for (; e + narrow <= n; e += narrow) loadPieces<16>(at + e, x + e);
        for (; e < n; ++e) x[e] = gathered<V>(at + e);
    }
}
template <class V, class N> [[gnu::always_inline]] inline void storeElements(auto at, N n, const V* x)
{
    if constexpr (isFixed<N>) storeRun<N::value>(at, x);
    else {
        constexpr int wide = perPiece<sizeof(V), V>, narrow = perPiece<16, V>;
        int e = 0;
        for (; e + wide <= n; e += wide) storePieces<sizeof(V)>(at + e, x + e);
        for (; e + narrow <= n; e += narrow) storePieces<16>(at + e, x + e);
        for (; e < n; ++e) scatter(at + e, x[e]);
    }
}
template <class V, class N, class M> auto elementsOf(const Tile<V, N, M>& x)
{
    if constexpr (isFixed<N> && isFixed<M>) return Fixed<N::value * M::value>{};
    else return x.n * x.m;
}

// An operand prepared for packs V. Pivots beside doubles are ints in wider lanes, which are read and written one by one.
template <class V, class T> class Operand {
public:
    using Element = T;
    T* p;

    // For packs of so many objects.
    Operand(const auto& stack, std::ptrdiff_t rows, std::ptrdiff_t columns, int objects)
        : p(stack.p), stride0(stack.stride0), stride1(stack.stride1), stride2(stack.stride2)
    {
        if (stack.isDiagonal) stride2 += stride1, rows = 1;
        if (objects == 1) {
            road = Road::one;
            return;
        }
        if (!isLane) road = Road::any;
        else if (stride0 == each) road = objects == lanes<V> ? Road::planes : Road::any;
        else if (stride2 == each && (columns > 1 || rows == 1)) road = Road::rows;
        else if (stride1 == each) road = Road::columns;
        else road = Road::any;
        for (int l = 0; l < lanes<V>; ++l) offset[l] = std::min(l, objects - 1) * stride0;
    }

    // As many rows and columns of each object as the tile has, from a first one on.
    template <class N, class M>
    [[gnu::always_inline]] void load(Objects k, Tile<V, N, M>& x, std::ptrdiff_t row = 0, std::ptrdiff_t column = 0) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return addresses(k, row + i, column + j); };
        if (road == Road::one) return eachOf(x, [&](int i, int j) { x(i, j) = splat<V>(*at(i, j).first); });
        if (road == Road::any || !isLane) return eachOf(x, [&](int i, int j) { x(i, j) = gathered<V>(at(i, j)); });
        if constexpr (isLane) {
            if (road == Road::planes) return eachOf(x, [&](int i, int j) { x(i, j) = loadPack<V>(at(i, j).first); });
            if (road == Road::rows) return loadRows(x, stride1, at);
            Tile<V, M, N> y(x.columns(), x.rows());
            loadRows(y, stride2, [&](int i, int j) KESL_INLINE { return at(j, i); });
            eachOf(x, [&](int i, int j) { x(i, j) = y(j, i); });
        }
    }
    template <class N, class M>
    [[gnu::always_inline]] void store(Objects k, const Tile<V, N, M>& x, std::ptrdiff_t row = 0, std::ptrdiff_t column = 0) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return addresses(k, row + i, column + j); };
        if (road == Road::one) return eachOf(x, [&](int i, int j) { *at(i, j).first = T(x(i, j)[0]); });
        if (road == Road::any || !isLane)
            return eachOf(x, [&](int i, int j) {
                for (int l = 0; l < lanes<V>; ++l) *at(i, j)(l) = T(x(i, j)[l]);
            });
        if constexpr (isLane) {
            if (road == Road::planes) return eachOf(x, [&](int i, int j) { storePack(at(i, j).first, x(i, j)); });
            if (road == Road::rows) return storeRows(x, stride1, at);
            Tile<V, M, N> y(x.columns(), x.rows());
            eachOf(x, [&](int i, int j) { y(j, i) = x(i, j); });
            storeRows(y, stride2, [&](int i, int j) KESL_INLINE { return at(j, i); });
        }
    }

private:
    static constexpr bool isLane = sizeof(T) == sizeof(ElementOf<V>);
    static constexpr std::ptrdiff_t each = sizeof(T);
    std::ptrdiff_t stride0, stride1, stride2;
    Road road;
    std::ptrdiff_t offset[lanes<V>];

    Addresses<T> addresses(Objects k, std::ptrdiff_t i, std::ptrdiff_t j) const
    {
        return {moved(p, k.first * stride0 + i * stride1 + j * stride2), offset};
    }
    // Contiguous rows, `stride` bytes apart: without a gap between them they are one run.
    [[gnu::always_inline]] static void loadRows(auto& x, std::ptrdiff_t stride, auto at)
    {
        if (stride == x.m * each) return loadElements(at(0, 0), elementsOf(x), x.e);
        for (int i = 0; i < x.n; ++i) loadElements(at(i, 0), x.columns(), &x(i, 0));
    }
    [[gnu::always_inline]] static void storeRows(const auto& x, std::ptrdiff_t stride, auto at)
    {
        if (stride == x.m * each) return storeElements(at(0, 0), elementsOf(x), x.e);
        for (int i = 0; i < x.n; ++i) storeElements(at(i, 0), x.columns(), &x(i, 0));
    }
    [[gnu::always_inline]] static void eachOf(const auto& x, auto f)
    {
        for (int i = 0; i < x.n; ++i)
            for (int j = 0; j < x.m; ++j) f(i, j);
    }
};

} // namespace kesl::stacks
