// Array operands whose layout is data, so that one body serves all kernels of a family.
#pragma once
#include "frame/blocks.h"
#include "frame/objects.h"

namespace kesl {

// How the elements of objects one behind another lie.
enum class Lie {
    run,        // vectors without a gap between them
    record,     // matrices without a gap between their rows; vectors
    rows,       // rows without a gap between their elements
    columns,    // columns without a gap between their elements
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
        const bool columnsAreContiguous = stride1 == int(sizeof(T)) && stride2 >= height * stride1;
        if (F == P || !o.rowsAreContiguous())
            lie = !inL(F) && stride0 == int(sizeof(T))           ? Lie::sideBySide
                  : F != P && height > 1 && columnsAreContiguous ? Lie::columns
                                                                 : Lie::apart;
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
        if (this->list || this->lie > Lie::columns || count < leastLanes) return;
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

// body(k, views of object k of each array), none of which lists its elements, until one fails; how they lie is found out once.
template <class... T> [[gnu::always_inline]] inline KeslStatus eachView(int count, auto body, const Array<T>&... arrays)
{
    const auto by = [&](auto view) KESL_INLINE {
        return eachObject(count, [&](int k) KESL_INLINE { return body(k, view(k, arrays)...); });
    };
    if (((arrays.stride2 == int(sizeof(T))) && ...))
        return by([]<class X>(int k, const Array<X>& o) KESL_INLINE { return Rows<X>{o.object(k), o.stride1}; });
    return by([]<class X>(int k, const Array<X>& o) KESL_INLINE { return Grid<X>{o.object(k), o.stride1, o.stride2}; });
}

// Whether all these objects of a list are given. A null entry behind an object that fails belongs to no object.
template <class T> bool areGiven(const InPacks<T>& src, int first, int objects)
{
    bool given = true;
    if (src.list && !src.cells)
        for (int l = 0; l < objects; ++l) given &= src.list[first + l] != nullptr;
    return given;
}

} // namespace kesl
