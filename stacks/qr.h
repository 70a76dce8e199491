// QR by Householder's reflectors and least squares (Golub and Van Loan, Matrix Computations, 5.2 and 5.3). Every column has
// its own unit: it is scaled by a power of two.
//
// Tiles hold the transpose, so that columns are rows.
#pragma once
#include "stacks/reflector.h"

namespace kesl::stacks {

// a becomes reflectors, H(k) in row k from column k on; left of them stands the transpose of R, without its diagonal. Column
// j of R is to be multiplied by 2^-shift[j].
template <class V, class N> struct Factors {
    V tau[most<N>], diagonal[most<N>];
    IndexOf<V> shift[most<N>];
};
template <class V, class N, class M> [[gnu::always_inline]] inline MaskOf<V> factor(Tile<V, N, M>& a, Factors<V, N>& f)
{
    const N n = a.rows();
    const M m = a.columns();
    MaskOf<V> refused{};
    loop<N>(0, n, [&](int j) KESL_INLINE {
        const Scaled<V> scaled([&](auto see) KESL_INLINE { loop<M>(0, m, [&](int i) KESL_INLINE { see(a(j, i)); }); });
        refused |= scaled.refused;
        f.shift[j] = scaled.shift;
    });
    loop<N>(0, n, [&](int k) KESL_INLINE {
        const auto h = reflector(a, k, k, m);
        f.tau[k] = h.tau, f.diagonal[k] = h.beta;
        loop<N>(k + 1, n, [&](int j) KESL_INLINE { reflect(a, k, k, m, h.tau, &a(j, 0)); });
    });
    return refused;
}

// Q in place of a, and R, both transposed.
template <class V, class N, class M> [[gnu::always_inline]] inline IndexOf<V> qr(Tile<V, N, M>& a, Tile<V, N, N>& r)
{
    const N n = a.rows();
    Factors<V, N> f;
    const MaskOf<V> refused = factor(a, f);
    loop<N>(0, n, [&](int j) KESL_INLINE {
        const TwoPowers<V> out(-f.shift[j]);
        loop<N>(0, j, [&](int k) KESL_INLINE { r(j, k) = out.times(f.diagonal[k] < V{} ? -a(j, k) : a(j, k)); });
        r(j, j) = out.times(abs(f.diagonal[j]));
        loop<N>(j + 1, n, [&](int k) KESL_INLINE { r(j, k) = V{}; });
    });
    collect(a, f.tau, 0, n, a.columns());
    loop<N>(0, n, [&](int k) KESL_INLINE {
        loop<M>(0, a.m, [&](int i) KESL_INLINE { a(k, i) = f.diagonal[k] < V{} ? -a(k, i) : a(k, i); });
    });
    return refused ? index<V>(-1) : IndexOf<V>{};
}

// The first diagonal element of R that is zero, counted from 1, or 0; -1 where elements were refused.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> rank(const Factors<V, N>& f, MaskOf<V> refused, N n)
{
    IndexOf<V> info{};
    loopDown<N>(0, n, [&](int k) KESL_INLINE { info = f.diagonal[k] == V{} ? index<V>(k + 1) : info; });
    return refused ? index<V>(-1) : info;
}

// The vector x with the least |a x - y| replaces the first elements of y.
template <class V, class N, class M>
[[gnu::always_inline]] inline void leastSquares(const Tile<V, N, M>& a, const Factors<V, N>& f, V* y)
{
    const N n = a.rows();
    const M m = a.columns();
    const Scaled<V> scaled([&](auto see) KESL_INLINE { loop<M>(0, m, [&](int i) KESL_INLINE { see(y[i]); }); });
    loop<N>(0, n, [&](int k) KESL_INLINE { reflect(a, k, k, m, f.tau[k], y); });
    loopDown<N>(0, n, [&](int j) KESL_INLINE {
        const V x = y[j] / f.diagonal[j];
        loop<N>(0, j, [&](int k) KESL_INLINE { y[k] = y[k] - a(j, k) * x; });
        // Two steps in one direction: nothing overflows between them.
        const IndexOf<V> back = f.shift[j] - scaled.shift, half = back >> 1;
        const V result = timesPowerOfTwo(timesPowerOfTwo(x, half), back - half);
        y[j] = scaled.refused ? notANumber<V>() : result;
    });
}

} // namespace kesl::stacks
