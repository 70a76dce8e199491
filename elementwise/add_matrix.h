// keslAdd and keslSub on matrices: dst = src1 op src2, element by element. One addition or subtraction for each element,
// so every kernel form gives the same bits, and which body serves which size is a matter of speed alone.
#pragma once
#include "elementwise/operations.h"
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/map.h"

namespace kesl {

// ---- The family.
template <class Op> struct SumOfMatrices : ElementByElement {
    static constexpr Threshold threshold = thresholds::matrixSums;

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, int width, int height, auto count)
    {
        map(height, width, count, Op{}, dst, src1, src2);
        return keslStatusOk;
    }
};
template <class Op> struct ArrayAndSingle : SumOfMatrices<Op> {
    static unsigned measure(unsigned width, unsigned height, unsigned count) { return width * height * (2 * count + 1); }
};
template <class Op> struct TwoArrays : SumOfMatrices<Op> {
    static unsigned measure(unsigned width, unsigned height, unsigned count) { return 3 * width * height * count; }
};
// Strides before sizes in the standard layout: only in the shapes below that say so.
struct StridesFirst {
    template <class T> static constexpr Checks checks = {"NCBS", "NCSBR", "NCSBR"};
};

// clang-format off
// ---- The members.
struct Add_mm   : SumOfMatrices<Plus>   {};
struct Add_tm   : SumOfMatrices<Plus>   {};
struct Add_tt   : SumOfMatrices<Plus>   {};
struct Add_mam  : ArrayAndSingle<Plus>, StridesFirst {};
struct Add_mat  : ArrayAndSingle<Plus>  {};
struct Add_tam  : ArrayAndSingle<Plus>  {};
struct Add_tat  : ArrayAndSingle<Plus>  {};
struct Add_mama : TwoArrays<Plus>       {};
struct Add_tama : TwoArrays<Plus>       {};
struct Add_tata : TwoArrays<Plus>       {};

struct Sub_mm   : SumOfMatrices<Minus>  {};
struct Sub_mt   : SumOfMatrices<Minus>  {};
struct Sub_tm   : SumOfMatrices<Minus>  {};
struct Sub_tt   : SumOfMatrices<Minus>  {};
struct Sub_mam  : ArrayAndSingle<Minus>, StridesFirst {};
struct Sub_mat  : ArrayAndSingle<Minus> {};
struct Sub_tam  : ArrayAndSingle<Minus> {};
struct Sub_tat  : ArrayAndSingle<Minus> {};
struct Sub_mma  : ArrayAndSingle<Minus>, StridesFirst {};
struct Sub_mta  : ArrayAndSingle<Minus> {};
struct Sub_tma  : ArrayAndSingle<Minus> {};
struct Sub_tta  : ArrayAndSingle<Minus> {};
struct Sub_mama : TwoArrays<Minus>      {};
struct Sub_mata : TwoArrays<Minus>      {};
struct Sub_tama : TwoArrays<Minus>      {};
struct Sub_tata : TwoArrays<Minus>      {};

} // namespace kesl

// ---- Their functions, by module: the kinds of src1, src2 and dst.
#define KESL_SUM(as, F, T, a, b, d)  as##_in(a, src1, F, T), as##_in(b, src2, F, T), as##_out(d, dst, F, T), \
                                     as##_size(width), as##_size(height)
#define KESL_SUMS(as, F, T, a, b, d) KESL_SUM(as, F, T, a, b, d), as##_count(count)

#define KESL_ADD_MM(X)   X(Add, mm, KESL_SUM, m, m, m)  X(Add, tm, KESL_SUM, t, m, m)  X(Add, tt, KESL_SUM, t, t, m)
#define KESL_ADD_MAM(X)  X(Add, mam, KESL_SUMS, ma, m, ma)    X(Add, mat, KESL_SUMS, ma, t, ma) \
                         X(Add, tam, KESL_SUMS, ta, m, ma)    X(Add, tat, KESL_SUMS, ta, t, ma)
#define KESL_ADD_MAMA(X) X(Add, mama, KESL_SUMS, ma, ma, ma)  X(Add, tama, KESL_SUMS, ta, ma, ma) \
                         X(Add, tata, KESL_SUMS, ta, ta, ma)
#define KESL_SUB_MM(X)   X(Sub, mm, KESL_SUM, m, m, m)        X(Sub, mt, KESL_SUM, m, t, m) \
                         X(Sub, tm, KESL_SUM, t, m, m)        X(Sub, tt, KESL_SUM, t, t, m)
#define KESL_SUB_MAM(X)  X(Sub, mam, KESL_SUMS, ma, m, ma)    X(Sub, mat, KESL_SUMS, ma, t, ma) \
                         X(Sub, tam, KESL_SUMS, ta, m, ma)    X(Sub, tat, KESL_SUMS, ta, t, ma)
#define KESL_SUB_MMA(X)  X(Sub, mma, KESL_SUMS, m, ma, ma)    X(Sub, mta, KESL_SUMS, m, ta, ma) \
                         X(Sub, tma, KESL_SUMS, t, ma, ma)    X(Sub, tta, KESL_SUMS, t, ta, ma)
#define KESL_SUB_MAMA(X) X(Sub, mama, KESL_SUMS, ma, ma, ma)  X(Sub, mata, KESL_SUMS, ma, ta, ma) \
                         X(Sub, tama, KESL_SUMS, ta, ma, ma)  X(Sub, tata, KESL_SUMS, ta, ta, ma)
