// The order of results and the signs of vectors.
#pragma once
#include "stacks/loop.h"

namespace kesl::stacks {

template <class V> [[gnu::always_inline]] inline void exchange(MaskOf<V> where, V& x, V& y)
{
    const V old = x;
    x = where ? y : x;
    y = where ? old : y;
}

// Batcher's merge exchange (Knuth, The Art of Computer Programming, volume 3, algorithm 5.2.2M): sort(i, j) with i < j puts
// elements i and j in order.
constexpr void mergeExchange(int n, auto sort)
{
    int top = 1;
    while (2 * top < n) top *= 2;
    for (int p = top; p > 0; p /= 2)
        for (int q = top, r = 0, d = p;; d = q - p, q /= 2, r = p) {
            for (int i = 0; i < n - d; ++i)
                if ((i & p) == r) sort(i, i + d);
            if (q == p) break;
        }
}

// Its list of pairs, for sizes that are written out.
template <int n> constexpr auto network = [] {
    struct {
        int length = 0;
        struct {
            int i, j;
        } pairs[n * n] = {};
    } all;
    mergeExchange(n, [&](int i, int j) { all.pairs[all.length++] = {i, j}; });
    return all;
}();

template <class N> [[gnu::always_inline]] inline void sortWith(N n, auto sort)
{
    if constexpr (!isFixed<N>) mergeExchange(n, sort);
    else if constexpr (n > 1) {
        constexpr auto& list = network<n>;
#pragma GCC unroll 64
        for (int k = 0; k < list.length; ++k) sort(list.pairs[k].i, list.pairs[k].j);
    }
}

// Whether the largest component of a vector, the first of equals, is negative; and the vector turned where it is so. Zeros
// lose their sign.
template <class V> [[gnu::always_inline]] inline MaskOf<V> pointsBack(const V* x, auto n)
{
    V top = x[0];
    loop<decltype(n)>(1, n, [&](int j) KESL_INLINE { top = abs(x[j]) > abs(top) ? x[j] : top; });
    return top < V{};
}
template <class V> [[gnu::always_inline]] inline void turn(MaskOf<V> where, V* x, auto n)
{
    loop<decltype(n)>(0, n, [&](int j) KESL_INLINE { x[j] = (where ? -x[j] : x[j]) + V{}; });
}

} // namespace kesl::stacks
