// Determinants and adjugates of orders up to 3 as sums of products, and when these are as accurate as elimination.
#pragma once
#include "stacks/scale.h"

namespace kesl::stacks {

template <class V, int n> using Square = Tile<V, Fixed<n>, Fixed<n>>;

template <class V> Square<V, 1> adjugate(const Square<V, 1>&)
{
    Square<V, 1> x({}, {});
    x(0, 0) = splat<V>(1);
    return x;
}
template <class V> Square<V, 2> adjugate(const Square<V, 2>& a)
{
    Square<V, 2> x({}, {});
    x(0, 0) = a(1, 1), x(0, 1) = 0 - a(0, 1), x(1, 0) = 0 - a(1, 0), x(1, 1) = a(0, 0);
    return x;
}
template <class V> [[gnu::always_inline]] inline Square<V, 3> adjugate(const Square<V, 3>& a)
{
    Square<V, 3> x({}, {});
    each(a, [&](int i, int j) KESL_INLINE {
        const int i1 = (i + 1) % 3, i2 = (i + 2) % 3, j1 = (j + 1) % 3, j2 = (j + 2) % 3;
        x(j, i) = a(i1, j1) * a(i2, j2) - a(i1, j2) * a(i2, j1);
    });
    return x;
}
// From the first column of the adjugate.
template <class V, int n> V determinant(const Square<V, n>& a, const Square<V, n>& adjoint)
{
    V det = a(0, 0) * adjoint(0, 0);
    loop<Fixed<n>>(1, n, [&](int k) KESL_INLINE { det += a(0, k) * adjoint(k, 0); });
    return det;
}

// Lanes where a determinant is more than what is left when products cancel. It holds or not whatever the units.
template <class V, int n> IndexOf<V> isSound(V det, V largest, Fixed<n>)
{
    V bound = splat<V>(sizeof(ElementOf<V>) == 4 ? ElementOf<V>(0x1p-30) : ElementOf<V>(0x1p-60));
    loop<Fixed<n>>(0, n, [&](int) KESL_INLINE { bound *= largest; });
    return abs(det) > bound;
}

// Lanes where so many columns of the adjugate of order 3 have an element that suffers from cancellation no more than the
// matrix's condition excuses: its size is the product of the two larger singular values, and its errors are units of the
// square of the largest.
template <int columns, class V, int n> IndexOf<V> isSound(const Square<V, n>& adjoint, V largest)
{
    if constexpr (n < 3) return index<V>(-1);
    V cofactor{};
    each(Tile<V, Fixed<n>, Fixed<columns>>({}, {}),
         [&](int i, int j) KESL_INLINE { cofactor = larger(cofactor, abs(adjoint(i, j))); });
    return cofactor > largest * largest * splat<V>(1.0f / 16);
}

// Matrices that are not ordinary, brought near 1 by a power of two for each.
template <class V, int n> struct Normalised {
    IndexOf<V> exponent;
    TwoPowers<V> down;
    Square<V, n> near;

    explicit Normalised(const Square<V, n>& a) : exponent(exponentFor(largestOf(a))), down(0 - exponent), near(a)
    {
        for (V& element : near.e) element = down.times(element);
    }

private:
    static IndexOf<V> exponentFor(V largest)
    {
        IndexOf<V> e;
        splitExponent(largest, e);
        return isOrdinary(largest) ? index<V>(0) : e;
    }
};

} // namespace kesl::stacks
