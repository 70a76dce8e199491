// Powers of two: they bring objects of any magnitude to where nothing over- or underflows, and change no digit.
#pragma once
#include "stacks/tile.h"

namespace kesl::stacks {

template <class V> constexpr int exponentBits = sizeof(ElementOf<V>) == 4 ? 23 : 52; // where the exponent begins
template <class V> constexpr int bias = sizeof(ElementOf<V>) == 4 ? 127 : 1023;

// 2^e for a normal power of two.
template <class V> V powerOfTwo(IndexOf<V> e) { return V((e + bias<V>) << exponentBits<V>); }

template <class V> V larger(V x, V y) { return x > y ? x : y; }

// The largest magnitude, NaN aside.
template <class V, class N, class M> [[gnu::always_inline]] inline V largestOf(const Tile<V, N, M>& x)
{
    V largest{};
    each(x, [&](int i, int j) KESL_INLINE { largest = larger(abs(x(i, j)), largest); });
    return largest;
}
template <class V, class N> [[gnu::always_inline]] inline V largestOfUpper(const Tile<V, N, N>& x)
{
    V largest{};
    eachOfLower(x, [&](int i, int j) KESL_INLINE { largest = larger(abs(x(j, i)), largest); });
    return largest;
}
template <class V, class N> [[gnu::always_inline]] inline V largestOfLower(const Tile<V, N, N>& x)
{
    V largest{};
    eachOfLower(x, [&](int i, int j) KESL_INLINE { largest = larger(abs(x(i, j)), largest); });
    return largest;
}

// For elimination, whose quotients never exceed 1: elements so small that products would lose digits are brought up, those
// so large that their sums could overflow (by a factor of two in each of n - 1 steps) down; all others stay. The power is
// even, so that it has a root.
template <class V> V eliminationScale(V largest, int n)
{
    using T = ElementOf<V>;
    constexpr int up = sizeof(T) == 4 ? 80 : 600;
    const V small = splat<V>(sizeof(T) == 4 ? T(0x1p-60) : T(0x1p-500));
    const V big = powerOfTwo<V>(index<V>(bias<V> - n));
    const V down = powerOfTwo<V>(index<V>(-(n + 1) / 2 * 2));
    return largest < small ? powerOfTwo<V>(index<V>(up)) : largest >= big ? down : splat<V>(1);
}

template <class V, class N, class M> [[gnu::always_inline]] inline void scaleBy(V power, Tile<V, N, M>& x)
{
    each(x, [&](int i, int j) KESL_INLINE { x(i, j) *= power; });
}

// Lanes of a magnitude such that products of three elements neither over- nor underflow.
template <class V> IndexOf<V> isOrdinary(V size)
{
    using T = ElementOf<V>;
    constexpr T low = sizeof(T) == 4 ? T(0x1p-20) : T(0x1p-200);
    return (size > splat<V>(low)) & (size < splat<V>(1 / low));
}

// The same for a matrix: its elements are finite, too.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> ordinary(const Tile<V, N, N>& x)
{
    V sum{};
    loop<N>(0, x.n, [&](int i) KESL_INLINE {
        V ofRow = abs(x(i, 0));
        loop<N>(1, x.n, [&](int j) KESL_INLINE { ofRow += abs(x(i, j)); });
        sum += ofRow;
    });
    return isOrdinary(sum);
}
// And for the factors of elimination, where the magnitude is that of the upper one.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> ordinaryFactors(const Tile<V, N, N>& x)
{
    V lower{}, upper{};
    eachOfLower(x, [&](int i, int j) KESL_INLINE {
        upper += abs(x(j, i));
        if (j < i) lower += abs(x(i, j));
    });
    return isOrdinary(upper) & isOrdinary(upper + lower);
}

// A matrix made ready for elimination: NaN and infinities out of the way, magnitudes where nothing over- or underflows.
// Ordinary ones are left as they are.
template <class V> class Preparation {
public:
    IndexOf<V> refused{}; // lanes that hold a NaN or an infinity
    V scale = splat<V>(1);
    bool isScaled = false;

    template <class N> [[gnu::always_inline]] explicit Preparation(Tile<V, N, N>& x)
    {
        if (!any(~ordinary(x))) [[likely]]
            return;
        refused = notFinite(x);
        makeHarmless(refused, x);
        scale = eliminationScale(largestOf(x), x.n);
        isScaled = true;
        scaleBy(scale, x);
    }
    template <class N, class M> [[gnu::always_inline]] void scaleLike(Tile<V, N, M>& x) const
    {
        if (isScaled) scaleBy(scale, x);
    }
    IndexOf<V> info(IndexOf<V> otherwise) const { return refused ? index<V>(-1) : otherwise; }
};

// x * 2^e for e up to twice the range of exponents, as two factors; rounded once if x is 1 or larger.
template <class V> class TwoPowers {
public:
    explicit TwoPowers(IndexOf<V> e)
    {
        const IndexOf<V> start = limited(e);
        first = powerOfTwo<V>(start), second = powerOfTwo<V>(limited(e - start));
    }
    V times(V x) const { return x * first * second; }

private:
    V first, second;
    static IndexOf<V> limited(IndexOf<V> e)
    {
        const IndexOf<V> low = index<V>(1 - bias<V>), high = index<V>(bias<V>);
        return e < low ? low : e > high ? high : e;
    }
};
template <class V> V timesPowerOfTwo(V x, IndexOf<V> e) { return TwoPowers<V>(e).times(x); }

// x = (its value, from 1 to 2 with the sign) * 2^e, whatever x is but 0, NaN and infinity.
template <class V> V splitExponent(V x, IndexOf<V>& e)
{
    using T = ElementOf<V>;
    const IndexOf<V> tiny = abs(x) < splat<V>(std::numeric_limits<T>::min());
    x = tiny ? x * splat<V>(T(0x1p64)) : x;
    const IndexOf<V> bits = IndexOf<V>(x), biased = IndexOf<V>(abs(x)) >> exponentBits<V>, exponent = biased - bias<V>;
    e = exponent - (tiny & 64);
    return V(bits - (exponent << exponentBits<V>));
}

// The power of two in a magnitude x, so that x / power(x) is in [1, 2); 0 for subnormal numbers and 0. And its inverse, for these
// the largest power there is.
template <class V> V power(V x)
{
    constexpr auto ones = (std::int64_t(1) << (8 * sizeof(ElementOf<V>) - 1 - exponentBits<V>)) - 1;
    return V(IndexOf<V>(x) & (index<V>(int(ones)) << exponentBits<V>));
}
template <class V> V inversePower(V x)
{
    const IndexOf<V> twice = index<V>(2 * bias<V>) << exponentBits<V>;
    return V(twice - IndexOf<V>(power(x)));
}

// The exponent of a magnitude: 2^e <= x < 2^(e + 1). 0 for 0.
template <class V> IndexOf<V> exponentOf(V x)
{
    IndexOf<V> e;
    splitExponent(x, e);
    return x == 0 ? IndexOf<V>{} : e;
}

} // namespace kesl::stacks
