// Precision constants of the numerical families.
#pragma once
#include <limits>

namespace kesl {

// clang-format off
template <class T> struct Precision {
    static constexpr T smallest  = std::numeric_limits<T>::min();      // 2^-126      2^-1022     the smallest normal number
    static constexpr T eps       = std::numeric_limits<T>::epsilon();  // 2^-23       2^-52
    static constexpr T safeMin   = 2 * smallest;                       // 2^-125      2^-1021
    static constexpr T floorNorm = 4 * smallest;                       // 2^-124      2^-1020
};
// clang-format on

} // namespace kesl
