// Two packs as one, for bodies that are a long chain of operations: of two chains a processor does one while the other waits.
// They have what packs have, but for `?:`, in whose place stands choice().
#pragma once
#include "frame/lanes.h"

namespace kesl {

template <class V> struct Twice {
    V lower, upper;

    Twice() = default;
    Twice(V x, V y) : lower(x), upper(y) {}
    Twice(ElementOf<V> x) : lower(splat<V>(x)), upper(splat<V>(x)) {}

    friend Twice operator+(Twice x, Twice y) { return {x.lower + y.lower, x.upper + y.upper}; }
    friend Twice operator-(Twice x, Twice y) { return {x.lower - y.lower, x.upper - y.upper}; }
    friend Twice operator*(Twice x, Twice y) { return {x.lower * y.lower, x.upper * y.upper}; }
    friend Twice operator/(Twice x, Twice y) { return {x.lower / y.lower, x.upper / y.upper}; }
    friend Twice operator-(Twice x) { return {-x.lower, -x.upper}; }
    friend Twice operator~(Twice x) { return {~x.lower, ~x.upper}; }
    friend Twice operator&(Twice x, Twice y) { return {x.lower & y.lower, x.upper & y.upper}; }
    friend Twice operator|(Twice x, Twice y) { return {x.lower | y.lower, x.upper | y.upper}; }

    friend auto operator>(Twice x, Twice y) { return Twice<MaskOf<V>>{x.lower > y.lower, x.upper > y.upper}; }
    friend auto operator<(Twice x, Twice y) { return Twice<MaskOf<V>>{x.lower < y.lower, x.upper < y.upper}; }
    friend auto operator>=(Twice x, Twice y) { return Twice<MaskOf<V>>{x.lower >= y.lower, x.upper >= y.upper}; }
    friend auto operator<=(Twice x, Twice y) { return Twice<MaskOf<V>>{x.lower <= y.lower, x.upper <= y.upper}; }
    friend auto operator==(Twice x, Twice y) { return Twice<MaskOf<V>>{x.lower == y.lower, x.upper == y.upper}; }
    friend auto operator!=(Twice x, Twice y) { return Twice<MaskOf<V>>{x.lower != y.lower, x.upper != y.upper}; }

    friend Twice abs(Twice x) { return {abs(x.lower), abs(x.upper)}; }
    friend Twice sqrt(Twice x) { return {sqrt(x.lower), sqrt(x.upper)}; }
};
template <class V> struct LanesOf<Twice<V>> {
    using Element = ElementOf<V>;
    static constexpr int count = 2 * lanes<V>;
};
template <class M> bool any(Twice<M> x) { return any(x.lower | x.upper); }

// Packs as the numbers that a body takes, and back: one as it is, one of floats as two of doubles, or both.
template <class N, class V> [[gnu::always_inline]] inline N numbersOf(const V& x, [[maybe_unused]] const V& y)
{
    if constexpr (!requires(N n) { n.lower; }) return converted<N>(x);
    else if constexpr (lanes<N> == lanes<V>) return {widened<0>(x), widened<1>(x)};
    else return {x, y};
}
template <class N, class V> [[gnu::always_inline]] inline void toPacks(const N& from, V& x, [[maybe_unused]] V& y)
{
    if constexpr (!requires { from.lower; }) x = converted<V>(from);
    else if constexpr (lanes<N> == lanes<V>) x = narrowed<V>(from.lower, from.upper);
    else x = from.lower, y = from.upper;
}

// x where the mask holds, elsewhere y.
template <class V> [[gnu::always_inline]] inline V choice(MaskOf<V> where, V x, V y) { return where ? x : y; }
template <class V> [[gnu::always_inline]] inline Twice<V> choice(Twice<MaskOf<V>> where, Twice<V> x, Twice<V> y)
{
    return {choice(where.lower, x.lower, y.lower), choice(where.upper, x.upper, y.upper)};
}

} // namespace kesl
