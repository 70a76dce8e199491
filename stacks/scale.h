// Powers of two: they bring objects of any magnitude to where nothing over- or underflows, and change no digit.
#pragma once
#include "stacks/tile.h"

namespace kesl::stacks {

template <class V> constexpr int exponentBits = sizeof(ElementOf<V>) == 4 ? 23 : 52; // where the exponent begins
template <class V> constexpr int bias = sizeof(ElementOf<V>) == 4 ? 127 : 1023;

// 2^e for a normal power of two.
template <class V> V powerOfTwo(IndexOf<V> e) { return V((e + bias<V>) << exponentBits<V>); }

// x > y ? x : y, y where one is a NaN: one instruction, which compilers do not find by themselves.
template <class V> V larger(V x, V y)
{
    constexpr bool single = sizeof(ElementOf<V>) == 4;
    if constexpr (sizeof(V) == 16 && single) return V(_mm_max_ps(__m128(x), __m128(y)));
    else if constexpr (sizeof(V) == 16) return V(_mm_max_pd(__m128d(x), __m128d(y)));
#if defined(__AVX2__)
    else if constexpr (sizeof(V) == 32 && single) return V(_mm256_max_ps(__m256(x), __m256(y)));
    else if constexpr (sizeof(V) == 32) return V(_mm256_max_pd(__m256d(x), __m256d(y)));
#endif
#if defined(__AVX512F__)
    else if constexpr (single) return V(_mm512_max_ps(__m512(x), __m512(y)));
    else return V(_mm512_max_pd(__m512d(x), __m512d(y)));
#endif
}

// x < y ? x : y, likewise.
template <class V> V smaller(V x, V y)
{
    constexpr bool single = sizeof(ElementOf<V>) == 4;
    if constexpr (sizeof(V) == 16 && single) return V(_mm_min_ps(__m128(x), __m128(y)));
    else if constexpr (sizeof(V) == 16) return V(_mm_min_pd(__m128d(x), __m128d(y)));
#if defined(__AVX2__)
    else if constexpr (sizeof(V) == 32 && single) return V(_mm256_min_ps(__m256(x), __m256(y)));
    else if constexpr (sizeof(V) == 32) return V(_mm256_min_pd(__m256d(x), __m256d(y)));
#endif
#if defined(__AVX512F__)
    else if constexpr (single) return V(_mm512_min_ps(__m512(x), __m512(y)));
    else return V(_mm512_min_pd(__m512d(x), __m512d(y)));
#endif
}

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

// Lanes where a matrix of order n with this largest magnitude, and rows that are not much smaller, has products of n elements
// that neither over- nor underflow.
template <int n, class V> IndexOf<V> isOrdinary(V largest)
{
    constexpr bool single = sizeof(ElementOf<V>) == 4;
    const V low = powerOfTwo<V>(index<V>((single ? -60 : -900) / n)),
            high = powerOfTwo<V>(index<V>((single ? 120 : 1010) / n));
    return (largest > low) & (largest < high);
}

// What elimination does to keep objects of any magnitude right. First it is tried with all objects as they are. Where the
// result does not tell that this was right - a NaN, an infinity, a zero pivot, very large or small ones - it is done again
// with care: NaN and infinities out of the way, magnitudes where nothing over- or underflows. Other objects of the pack get
// the same bits once more.
template <class V> class Preparation {
public:
    bool isCareful = false;
    IndexOf<V> refused{}; // lanes that hold a NaN or an infinity
    V scale = splat<V>(1);

    template <class N> [[gnu::always_inline]] void prepare(Tile<V, N, N>& x)
    {
        if (!isCareful) [[likely]]
            return;
        refused = notFinite(x);
        makeHarmless(refused, x);
        scale = unclear ? eliminationScale(largestOf(x), x.n) : splat<V>(1);
        scaleBy(scale, x);
    }
    // Whether the work has to be done again, because of these lanes.
    bool again(IndexOf<V> lanes)
    {
        if (isCareful || !any(lanes)) [[likely]]
            return false;
        unclear = lanes;
        return isCareful = true;
    }
    template <class N, class M> [[gnu::always_inline]] void scaleLike(Tile<V, N, M>& x) const
    {
        if (isCareful) scaleBy(scale, x);
    }
    IndexOf<V> info(IndexOf<V> otherwise) const { return refused ? index<V>(-1) : otherwise; }

private:
    IndexOf<V> unclear{};
};

// Lanes where eliminationScale() is 1 for all matrices whose magnitudes sum up so, and which hold no NaN.
template <class V> IndexOf<V> needNoScale(V sum)
{
    constexpr bool single = sizeof(ElementOf<V>) == 4;
    return (sum > powerOfTwo<V>(index<V>(single ? -40 : -400))) & (sum < powerOfTwo<V>(index<V>(single ? 90 : 980)));
}
template <class V> IndexOf<V> isFinite(V magnitude)
{
    return magnitude <= splat<V>(std::numeric_limits<ElementOf<V>>::max());
}

template <class V> V withSign(V magnitude, V sign)
{
    const IndexOf<V> bit = index<V>(1) << (8 * int(sizeof(ElementOf<V>)) - 1);
    return V(IndexOf<V>(magnitude) | (IndexOf<V>(sign) & bit));
}

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
