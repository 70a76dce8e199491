// Operands: a stack as a pack of objects reads and writes it, by the shortest road that its strides allow.
#pragma once
#include "frame/blocks.h"
#include "stacks/stack.h"
#include "stacks/tile.h"

namespace kesl::stacks {

enum class Road {
    planes,  // element (i, j) of all objects side by side: a structure of arrays
    records, // objects without gaps, one behind another, transposed in registers
    turned,  // such objects stored by columns
    rows,    // contiguous rows
    columns, // contiguous columns
    one,     // a single object, for all lanes
    any      // lane by lane
};

// The objects of a pack: the first one, and how many there are. Lanes beyond these hold the last one once more.
struct Objects {
    std::ptrdiff_t first;
    int count;
};

// The addresses of one element in all objects of a pack: of records, at distances that the compiler knows; and of any.
template <class T, int size> struct Records {
    T* first;
    T* operator()(int l) const { return first + l * size; }
    Records operator+(int elements) const { return {first + elements}; }
};
template <class T> struct Addresses {
    T* first;
    const std::ptrdiff_t* offset; // in bytes, one for each lane
    T* operator()(int l) const { return moved(first, offset[l]); }
    Addresses operator+(int elements) const { return {first + elements, offset}; }
};

// One object by its contiguous rows, or columns.
template <class T> struct Lines {
    T* p;
    std::ptrdiff_t stride;
    T* row(std::ptrdiff_t i) const { return moved(p, i * stride); }
    T& operator()(std::ptrdiff_t i, std::ptrdiff_t j) const { return row(i)[j]; }
};

// n elements of each of the records that begin at p. Very short ones are read as whole packs, unless that takes more shuffles.
template <int lanes, int which> struct Alternate { // 0 2 4 ... or 1 3 5 ... of two packs, and back
    static constexpr int of(int l) { return 2 * l + which; }
};
template <int lanes, int half> struct Mixed {
    static constexpr int of(int l) { return half * lanes / 2 + l / 2 + l % 2 * lanes; }
};
template <int n> constexpr bool areShort = n <= 4 || n == 6;
template <int n, class V> [[gnu::always_inline]] inline void packsToObjects(const V* packs, V* x)
{
    if constexpr (n == 1) *x = *packs;
    else if constexpr (n == 2) {
        const V a = packs[0], b = packs[1];
        x[0] = shuffled<Alternate<lanes<V>, 0>, lanes<V>>(a, b), x[1] = shuffled<Alternate<lanes<V>, 1>, lanes<V>>(a, b);
    } else runToObjects<n>(packs, x);
}
template <int n, class V, class T> [[gnu::always_inline]] inline void loadRecords(T* p, V* x)
{
    if constexpr (areShort<n>) {
        V packs[n];
        loop<Fixed<n>>(0, n, [&](int i) KESL_INLINE { packs[i] = loadPack<V>(p + i * lanes<V>); });
        packsToObjects<n>(packs, x);
    } else loadRun<n>(Records<T, n>{p}, x);
}
template <int n, class V, class T> [[gnu::always_inline]] inline void storeRecords(T* p, const V* x)
{
    if constexpr (n == 1) storePack(p, *x);
    else if constexpr (n == 2) {
        storePack(p, shuffled<Mixed<lanes<V>, 0>, lanes<V>>(x[0], x[1]));
        storePack(p + lanes<V>, shuffled<Mixed<lanes<V>, 1>, lanes<V>>(x[0], x[1]));
    } else if constexpr (n <= 4 || n == 6) storeTable<n>(p, x);
    else storeRun<n>(Records<T, n>{p}, x);
}

// n contiguous elements of each object. A last partial piece overlaps the one before it.
template <class V, class T> void loadElements(Addresses<T> at, int n, V* x)
{
    if (n >= perPiece<16, V>) return loadRun(at, x, n);
    for (int e = 0; e < n; ++e) x[e] = gathered<V>(at + e);
}
template <class V, class T> void storeElements(Addresses<T> at, int n, const V* x)
{
    if (n >= perPiece<16, V>) return storeRun(at, x, n);
    for (int e = 0; e < n; ++e) scatter(at + e, x[e]);
}

// An operand prepared for packs V. Ints beside doubles are in wider lanes than in memory.
template <class V, class T> class Operand {
public:
    using Element = T;
    T* p;

    // For packs of so many objects.
    Operand(const auto& stack, std::ptrdiff_t rows, std::ptrdiff_t columns, int objects)
        : p(stack.p), stride0(stack.stride0), stride1(stack.stride1), stride2(stack.stride2), elements(rows * columns)
    {
        if (stack.isDiagonal) stride2 += stride1, elements = columns, rows = 1;
        if (elements == 0) stride0 = stride1 = stride2 = 0; // there may be no storage to move in
        road = roadOf(rows, columns, objects);
        if (road != Road::planes && road != Road::one)
            for (int l = 0; l < lanes<V>; ++l) offset[l] = std::min(l, objects - 1) * stride0;
    }

    // As many rows and columns of each object as the tile has, from a first one on.
    template <class N, class M>
    [[gnu::always_inline]] void load(Objects k, Tile<V, N, M>& x, std::ptrdiff_t row = 0, std::ptrdiff_t column = 0) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return address(k, row + i, column + j); };
        if (road == Road::planes)
            return each(x, [&](int i, int j) KESL_INLINE { x(i, j) = asLanes(loadPack<Stored>(at(i, j))); });
        if (road == Road::one) return each(x, [&](int i, int j) KESL_INLINE { x(i, j) = splat<V>(*at(i, j)); });
        if constexpr (isFixed<N> && isFixed<M>) {
            if constexpr (isTransposable)
                if (areRecords(x)) {
                    Stored y[most<N> * most<M>];
                    loadRecords<most<N> * most<M>>(at(0, 0), y);
                    if (road == Road::turned) each(x, [&](int i, int j) KESL_INLINE { x(i, j) = asLanes(y[j * x.n + i]); });
                    else each(x, [&](int i, int j) KESL_INLINE { x(i, j) = asLanes(y[i * x.m + j]); });
                    return;
                }
            Tile<V, N, M> y(x.rows(), x.columns()); // so that x may stay in registers
            loadApart(k, y.e, x.n, x.m, row, column);
            each(x, [&](int i, int j) KESL_INLINE { x(i, j) = y(i, j); });
        } else loadApart(k, x.e, x.n, x.m, row, column);
    }
    template <class N, class M> [[gnu::always_inline]] void store(Objects k, const Tile<V, N, M>& x, std::ptrdiff_t row = 0,
                                                                  std::ptrdiff_t column = 0) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return address(k, row + i, column + j); };
        if (road == Road::planes) return each(x, [&](int i, int j) KESL_INLINE { storePack(at(i, j), asStored(x(i, j))); });
        if (road == Road::one) return each(x, [&](int i, int j) KESL_INLINE { *at(i, j) = T(x(i, j)[0]); });
        if constexpr (isFixed<N> && isFixed<M>) {
            if constexpr (isTransposable)
                if (areRecords(x)) {
                    Stored y[most<N> * most<M>];
                    if (road == Road::turned) each(x, [&](int i, int j) KESL_INLINE { y[j * x.n + i] = asStored(x(i, j)); });
                    else each(x, [&](int i, int j) KESL_INLINE { y[i * x.m + j] = asStored(x(i, j)); });
                    return storeRecords<most<N> * most<M>>(at(0, 0), y);
                }
            Tile<V, N, M> y(x.rows(), x.columns());
            each(x, [&](int i, int j) KESL_INLINE { y(i, j) = x(i, j); });
            storeApart(k, y.e, x.n, x.m, row, column);
        } else storeApart(k, x.e, x.n, x.m, row, column);
    }

    // Single objects whose rows, or columns, are contiguous: object l of a pack.
    bool hasRows() const { return stride2 == size; }
    bool hasColumns() const { return stride1 == size; }
    auto rows(Objects k) const { return single(moved(p, k.first * stride0), stride0, stride1); }
    auto columns(Objects k) const { return single(moved(p, k.first * stride0), stride0, stride2); }
    // The same, or their transposes, wherever their elements lie.
    auto grids(Objects k) const { return grids(moved(p, k.first * stride0), stride0, stride1, stride2); }
    auto transposes(Objects k) const { return grids(moved(p, k.first * stride0), stride0, stride2, stride1); }
    bool isAt(const auto& other) const { return p == other.p; }

    // Vectors: whether those of a pack are contiguous, and have no gaps between them either; where their elements lie.
    bool areRuns() const { return road == Road::records || road == Road::rows; }
    bool areRecords() const { return road == Road::records; }
    bool areScattered() const { return road == Road::any; }
    T* element(Objects k, int l, std::ptrdiff_t j) const { return moved(p, (k.first + l) * stride0 + j * stride2); }
    Addresses<T> addresses(Objects k, std::ptrdiff_t i = 0, std::ptrdiff_t j = 0) const
    {
        return {address(k, i, j), offset};
    }

