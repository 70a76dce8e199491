// Operands: a stack as a pack of objects reads and writes it, by the shortest road that its strides allow.
#pragma once
#include "frame/blocks.h"
#include "stacks/stack.h"
#include "stacks/tile.h"

#include <utility>

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
        if constexpr (isLane) {
            if (road == Road::planes) return eachOf(x, [&](int i, int j) { x(i, j) = loadPack<V>(at(i, j).first); });
            if (isRecord(x)) {
                if constexpr (std::is_same_v<N, M> && isFixed<N>) {
                    loadElements(at(0, 0), elementsOf(x), x.e);
                    if (road == Road::columns) transpose(x);
                } else if (road == Road::rows) loadElements(at(0, 0), elementsOf(x), x.e);
                else {
                    Tile<V, M, N> y(x.columns(), x.rows());
                    loadElements(at(0, 0), elementsOf(x), y.e);
                    eachOf(x, [&](int i, int j) { x(i, j) = y(j, i); });
                }
                return;
            }
        }
        if constexpr (isFixed<N> && isFixed<M>) {
            Tile<V, N, M> y(x.rows(), x.columns()); // so that x may stay in registers
            loadApart(k, y.e, x.n, x.m, row, column);
            x = y;
        } else loadApart(k, x.e, x.n, x.m, row, column);
    }
    template <class N, class M> [[gnu::always_inline]] void store(Objects k, const Tile<V, N, M>& x, std::ptrdiff_t row = 0,
                                                                  std::ptrdiff_t column = 0) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return addresses(k, row + i, column + j); };
        if constexpr (isLane) {
            if (road == Road::planes) return eachOf(x, [&](int i, int j) { storePack(at(i, j).first, x(i, j)); });
            if (isRecord(x)) {
                if constexpr (std::is_same_v<N, M> && isFixed<N>) {
                    Tile<V, N, M> y = x;
                    if (road == Road::columns) transpose(y);
                    storeElements(at(0, 0), elementsOf(y), y.e);
                } else if (road == Road::rows) storeElements(at(0, 0), elementsOf(x), x.e);
                else {
                    Tile<V, M, N> y(x.columns(), x.rows());
                    eachOf(x, [&](int i, int j) { y(j, i) = x(i, j); });
                    storeElements(at(0, 0), elementsOf(x), y.e);
                }
                return;
            }
        }
        if constexpr (isFixed<N> && isFixed<M>) {
            const Tile<V, N, M> y = x;
            storeApart(k, y.e, x.n, x.m, row, column);
        } else storeApart(k, x.e, x.n, x.m, row, column);
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
    // Whether the objects have no gaps between their rows, or their columns.
    [[gnu::always_inline]] bool isRecord(const auto& x) const
    {
        return road == Road::rows ? stride1 == x.m * each || x.n == 1
                                  : road == Road::columns && (stride2 == x.n * each || x.m == 1);
    }
    [[gnu::always_inline]] static void transpose(auto& x)
    {
        for (int i = 0; i < x.n; ++i)
            for (int j = 0; j < i; ++j) std::swap(x(i, j), x(j, i));
    }
    [[gnu::always_inline]] static void eachOf(const auto& x, auto f)
    {
        for (int i = 0; i < x.n; ++i)
            for (int j = 0; j < x.m; ++j) f(i, j);
    }

    // The other roads, by functions that bodies of all sizes share: rows or columns with gaps, and lane by lane.
    [[gnu::noinline]] void loadApart(Objects k, V* x, int rows, int columns, std::ptrdiff_t row, std::ptrdiff_t column) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return addresses(k, row + i, column + j); };
        if constexpr (isLane) {
            if (road == Road::rows) {
                for (int i = 0; i < rows; ++i) loadElements(at(i, 0), columns, x + i * columns);
                return;
            }
            if (road == Road::columns) {
                V line[largestSize];
                for (int j = 0; j < columns; ++j) {
                    loadElements(at(0, j), rows, line);
                    for (int i = 0; i < rows; ++i) x[i * columns + j] = line[i];
                }
                return;
            }
        }
        for (int i = 0; i < rows; ++i)
            for (int j = 0; j < columns; ++j)
                x[i * columns + j] = road == Road::one ? splat<V>(*at(i, j).first) : gathered<V>(at(i, j));
    }
    [[gnu::noinline]] void storeApart(Objects k, const V* x, int rows, int columns, std::ptrdiff_t row,
                                      std::ptrdiff_t column) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return addresses(k, row + i, column + j); };
        if constexpr (isLane) {
            if (road == Road::rows) {
                for (int i = 0; i < rows; ++i) storeElements(at(i, 0), columns, x + i * columns);
                return;
            }
            if (road == Road::columns) {
                V line[largestSize];
                for (int j = 0; j < columns; ++j) {
                    for (int i = 0; i < rows; ++i) line[i] = x[i * columns + j];
                    storeElements(at(0, j), rows, line);
                }
                return;
            }
        }
        for (int i = 0; i < rows; ++i)
            for (int j = 0; j < columns; ++j) {
                const V value = x[i * columns + j];
                if (road == Road::one) *at(i, j).first = T(value[0]);
                else
                    for (int l = 0; l < lanes<V>; ++l) *at(i, j)(l) = T(value[l]);
            }
    }
};

} // namespace kesl::stacks
