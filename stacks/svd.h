// Singular values by one-sided Jacobi rotations, which find small ones to high relative accuracy (Demmel and Veselic,
// Jacobi's method is more accurate than QR; de Rijk, A one-sided Jacobi algorithm). QR with column pivoting comes first, and
// the rotations act on the rows of R: few sweeps then suffice (Drmac and Veselic, LAPACK Working Note 169).
//
//     A P = Q R,  W'R = S Y'  ->  A = (Q W) S (P Y)'
//
// The tile of A holds its transpose.
#pragma once
#include "stacks/order.h"
#include "stacks/reflector.h"

namespace kesl::stacks {

// The rows of x from k on: the longest of them, from column k on, becomes row k. The answer tells which it was.
template <class V, class N, class M> [[gnu::always_inline]] inline IndexOf<V> pivot(Tile<V, N, M>& x, int k)
{
    V longest = splat<V>(-1);
    IndexOf<V> at{};
    loop<N>(k, x.n, [&](int j) KESL_INLINE {
        V square{};
        loop<M>(k, x.m, [&](int i) KESL_INLINE { square = square + x(j, i) * x(j, i); });
        const MaskOf<V> longer = square > longest;
        longest = longer ? square : longest;
        at = longer ? index<V>(j) : at;
    });
    loop<N>(k + 1, x.n, [&](int j) KESL_INLINE {
        const MaskOf<V> here = at == j;
        loop<M>(0, x.m, [&](int i) KESL_INLINE { exchange(here, x(k, i), x(j, i)); });
    });
    return at;
}

// Squares of lengths below this are those of zero rows: tangents between longer ones do not underflow.
template <class T> constexpr T nothing = Format<T>::negligible * (1 << 20);

// The rotation that makes two rows orthogonal, given their scalar products; none where they are so already.
template <class V> struct Rotation {
    V cosine, sine, tangent;
    MaskOf<V> on;

    Rotation() = default;
    Rotation(V xx, V xy, V yy)
    {
        using T = ElementOf<V>;
        constexpr T tolerance = 8 * Format<T>::roundoff; // of the cosine of their angle
        constexpr T steep = 1 / Format<T>::roundoff;     // root(1 + t^2) is t from here on
        const V least = xx < yy ? xx : yy, bound = tolerance * sqrt(xx) * sqrt(yy);
        const MaskOf<V> present = least >= nothing<T>, oblique = abs(xy) > bound;
        on = present & oblique;
        const V ratio = (yy - xx) / (on ? xy + xy : splat<V>(1)), size = abs(ratio);
        const V root = size > steep ? size : sqrt(ratio * ratio + 1);
        tangent = on ? 1 / (ratio < V{} ? ratio - root : ratio + root) : V{};
        cosine = 1 / sqrt(tangent * tangent + 1);
        sine = tangent * cosine;
    }
    template <class N> [[gnu::always_inline]] void rotate(V* x, V* y, N n) const
    {
        loop<N>(0, n, [&](int i) KESL_INLINE {
            const V xi = x[i], yi = y[i];
            x[i] = cosine * xi - sine * yi;
            y[i] = sine * xi + cosine * yi;
        });
    }
};

template <class V, class N> [[gnu::always_inline]] inline V dot(const V* x, const V* y, N n)
{
    V s = x[0] * y[0];
    loop<N>(1, n, [&](int i) KESL_INLINE { s = s + x[i] * y[i]; });
    return s;
}

// Rows of r become orthogonal to each other, rows of w follow. The answer is 1 where that did not converge, or 0.
template <bool vectors, class V, class N>
[[gnu::always_inline]] inline IndexOf<V> orthogonalise(Tile<V, N, N>& r, Tile<V, N, N>& w)
{
    constexpr int patience = 40; // sweeps; four to ten are usual
    const N n = r.rows();
    MaskOf<V> unfinished{};
    for (int sweep = 0; sweep < patience; ++sweep) {
        unfinished = MaskOf<V>{};
        V square[most<N>];
        loop<N>(0, n, [&](int p) KESL_INLINE { square[p] = dot(&r(p, 0), &r(p, 0), n); });
        // Pairs with the same sum of indices modulo n are independent: first all their rotations, then what they do.
        loop<N>(0, n, [&](int sum) KESL_INLINE {
            const auto eachPair = [&](auto f) KESL_INLINE {
                loop<N>(0, n, [&](int p) KESL_INLINE {
                    const int q = sum >= p ? sum - p : sum - p + n;
                    if (p < q) f(p, q);
                });
            };
            Rotation<V> of[most<N>];
            eachPair([&](int p, int q) KESL_INLINE {
                const V product = dot(&r(p, 0), &r(q, 0), n);
                of[p] = Rotation<V>(square[p], product, square[q]);
                square[p] = square[p] - of[p].tangent * product;
                square[q] = square[q] + of[p].tangent * product;
                unfinished |= of[p].on;
            });
            eachPair([&](int p, int q) KESL_INLINE {
                if (!any(of[p].on)) return;
                of[p].rotate(&r(p, 0), &r(q, 0), n);
                if constexpr (vectors) of[p].rotate(&w(p, 0), &w(q, 0), n);
            });
        });
        if (!any(unfinished)) break;
    }
    return unfinished & 1;
}

// Rows that are zero become such that all rows are orthonormal, as the other ones are. Zero rows are the last.
template <class V, class N> [[gnu::noinline]] void complete(Tile<V, N, N>& y, MaskOf<V>* zero)
{
    const N n = y.rows();
    Tile<V, N, N> q = y;
    V tau[most<N>];
    for (int k = 0; k < n; ++k) {
        tau[k] = reflector(q, k, k, n).tau;
        for (int j = k + 1; j < n; ++j) reflect(q, k, k, n, tau[k], &q(j, 0));
    }
    collect(q, tau, 0, n, n);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) y(j, i) = zero[j] ? q(j, i) : y(j, i);
}

