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

// The largest magnitude of some elements, and whether one of them is NaN or infinite.
template <class V> struct Magnitude {
    V largest{}, zeros{};
    void see(V x)
    {
        const V size = abs(x);
        largest = size > largest ? size : largest;
        zeros = zeros + (x - x);
    }
    MaskOf<V> refused() const { return zeros != V{}; }
    // The power of two to multiply with: the largest magnitude then is 2^headroom or more, and less than twice that. None
    // where all is zero or an element is refused.
    IndexOf<V> shift() const
    {
        return (refused() | (largest == V{})) ? IndexOf<V>{} : Format<ElementOf<V>>::headroom - exponentOf(largest);
    }
};

} // namespace kesl::stacks
