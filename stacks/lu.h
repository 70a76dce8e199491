// Gaussian elimination with partial pivoting and what is made of its factors (Golub & Van Loan, Matrix Computations, 3.4).
#pragma once
#include "stacks/scale.h"

namespace kesl::stacks {

// The rows exchanged with row k at step k, one for each lane.
template <class V, class N> struct Pivots {
    IndexOf<V> e[most<N>];
    IndexOf<V>& operator[](int k) { return e[k]; }
    const IndexOf<V>& operator[](int k) const { return e[k]; }
};

// x / d as x * (1/d), and by a division in lanes where 1/d would overflow; x itself where d is 0.
template <class V> class Divisor {
public:
    explicit Divisor(V d) : inverse(1 / d)
    {
        const IndexOf<V> over = abs(inverse) > splat<V>(std::numeric_limits<ElementOf<V>>::max());
        overflows = any(over);
        if (!overflows) return;
        divisor = (over & (d != 0)) ? d : splat<V>(1);
        inverse = over ? splat<V>(1) : inverse;
    }
    V under(V x) const { return (overflows ? x / divisor : x) * inverse; }

private:
    V inverse, divisor{};
    bool overflows;
};

// Exchanges rows k and p of x in each lane.
template <class V, class N, class M> [[gnu::always_inline]] inline void exchangeRows(Tile<V, N, M>& x, int k, IndexOf<V> p)
{
    V rowK[most<M>];
    for (int j = 0; j < x.m; ++j) rowK[j] = x(k, j);
    for (int i = k + 1; i < x.n; ++i) {
        const IndexOf<V> here = p == i;
        for (int j = 0; j < x.m; ++j) {
            const V own = x(i, j);
            x(i, j) = here ? x(k, j) : own;
            rowK[j] = here ? own : rowK[j];
        }
    }
    for (int j = 0; j < x.m; ++j) x(k, j) = rowK[j];
}

// P A = L U in place. The pivot is the first of the largest. Returns the step, counted from 1, of the first zero pivot: its
// column of L is zero and nothing is eliminated.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> factorLU(Tile<V, N, N>& a, Pivots<V, N>& p)
{
    IndexOf<V> info{};
    for (int k = 0; k < a.n; ++k) {
        V largest = abs(a(k, k));
        p[k] = index<V>(k);
        for (int i = k + 1; i < a.n; ++i) {
            const IndexOf<V> larger = abs(a(i, k)) > largest;
            largest = larger ? abs(a(i, k)) : largest;
            p[k] = larger ? index<V>(i) : p[k];
        }
        exchangeRows(a, k, p[k]);
        info = ((largest == 0) & (info == 0)) ? index<V>(k + 1) : info;

        const Divisor<V> pivot(a(k, k));
        for (int i = k + 1; i < a.n; ++i) {
            const V l = a(i, k) = pivot.under(a(i, k));
            for (int j = k + 1; j < a.n; ++j) a(i, j) -= l * a(k, j);
        }
    }
    return info;
}

// X = A^-1 B in place of B, from the factors. The pivots must not be zero.
template <class V, class N, class M>
[[gnu::always_inline]] inline void solveLU(const Tile<V, N, N>& lu, const Pivots<V, N>& p, Tile<V, N, M>& b)
{
    for (int k = 0; k < b.n; ++k) exchangeRows(b, k, p[k]);
    for (int k = 0; k < b.n; ++k)
        for (int i = k + 1; i < b.n; ++i)
            for (int j = 0; j < b.m; ++j) b(i, j) -= lu(i, k) * b(k, j);
    for (int k = b.n - 1; k >= 0; --k) {
        const Divisor<V> pivot(lu(k, k));
        for (int j = 0; j < b.m; ++j) b(k, j) = pivot.under(b(k, j));
        for (int i = 0; i < k; ++i)
            for (int j = 0; j < b.m; ++j) b(i, j) -= lu(i, k) * b(k, j);
    }
}

// A^-1 in place of the factors: U^-1 first, then X L = U^-1, then the columns go back (Higham, Accuracy and Stability of
// Numerical Algorithms, 14.3.2, method B).
template <class V, class N> [[gnu::always_inline]] inline void invertLU(Tile<V, N, N>& x, const Pivots<V, N>& p)
{
    for (int j = 0; j < x.n; ++j) {
        const V d = x(j, j) = 1 / x(j, j);
        for (int i = 0; i < j; ++i) {
            V sum = x(i, i) * x(i, j);
            for (int k = i + 1; k < j; ++k) sum += x(i, k) * x(k, j);
            x(i, j) = 0 - sum * d;
        }
    }
    V l[most<N>];
    for (int j = x.n - 2; j >= 0; --j) {
        for (int k = j + 1; k < x.n; ++k) {
            l[k] = x(k, j);
            x(k, j) = V{};
        }
        for (int i = 0; i < x.n; ++i)
            for (int k = j + 1; k < x.n; ++k) x(i, j) -= x(i, k) * l[k];
    }
    for (int j = x.n - 2; j >= 0; --j)
        for (int i = 0; i < x.n; ++i) {
            V columnJ = x(i, j);
            for (int q = j + 1; q < x.n; ++q) {
                const V own = x(i, q);
                x(i, q) = p[j] == q ? x(i, j) : own;
                columnJ = p[j] == q ? own : columnJ;
            }
            x(i, j) = columnJ;
        }
}

} // namespace kesl::stacks
