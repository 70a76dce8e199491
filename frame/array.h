// Array operands whose layout is data, so that one body serves all kernels of a family.
//
//              lie                     read and written
//     S, L     record, run or rows     16 to 64 bytes of an object at a time, transposed in registers (blocks.h, runs.h)
//     S2, P    side by side            a pack at a time
//     others   apart                   element by element, by functions of the library
//
// Blocks of up to 16 elements are read and written in line, so that a body finds them in registers: it stands once, behind a
// choice that is the same for all packs of a call. Larger ones go by functions that are compiled once (array_32f.cpp,
// array_64f.cpp).
#pragma once
#include "frame/blocks.h"
#include "frame/objects.h"

#include <cstring>

namespace kesl {

// How the elements of objects one behind another lie.
enum class Lie {
    run,        // vectors without a gap between them
    record,     // matrices without a gap between their rows; vectors
    rows,       // rows without a gap between their elements
    sideBySide, // the same element of all objects without a gap
    apart
};

template <class T> struct Array {
    T* first{};       // standard layout
    T* const* list{}; // L: a pointer for each object; P: for each element
    std::int64_t shift, stride0, stride1, stride2;
    int width;
    int cells; // whether it is P
    Lie lie;

    template <Kind kind, bool isArray, Form F>
    [[gnu::always_inline]] Array(const Operand<T, kind, isArray, F>& o, int height, int columns)
        : shift(o.shift), stride0(o.stride0), stride1(o.stride1), stride2(o.stride2), width(columns), cells(F == P)
    {
        const std::int64_t row = columns * std::int64_t(sizeof(T));
        if constexpr (Operand<T, kind, isArray, F>::lists) list = o.p;
        else first = o.p;
        if (F == P || !o.rowsAreContiguous()) lie = !inL(F) && stride0 == int(sizeof(T)) ? Lie::sideBySide : Lie::apart;
        else if (kind == Kind::vector) lie = !inL(F) && stride0 == row ? Lie::run : Lie::record;
        else lie = height == 1 || stride1 == row ? Lie::record : Lie::rows;
    }

    Array(T* f, T* const* l, std::int64_t s, std::int64_t s0, std::int64_t s1, std::int64_t s2, int w, int c, Lie how)
        : first(f), list(l), shift(s), stride0(s0), stride1(s1), stride2(s2), width(w), cells(c), lie(how)
    {
    }

    // Element (i, j) of object k. In the standard layout and P the others lie stride0 apart.
    [[gnu::always_inline]] T* element(int k, int i, int j) const
    {
        if (cells) return moved(list[std::int64_t(i) * width + j], shift + k * stride0);
        return moved(object(k), i * stride1 + j * stride2);
    }
    T* object(int k) const { return list ? moved(list[k], shift) : moved(first, k * stride0); }
};

// An array in a loop over packs: a copy that nobody changes meanwhile. It is made field by field, as they were written a
// moment ago: reads of several at once would wait until these writes have left the processor.
template <class T> struct InPacks : Array<T> {
    static constexpr int mostLanes = widest / int(sizeof(T)), leastLanes = mostLanes < 4 ? mostLanes : 4;
    T* lanes[mostLanes]; // the first objects, where there is no list: those of any pack lie a shift further

    [[gnu::always_inline]] InPacks(const Array<T>& a, int count)
        : Array<T>{alone(a.first),   alone(a.list),  alone(a.shift), alone(a.stride0), alone(a.stride1),
                   alone(a.stride2), alone(a.width), alone(a.cells), alone(a.lie)}
    {
        if (this->list || this->lie > Lie::rows || count < leastLanes) return;
        for (int l = 0; l < (count < mostLanes ? leastLanes : mostLanes); ++l)
            lanes[l] = alone(moved(this->first, l * this->stride0));
    }
    // The first elements of objects k, k + 1, ...; not of P.
    Listed<T> objects(int k) const
    {
        return this->list ? Listed<T>{this->list + k, this->shift} : Listed<T>{lanes, k * this->stride0};
    }

private:
    template <class X> [[gnu::always_inline]] static X alone(X x)
    {
        asm("" : "+r"(x));
        return x;
    }
};

// f(views of object k of each array), which have one layout.
template <class T, class... Rest>
[[gnu::always_inline]] inline auto withViews(int k, auto f, const Array<T>& a, const Array<Rest>&... rest)
{
    const auto cells = [k]<class X>(const Array<X>& o) KESL_INLINE {
        return Scattered<X>{o.list, o.shift + k * o.stride0, o.width};
    };
    const auto grid = [k]<class X>(const Array<X>& o) KESL_INLINE { return Grid<X>{o.object(k), o.stride1, o.stride2}; };
    return a.cells ? f(cells(a), cells(rest)...) : f(grid(a), grid(rest)...);
}
// The same, with contiguous rows as such.
template <class T, class... Rest>
[[gnu::always_inline]] inline auto withRowViews(int k, auto f, const Array<T>& a, const Array<Rest>&... rest)
{
    const auto rows = [k]<class X>(const Array<X>& o) KESL_INLINE { return Rows<X>{o.object(k), o.stride1}; };
    const auto contiguous = []<class X>(const Array<X>& o) { return !o.cells && o.stride2 == int(sizeof(X)); };
    if (contiguous(a) && (contiguous(rest) && ...)) return f(rows(a), rows(rest)...);
    return withViews(k, f, a, rest...);
}

// body(k, views of object k of each array) until one fails; how they lie is found out once.
template <class... T> [[gnu::always_inline]] inline KeslStatus eachView(int count, auto body, const Array<T>&... arrays)
{
    const auto by = [&](auto view) KESL_INLINE {
        return eachObject(count, [&](int k) KESL_INLINE { return body(k, view(k, arrays)...); });
    };
    if ((arrays.cells || ...))
        return by([]<class X>(int k, const Array<X>& o) KESL_INLINE {
            return Scattered<X>{o.list, o.shift + k * o.stride0, o.width};
        });
    if (((arrays.stride2 == int(sizeof(T))) && ...))
        return by([]<class X>(int k, const Array<X>& o) KESL_INLINE { return Rows<X>{o.object(k), o.stride1}; });
    return by([]<class X>(int k, const Array<X>& o) KESL_INLINE { return Grid<X>{o.object(k), o.stride1, o.stride2}; });
}

// As in objects.h.
template <class T> bool areGiven(const InPacks<T>& src, int first, int objects)
{
    bool given = true;
    if (src.list && !src.cells)
        for (int l = 0; l < objects; ++l) given &= src.list[first + l] != nullptr;
    return given;
}

// ---- Elements apart.

// f(p, i, j) for the elements of a block, of a lower triangle those not above the diagonal: p is the place of element (i, j) in
// object `first`, or what yields it in the objects of a pack.
template <class T> [[gnu::always_inline]] inline void eachApart(const Array<T>& a, int first, int height, auto width, auto f)
{
    const std::int64_t along = a.shift + first * a.stride0;
    const auto each = [&](auto placeOf) KESL_INLINE {
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width(i); ++j) f(placeOf(i, j), i, j);
    };
    if (!a.cells && a.list) {
        const auto listed = [&](int i, int j) { return Listed<T>{a.list + first, a.shift + i * a.stride1 + j * a.stride2}; };
        return each(listed);
    }
    const auto in = [&](auto place) KESL_INLINE {
        if (a.lie == Lie::sideBySide) each(place);
        else each([&](int i, int j) { return Spaced<T>{place(i, j), a.stride0}; });
    };
    if (a.cells) in([&](int i, int j) { return moved(a.list[std::int64_t(i) * a.width + j], along); });
    else in([&](int i, int j) { return moved(a.first, along + i * a.stride1 + j * a.stride2); });
}
template <class V> V loadApart(const ElementOf<V>* p) { return loadPack<V>(p); }
template <class V> [[gnu::always_inline]] inline V loadApart(auto at) { return gathered<V>(at); }
template <class V> void storeApart(ElementOf<V>* p, V x) { storePack<V>(p, x); }
template <class V> [[gnu::always_inline]] inline void storeApart(auto at, V x) { scatter(at, x); }

