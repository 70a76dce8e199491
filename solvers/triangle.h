// Lower triangles: blocks of which only the elements on and below the diagonal are used.
#pragma once
#include "frame/blocks.h"

namespace kesl {

// That of one object.
template <class T, int n> [[gnu::always_inline]] inline Block<T, n, n> lowerOf(auto object)
{
    Block<T, n, n> l;
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i)
#pragma GCC unroll 8
        for (int j = 0; j <= i; ++j) l(i, j) = object(i, j);
    return l;
}

} // namespace kesl
