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

// Divides by d what each(f) calls f for: as x * inverse, which is 1/d. With care, by a division in lanes where that overflows;
// x stays where d is 0.
template <class V> [[gnu::always_inline]] inline void divideBy(V d, V inverse, bool isCareful, auto each)
{
    if (isCareful) [[unlikely]] {
        const IndexOf<V> over = ~isFinite(abs(inverse));
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
// column of L is zero and nothing is eliminated; this takes care.
template <class V, class N>
[[gnu::always_inline]] inline IndexOf<V> eliminate(Tile<V, N, N>& a, Pivots<V, N>& p, bool isCareful)
{
    IndexOf<V> info{};
    loop<N>(0, a.n, [&](int k) KESL_INLINE {
        V size[most<N>], largest{};
        loop<N>(k, a.n, [&](int i) KESL_INLINE {
            size[i] = abs(a(i, k));
            largest = larger(size[i], largest);
        });
        const V inverse = 1 / largest; // early: it takes long
        IndexOf<V> q = index<V>(k);
        loopDown<N>(k, a.n, [&](int i) KESL_INLINE { q = size[i] == largest ? index<V>(i) : q; });
        exchangeRows(a, k, q);
        p[k] = q;
        p.inverse[k] = withSign(inverse, a(k, k));
        if (isCareful) info = ((largest == 0) & (info == 0)) ? index<V>(k + 1) : info;

        divideBy(a(k, k), p.inverse[k], isCareful,
                 [&](auto by) KESL_INLINE { loop<N>(k + 1, a.n, [&](int i) KESL_INLINE { by(a(i, k)); }); });
        loop<N>(k + 1, a.n,
                [&](int i) KESL_INLINE { loop<N>(k + 1, a.n, [&](int j) KESL_INLINE { a(i, j) -= a(i, k) * a(k, j); }); });
    });
    return info;
}

// Lanes where the pivots do not tell that nothing over- or underflowed, and that they have inverses. A NaN or an infinity
// anywhere, or that came up on the way, ends in the pivot of its column at the latest.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> unclear(const Tile<V, N, N>& lu)
{
    const V normal = splat<V>(std::numeric_limits<ElementOf<V>>::min());
    V sum{}, least = splat<V>(1);
    loop<N>(0, lu.n, [&](int i) KESL_INLINE {
        const V size = abs(lu(i, i));
        sum += size;
        least = size < least ? size : least;
    });
    return ~(needNoScale(sum) & (least >= normal));
}

// The same for a matrix that load() brings into a, whatever its magnitude. Returns the infos.
template <class V, class N>
[[gnu::always_inline]] inline IndexOf<V> factorLU(auto load, Tile<V, N, N>& a, Pivots<V, N>& p, Preparation<V>& prepared)
{
    IndexOf<V> info;
    do {
        load();
        prepared.prepare(a);
        info = eliminate(a, p, prepared.isCareful);
    } while (prepared.again(unclear(a)));
    return prepared.info(info);
}

// X = A^-1 B in place of B, from the factors.
template <class V, class N, class M>
[[gnu::always_inline]] inline void solveLU(const Tile<V, N, N>& lu, const Pivots<V, N>& p, Tile<V, N, M>& b, bool isCareful)
{
    loop<N>(0, b.n, [&](int k) KESL_INLINE { exchangeRows(b, k, p[k]); });
    loop<N>(0, b.n, [&](int k) KESL_INLINE {
        loop<N>(k + 1, b.n,
                [&](int i) KESL_INLINE { loop<M>(0, b.m, [&](int j) KESL_INLINE { b(i, j) -= lu(i, k) * b(k, j); }); });
    });
    loopDown<N>(0, b.n, [&](int k) KESL_INLINE {
        divideBy(lu(k, k), p.inverse[k], isCareful,
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
    if constexpr (isFixed<N>)
        if (k == 1) {
            Tile<V, N, Fixed<1>> column(n, {});
            b.load(objects, column);
            solve(column);
            return x.store(objects, column);
        }
    for (std::ptrdiff_t first = 0; first < k; first += largestSize) {
        Tile<V, N, int> panel(n, int(std::min<std::ptrdiff_t>(k - first, largestSize)));
        b.load(objects, panel, 0, first);
        if constexpr (isFixed<N>)
            for (int j = 0; j < panel.m; ++j) {
                Tile<V, N, Fixed<1>> column(n, {});
                loop<N>(0, n, [&](int i) KESL_INLINE { column(i, 0) = panel(i, j); });
                solve(column);
                loop<N>(0, n, [&](int i) KESL_INLINE { panel(i, j) = column(i, 0); });
            }
        else solve(panel);
        x.store(objects, panel, 0, first);
    }
}

} // namespace kesl::stacks
