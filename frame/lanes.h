// Packs: as many consecutive objects as a vector register has lanes, treated at once, each lane in the scalar order.
//
// A body is a template over a value type V: an element type for one object, or a pack. Both have + - * / and comparisons,
// whose result is a mask: bool, or a pack of integers, to be used with `?:`, `&`, `|`, `~` and any(), never with `!` or `&&`.
#pragma once
#include "frame/views.h"

#include <cmath>
#include <cstdint>
#include <type_traits>
#include <utility>

#pragma GCC diagnostic push
#ifndef __clang__
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized" // g++ 12's header leaves "undefined" vectors so on purpose
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#include <immintrin.h>
#pragma GCC diagnostic pop

namespace kesl {

#if defined(__AVX512F__)
constexpr int widest = 64;
#elif defined(__AVX2__)
constexpr int widest = 32;
#else
constexpr int widest = 16;
#endif

template <class T, int bytes> struct PackOf {
    typedef T type __attribute__((vector_size(bytes)));
};
template <class T, int bytes = widest> using Pack = typename PackOf<std::remove_const_t<T>, bytes>::type;

template <class T> using Four = Pack<T, 4 * int(sizeof(T))>; // what is less than a pack goes by four

template <class V> struct LanesOf {
    using Element = V;
    static constexpr int count = 1;
};
template <class V> requires requires(V v) { v[0]; } struct LanesOf<V> {
    using Element = std::remove_cvref_t<decltype(std::declval<V&>()[0])>;
    static constexpr int count = sizeof(V) / sizeof(Element);
};
template <class V> using ElementOf = typename LanesOf<V>::Element;
template <class V> constexpr int lanes = LanesOf<V>::count;
template <class V> using MaskOf = decltype(V{} < V{});

// The same value in each lane.
template <class V> V splat(ElementOf<V> x)
{
    if constexpr (lanes<V> == 1) return x;
    else return x - V{};
}

inline float abs(float x) { return std::fabs(x); }
inline double abs(double x) { return std::fabs(x); }
template <class V> requires(lanes<V> > 1) V abs(V x)
{
    if constexpr (sizeof(ElementOf<V>) == 4) return V(MaskOf<V>(x) & 0x7fffffff);
    else return V(MaskOf<V>(x) & 0x7fffffffffffffff);
}

inline float sqrt(float x) { return std::sqrt(x); }
inline double sqrt(double x) { return std::sqrt(x); }
template <class V> requires(lanes<V> > 1) V sqrt(V x)
{
    constexpr bool single = sizeof(ElementOf<V>) == 4;
    if constexpr (sizeof(V) == 16 && single) return V(_mm_sqrt_ps(__m128(x)));
    else if constexpr (sizeof(V) == 16) return V(_mm_sqrt_pd(__m128d(x)));
#if defined(__AVX2__)
    else if constexpr (sizeof(V) == 32 && single) return V(_mm256_sqrt_ps(__m256(x)));
    else if constexpr (sizeof(V) == 32) return V(_mm256_sqrt_pd(__m256d(x)));
#endif
#if defined(__AVX512F__)
    else if constexpr (single) return V(_mm512_sqrt_ps(__m512(x)));
    else return V(_mm512_sqrt_pd(__m512d(x)));
#endif
}

// A store past the caches, to an address that is a multiple of the pack's size. drained() orders such stores before all
// that follow: other threads would see them late.
template <class V> void storePastCaches(void* p, V x)
{
    if constexpr (sizeof(V) == 16) _mm_stream_si128(static_cast<__m128i*>(p), __m128i(x));
#if defined(__AVX2__)
    else if constexpr (sizeof(V) == 32) _mm256_stream_si256(static_cast<__m256i*>(p), __m256i(x));
#endif
#if defined(__AVX512F__)
    else _mm512_stream_si512(static_cast<__m512i*>(p), __m512i(x));
#endif
}
inline void drained() { _mm_sfence(); }

// The same numbers as elements of another type. Wider ones are named: g++ 12 would make them in two halves.
template <class To, class V> [[gnu::always_inline]] inline To converted(V x)
{
    [[maybe_unused]] constexpr bool real = std::is_floating_point_v<ElementOf<V>>, doubled = sizeof(To) == 2 * sizeof(V);
    if constexpr (lanes<V> == 1) return To(x);
#if defined(__AVX512F__)
    else if constexpr (sizeof(To) == 64 && doubled && real) return To(_mm512_cvtps_pd(__m256(x)));
    else if constexpr (sizeof(To) == 64 && doubled) return To(_mm512_cvtepi32_epi64(__m256i(x)));
#endif
#if defined(__AVX2__)
    else if constexpr (sizeof(To) == 32 && doubled && real) return To(_mm256_cvtps_pd(__m128(x)));
    else if constexpr (sizeof(To) == 32 && doubled) return To(_mm256_cvtepi32_epi64(__m128i(x)));
#endif
    else return __builtin_convertvector(x, To);
}

// Half of the lanes of a pack of floats, the lower or the upper, as doubles; and both back, rounded.
template <int half, class V> Pack<double, sizeof(V)> widened(V x)
{
    constexpr int n = lanes<V> / 2;
    return [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
        return converted<Pack<double, sizeof(V)>>(__builtin_shufflevector(x, x, (half * n + i)...));
    }(std::make_integer_sequence<int, n>{});
}
template <class V> V narrowed(Pack<double, sizeof(V)> lower, Pack<double, sizeof(V)> upper)
{
    using Half = typename PackOf<float, int(sizeof(V)) / 2>::type;
    const Half a = __builtin_convertvector(lower, Half), b = __builtin_convertvector(upper, Half);
    return [&]<int... i>(std::integer_sequence<int, i...>)
               KESL_INLINE { return V(__builtin_shufflevector(a, b, i...)); }(std::make_integer_sequence<int, lanes<V>>{});
}

// Whether a mask holds in any lane.
inline bool any(bool mask) { return mask; }
template <class M> requires(lanes<M> > 1) bool any(M mask)
{
    if constexpr (sizeof(M) == 16) return _mm_movemask_epi8((__m128i)mask) != 0;
#if defined(__AVX2__)
    else if constexpr (sizeof(M) == 32) return !_mm256_testz_si256((__m256i)mask, (__m256i)mask);
#endif
#if defined(__AVX512F__)
    else return _mm512_test_epi64_mask((__m512i)mask, (__m512i)mask) != 0;
#endif
}

// Masks for one object or many: one that holds everywhere, the opposite of one, and one where another does not hold.
template <class V> MaskOf<V> everywhere() { return V{} == V{}; }
inline bool negated(bool mask) { return !mask; }
template <class M> requires(lanes<M> > 1) M negated(M mask) { return ~mask; }
template <class M> M without(M x, M y) { return x & negated(y); }

// A mask that is kept as it is: g++ 12 would take one apart lane by lane where it knows what it is made of.
inline bool opaque(bool mask) { return mask; }
template <class M> requires(lanes<M> > 1) [[gnu::always_inline]] inline M opaque(M mask)
{
    asm("" : "+v"(mask));
    return mask;
}

// Where the mask holds x takes the value.
template <class V> [[gnu::always_inline]] inline void put(MaskOf<V> where, V& x, V value) { x = where ? value : x; }

// n lanes of a and b: lane i of the result is lane Index::of(i) of a, those of b counting on.
template <class Index, int n, class V> auto shuffled(V a, V b)
{
    return [&]<int... i>(std::integer_sequence<int, i...>)
               KESL_INLINE { return __builtin_shufflevector(a, b, Index::of(i)...); }(std::make_integer_sequence<int, n>{});
}

// A pack from pieces of some bytes; piece(i) is the i-th. The instructions take a piece from memory at no cost.
template <class V, int bytes> V joined(auto piece)
{
    const auto first = piece(0);
    if constexpr (bytes == sizeof(V)) return first;
#if defined(__AVX2__)
    else if constexpr (sizeof(V) == 32)
        return V(_mm256_insertf128_si256(_mm256_castsi128_si256(__m128i(first)), __m128i(piece(1)), 1));
#endif
#if defined(__AVX512F__)
    else if constexpr (bytes == 32)
        return V(_mm512_inserti64x4(_mm512_castsi256_si512(__m256i(first)), __m256i(piece(1)), 1));
    else {
        __m512i all = _mm512_castsi128_si512(__m128i(first));
        all = _mm512_inserti32x4(all, __m128i(piece(1)), 1);
        all = _mm512_inserti32x4(all, __m128i(piece(2)), 2);
        return V(_mm512_inserti32x4(all, __m128i(piece(3)), 3));
    }
#endif
}

// Piece i of a pack.
template <int i, int bytes, class V> Pack<ElementOf<V>, bytes> pieceOf(V x)
{
    using Piece [[maybe_unused]] = Pack<ElementOf<V>, bytes>;
    if constexpr (bytes == sizeof(V)) return x;
#if defined(__AVX2__)
    else if constexpr (sizeof(V) == 32) return Piece(_mm256_extracti128_si256(__m256i(x), i));
#endif
#if defined(__AVX512F__)
    else if constexpr (bytes == 32) return Piece(_mm512_extracti64x4_epi64(__m512i(x), i));
    else return Piece(_mm512_extracti32x4_epi32(__m512i(x), i));
#endif
}

} // namespace kesl
