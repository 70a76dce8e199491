// Symmetric eigenproblems: Householder's reduction to tridiagonal form, then implicit QR steps with Wilkinson's shift
// (Golub and Van Loan, Matrix Computations, 8.3; Wilkinson and Reinsch, Linear Algebra, II/2 to II/4). A subdiagonal is
// negligible beside the geometric mean of its two diagonal elements.
//
// The tile holds the transpose: row j is column j of the lower triangle, so that reflectors and vectors are rows.
#pragma once
#include "stacks/order.h"
#include "stacks/reflector.h"

namespace kesl::stacks {

// The upper triangle of a becomes reflectors, H(k) in row k from column k + 1 on; d and e the tridiagonal matrix.
template <class V, class N> [[gnu::always_inline]] inline void tridiagonalise(auto& a, V* tau, V* d, V* e, N n)
{
    loop<N>(0, n - 2, [&](int k) KESL_INLINE {
        const auto h = reflector(a, k, k + 1, n);
        tau[k] = h.tau, e[k] = h.beta;

        // A - v w' - w v' with w = p - tau/2 (p'v) v, p = tau A v.
        const auto v = [&](int j) KESL_INLINE { return j == k + 1 ? splat<V>(1) : a(k, j); };
        V w[most<N>], product{};
        loop<N>(k + 1, n, [&](int i) KESL_INLINE {
            V s = a(k + 1, i);
            loop<N>(k + 2, i, [&](int j) KESL_INLINE { s = s + a(j, i) * a(k, j); });
            loop<N>(std::max(i, k + 2), n, [&](int j) KESL_INLINE { s = s + a(i, j) * a(k, j); });
            w[i] = s * h.tau;
            product = product + w[i] * v(i);
        });
        const V half = product * h.tau * ElementOf<V>(0.5);
        loop<N>(k + 1, n, [&](int i) KESL_INLINE { w[i] = w[i] - half * v(i); });
        loop<N>(k + 1, n, [&](int i) KESL_INLINE {
            const V vi = v(i);
            loop<N>(i, n, [&](int j) KESL_INLINE { a(i, j) = a(i, j) - (vi * w[j] + w[i] * v(j)); });
        });
    });
    loop<N>(0, n, [&](int k) KESL_INLINE { d[k] = a(k, k); });
    if (n > 1) tau[n - 2] = V{}, e[n - 2] = a(n - 2, n - 1);
}

// Rows i and i + 1 of z by a rotation.
template <class V, class N> [[gnu::always_inline]] inline void rotate(auto& z, int i, V c, V s, N n)
{
    loop<N>(0, n, [&](int j) KESL_INLINE {
        const V x = z(i, j), y = z(i + 1, j);
        z(i, j) = c * x + s * y;
        z(i + 1, j) = c * y - s * x;
    });
}

// Brings the eigenvalues of the tridiagonal matrix into d; the rows of z are rotated with it. Lanes that are done wait for
// others: what is computed for them is not kept, and their rows are rotated by nothing, which may cost zeros the sign.
template <bool vectors, class V, class N>
[[gnu::always_inline]] inline IndexOf<V> iterate(auto& z, V* const d, V* const e, N n)
{
    using Mask = MaskOf<V>;
    using F = Format<ElementOf<V>>;
    constexpr int patience = 40; // steps for an eigenvalue; two or three are usual
    const V one = splat<V>(1);
    IndexOf<V> info{};
    const auto isNegligible = [&](int i) KESL_INLINE -> Mask {
        return e[i] * e[i] <= (F::roundoff * abs(d[i])) * (F::roundoff * abs(d[i + 1])) + F::negligible;
    };

    loopDown<N>(2, n, [&](int l) KESL_INLINE {
        for (int step = 0;; ++step) {
            IndexOf<V> m{}; // where the block that ends at l begins
            loop<N>(0, l, [&](int i) KESL_INLINE {
                const Mask split = isNegligible(i);
                e[i] = split ? V{} : e[i];
                m = split ? index<V>(i + 1) : m;
            });
            const Mask active = m < l;
            if (!any(active)) return;
            if (step == patience) [[unlikely]] {
                info = active ? index<V>(l) : info;
                loop<N>(0, l, [&](int i) KESL_INLINE { e[i] = active ? V{} : e[i]; });
                return;
            }

            // Wilkinson's shift is d(l) - last^2 / (half +- root).
            const V last = e[l - 1];
            const V half = (d[l - 1] - d[l]) * ElementOf<V>(0.5), root = sqrt(half * half + last * last);
            V first = d[0];
            loop<N>(1, l, [&](int i) KESL_INLINE { first = m == i ? d[i] : first; });
            V g = (first - d[l]) + last * last / (half > V{} ? half + root : half - root);
            V s = one, c = one, p{};
            loop<N>(0, l, [&](int i) KESL_INLINE {
                const Mask on = active & (m <= i);
                const V f = s * e[i], b = c * e[i];
                const V square = f * f + g * g;
                V r = sqrt(square);
                const V inverse = 1 / r;
                V sine = f * inverse, cosine = g * inverse;
                if (const Mask lost = square < F::negligible; any(lost)) [[unlikely]]
                    r = lost ? V{} : r, sine = lost ? V{} : sine, cosine = lost ? one : cosine;
                if (i > 0) e[i - 1] = (on & (m < i)) ? r : e[i - 1];
                const V base = d[i] - p;
                const V across = (d[i + 1] - base) * sine + (cosine + cosine) * b;
                const V move = sine * across;
                d[i] = on ? base + move : d[i];
                p = on ? move : p;
                g = on ? cosine * across - b : g;
                s = on ? sine : s;
                c = on ? cosine : c;
                if constexpr (vectors) rotate(z, i, on ? cosine : one, on ? sine : V{}, n);
            });
            d[l] = active ? d[l] - p : d[l];
            e[l - 1] = active ? g : e[l - 1];
        }
    });

    if (n > 1) { // the last two by one rotation
        const Mask on = ~isNegligible(0);
        const V half = (d[1] - d[0]) * ElementOf<V>(0.5), root = sqrt(half * half + e[0] * e[0]);
        const V tangent = on ? e[0] / (half > V{} ? half + root : half - root) : V{};
        const V cosine = 1 / sqrt(tangent * tangent + 1);
        d[0] = d[0] - tangent * e[0];
        d[1] = d[1] + tangent * e[0];
        if constexpr (vectors) rotate(z, 0, cosine, -(tangent * cosine), n);
    }
    return info;
}

// Eigenvalues, ascending, and the vectors as rows of a. They fail where a reads NaN or infinity (-1), and where so many
// subdiagonals did not become negligible.
template <bool vectors, class V, class N>
[[gnu::always_inline]] inline IndexOf<V> eigh(Tile<V, N, N>& a, Tile<V, Fixed<1>, N>& values)
{
    const N n = a.rows();
    V* const d = values.e;
    const Scaled<V> scaled([&](auto f) KESL_INLINE {
        loop<N>(0, n, [&](int i) KESL_INLINE { loop<N>(i, n, [&](int j) KESL_INLINE { f(a(i, j)); }); });
    });

    V e[most<N>], tau[most<N>];
    tridiagonalise(a, tau, d, e, n);
    if constexpr (vectors) collect(a, tau, 1, n, n);
    const IndexOf<V> failed = iterate<vectors>(a, d, e, n);
    sortWith(n, [&](int i, int j) KESL_INLINE {
        const MaskOf<V> wrong = d[j] < d[i];
        exchange(wrong, d[i], d[j]);
        if constexpr (vectors) loop<N>(0, n, [&](int k) KESL_INLINE { exchange(wrong, a(i, k), a(j, k)); });
    });
    loop<N>(0, n, [&](int i) KESL_INLINE {
        d[i] = scaled.back(d[i]);
        if constexpr (vectors) turn(pointsBack(&a(i, 0), n), &a(i, 0), n);
    });
    return scaled.refused ? index<V>(-1) : failed;
}

} // namespace kesl::stacks
