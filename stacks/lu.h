// Gaussian elimination with partial pivoting and what is made of its factors (Golub & Van Loan, Matrix Computations, 3.4).
#pragma once
#include "stacks/operand.h"
#include "stacks/scale.h"

namespace kesl::stacks {

// The rows exchanged with row k at step k, one for each lane; and 1 / pivot k, which factorLU() leaves.
template <class V, class N> struct Pivots {
    IndexOf<V> e[most<N>];
    V inverse[most<N>];
    IndexOf<V>& operator[](int k) { return e[k]; }
    const IndexOf<V>& operator[](int k) const { return e[k]; }
};

// Divides by d what each(f) calls f for: as x * inverse, which is 1/d, and by a division in lanes where that overflows; x stays
// where d is 0.
template <class V> [[gnu::always_inline]] inline void divideBy(V d, V inverse, auto each)
{
    const IndexOf<V> over = abs(inverse) > splat<V>(std::numeric_limits<ElementOf<V>>::max());
    if (any(over)) [[unlikely]] {
        const V divisor = d != 0 ? d : splat<V>(1);
        each([&](V& x) KESL_INLINE { x = over ? x / divisor : x * inverse; });
    } else each([&](V& x) KESL_INLINE { x *= inverse; });
}

// Exchanges rows k and p of x in each lane.
template <class V, class N, class M> [[gnu::always_inline]] inline void exchangeRows(Tile<V, N, M>& x, int k, IndexOf<V> p)
{
    V rowK[most<M>];
    loop<M>(0, x.m, [&](int j) KESL_INLINE { rowK[j] = x(k, j); });
    loop<N>(k + 1, x.n, [&](int i) KESL_INLINE {
        const IndexOf<V> here = p == i;
        loop<M>(0, x.m, [&](int j) KESL_INLINE {
            const V own = x(i, j);
            x(i, j) = here ? x(k, j) : own;
            rowK[j] = here ? own : rowK[j];
        });
    });
    loop<M>(0, x.m, [&](int j) KESL_INLINE { x(k, j) = rowK[j]; });
}

// P A = L U in place. The pivot is the first of the largest. Returns the step, counted from 1, of the first zero pivot: its
// column of L is zero and nothing is eliminated.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> factorLU(Tile<V, N, N>& a, Pivots<V, N>& p)
{
    IndexOf<V> info{};
    loop<N>(0, a.n, [&](int k) KESL_INLINE {
        V largest = abs(a(k, k));
        IndexOf<V> q = index<V>(k);
        loop<N>(k + 1, a.n, [&](int i) KESL_INLINE {
            const V size = abs(a(i, k));
            q = size > largest ? index<V>(i) : q;
            largest = larger(size, largest);
        });
        exchangeRows(a, k, q);
        p[k] = q;
        info = ((largest == 0) & (info == 0)) ? index<V>(k + 1) : info;

        p.inverse[k] = 1 / a(k, k);
        divideBy(a(k, k), p.inverse[k],
                 [&](auto by) KESL_INLINE { loop<N>(k + 1, a.n, [&](int i) KESL_INLINE { by(a(i, k)); }); });
        loop<N>(k + 1, a.n,
                [&](int i) KESL_INLINE { loop<N>(k + 1, a.n, [&](int j) KESL_INLINE { a(i, j) -= a(i, k) * a(k, j); }); });
    });
    return info;
}

// X = A^-1 B in place of B, from the factors.
template <class V, class N, class M>
[[gnu::always_inline]] inline void solveLU(const Tile<V, N, N>& lu, const Pivots<V, N>& p, Tile<V, N, M>& b)
{
    loop<N>(0, b.n, [&](int k) KESL_INLINE { exchangeRows(b, k, p[k]); });
    loop<N>(0, b.n, [&](int k) KESL_INLINE {
        loop<N>(k + 1, b.n,
                [&](int i) KESL_INLINE { loop<M>(0, b.m, [&](int j) KESL_INLINE { b(i, j) -= lu(i, k) * b(k, j); }); });
    });
    loopDown<N>(0, b.n, [&](int k) KESL_INLINE {
        divideBy(lu(k, k), p.inverse[k],
                 [&](auto by) KESL_INLINE { loop<M>(0, b.m, [&](int j) KESL_INLINE { by(b(k, j)); }); });
        loop<N>(0, k,
                [&](int i) KESL_INLINE { loop<M>(0, b.m, [&](int j) KESL_INLINE { b(i, j) -= lu(i, k) * b(k, j); }); });
    });
}

// A^-1 in place of the factors: U^-1 first, then X L = U^-1, then the columns go back (Higham, Accuracy and Stability of
// Numerical Algorithms, 14.3.2, method B).
template <class V, class N> [[gnu::always_inline]] inline void invertLU(Tile<V, N, N>& x, const Pivots<V, N>& p)
{
    const int n = x.n;
    loop<N>(0, n, [&](int j) KESL_INLINE {
        const V d = x(j, j) = p.inverse[j];
        loop<N>(0, j, [&](int i) KESL_INLINE {
            V sum = x(i, i) * x(i, j);
            loop<N>(i + 1, j, [&](int k) KESL_INLINE { sum += x(i, k) * x(k, j); });
            x(i, j) = 0 - sum * d;
        });
    });
    loopDown<N>(0, n - 1, [&](int j) KESL_INLINE {
        V l[most<N>];
        loop<N>(j + 1, n, [&](int k) KESL_INLINE {
            l[k] = x(k, j);
            x(k, j) = V{};
        });
        loop<N>(0, n, [&](int i) KESL_INLINE { loop<N>(j + 1, n, [&](int k) KESL_INLINE { x(i, j) -= x(i, k) * l[k]; }); });
    });
    loopDown<N>(0, n - 1, [&](int j) KESL_INLINE {
        loop<N>(j + 1, n, [&](int q) KESL_INLINE {
            const IndexOf<V> here = p[j] == q;
            loop<N>(0, n, [&](int i) KESL_INLINE {
                const V own = x(i, q);
                x(i, q) = here ? x(i, j) : own;
                x(i, j) = here ? own : x(i, j);
            });
        });
    });
}

// solve(tile) for the k columns of b, into those of x: one by one in registers if n is Fixed, otherwise as many at once as a
// tile has.
template <class V, class N> [[gnu::always_inline]] inline void solveColumns(Objects objects, N n, std::ptrdiff_t k,
                                                                            const auto& b, const auto& x, auto solve)
{
    for (std::ptrdiff_t first = 0; first < k; first += largestSize) {
        Tile<V, N, int> panel(n, int(std::min<std::ptrdiff_t>(k - first, largestSize)));
        if constexpr (!isFixed<N>) {
            b.load(objects, panel, 0, first);
            solve(panel);
            x.store(objects, panel, 0, first);
        } else {
            if (k > 1) b.load(objects, panel, 0, first);
            for (int j = 0; j < panel.m; ++j) {
                Tile<V, N, Fixed<1>> column(n, {});
                if (k == 1) b.load(objects, column);
                else loop<N>(0, n, [&](int i) KESL_INLINE { column(i, 0) = panel(i, j); });
                solve(column);
                if (k == 1) x.store(objects, column);
                else loop<N>(0, n, [&](int i) KESL_INLINE { panel(i, j) = column(i, 0); });
            }
            if (k > 1) x.store(objects, panel, 0, first);
        }
    }
}

} // namespace kesl::stacks
