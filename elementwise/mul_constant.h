// keslMul by constants: dst = src * val, element by element. One product for each element, so every kernel form gives the
// same bits.
#pragma once
#include "elementwise/operations.h"
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/map.h"

namespace kesl {

// ---- The family.
struct ScaledMatrix : ElementByElement {
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Size width, Size height, c<T> val, auto count)
    {
        map(int(height), width, count, Times{}, dst, src, val);
        return keslStatusOk;
    }
    static constexpr Threshold threshold = thresholds::scaledMatrices;
    static unsigned measure(unsigned width, unsigned height, unsigned count) { return 2 * width * height * count; }
};
struct ScaledVector : ElementByElement {
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Size len, c<T> val, auto count)
    {
        map(One{}, len, count, Times{}, dst, src, val);
        return keslStatusOk;
    }
};
// A constant for each object.
struct ScaledVectors : ElementByElement {
    static constexpr Threshold threshold = thresholds::scaledVectors;

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto val, auto dst, Size len, Count count)
    {
        map(One{}, len, count, Times{}, dst, src, val);
        return keslStatusOk;
    }
};

// clang-format off
// ---- The members.
struct Mul_mc  : ScaledMatrix {};
struct Mul_tc  : ScaledMatrix {};
struct Mul_mac : ScaledMatrix {};
struct Mul_tac : ScaledMatrix {};
struct Mul_vc  : ScaledVector {};
struct Mul_vac : ScaledVector {
    static constexpr Threshold threshold = thresholds::products;
    static unsigned measure(unsigned len, unsigned count) { return 2 * len * count; }
};
struct Mul_vaca : ScaledVectors {
    static unsigned measure(unsigned len, unsigned count) { return count * (2 * len + 1); }
};
struct Mul_vca : ScaledVectors {
    static unsigned measure(unsigned len, unsigned count) { return len * count + len + count; }
};

} // namespace kesl

// ---- Their functions, by module: the kinds of src and dst, or of src, val and dst.
#define KESL_SCALED(as, F, T, a, d)          as##_in(a, src, F, T), as##_out(d, dst, F, T), as##_size(width), as##_size(height), \
                                             as##_value(val, T)
#define KESL_SCALED_A(as, F, T, a, d)        as##_in(a, src, F, T), as##_out(d, dst, F, T), as##_size(width), as##_size(height), \
                                             as##_count(count), as##_value(val, T)
#define KESL_SCALED_V(as, F, T, a, d)        as##_in(a, src, F, T), as##_out(d, dst, F, T), as##_size(len), as##_value(val, T)
#define KESL_SCALED_VA(as, F, T, a, d)       as##_in(a, src, F, T), as##_out(d, dst, F, T), as##_size(len), as##_count(count), \
                                             as##_value(val, T)
#define KESL_SCALED_EACH(as, F, T, a, b, d)  as##_in(a, src, F, T), as##_in(b, val, F, T), as##_out(d, dst, F, T), \
                                             as##_size(len), as##_count(count)

#define KESL_MUL_MC(X)   X(Mul, mc, KESL_SCALED, m, m)       X(Mul, tc, KESL_SCALED, t, m)      X(Mul, vc, KESL_SCALED_V, v, v)
#define KESL_MUL_MAC(X)  X(Mul, mac, KESL_SCALED_A, ma, ma)  X(Mul, tac, KESL_SCALED_A, ta, ma)
#define KESL_MUL_VAC(X)  X(Mul, vac, KESL_SCALED_VA, va, va)
#define KESL_MUL_VACA(X) X(Mul, vaca, KESL_SCALED_EACH, va, ca, va)
#define KESL_MUL_VCA(X)  X(Mul, vca, KESL_SCALED_EACH, v, ca, va)
