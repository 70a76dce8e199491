// keslSaxpy and keslLComb: dst = src1 * val + src2 and dst = src1 * val1 + src2 * val2 on vectors. Each product is rounded
// before it is added, so every kernel form gives the same bits.
#pragma once
#include "elementwise/operations.h"
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/map.h"

namespace kesl {

// ---- The families.
struct Saxpy : ElementByElement {
    static constexpr Threshold threshold = Threshold::everywhere(40001);

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, Size len, c<T> val, auto count)
    {
        map(One{}, len, count, TimesPlus{}, dst, src1, src2, val);
        return keslStatusOk;
    }
};
struct LComb : ElementByElement {
    static constexpr Threshold threshold = thresholds::usual;

    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, Size len,
                                                                               c<T> val1, c<T> val2, auto count)
    {
        map(One{}, len, count, Combine{}, dst, src1, src2, val1, val2);
        return keslStatusOk;
    }
};
// clang-format off
struct CombinedWithOne { static unsigned measure(unsigned len, unsigned count) { return len * (2 * count + 1); } };
struct CombinedPairs   { static unsigned measure(unsigned len, unsigned count) { return 3 * len * count; } };

// ---- The members.
struct Saxpy_vv   : Saxpy {};
struct Saxpy_vav  : Saxpy, CombinedWithOne {};
struct Saxpy_vva  : Saxpy, CombinedWithOne {};
struct Saxpy_vava : Saxpy, CombinedPairs   {};
struct LComb_vv   : LComb {};
struct LComb_vav  : LComb, CombinedWithOne {};
struct LComb_vava : LComb, CombinedPairs   {};

} // namespace kesl

// ---- Their functions, by module: the kinds of src1, src2 and dst.
#define KESL_COMBINED(as, F, T, a, b, d) as##_in(a, src1, F, T), as##_in(b, src2, F, T), as##_out(d, dst, F, T), as##_size(len)
#define KESL_SAXPY(as, F, T, a, b, d)    KESL_COMBINED(as, F, T, a, b, d), as##_value(val, T)
#define KESL_SAXPYS(as, F, T, a, b, d)   KESL_COMBINED(as, F, T, a, b, d), as##_count(count), as##_value(val, T)
#define KESL_LCOMB(as, F, T, a, b, d)    KESL_COMBINED(as, F, T, a, b, d), as##_value(val1, T), as##_value(val2, T)
#define KESL_LCOMBS(as, F, T, a, b, d)   KESL_COMBINED(as, F, T, a, b, d), as##_count(count), as##_value(val1, T), as##_value(val2, T)

#define KESL_SAXPY_VV(X)   X(Saxpy, vv, KESL_SAXPY, v, v, v)
#define KESL_SAXPY_VAV(X)  X(Saxpy, vav, KESL_SAXPYS, va, v, va)
#define KESL_SAXPY_VVA(X)  X(Saxpy, vva, KESL_SAXPYS, v, va, va)
#define KESL_SAXPY_VAVA(X) X(Saxpy, vava, KESL_SAXPYS, va, va, va)
#define KESL_LCOMB_VV(X)   X(LComb, vv, KESL_LCOMB, v, v, v)
#define KESL_LCOMB_VAV(X)  X(LComb, vav, KESL_LCOMBS, va, v, va)
#define KESL_LCOMB_VAVA(X) X(LComb, vava, KESL_LCOMBS, va, va, va)
