// Householder's reduction of a square matrix to Hessenberg form (Golub & Van Loan, 7.4.3).
#pragma once
#include "stacks/reflection.h"

namespace kesl::stacks {

// (I - tau v v^T) from the left on rows k + 1 .. of columns k + 1 ..; v is 1, and then what stands in column k of `vectors`.
template <class V, class N> void reflectRows(Tile<V, N, N>& x, const Tile<V, N, N>& vectors, int k, V tau)
{
    const int n = x.n;
    for (int j = k + 1; j < n; ++j) {
        V sum = x(k + 1, j);
        for (int i = k + 2; i < n; ++i) sum = sum + vectors(i, k) * x(i, j);
        sum = sum * tau;
        x(k + 1, j) = x(k + 1, j) - sum;
        for (int i = k + 2; i < n; ++i) x(i, j) = x(i, j) - vectors(i, k) * sum;
    }
}
template <class V, class N> void reflectColumns(Tile<V, N, N>& x, const Tile<V, N, N>& vectors, int k, V tau)
{
    const int n = x.n;
    for (int i = 0; i < n; ++i) {
        V sum = x(i, k + 1);
        for (int j = k + 2; j < n; ++j) sum = sum + vectors(j, k) * x(i, j);
        sum = sum * tau;
        x(i, k + 1) = x(i, k + 1) - sum;
        for (int j = k + 2; j < n; ++j) x(i, j) = x(i, j) - vectors(j, k) * sum;
    }
}

// In the place of Z where nobody wants it.
struct NoBasis {
    NoBasis(int, int) {}
};
template <class Basis> constexpr bool wanted = !std::is_same_v<Basis, NoBasis>;

// a becomes Z^T a Z.
template <class V, class N> void hessenberg(Tile<V, N, N>& a, auto& z)
{
    using T = ElementOf<V>;
    const int n = a.n;
    V tau[most<N>], beta[most<N>];
    for (int k = 0; k < n - 2; ++k) {
        const auto squares = [&](V f) KESL_INLINE {
            V sum{};
            for (int i = k + 2; i < n; ++i) sum = sum + (a(i, k) * f) * (a(i, k) * f);
            return sum;
        };
        V sum{};
        for (int i = k + 2; i < n; ++i) sum = sum + abs(a(i, k));
        const auto reflection = Reflection<V>::of(a(k + 1, k), sum == 0, squares);
        tau[k] = reflection.tau, beta[k] = reflection.beta;
        for (int i = k + 2; i < n; ++i) a(i, k) = a(i, k) * reflection.scale;
        reflectColumns(a, a, k, tau[k]);
        reflectRows(a, a, k, tau[k]);
    }
    if constexpr (wanted<std::remove_cvref_t<decltype(z)>>) {
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) z(i, j) = splat<V>(T(i == j));
        for (int k = n - 3; k >= 0; --k) reflectRows(z, a, k, tau[k]);
    }
    for (int k = 0; k < n - 2; ++k) {
        a(k + 1, k) = beta[k];
        for (int i = k + 2; i < n; ++i) a(i, k) = V{};
    }
}

} // namespace kesl::stacks