// A P = Q R: a becomes reflectors, H(k) in row k, and r becomes R itself. Column k was exchanged with column at[k].
template <class V, class N, class M>
[[gnu::always_inline]] inline void factorPivoted(Tile<V, N, M>& a, Tile<V, N, N>& r, V* tau, IndexOf<V>* at)
{
    const N n = a.rows();
    const M m = a.columns();
    loop<N>(0, n, [&](int k) KESL_INLINE {
        at[k] = pivot(a, k);
        const auto h = reflector(a, k, k, m);
        tau[k] = h.tau;
        loop<N>(k + 1, n, [&](int j) KESL_INLINE { reflect(a, k, k, m, h.tau, &a(j, 0)); });
        loop<N>(0, n, [&](int i) KESL_INLINE { r(i, k) = i < k ? a(k, i) : i == k ? h.beta : V{}; });
    });
}

// Rows y of lengths s become orthonormal, and then P y; what of them and of the rows w points back is turned.
template <class V, class N>
[[gnu::always_inline]] inline void rightVectors(Tile<V, N, N>& y, Tile<V, N, N>& w, const V* s, const IndexOf<V>* at)
{
    const N n = y.rows();
    MaskOf<V> zero[most<N>], incomplete{};
    loop<N>(0, n, [&](int j) KESL_INLINE {
        zero[j] = s[j] == V{};
        incomplete |= zero[j];
        const V inverse = 1 / (zero[j] ? splat<V>(1) : s[j]);
        loop<N>(0, n, [&](int i) KESL_INLINE { y(j, i) = zero[j] ? V{} : y(j, i) * inverse; });
    });
    if (any(incomplete)) complete(y, zero);
    loopDown<N>(0, n, [&](int k) KESL_INLINE {
        loop<N>(k + 1, n, [&](int j) KESL_INLINE {
            const MaskOf<V> here = at[k] == j;
            loop<N>(0, n, [&](int i) KESL_INLINE { exchange(here, y(i, k), y(i, j)); });
        });
    });
    loop<N>(0, n, [&](int j) KESL_INLINE {
        const MaskOf<V> back = pointsBack(&y(j, 0), n);
        turn(back, &y(j, 0), n);
        turn(back, &w(j, 0), n);
    });
}

// a = the product of w and a.
template <class V, class N, class M> [[gnu::always_inline]] inline void multiply(const Tile<V, N, N>& w, Tile<V, N, M>& a)
{
    const N n = a.rows();
    loop<M>(0, a.m, [&](int i) KESL_INLINE {
        V column[most<N>];
        loop<N>(0, n, [&](int j) KESL_INLINE {
            column[j] = w(j, 0) * a(0, i);
            loop<N>(1, n, [&](int k) KESL_INLINE { column[j] = column[j] + w(j, k) * a(k, i); });
        });
        loop<N>(0, n, [&](int j) KESL_INLINE { a(j, i) = column[j]; });
    });
}

// Singular values, descending, of a matrix with at least as many rows as columns; U transposed in place of a, and V
// transposed into v. They fail where a reads NaN or infinity (-1), and where the rotations did not converge (1).
template <bool vectors, class V, class N, class M>
[[gnu::always_inline]] inline IndexOf<V> svd(Tile<V, N, M>& a, Tile<V, Fixed<1>, N>& values, Tile<V, N, N>& v)
{
    const N n = a.rows();
    const M m = a.columns();
    const Scaled<V> scaled([&](auto f) KESL_INLINE {
        loop<N>(0, n, [&](int j) KESL_INLINE { loop<M>(0, m, [&](int i) KESL_INLINE { f(a(j, i)); }); });
    });

    Tile<V, N, N> w(n, n);
    V tau[most<N>];
    IndexOf<V> at[most<N>];
    factorPivoted(a, v, tau, at);
    if constexpr (vectors) {
        collect(a, tau, 0, n, m);
        loop<N>(0, n, [&](int j) KESL_INLINE {
            loop<N>(0, n, [&](int i) KESL_INLINE { w(j, i) = splat<V>(ElementOf<V>(i == j)); });
        });
    }
    const IndexOf<V> failed = orthogonalise<vectors>(v, w);

    V* const s = values.e;
    loop<N>(0, n, [&](int j) KESL_INLINE {
        const V square = dot(&v(j, 0), &v(j, 0), n);
        s[j] = square < nothing<ElementOf<V>> ? V{} : sqrt(square);
    });
    sortWith(n, [&](int i, int j) KESL_INLINE {
        const MaskOf<V> wrong = s[i] < s[j];
        exchange(wrong, s[i], s[j]);
        if constexpr (vectors)
            loop<N>(0, n, [&](int k) KESL_INLINE {
                exchange(wrong, v(i, k), v(j, k));
                exchange(wrong, w(i, k), w(j, k));
            });
    });
    if constexpr (vectors) {
        rightVectors(v, w, s, at);
        multiply(w, a);
    }
    loop<N>(0, n, [&](int j) KESL_INLINE { s[j] = scaled.back(s[j]); });
    return scaled.refused ? index<V>(-1) : failed;
}

} // namespace kesl::stacks
