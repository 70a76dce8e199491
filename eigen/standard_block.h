// The standardisation of a real 2 by 2 block (LAPACK's dlanv2), of one object or of a pack, and the length of a vector of two.
#pragma once
#include "frame/constants.h"
#include "frame/lanes.h"

namespace kesl {

// sqrt(1 + x), of floats by way of double.
inline float rootOnePlus(float x) { return float(std::sqrt(1 + double(x))); }
inline double rootOnePlus(double x) { return std::sqrt(1 + x); }
template <class V> requires(lanes<V> > 1) V rootOnePlus(V x)
{
    if constexpr (sizeof(ElementOf<V>) == 4) return narrowed<V>(sqrt(widened<0>(x) + 1), sqrt(widened<1>(x) + 1));
    else return sqrt(x + 1);
}

// sqrt(x * x + y * y) of magnitudes, by their ratio; never below floorNorm.
template <class V> [[gnu::always_inline]] inline V hypotenuse(V x, V y)
{
    using P = Precision<ElementOf<V>>;
    V big = x > y ? x : y;
    const V small = x > y ? y : x;
    const MaskOf<V> negligible = P::safeMin > small;
    if (any(negated(negligible))) big = negligible ? big : big * rootOnePlus((small * small) / (big * big));
    return P::safeMin > big ? splat<V>(P::floorNorm) : big;
}

template <class V> [[gnu::always_inline]] inline MaskOf<V> signsDiffer(V x, V y) { return (x < 0) != (y < 0); }

// ---- A 2 by 2 block in standard form: triangular, or with a conjugate pair a, a plus and minus i wi.
template <class V> struct StandardBlock {
    using P = Precision<ElementOf<V>>;
    using Mask = MaskOf<V>;
    V a, b, c, d;
    V wi{};

    // cs and sn are the rotation that was done. Where the diagonal is constant and b and c agree in sign they keep their
    // values, and the block counts as a pair all the same.
    template <bool rotates> [[gnu::always_inline]] void make(V& cs, V& sn)
    {
        using T = ElementOf<V>;
        const V one = splat<V>(1), zero{};
        const Mask upper = P::safeMin >= abs(c);
        const Mask lower = negated(upper) & (P::safeMin >= abs(b));
        const Mask full = negated(Mask(upper | lower));
        Mask pair = full & (P::safeMin >= abs(a - d));
        const Mask rest = without(full, pair);

        const V a0 = a, b0 = b, c0 = c, d0 = d;
        put(lower, a, d0), put(lower, d, a0);
        if constexpr (rotates) {
            const Mask asItIs = upper | Mask(pair & signsDiffer(b0, c0));
            put(asItIs, cs, one), put(asItIs, sn, zero);
            put(lower, cs, zero), put(lower, sn, one);
            put(lower, b, -c0), put(lower, c, zero);
        }
        if (any(rest)) {
            const V p = (a0 - d0) * T(0.5), absB = abs(b0), absC = abs(c0), absP = abs(p);
            const V bcmax = absB > absC ? absB : absC, smaller = absB > absC ? absC : absB;
            const V bcmis = signsDiffer(b0, c0) ? -smaller : smaller;
            const V scale = absP > bcmax ? absP : bcmax;
            const V z = (p / scale) * p + (bcmax / scale) * bcmis;
            const Mask isReal = z >= 4 * P::eps, real = rest & isReal, turned = without(rest, isReal);
            if (any(real)) {
                const V r = sqrt(scale) * sqrt(z), q = p > 0 ? p + r : p - r;
                put(real, a, d0 + q), put(real, d, d0 - (bcmax / q) * bcmis);
                if constexpr (rotates) {
                    const V tau = hypotenuse(abs(q), absC);
                    put(real, cs, q / tau), put(real, sn, c0 / tau);
                    put(real, b, b0 - c0), put(real, c, zero);
                }
            }
            if (any(turned)) {
                const V sigma = b0 + c0, tau = hypotenuse(abs(sigma), abs(a0 - d0));
                const V cs1 = sqrt((one + abs(sigma) / tau) * T(0.5));
                const V sine = -p / (tau * cs1), sn1 = sigma < 0 ? -sine : sine;
                const V aa = a0 * cs1 + b0 * sn1, bb = b0 * cs1 - a0 * sn1;
                const V cc = c0 * cs1 + d0 * sn1, dd = d0 * cs1 - c0 * sn1;
                const V b1 = bb * cs1 + dd * sn1, c1 = cc * cs1 - aa * sn1;
                const V mean = (aa * cs1 + cc * sn1 - bb * sn1 + dd * cs1) * T(0.5);
                const Mask both = turned & (abs(b1) > P::safeMin) & (abs(c1) > P::safeMin);
                const Mask opposed = both & signsDiffer(b1, c1), agree = without(both, opposed),
                           single = without(turned, both);
                const V x = c1 < 0 ? -p : p; // not the root of b1 * c1, which it stands for
                put(turned, a, mean), put(turned, d, mean);
                put(agree, a, mean + x), put(agree, d, mean - x);
                put(opposed, b, b1), put(opposed, c, c1);
                pair = pair | opposed;
                if constexpr (rotates) {
                    put(turned, cs, cs1), put(turned, sn, sn1);
                    if (any(single)) {
                        put(single, cs, -sn1), put(single, sn, cs1);
                        put(single, b, -c1), put(single, c, zero);
                    }
                    if (any(agree)) {
                        const V t = one / sqrt(abs(b1 + c1)), cs2 = sqrt(abs(b1)) * t, sn2 = sqrt(abs(c1)) * t;
                        put(agree, cs, cs1 * cs2 - sn1 * sn2), put(agree, sn, cs1 * sn2 + sn1 * cs2);
                        put(agree, b, b1 - c1), put(agree, c, zero);
                    }
                }
            }
        }
        if (any(pair)) put(pair, wi, sqrt(abs(b)) * sqrt(abs(c)));
    }
};

} // namespace kesl