template <class V> [[gnu::noinline]] void loadRowsApart(const Array<const ElementOf<V>>& src, int first, V* x, int height,
                                                        int width, bool lower)
{
    eachApart(
        src, first, height, [=](int i) { return lower ? i + 1 : width; },
        [=](auto p, int i, int j) KESL_INLINE { x[i * width + j] = loadApart<V>(p); });
}
template <class V> [[gnu::noinline]] void storeRowsApart(const Array<ElementOf<V>>& dst, int first, const V* x, int height,
                                                         int width, bool lower)
{
    eachApart(
        dst, first, height, [=](int i) { return lower ? i + 1 : width; },
        [=](auto p, int i, int j) KESL_INLINE { storeApart<V>(p, x[i * width + j]); });
}

// ---- Blocks, or their lower triangles.

// Two elements of each object, of 4 bytes each, as one of 8.
template <class V> [[gnu::always_inline]] inline void scatterPairs(auto at, V x, V y)
{
    using D = Pack<double, sizeof(V)>;
    const D low = D(interleave<false>(x, y)), high = D(interleave<true>(x, y));
#pragma GCC unroll 16
    for (int l = 0; l < lanes<D>; ++l) {
        const double pair = low[l], next = high[l];
        std::memcpy(at(l / 2 * 4 + l % 2), &pair, sizeof pair);
        std::memcpy(at(l / 2 * 4 + l % 2 + 2), &next, sizeof next);
    }
}
// The first n elements of a row.
template <int n, class V> [[gnu::always_inline]] inline void storeLowerRow(auto at, const V* x)
{
    if constexpr (sizeof(ElementOf<V>) == 4 && (n == 2 || n == 3)) {
        scatterPairs(at, x[0], x[1]);
        if constexpr (n == 3) scatter(at + 2, x[2]);
    } else storeRun<n>(at, x);
}
template <int height, int width, bool lower> [[gnu::always_inline]] inline void eachOf(auto f)
{
#pragma GCC unroll 8
    for (int i = 0; i < height; ++i)
#pragma GCC unroll 8
        for (int j = 0; j < (lower ? i + 1 : width); ++j) f(i, j);
}
template <bool lower, class V, int height, int width>
[[gnu::always_inline]] inline void loadInLine(const InPacks<const ElementOf<V>>& src, int first, Block<V, height, width>& x)
{
    using T = const ElementOf<V>;
    const std::int64_t along = src.shift + first * src.stride0;
    const auto cell = [&](int i, int j) KESL_INLINE { return moved(src.list[i * width + j], along); };
    if constexpr (lanes<V> == 1) {
        const Grid<T> grid{src.cells ? nullptr : src.object(first), src.stride1, src.stride2};
        if (src.cells) eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = *cell(i, j); });
        else eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = grid(i, j); });
    } else if (height == 1 && src.lie == Lie::run) {
        loadTable<width>(moved(src.first, first * src.stride0), x.e[0]);
    } else if (src.lie <= Lie::rows) {
        const Listed<T> at = src.objects(first);
        if (!src.list) prefetchNext<height * width, V, false>(Spaced<T>{src.object(first), src.stride0});
        if (height > 1 && src.lie == Lie::rows)
            [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
                (loadRun<(lower ? i + 1 : width)>(movedRow(at, i * src.stride1), x.e[i]), ...);
            }(std::make_integer_sequence<int, height>{});
        else if constexpr (lower) { // what is above the diagonal lies between what is below
            Block<V, height, width> all;
            loadRun<height * width>(at, all.e[0]);
            eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = all(i, j); });
        } else loadRun<height * width>(at, x.e[0]);
    } else if (src.lie == Lie::sideBySide) {
        const Grid<T> grid{moved(src.first, first * src.stride0), src.stride1, src.stride2};
        if (src.cells) eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = loadPack<V>(cell(i, j)); });
        else eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = loadPack<V>(&grid(i, j)); });
    } else {
        Block<V, height, width> other; // so that x may stay in registers
        loadRowsApart(src, first, other.e[0], height, width, lower);
        eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { x(i, j) = other(i, j); });
    }
}
template <bool lower, class V, int height, int width>
[[gnu::always_inline]] inline void storeInLine(const InPacks<ElementOf<V>>& dst, int first, const Block<V, height, width>& x)
{
    using T = ElementOf<V>;
    const std::int64_t along = dst.shift + first * dst.stride0;
    const auto cell = [&](int i, int j) KESL_INLINE { return moved(dst.list[i * width + j], along); };
    if constexpr (lanes<V> == 1) {
        const Grid<T> grid{dst.cells ? nullptr : dst.object(first), dst.stride1, dst.stride2};
        if (dst.cells) eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { *cell(i, j) = x(i, j); });
        else eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { grid(i, j) = x(i, j); });
    } else if (height == 1 && dst.lie == Lie::run) {
        storeTable<width>(moved(dst.first, first * dst.stride0), x.e[0]);
    } else if (dst.lie <= Lie::rows) {
        const Listed<T> at = dst.objects(first);
        if (!dst.list && !lower) prefetchNext<height * width, V, true>(Spaced<T>{dst.object(first), dst.stride0});
        if constexpr (lower)
            [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
                (storeLowerRow<i + 1>(movedRow(at, i * dst.stride1), x.e[i]), ...);
            }(std::make_integer_sequence<int, height>{});
        else if (height == 1 || dst.lie != Lie::rows) storeRun<height * width>(at, x.e[0]);
        else
#pragma GCC unroll 8
            for (int i = 0; i < height; ++i) storeRun<width>(movedRow(at, i * dst.stride1), x.e[i]);
    } else if (dst.lie == Lie::sideBySide) {
        const Grid<T> grid{moved(dst.first, first * dst.stride0), dst.stride1, dst.stride2};
        if (dst.cells) eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { storePack<V>(cell(i, j), x(i, j)); });
        else eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { storePack<V>(&grid(i, j), x(i, j)); });
    } else {
        Block<V, height, width> other;
        eachOf<height, width, lower>([&](int i, int j) KESL_INLINE { other(i, j) = x(i, j); });
        storeRowsApart(dst, first, other.e[0], height, width, lower);
    }
}
template <bool lower, class V, int height, int width>
[[gnu::noinline]] void loadLong(const InPacks<const ElementOf<V>>& src, int first, Block<V, height, width>& x)
{
    loadInLine<lower>(src, first, x);
}
template <bool lower, class V, int height, int width>
[[gnu::noinline]] void storeLong(const InPacks<ElementOf<V>>& dst, int first, const Block<V, height, width>& x)
{
    storeInLine<lower>(dst, first, x);
}

