// General eigenproblems: eigenvalues of square matrices, and their right and left eigenvectors.
//
// Stack: a tile for the matrix; with vectors one more, for the Schur vectors, and some 20 packs for each row.
#pragma once
#include "stacks/general_balance.h"
#include "stacks/general_block.h"
#include "stacks/general_francis.h"
#include "stacks/general_hessenberg.h"
#include "stacks/general_vectors.h"

namespace kesl::stacks {

template <class V, class N, class M> void multiply(Tile<V, N, M>& a, IndexOf<V> exponent)
{
    const TwoPowers<V> power(exponent);
    for (int i = 0; i < a.n * a.m; ++i) a.e[i] = power.times(a.e[i]);
}

// An eigenvalue, or a vector, as it is handed out: no negative zero, whose sign might tell of the neighbours.
template <class V> void finish(IndexOf<V> info, auto& x)
{
    for (int i = 0; i < x.n * x.m; ++i) x.e[i] = x.e[i] + 0;
    if (any(info != 0)) spoil(info != 0, x);
}

// The eigenvalues re + i im, of unit length the right and left vectors, which may be null. a is overwritten. Info: -1 where
// a is not finite; otherwise how many of the first eigenvalues were not found.
template <bool vectors, class V, class N> IndexOf<V>
general(Tile<V, N, N>& a, Tile<V, Fixed<1>, N>& re, Tile<V, Fixed<1>, N>& im, Tile<V, N, N>* right, Tile<V, N, N>* left)
{
    using Index = IndexOf<V>;
    using Basis = std::conditional_t<vectors, Tile<V, N, N>, NoBasis>;
    if (a.n == 0) return Index{}; // there is nothing to point to
    const Index refused = notFinite(a);
    if constexpr (isFixed<N> && most<N> == 1) { // the element is the eigenvalue
        const Index info = refused ? index<V>(-1) : index<V>(0);
        re(0, 0) = a(0, 0), im(0, 0) = V{};
        finish<V>(info, re), finish<V>(info, im);
        for (auto* x : {right, left})
            if (x) (*x)(0, 0) = splat<V>(1), finish<V>(info, *x);
        return info;
    }
    if (any(refused)) makeHarmless(refused, a);

    // Balanced high up, where hardly anything underflows; treated near 1.
    Index d[most<N>];
    const Index up = balancingExponent<V> - exponentOf(largestOf(a));
    multiply(a, up);
    Isolated<V, N> isolated;
    isolate(a, isolated);
    balance(a, isolated, d);
    const Index down = -exponentOf(largestOf(a)), back = -(up + down);
    multiply(a, down);

    Basis z(a.rows(), a.rows());
    hessenberg(a, z);
    Index info = Francis<V, N, Basis>{a, z}.iterate();
    standardise(a, z, re.e, im.e);
    multiply(re, back), multiply(im, back);
    info = refused ? index<V>(-1) : info;
    finish<V>(info, re), finish<V>(info, im);
    if constexpr (vectors) {
        const auto side = [&](Side s, Tile<V, N, N>& x) {
            schurVectors(s, a, z, d, x);
            if (isolated.any) putBack(isolated, x);
            finish<V>(info, x);
        };
        if (right) side(Side::right, *right);
        if (left) side(Side::left, *left);
    }
    return info;
}

// The orders that have code of their own: larger ones gain little by it.
inline auto withGeneralOrder(auto f, std::ptrdiff_t n)
{
    switch (n) {
    case 1: return f(Fixed<1>{});
    case 2: return f(Fixed<2>{});
    case 3: return f(Fixed<3>{});
    case 4: return f(Fixed<4>{});
    default: return f(int(n));
    }
}

} // namespace kesl::stacks
