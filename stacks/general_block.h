// A 2 by 2 block in standard form: upper triangular if its eigenvalues are real, otherwise with equal diagonal elements and
// off-diagonal elements of opposite signs (Bai & Demmel, On swapping diagonal blocks in real Schur form).
#pragma once
#include "stacks/general_hessenberg.h"

namespace kesl::stacks {

// sqrt(x^2 + y^2), of numbers whose squares may underflow.
template <class V> [[gnu::always_inline]] inline V hypotenuse(V x, V y)
{
    const V u = abs(x), v = abs(y), big = u > v ? u : v, small = u > v ? v : u;
    const V ratio = small / (big == 0 ? splat<V>(1) : big);
    return big * sqrt(ratio * ratio + 1);
}

// [a b; c d] and the rotation that makes it so: (cs sn; -sn cs) block (cs -sn; sn cs).
template <class V> struct StandardBlock {
    V a, b, c, d;
    V cs = splat<V>(1), sn{};

    // The imaginary part of the first eigenvalue: 0 if both are real.
    V imaginary() const { return sqrt(abs(b)) * sqrt(abs(c)); }

    [[gnu::always_inline]] void make()
    {
        using T = ElementOf<V>;
        using Mask = MaskOf<V>;
        const V one = splat<V>(1);
        // Near 1, so that nothing underflows that matters.
        V largest = abs(a);
        for (const V x : {abs(b), abs(c), abs(d)}) largest = x > largest ? x : largest;
        const V down = inversePower(largest), up = inversePower(down);
        const V a0 = a * down, b0 = b * down, c0 = c * down, d0 = d * down;

        const Mask opposed = (b0 < 0) != (c0 < 0);
        const Mask upper = c0 == 0, lower = ~upper & (b0 == 0);
        const Mask pair = ~upper & ~lower & (a0 == d0) & opposed;
        const Mask rest = ~upper & ~lower & ~pair;
        V a1 = lower ? d0 : a0, d1 = lower ? a0 : d0, b1 = lower ? -c0 : b0, c1 = lower ? V{} : c0;
        cs = lower ? V{} : one, sn = lower ? one : V{};
        if (any(rest)) {
            const V p = (a0 - d0) * T(0.5), absB = abs(b0), absC = abs(c0), absP = abs(p);
            const V larger = absB > absC ? absB : absC, smaller = absB > absC ? absC : absB;
            const V product = opposed ? -smaller : smaller, scale = absP > larger ? absP : larger;
            const V z = (p / scale) * p + (larger / scale) * product; // the discriminant over 4 scale
            const Mask real = rest & (z >= scale * (4 * std::numeric_limits<T>::epsilon()));
            {
                const V root = sqrt(scale) * sqrt(real ? z : V{}), q = p > 0 ? p + root : p - root;
                const V tau = hypotenuse(c0, q);
                a1 = real ? d0 + q : a1, d1 = real ? d0 - (larger / q) * product : d1;
                b1 = real ? b0 - c0 : b1, c1 = real ? V{} : c1;
                cs = real ? q / tau : cs, sn = real ? c0 / tau : sn;
            }
            // Complex eigenvalues, or nearly equal ones: the diagonal elements are made equal.
            if (const Mask turned = rest & ~real; any(turned)) {
                // Both legs may be subnormal where the block is nearly in form.
                const V s = abs(b0 + c0), t = abs(a0 - d0), near = inversePower(s > t ? s : t);
                const V sigma = (b0 + c0) * near, difference = (a0 - d0) * near, tau = hypotenuse(sigma, difference);
                const V cs1 = sqrt((abs(sigma) / tau + 1) * T(0.5)), sine = difference * T(0.5) / (tau * cs1);
                const V sn1 = sigma < 0 ? sine : -sine;
                const V aa = a0 * cs1 + b0 * sn1, bb = b0 * cs1 - a0 * sn1;
                const V cc = c0 * cs1 + d0 * sn1, dd = d0 * cs1 - c0 * sn1;
                const V mean = (aa * cs1 + cc * sn1 + dd * cs1 - bb * sn1) * T(0.5);
                const V b2 = bb * cs1 + dd * sn1, c2 = cc * cs1 - aa * sn1;
                const Mask triangular = c2 == 0, swapped = ~triangular & (b2 == 0);
                const Mask agree = ~triangular & ~swapped & ((b2 < 0) == (c2 < 0));
                // Real after all where the signs agree: one more rotation.
                const V rootB = sqrt(abs(b2)), rootC = sqrt(abs(c2)), f = one / sqrt(abs(b2 + c2));
                const V offset = c2 < 0 ? -(rootB * rootC) : rootB * rootC;
                const V cs2 = agree ? rootB * f : swapped ? V{} : one, sn2 = agree ? rootC * f : swapped ? one : V{};
                a1 = turned ? (agree ? mean + offset : mean) : a1, d1 = turned ? (agree ? mean - offset : mean) : d1;
                b1 = turned ? (agree ? b2 - c2 : swapped ? -c2 : b2) : b1;
                c1 = turned ? (agree | swapped ? V{} : c2) : c1;
                cs = turned ? cs1 * cs2 - sn1 * sn2 : cs, sn = turned ? cs1 * sn2 + sn1 * cs2 : sn;
            }
        }
        a = a1 * up, b = b1 * up, c = c1 * up, d = d1 * up;
    }
};

// The blocks of a quasi-triangular matrix, and the eigenvalues re + i im.
template <class V, class N> void standardise(Tile<V, N, N>& h, auto& z, V* re, V* im)
{
    const int n = h.n;
    for (int i = 0; i < n; ++i) re[i] = h(i, i), im[i] = V{};
    for (int k = 1; k < n; ++k) {
        const MaskOf<V> open = abs(h(k, k - 1)) > 0;
        if (!any(open)) continue;
        StandardBlock<V> block{h(k - 1, k - 1), h(k - 1, k), h(k, k - 1), h(k, k)};
        block.make();
        const MaskOf<V> pair = abs(block.c) > 0;
        const V w = block.imaginary();
        re[k - 1] = open ? block.a : re[k - 1], im[k - 1] = pair ? w : im[k - 1];
        re[k] = open ? block.d : re[k], im[k] = pair ? -w : im[k];
        if constexpr (wanted<std::remove_cvref_t<decltype(z)>>) {
            // Elsewhere the way to the block's units and back would cost subnormal numbers digits.
            const auto put = [&](V& x, V value) KESL_INLINE { x = open ? value : x; };
            put(h(k - 1, k - 1), block.a), put(h(k - 1, k), block.b), put(h(k, k - 1), block.c), put(h(k, k), block.d);
            const auto rotate = [&](V& x, V& y) KESL_INLINE {
                const V x0 = x, y0 = y;
                x = block.cs * x0 + block.sn * y0, y = block.cs * y0 - block.sn * x0;
            };
            for (int j = k + 1; j < n; ++j) rotate(h(k - 1, j), h(k, j));
            for (int i = 0; i < k - 1; ++i) rotate(h(i, k - 1), h(i, k));
            for (int i = 0; i < n; ++i) rotate(z(i, k - 1), z(i, k));
        }
    }
}

} // namespace kesl::stacks