// ---- What a body uses. With `lower` nothing above the diagonal is used, and nothing there is written.
template <bool lower = false, class V, int height, int width>
[[gnu::always_inline]] inline void load(const InPacks<const ElementOf<V>>& src, Objects<V> k, Block<V, height, width>& x)
{
    if constexpr (height * width <= 16) loadInLine<lower>(src, k.first, x);
    else loadLong<lower>(src, k.first, x);
}
template <bool lower = false, class V, int height, int width>
[[gnu::always_inline]] inline void store(const InPacks<ElementOf<V>>& dst, Objects<V> k, const Block<V, height, width>& x)
{
    if constexpr (height * width <= 16) storeInLine<lower>(dst, k.first, x);
    else storeLong<lower>(dst, k.first, x);
}

// ---- Vectors of n elements for bodies so short that they should not ask for each pack how its objects lie.
template <int n, class T> struct VectorRun {
    T* p;
    T* operator()(int k) const { return p + std::int64_t(k) * n; }
};
template <int n, class T> struct VectorsSideBySide {
    T* p[n];
    explicit VectorsSideBySide(const Array<T>& a)
    {
        for (int i = 0; i < n; ++i) p[i] = a.element(0, 0, i);
    }
};
template <class V, int n>
[[gnu::always_inline]] inline void load(const VectorRun<n, const ElementOf<V>>& src, Objects<V> k, Block<V, 1, n>& x)
{
    if constexpr (lanes<V> == 1) eachElement<1, n>([&](int, int i) KESL_INLINE { x(0, i) = src(k.first)[i]; });
    else loadTable<n>(src(k.first), x.e[0]);
}
template <class V, int n>
[[gnu::always_inline]] inline void store(const VectorRun<n, ElementOf<V>>& dst, Objects<V> k, const Block<V, 1, n>& x)
{
    if constexpr (lanes<V> == 1) eachElement<1, n>([&](int, int i) KESL_INLINE { dst(k.first)[i] = x(0, i); });
    else storeTable<n>(dst(k.first), x.e[0]);
}
template <class V, int n>
[[gnu::always_inline]] inline void load(const VectorsSideBySide<n, const ElementOf<V>>& src, Objects<V> k, Block<V, 1, n>& x)
{
    eachElement<1, n>([&](int, int i) KESL_INLINE { x(0, i) = loadPack<V>(src.p[i] + k.first); });
}
template <class V, int n> [[gnu::always_inline]] inline void store(const VectorsSideBySide<n, ElementOf<V>>& dst,
                                                                   Objects<V> k, const Block<V, 1, n>& x)
{
    eachElement<1, n>([&](int, int i) KESL_INLINE { storePack<V>(dst.p[i] + k.first, x(0, i)); });
}
// f(src, dst) with what load and store take.
template <int n, class T>
[[gnu::always_inline]] inline void withVectors(int count, auto f, const Array<const T>& src, const Array<T>& dst)
{
    const auto both = [&](Lie lie) { return src.lie == lie && dst.lie == lie; };
    if (both(Lie::run)) f(VectorRun<n, const T>{src.first}, VectorRun<n, T>{dst.first});
    else if (both(Lie::sideBySide)) f(VectorsSideBySide<n, const T>(src), VectorsSideBySide<n, T>(dst));
    else f(InPacks(src, count), InPacks(dst, count));
}