private:
    using Stored = Pack<T, lanes<V>* int(sizeof(T))>;
    static constexpr bool isLane = sizeof(T) == sizeof(ElementOf<V>), isTransposable = sizeof(Stored) >= 16;
    static constexpr std::ptrdiff_t size = sizeof(T);
    std::ptrdiff_t stride0, stride1, stride2, elements;
    Road road;
    std::ptrdiff_t offset[lanes<V>];

    Road roadOf(std::ptrdiff_t rows, std::ptrdiff_t columns, int objects) const
    {
        const bool isFull = objects == lanes<V>;
        if (objects == 1 || stride0 == 0) return Road::one;
        if (isFull && stride0 == size) return Road::planes;
        const bool byRows = stride2 == size || columns == 1, byColumns = stride1 == size || rows == 1;
        if (isFull && stride0 == elements * size && elements > 0) {
            if (byRows && (stride1 == columns * size || rows == 1)) return Road::records;
            if (byColumns && (stride2 == rows * size || columns == 1)) return Road::turned;
        }
        if (!isLane) return Road::any;
        if (stride2 == size && (columns > 1 || rows == 1)) return Road::rows;
        return stride1 == size ? Road::columns : Road::any;
    }
    // Whether the tile has all elements of such objects.
    [[gnu::always_inline]] bool areRecords(const auto& x) const
    {
        return (road == Road::records || road == Road::turned) && elements == x.n * x.m;
    }

    static auto single(T* first, std::ptrdiff_t distance, std::ptrdiff_t stride)
    {
        return [=](int l) { return Lines<T>{moved(first, l * distance), stride}; };
    }
    static auto grids(T* first, std::ptrdiff_t distance, std::ptrdiff_t ofRows, std::ptrdiff_t ofColumns)
    {
        return [=](int l) { return Grid<T>{moved(first, l * distance), ofRows, ofColumns}; };
    }
    static V asLanes(Stored x)
    {
        if constexpr (isLane) return x;
        else return __builtin_convertvector(x, V);
    }
    static Stored asStored(V x)
    {
        if constexpr (isLane) return x;
        else return __builtin_convertvector(x, Stored);
    }
    T* address(Objects k, std::ptrdiff_t i, std::ptrdiff_t j) const
    {
        return moved(p, k.first * stride0 + i * stride1 + j * stride2);
    }
    // The other roads, by functions that bodies of all sizes share: rows or columns with gaps, and lane by lane.
    // Rows without gaps are one long row.
    void joinRows(int& rows, int& columns) const
    {
        if (stride1 == columns * size) columns *= rows, rows = 1;
    }
    [[gnu::noinline]] void loadApart(Objects k, V* x, int rows, int columns, std::ptrdiff_t row, std::ptrdiff_t column) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return addresses(k, row + i, column + j); };
        if constexpr (isLane) {
            if (road == Road::rows || road == Road::records) {
                joinRows(rows, columns);
                for (int i = 0; i < rows; ++i) loadElements(at(i, 0), columns, x + i * columns);
                return;
            }
            if (road == Road::columns || road == Road::turned) {
                V line[largestSize];
                for (int j = 0; j < columns; ++j) {
                    loadElements(at(0, j), rows, line);
                    for (int i = 0; i < rows; ++i) x[i * columns + j] = line[i];
                }
                return;
            }
        }
        for (int i = 0; i < rows; ++i)
            for (int j = 0; j < columns; ++j) x[i * columns + j] = gathered<V>(at(i, j));
    }
    [[gnu::noinline]] void storeApart(Objects k, const V* x, int rows, int columns, std::ptrdiff_t row,
                                      std::ptrdiff_t column) const
    {
        const auto at = [&](int i, int j) KESL_INLINE { return addresses(k, row + i, column + j); };
        if constexpr (isLane) {
            if (road == Road::rows || road == Road::records) {
                joinRows(rows, columns);
                for (int i = 0; i < rows; ++i) storeElements(at(i, 0), columns, x + i * columns);
                return;
            }
            if (road == Road::columns || road == Road::turned) {
                V line[largestSize];
                for (int j = 0; j < columns; ++j) {
                    for (int i = 0; i < rows; ++i) line[i] = x[i * columns + j];
                    storeElements(at(0, j), rows, line);
                }
                return;
            }
        }
        for (int i = 0; i < rows; ++i)
            for (int j = 0; j < columns; ++j)
                for (int l = 0; l < lanes<V>; ++l) *at(i, j)(l) = T(x[i * columns + j][l]);
    }
};

} // namespace kesl::stacks
