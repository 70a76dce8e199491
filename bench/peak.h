// The yardstick of arithmetic: products and sums that wait for nothing, as many as the program's registers hold.
#pragma once
#include <cstdint>

namespace bench {

#if defined __AVX512F__
inline constexpr int registerBytes = 64;
#elif defined __AVX__
inline constexpr int registerBytes = 32;
#else
inline constexpr int registerBytes = 16;
#endif

// Does that many operations, half of them products. No product goes into a sum, so that none can be fused.
template <class T> [[gnu::noinline]] void compute(std::int64_t operations)
{
    typedef T Pack [[gnu::vector_size(registerBytes)]];
    constexpr int chains = 7, lanes = registerBytes / int(sizeof(T)); // with the two constants 16 registers
    Pack product[chains], sum[chains], factor = Pack{} + T(1), term = Pack{};
    for (int i = 0; i < chains; ++i) product[i] = factor, sum[i] = term;
    asm volatile("" : "+x"(factor), "+x"(term)); // not known to the compiler
    for (std::int64_t done = 0; done < operations; done += 2 * chains * lanes)
#pragma GCC unroll 7
        for (int i = 0; i < chains; ++i) product[i] *= factor, sum[i] += term;
    for (int i = 0; i < chains; ++i) asm volatile("" : : "x"(product[i]), "x"(sum[i]));
}

} // namespace bench
