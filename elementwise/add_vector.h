// keslAdd and keslSub on vectors and constants: dst = src1 op src2 or src op val, element by element. One addition or
// subtraction for each element, so every kernel form gives the same bits.
//
// cv, cva, cav and cava take the arguments of vc, vac, vca and vaca, the vectors before the constants: their letters only
// tell that the constant is the minuend.
#pragma once
#include "elementwise/operations.h"
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/map.h"

namespace kesl {

// ---- The family. Each member has its own measure of work.
template <class Op> struct SumOfVectors : ElementByElement {
    static constexpr Threshold threshold = thresholds::vectorSums;

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, Size len, auto count)
    {
        map(One{}, len, count, Op{}, dst, src1, src2);
        return keslStatusOk;
    }
};
// With a constant by value.
template <class Op> struct SumWithConstant : ElementByElement {
    static constexpr Threshold threshold = thresholds::vectorSums;

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Size len, c<T> val, auto count)
    {
        map(One{}, len, count, Op{}, dst, src, val);
        return keslStatusOk;
    }
};

// clang-format off
// ---- The measures of work, by what beside the array is read.
struct MeasureOne       { static unsigned measure(unsigned len, unsigned count) { return len * (2 * count + 1); } };
struct MeasureTwo       { static unsigned measure(unsigned len, unsigned count) { return 3 * len * count; } };
struct MeasureConstants { static unsigned measure(unsigned len, unsigned count) { return count * (2 * len + 1); } };
struct MeasureExpand    { static unsigned measure(unsigned len, unsigned count) { return len * count + len + count; } };
// Without the length, unlike that of its mirror vac.
struct MeasureCva       { static unsigned measure(unsigned, unsigned count) { return 2 * count + 1; } };

// ---- The sequences of checks that depart from the rule.
struct CountLast { template <class T> static constexpr Checks checks = { "NSBC", "NSBRC", "NSBCR" }; };
// In P, of one type: the roiShifts are not tested (double, or float) ...
struct NoShift64 { template <class T> static constexpr Checks checks = { "NCSB", "NCSBR", sizeof(T) == 8 ? "NCSB" : "NCSBR" }; };
struct NoShift32 { template <class T> static constexpr Checks checks = { "NCSB", "NCSBR", sizeof(T) == 4 ? "NCSB" : "NCSBR" }; };
// ... or the stride0 of the source is not (float).
struct NoStride0 { template <class T> static constexpr Checks checks = { "NCSB", "NCSBR", sizeof(T) == 4 ? "NCSB-R" : "NCSBR" }; };

// ---- The members.
struct Add_vv   : SumOfVectors<Plus>         {};
struct Add_vc   : SumWithConstant<Plus>      {};
struct Add_vav  : SumOfVectors<Plus>,         MeasureOne, CountLast        {};
struct Add_vava : SumOfVectors<Plus>,         MeasureTwo                   {};
struct Add_vac  : SumWithConstant<Plus>,      MeasureOne                   {};
struct Add_vaca : SumOfVectors<Plus>,         MeasureConstants, NoStride0  {};
struct Add_vca  : SumOfVectors<Plus>,         MeasureExpand, NoShift64     {};

struct Sub_vv   : SumOfVectors<Minus>        {};
struct Sub_vc   : SumWithConstant<Minus>     {};
struct Sub_cv   : SumWithConstant<MinusFrom> {};
struct Sub_vav  : SumOfVectors<Minus>,        MeasureOne, CountLast        {};
struct Sub_vva  : SumOfVectors<Minus>,        MeasureOne                   {}; // 64f_P has no wrapper: see its list below
struct Sub_vava : SumOfVectors<Minus>,        MeasureTwo                   {};
struct Sub_vac  : SumWithConstant<Minus>,     MeasureOne                   {};
struct Sub_cva  : SumWithConstant<MinusFrom>, MeasureCva                   {};
struct Sub_vaca : SumOfVectors<Minus>,        MeasureConstants             {};
struct Sub_cava : SumOfVectors<MinusFrom>,    MeasureConstants             {};
struct Sub_vca  : SumOfVectors<Minus>,        MeasureExpand                {};
struct Sub_cav  : SumOfVectors<MinusFrom>,    MeasureExpand, NoShift32     {};

} // namespace kesl

// ---- Their functions, by module: the kinds of src1, src2 and dst, or of src, val and dst.
#define KESL_VECTOR(as, F, T, a, b, d)     as##_in(a, src1, F, T), as##_in(b, src2, F, T), as##_out(d, dst, F, T), as##_size(len)
#define KESL_VECTORS(as, F, T, a, b, d)    KESL_VECTOR(as, F, T, a, b, d), as##_count(count)
#define KESL_CONSTANT(as, F, T, a, d)      as##_in(a, src, F, T), as##_out(d, dst, F, T), as##_size(len), as##_value(val, T)
#define KESL_CONSTANT_A(as, F, T, a, d)    as##_in(a, src, F, T), as##_out(d, dst, F, T), as##_size(len), as##_count(count), \
                                           as##_value(val, T)
#define KESL_CONSTANTS(as, F, T, a, b, d)  as##_in(a, src, F, T), as##_in(b, val, F, T), as##_out(d, dst, F, T), \
                                           as##_size(len), as##_count(count)

#define KESL_ADD_VV(X)   X(Add, vv, KESL_VECTOR, v, v, v)        X(Add, vc, KESL_CONSTANT, v, v)
#define KESL_ADD_VAV(X)  X(Add, vav, KESL_VECTORS, va, v, va)
#define KESL_ADD_VAVA(X) X(Add, vava, KESL_VECTORS, va, va, va)
#define KESL_ADD_VAC(X)  X(Add, vac, KESL_CONSTANT_A, va, va)
#define KESL_ADD_VACA(X) X(Add, vaca, KESL_CONSTANTS, va, ca, va)
#define KESL_ADD_VCA(X)  X(Add, vca, KESL_CONSTANTS, v, ca, va)
#define KESL_SUB_VV(X)   X(Sub, vv, KESL_VECTOR, v, v, v)        X(Sub, vc, KESL_CONSTANT, v, v)       X(Sub, cv, KESL_CONSTANT, v, v)
#define KESL_SUB_VAV(X)  X(Sub, vav, KESL_VECTORS, va, v, va)
#define KESL_SUB_VAVA(X) X(Sub, vava, KESL_VECTORS, va, va, va)
#define KESL_SUB_VAC(X)  X(Sub, vac, KESL_CONSTANT_A, va, va)    X(Sub, cva, KESL_CONSTANT_A, va, va)
#define KESL_SUB_VACA(X) X(Sub, vaca, KESL_CONSTANTS, va, ca, va)  X(Sub, cava, KESL_CONSTANTS, va, ca, va)
#define KESL_SUB_VCA(X)  X(Sub, vca, KESL_CONSTANTS, v, ca, va)    X(Sub, cav, KESL_CONSTANTS, v, ca, va)
// 64f_P compares its measure and takes the same kernel either way.
#define KESL_SUB_VVA(X)  X##_T(Sub, vva, 32f, KESL_VECTORS, v, va, va)  X##_S(Sub, vva, 64f, KESL_VECTORS, v, va, va) \
                         X##_L(Sub, vva, 64f, KESL_VECTORS, v, va, va)
#define KESL_SUB_VVA_SERIAL(X) X##_P(Sub, vva, 64f, KESL_VECTORS, v, va, va)
