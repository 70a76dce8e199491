// Householder's reflectors H = I - tau v v' in the rows of a tile (Golub and Van Loan, Matrix Computations, 5.1).
#pragma once
#include "stacks/magnitude.h"
#include "stacks/reflection.h"

namespace kesl::stacks {

// H that makes x = (a(row, from), ..., a(row, m - 1)) to (beta, 0, ..., 0). v has a 1 in front, the rest of it replaces that
// of x.
template <class M> [[gnu::always_inline]] inline auto reflector(auto& a, int row, int from, M m)
{
    using V = std::remove_cvref_t<decltype(a(0, 0))>;
    const auto squares = [&](V factor) KESL_INLINE {
        V sum{};
        loop<M>(from + 1, m, [&](int i) KESL_INLINE {
            const V x = factor * a(row, i);
            sum = sum + x * x;
        });
        return sum;
    };
    const auto h = Reflection<V>::of(a(row, from), squares(splat<V>(1)) == V{}, squares);
    loop<M>(from + 1, m, [&](int i) KESL_INLINE { a(row, i) = a(row, i) * h.scale; });
    return h;
}

// The part of another row y that H acts on, reflected.
template <class M, class V> [[gnu::always_inline]] inline void reflect(const auto& a, int row, int from, M m, V tau, V* y)
{
    V s = y[from];
    loop<M>(from + 1, m, [&](int i) KESL_INLINE { s = s + a(row, i) * y[i]; });
    s = s * tau;
    y[from] = y[from] - s;
    loop<M>(from + 1, m, [&](int i) KESL_INLINE { y[i] = y[i] - s * a(row, i); });
}

// The first n rows of the transpose of H(0) H(1) ... in place of the reflectors: H(k) is in row k and acts from column
// k + ahead on.
template <class N, class M> [[gnu::always_inline]] inline void collect(auto& a, const auto* tau, int ahead, N n, M m)
{
    using V = std::remove_cvref_t<decltype(a(0, 0))>;
    loopDown<N>(0, n - ahead, [&](int k) KESL_INLINE {
        const int from = k + ahead;
        loop<N>(from + 1, n, [&](int j) KESL_INLINE {
            a(j, from) = V{};
            reflect(a, k, from, m, tau[k], &a(j, 0));
        });
        a(from, from) = 1 - tau[k];
        loop<M>(from + 1, m, [&](int i) KESL_INLINE { a(from, i) = -(tau[k] * a(k, i)); });
    });
    loop<N>(0, ahead, [&](int k) KESL_INLINE {
        loop<M>(0, m, [&](int i) KESL_INLINE { a(k, i) = splat<V>(ElementOf<V>(i == k)); });
        loop<N>(k + 1, n, [&](int j) KESL_INLINE { a(j, k) = V{}; });
    });
}

} // namespace kesl::stacks
