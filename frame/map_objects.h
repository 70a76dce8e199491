// Element-wise work on objects one after the other.
#pragma once
#include "frame/anywhere.h"
#include "frame/repeat.h"
#include "frame/transpose.h"

namespace kesl {

// f(h, w) with the sizes of square matrices and the length of vectors where they are 3 to 6.
[[gnu::always_inline]] inline void withShape(int height, int width, auto f)
{
    withOrder(width == height ? width : 0, [&](auto n) { f(n, n); });
}
[[gnu::always_inline]] inline void withShape(One, int length, auto f)
{
    withOrder(length, [&](auto n) { f(One{}, n); });
}

// The same for vectors of 1 or 2 elements, too, and for square matrices of order 2.
[[gnu::always_inline]] inline void withLength(int length, auto f)
{
    if (length == 1) return f(Fixed<1>{});
    if (length == 2) return f(Fixed<2>{});
    withOrder(length, f);
}
[[gnu::always_inline]] inline void withSquare(int height, int width, auto f)
{
    if (height == 2 && width == 2) return f(Fixed<2>{});
    withOrder(width == height ? width : 0, f);
}

// ---- Objects one after the other. An operand is what yields the address of object k, Turned where it is read transposed,
// or a constant: one for each object, or by value.
template <class At> struct ConstantOf {
    At at;
};
template <class At> ConstantOf(At) -> ConstantOf<At>;

auto recordOf(const auto& at, int k) { return at(k); }
template <class At> auto recordOf(const Turned<At>& src, int k) { return Turned{src.stored(k)}; }
template <class At> auto recordOf(const ConstantOf<At>& src, int k) { return Same{*src.at(k)}; }
template <class T> Same<T> recordOf(Same<T> src, int) { return src; }

// Records of n elements, or of `each` if n is 0.
template <int n> [[gnu::always_inline]] inline void eachRecord(std::int64_t each, int count, auto f, auto dst, auto... src)
{
    for (int k = 0; k < count; ++k) mapRun(n > 0 ? n : each, f, dst(k), recordOf(src, k)...);
}
template <int n> KESL_ONCE void mapRecords(std::int64_t each, int count, auto f, auto dst, auto... src)
{
    eachRecord<n>(each, count, f, dst, src...);
}
// Of order n, some of them to be transposed.
template <int n> KESL_ONCE void mapTransposedRecords(int count, auto f, auto dst, auto... src)
{
    for (int k = 0; k < count; ++k) mapTransposed<n>(f, dst(k), recordOf(src, k)...);
}

// Contiguous rows, and gaps between them.
template <class At> struct RowsAt {
    At at;
    std::int64_t stride1;
};
template <class At> RowsAt(At, std::int64_t) -> RowsAt<At>;

template <class At> auto rowsOf(const RowsAt<At>& a, int k) { return Rows{a.at(k), a.stride1}; }
template <class At> auto rowsOf(const Turned<RowsAt<At>>& a, int k) { return Transposed{rowsOf(a.stored, k)}; }
template <class At> auto rowsOf(const ConstantOf<At>& src, int k) { return Same{*src.at(k)}; }
template <class T> Same<T> rowsOf(Same<T> src, int) { return src; }

template <int h, int w> [[gnu::always_inline]] inline void mapObject(int height, int width, auto f, auto dst, auto... src)
{
    if constexpr (h > 0) height = h;
    if constexpr (w > 0) width = w;
    if constexpr (requires { mapRun(width, f, dst.row(0), src.row(0)...); })
#pragma GCC unroll 6
        for (int i = 0; i < height; ++i) mapRun(width, f, dst.row(i), src.row(i)...);
    else if constexpr (w > 0)
#pragma GCC unroll 1 // a row written out is enough
        for (int i = 0; i < height; ++i)
            for (int j = 0; j < width; ++j) dst(i, j) = f(src(i, j)...);
    else moveTransposed(height, width, dst, src.stored...);
}
template <int h, int w> KESL_ONCE void mapRows(int height, int width, int count, auto f, auto dst, auto... src)
{
    for (int k = 0; k < count; ++k) mapObject<h, w>(height, width, f, rowsOf(dst, k), rowsOf(src, k)...);
}

} // namespace kesl
