// The trace: a family as short as it can be.
#include "kit.h"

using namespace bench;

namespace {

struct Trace {
    static constexpr const char* name = "Trace_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslTrace_ma); // 32f, 64f, _L, _P
    static constexpr auto alone = KESL_ALONE(keslTrace_m);          // for one object; optional
    // The operands in the order of the arguments; withOrder: the order of the matrix stands behind it.
    template <int N> using Operands = std::tuple<withOrder<ma<N, N>>, result>;
    template <int N> static constexpr std::tuple sizes{}; // what else stands in front of count
    static constexpr double tolerance = 10;               // of a contender's result, in eps of the largest element
    static constexpr bool positive = true;                // data in [1, 3): sums that do not cancel
    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto d) {
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     auto sum = a(k, 0, 0);
                     for (int i = 1; i < a.cols; ++i) sum += a(k, i, i);
                     d(k, 0, 0) = sum;
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, auto d) {
                 for (int k = range.begin; k < range.end; ++k) d(k, 0, 0) = a.eigen(k).trace();
             }},
    };
};

[[maybe_unused]] const bool registered = rows<Trace, Plan::packed, 3, 4, 5, 6>();

} // namespace
