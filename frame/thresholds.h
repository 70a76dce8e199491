// From which work measure on a call is threaded.
#pragma once
#include "frame/operand.h"

namespace kesl {

struct PerType {
    int f, d;
    constexpr PerType(int both) : f(both), d(both) {}
    constexpr PerType(int of32f, int of64f) : f(of32f), d(of64f) {}
    template <class T> constexpr int of() const { return sizeof(T) == 4 ? f : d; }
};

// For the standard layout and L with every stride2 equal to the element size, and with any other; and for P.
struct Threshold {
    PerType S, S2, L, LS2, P;
    template <class T> constexpr int of(Form f, bool rowsAreContiguous) const
    {
        return (f == kesl::P ? P : inL(f) ? (rowsAreContiguous ? L : LS2) : (rowsAreContiguous ? S : S2)).template of<T>();
    }
    static constexpr Threshold everywhere(int t) { return {t, t, t, t, t}; }
};

// Named for those that they serve; `usual` is that of many families.
// clang-format off
namespace thresholds {
//                                     S                S2               L                LS2              P
constexpr Threshold matrixSums     = { 36864,           18432,           18432,           18432,            9216 };
constexpr Threshold products       = { 36865,           18433,           18433,           18433,            9217 };
constexpr Threshold scaledVectors  = { 36865,           36865,           18433,           18433,            9217 };
constexpr Threshold scaledMatrices = { 35001,           35001,           35001,          {15001, 35001},   17001 };
constexpr Threshold vectorSums     = { 20001,           20001,          {40001, 20001},  {40001, 20001},   20001 };
constexpr Threshold dotProducts    = { 40001,           20001,           40001,           20001,          {20001, 40001} };
constexpr Threshold usual          = { 20001,           20001,          {40001, 20001},   20001,           20001 };
constexpr Threshold orthogonal     = {  2801,            2801,            1801,            1801,            1801 };
}
// clang-format on

} // namespace kesl
