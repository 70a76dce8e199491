// Householder's reflections I - tau v v^T of a few elements, lane by lane (Golub & Van Loan, 5.1.3).
#pragma once
#include "stacks/scale.h"

namespace kesl::stacks {

// Makes (alpha, x) a multiple of the first unit vector: v = (1, scale x), and beta takes the place of alpha. Where x vanishes
// tau is 0 and nothing changes.
template <class V> struct Reflection {
    V tau, beta, scale;

    // squares(f) is the sum of squares of f x. Elements whose squares lose digits are brought up by a power of two; what is
    // too small even then is far below the rounding errors of a matrix whose largest element is about 1, and counts as zero.
    [[gnu::always_inline]] static Reflection of(V alpha, MaskOf<V> vanishes, auto squares)
    {
        using T = ElementOf<V>;
        constexpr T least = std::numeric_limits<T>::min() / std::numeric_limits<T>::epsilon();
        const V one = splat<V>(1);
        V up = one, down = one, rest = squares(one), sum = alpha * alpha + rest;
        if (const MaskOf<V> tiny = sum < least; any(tiny)) [[unlikely]] {
            const IndexOf<V> lift = tiny & (bias<V> / 2);
            up = powerOfTwo<V>(lift), down = powerOfTwo<V>(-lift);
            rest = squares(up), alpha = alpha * up, sum = alpha * alpha + rest;
        }
        const MaskOf<V> none = vanishes | (sum < least);
        const V norm = sqrt(sum), beta = alpha < 0 ? norm : -norm, p = alpha - beta;
        return {none ? V{} : -p / beta, (none ? alpha : beta) * down, none ? V{} : up / p};
    }
};

} // namespace kesl::stacks