// ---- Blocks and vectors with the number of rows, or of elements, as it comes.
template <class V, int width>
[[gnu::noinline]] void loadTall(const InPacks<const ElementOf<V>>& src, int first, V* x, int rows)
{
    if (src.lie > Lie::rows) return loadRowsApart(src, first, x, rows, width, false);
    const auto at = src.objects(first);
    if (src.lie == Lie::record) return loadRun(at, x, rows * width);
    for (int i = 0; i < rows; ++i) loadRun<width>(movedRow(at, i * src.stride1), x + i * width);
}
template <class V, int width>
[[gnu::noinline]] void storeTall(const InPacks<ElementOf<V>>& dst, int first, const V* x, int rows)
{
    if (dst.lie > Lie::rows) return storeRowsApart(dst, first, x, rows, width, false);
    const auto at = dst.objects(first);
    if (dst.lie == Lie::record) return storeRun(at, x, rows * width);
    for (int i = 0; i < rows; ++i) storeRun<width>(movedRow(at, i * dst.stride1), x + i * width);
}
template <class V> [[gnu::noinline]] void loadVector(const InPacks<const ElementOf<V>>& src, int first, V* x, int length)
{
    if (src.lie > Lie::rows) return loadRowsApart(src, first, x, 1, length, false);
    loadRun(src.objects(first), x, length);
}

