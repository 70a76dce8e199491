// Powers of two: they bring objects of any magnitude to where nothing over- or underflows, and change no digit.
#pragma once
#include "stacks/tile.h"

namespace kesl::stacks {

template <class V> constexpr int exponentBits = sizeof(ElementOf<V>) == 4 ? 23 : 52; // where the exponent begins
template <class V> constexpr int bias = sizeof(ElementOf<V>) == 4 ? 127 : 1023;

// 2^e for a normal power of two.
template <class V> V powerOfTwo(IndexOf<V> e) { return V((e + bias<V>) << exponentBits<V>); }

// The largest magnitude, NaN and infinity aside.
template <class V, class N, class M> V largestOf(const Tile<V, N, M>& x)
{
    V largest{};
    for (int i = 0; i < x.n; ++i)
        for (int j = 0; j < x.m; ++j) largest = abs(x(i, j)) > largest ? abs(x(i, j)) : largest;
    return largest;
}
template <class V, class N> V largestOfUpper(const Tile<V, N, N>& x)
{
    V largest{};
    for (int i = 0; i < x.n; ++i)
        for (int j = i; j < x.n; ++j) largest = abs(x(i, j)) > largest ? abs(x(i, j)) : largest;
    return largest;
}
template <class V, class N> V largestOfLower(const Tile<V, N, N>& x)
{
    V largest{};
    for (int i = 0; i < x.n; ++i)
        for (int j = 0; j <= i; ++j) largest = abs(x(i, j)) > largest ? abs(x(i, j)) : largest;
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

template <class V, class N, class M> void scaleBy(V power, Tile<V, N, M>& x)
{
    for (int i = 0; i < x.n; ++i)
        for (int j = 0; j < x.m; ++j) x(i, j) *= power;
}

// Lanes whose matrix is finite and of a magnitude such that products of three elements neither over- nor underflow.
template <class V, class N> IndexOf<V> ordinary(const Tile<V, N, N>& x)
{
    using T = ElementOf<V>;
    V sum{};
    for (int i = 0; i < x.n; ++i) {
        V ofRow{};
        for (int j = 0; j < x.m; ++j) ofRow += abs(x(i, j));
        sum += ofRow;
    }
    constexpr T low = sizeof(T) == 4 ? T(0x1p-20) : T(0x1p-200), high = 1 / low;
    return (sum > splat<V>(low)) & (sum < splat<V>(high));
}

// A matrix made ready for elimination: NaN and infinities out of the way, magnitudes where nothing over- or underflows.
// Ordinary ones are left as they are.
template <class V> class Preparation {
public:
    IndexOf<V> refused{}; // lanes that hold a NaN or an infinity
    V scale = splat<V>(1);
    bool isScaled = false;

    template <class N> explicit Preparation(Tile<V, N, N>& x)
    {
        if (!any(~ordinary(x))) return;
        refused = notFinite(x);
        makeHarmless(refused, x);
        scale = eliminationScale(largestOf(x), x.n);
        isScaled = true;
        scaleBy(scale, x);
    }
    template <class N, class M> void scaleLike(Tile<V, N, M>& x) const
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
    const IndexOf<V> bits = IndexOf<V>(x), exponent = (IndexOf<V>(abs(x)) >> exponentBits<V>)-bias<V>;
    e = exponent - (tiny & 64);
    return V(bits - (exponent << exponentBits<V>));
}

// The power of two that brings a magnitude to [1, 2); for subnormal numbers and 0 the largest one.
template <class V> V inversePower(V x)
{
    constexpr auto ones = (std::int64_t(1) << (8 * sizeof(ElementOf<V>) - 1 - exponentBits<V>)) - 1;
    const IndexOf<V> exponent = IndexOf<V>(x) & (index<V>(int(ones)) << exponentBits<V>);
    return V((index<V>(2 * bias<V>) << exponentBits<V>)-exponent);
}

// The exponent of a magnitude: 2^e <= x < 2^(e + 1). 0 for 0.
template <class V> IndexOf<V> exponentOf(V x)
{
    IndexOf<V> e;
    splitExponent(x, e);
    return x == 0 ? IndexOf<V>{} : e;
}

} // namespace kesl::stacks
