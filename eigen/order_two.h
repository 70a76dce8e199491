// Symmetric matrices of order 2, of one object or of a pack.
#pragma once
#include "frame/constants.h"
#include "frame/lanes.h"
#include "keslmx.h"

namespace kesl {

// In closed form: the value of greater magnitude first, but for a trace of almost 0. `negative` is whether a negative trace
// decided.
template <class V> struct SymPair {
    using T = ElementOf<V>;
    using Mask = MaskOf<V>;
    V a, b, d; // of the matrix (a b; . d)
    V first{}, second{};
    Mask negative{};

    KeslStatus values(T singularUpTo)
    {
        constexpr T eps = Precision<T>::eps;
        const V det = a * d - b * b;
        if (any(singularUpTo >= abs(det))) return keslStatusSingular;
        const V root = hypotenuse(), trace = a + d;
        const Mask positive = trace > eps;
        negative = trace < -eps;
        const V sum = positive ? root + trace : negative ? trace - root : root;
        first = sum * T(0.5);
        second = Mask(positive | negative) ? det / first : root * T(-0.5);
        return keslStatusOk;
    }
    void vectors(auto v) const
    {
        constexpr T eps = Precision<T>::eps;
        const V df = a - d, tb = b + b, rt = hypotenuse();
        const Mask below = df < -eps;
        const V cs = below ? df - rt : df + rt;
        const Mask steep = abs(cs) > abs(tb), diagonal = without(Mask(eps >= abs(tb)), steep);
        const V slope = steep ? -tb / cs : -cs / tb;
        const V longer = T(1) / sqrt(T(1) + slope * slope), shorter = longer * slope;
        const V cosine = diagonal ? splat<V>(1) : steep ? shorter : longer;
        const V sine = diagonal ? V{} : steep ? longer : shorter;
        const Mask turned = negative == below;
        const V x = turned ? -sine : cosine, y = turned ? cosine : sine;
        v(0, 0) = x, v(1, 0) = y, v(0, 1) = -y, v(1, 1) = x;
    }

private:
    V hypotenuse() const { return sqrt((a - d) * (a - d) + (b + b) * (b + b)); }
};

} // namespace kesl