// ---- The functions of the library.
// clang-format off
#define KESL_BLOCK_FUNCTIONS(how, V)                                                                                \
    KESL_LONG_FUNCTIONS(how, false, V, 5) KESL_LONG_FUNCTIONS(how, false, V, 6)                                       \
    KESL_LONG_FUNCTIONS(how, true, V, 5) KESL_LONG_FUNCTIONS(how, true, V, 6)
#define KESL_LONG_FUNCTIONS(how, lower, V, n)                                                                       \
    how template void loadLong<lower, V, n, n>(const InPacks<const ElementOf<V>>&, int, Block<V, n, n>&);               \
    how template void storeLong<lower, V, n, n>(const InPacks<ElementOf<V>>&, int, const Block<V, n, n>&);
#define KESL_PACK_FUNCTIONS(how, V)                                                                                 \
    how template void loadRowsApart<V>(const Array<const ElementOf<V>>&, int, V*, int, int, bool);                    \
    how template void storeRowsApart<V>(const Array<ElementOf<V>>&, int, const V*, int, int, bool);                   \
    how template void loadVector<V>(const InPacks<const ElementOf<V>>&, int, V*, int);                                  \
    KESL_WIDTH_FUNCTIONS(how, V, 3) KESL_WIDTH_FUNCTIONS(how, V, 4)                                                   \
    KESL_WIDTH_FUNCTIONS(how, V, 5) KESL_WIDTH_FUNCTIONS(how, V, 6)                                                   \
    KESL_BLOCK_FUNCTIONS(how, V)
#define KESL_WIDTH_FUNCTIONS(how, V, n)                                                                             \
    how template void loadTall<V, n>(const InPacks<const ElementOf<V>>&, int, V*, int);                                 \
    how template void storeTall<V, n>(const InPacks<ElementOf<V>>&, int, const V*, int);
#ifdef __AVX2__
#define KESL_FLOAT_FUNCTIONS(how) \
    KESL_PACK_FUNCTIONS(how, Pack<float>) KESL_PACK_FUNCTIONS(how, Four<float>) KESL_BLOCK_FUNCTIONS(how, float)
#else
#define KESL_FLOAT_FUNCTIONS(how) KESL_PACK_FUNCTIONS(how, Pack<float>) KESL_BLOCK_FUNCTIONS(how, float)
#endif
#ifdef __AVX512F__
#define KESL_DOUBLE_FUNCTIONS(how) \
    KESL_PACK_FUNCTIONS(how, Pack<double>) KESL_PACK_FUNCTIONS(how, Four<double>) KESL_BLOCK_FUNCTIONS(how, double)
#else
#define KESL_DOUBLE_FUNCTIONS(how) KESL_PACK_FUNCTIONS(how, Pack<double>) KESL_BLOCK_FUNCTIONS(how, double)
#endif
KESL_FLOAT_FUNCTIONS(extern)
KESL_DOUBLE_FUNCTIONS(extern)
// clang-format on

} // namespace kesl
