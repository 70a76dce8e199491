// Balancing: a diagonal similarity by powers of two that makes each row about as long as its column (Parlett & Reinsch,
// Balancing a matrix for calculation of eigenvalues and eigenvectors). The diagonal counts, so that no small off-diagonal
// element is blown up to the size of the norm (James, Langou & Lowery, On matrix balancing and eigenvector computation).
#pragma once
#include "stacks/scale.h"

namespace kesl::stacks {

// a becomes D^-1 a D, and d holds the exponents of D. The elements are below 2^(bias - 6), so that sums do not overflow.
// False where no lane has changed.
template <class V, class N> bool balance(Tile<V, N, N>& a, IndexOf<V>* d)
{
    using T = ElementOf<V>;
    using Index = IndexOf<V>;
    constexpr int most = bias<V> / 2 - 3; // so that the quotient of two elements of D is a number, too
    constexpr int sweeps = 32;            // the norm shrinks with each; this many bring any matrix to rest or near it
    const int n = a.n;
    bool ever = false, changed = true;
    for (int i = 0; i < n; ++i) d[i] = Index{};
    for (int sweep = 0; sweep < sweeps && changed; ++sweep) {
        changed = false;
        for (int i = 0; i < n; ++i) {
            V c{}, r{};
            for (int j = 0; j < n; ++j) c = c + abs(a(j, i)), r = r + abs(a(i, j));
            // The bits of a positive number are its logarithm, nearly: k is about log2(r / c) / 2.
            Index k = (Index(r) - Index(c) + ((Index{} + 1) << exponentBits<V>)) >> (exponentBits<V> + 1);
            k = k > most - d[i] ? most - d[i] : k;
            k = k < -most - d[i] ? -most - d[i] : k;
            const V f = powerOfTwo<V>(k), g = powerOfTwo<V>(-k);
            const MaskOf<V> worth = (c > 0) & (r > 0) & (c * f + r * g < (c + r) * T(0.95));
            if (!any(worth)) continue;
            ever = changed = true;
            d[i] = worth ? d[i] + k : d[i];
            const V one = splat<V>(1), column = worth ? f : one, row = worth ? g : one;
            for (int j = 0; j < n; ++j) a(j, i) = a(j, i) * column;
            for (int j = 0; j < n; ++j) a(i, j) = a(i, j) * row;
        }
    }
    return ever;
}

} // namespace kesl::stacks
