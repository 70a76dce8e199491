// Magnitudes and how they are brought where squares neither over- nor underflow.
#pragma once
#include "stacks/loop.h"
#include "stacks/scale.h"

namespace kesl::stacks {

template <class T> struct Format {
    using Limits = std::numeric_limits<T>;
    static constexpr T roundoff = Limits::epsilon() / 2;
    // Largest magnitudes are brought to 2^headroom. The squares of a whole tile then sum up without overflow, and elements
    // down to 2^-100 of the largest have squares with all their digits: sums of squares that are `negligible` have not.
    static constexpr int headroom = (Limits::max_exponent - 18) / 2;
    static constexpr T negligible = Limits::min() / roundoff;
};

// Elements of the same unit, all of them brought up or down by one power of two so that the largest magnitude is 2^headroom
// or more, and less than twice that. Where one is NaN or infinite they are refused: all become zero. each(f) calls f(x) for
// every element x.
template <class V> struct Scaled {
    IndexOf<V> shift;
    MaskOf<V> refused;

    [[gnu::always_inline]] explicit Scaled(auto each)
    {
        V largest{}, zeros{};
        each([&](V& x) KESL_INLINE {
            const V size = abs(x);
            largest = size > largest ? size : largest;
            zeros = zeros + (x - x);
        });
        refused = zeros != V{};
        shift = refused ? IndexOf<V>{} : Format<ElementOf<V>>::headroom - exponentOf(largest);
        const TwoPowers<V> power(shift);
        each([&](V& x) KESL_INLINE { x = refused ? V{} : power.times(x); });
    }
    V back(V x) const { return timesPowerOfTwo(x, -shift); }
};

} // namespace kesl::stacks
