// Stacks: an operand as the C interface describes it, and whether its arguments are acceptable.
#pragma once
#include <cstddef>
#include <type_traits>

namespace kesl::stacks {

template <class N, class M> struct Shape {
    [[no_unique_address]] N rows;
    [[no_unique_address]] M columns;
    Shape(N n, M m) : rows(n), columns(m) {}
};

// Element (i, j) of object k lies k*stride0 + i*stride1 + j*stride2 bytes behind p. A vector is one row, a number too.
template <class T, int strides> struct Stack {
    using Element = T;
    static constexpr int arguments = 1 + strides;
    static constexpr bool isSource = std::is_const_v<T>;
    T* p;
    std::ptrdiff_t stride0, stride1, stride2;
    bool optional = false;   // a destination that may be null: it is not wanted then
    bool isDiagonal = false; // a matrix of which the diagonal is read, as a row

    // The place among its own arguments of the first that is not acceptable, counted from 1, or 0.
    int unacceptable(std::ptrdiff_t count, Shape<std::ptrdiff_t, std::ptrdiff_t> s) const
    {
        if (!p && optional) return 0;
        const bool empty = count <= 0 || s.rows == 0 || s.columns == 0;
        if (!p && !empty) return 1;
        const auto bad = [empty](std::ptrdiff_t stride, std::ptrdiff_t elements) {
            return stride % std::ptrdiff_t(sizeof(T)) != 0 || (!isSource && !empty && stride == 0 && elements > 1);
        };
        if (bad(stride0, count)) return 2;
        if (strides == 3 && bad(stride1, s.rows)) return 3;
        if (strides >= 2 && bad(stride2, s.columns)) return 1 + strides;
        return 0;
    }
};

template <class T> using Matrix = Stack<T, 3>;
template <class T> using Vector = Stack<T, 2>;
template <class T> using Number = Stack<T, 1>;
template <class T> Matrix<T> matrix(T* p, std::ptrdiff_t stride0, std::ptrdiff_t stride1, std::ptrdiff_t stride2)
{
    return {p, stride0, stride1, stride2};
}
template <class T> Matrix<T> optional(Matrix<T> a)
{
    a.optional = true;
    return a;
}
template <class T> Matrix<T> diagonal(Matrix<T> a)
{
    a.isDiagonal = true;
    return a;
}
template <class T> Vector<T> vector(T* p, std::ptrdiff_t stride0, std::ptrdiff_t stride1)
{
    return {p, stride0, 0, stride1};
}
template <class T> Number<T> number(T* p, std::ptrdiff_t stride0) { return {p, stride0, 0, 0}; }

} // namespace kesl::stacks
