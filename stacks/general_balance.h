// Balancing: a diagonal similarity by powers of two that makes each row about as long as its column (Parlett & Reinsch,
// Balancing a matrix for calculation of eigenvalues and eigenvectors). The diagonal counts, so that no small off-diagonal
// element is blown up to the size of the norm (James, Langou & Lowery, On matrix balancing and eigenvector computation).
#pragma once
#include "stacks/general_isolate.h"
#include "stacks/scale.h"

namespace kesl::stacks {

// The exponent of the largest element while a matrix is balanced: squares do not overflow, and few underflow.
template <class V> constexpr int balancingExponent = (bias<V> - 8) / 2;

// a becomes D^-1 a D, and d holds the exponents of D: 0 for isolated rows.
template <class V, class N> void balance(Tile<V, N, N>& a, const Isolated<V, N>& isolated, IndexOf<V>* d)
{
    using T = ElementOf<V>;
    using Index = IndexOf<V>;
    constexpr int limit = bias<V> / 2 - 3; // so that the quotient of two elements of D is a number, too
    constexpr int sweeps = 32;             // the norm shrinks with each; this many bring any matrix to rest or near it
    const int n = a.n;
    bool changed = true;
    V weights[most<N>]; // 0 for isolated rows, whose elements do not count
    for (int i = 0; i < n; ++i) {
        d[i] = Index{};
        const MaskOf<V> counts = (isolated.first <= i) & (isolated.last >= i);
        weights[i] = counts ? splat<V>(1) : V{};
    }
    for (int sweep = 0; sweep < sweeps && changed; ++sweep) {
        changed = false;
        for (int i = 0; i < n; ++i) {
            V c2{}, r2{};
            for (int j = 0; j < n; ++j) {
                c2 = c2 + weights[j] * (a(j, i) * a(j, i));
                r2 = r2 + weights[j] * (a(i, j) * a(i, j));
            }
            c2 = c2 * weights[i], r2 = r2 * weights[i];
            // The bits of a positive number are its logarithm, nearly: k is about log2(r2 / c2) / 4.
            Index k = (Index(r2) - Index(c2) + (index<V>(2) << exponentBits<V>)) >> (exponentBits<V> + 2);
            if (!any(k != 0)) continue;
            const V c = sqrt(c2), r = sqrt(r2);
            k = k > limit - d[i] ? limit - d[i] : k;
            k = k < -limit - d[i] ? -limit - d[i] : k;
            const V f = powerOfTwo<V>(k), g = powerOfTwo<V>(-k);
            const MaskOf<V> worth = (c > 0) & (r > 0) & (c * f + r * g < (c + r) * T(0.95));
            if (!any(worth)) continue;
            changed = true;
            d[i] = worth ? d[i] + k : d[i];
            const V one = splat<V>(1), column = worth ? f : one, row = worth ? g : one;
            for (int j = 0; j < n; ++j) a(j, i) = a(j, i) * column;
            for (int j = 0; j < n; ++j) a(i, j) = a(i, j) * row;
        }
    }
}

} // namespace kesl::stacks
