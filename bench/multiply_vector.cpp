// Products of matrices and vectors.
#include "kit.h"

using namespace bench;

namespace {

auto first(auto f, auto...) { return f; }
auto last(auto f) { return f; }
auto last(auto, auto l) { return l; }

// What one writes by hand, and Eigen: dst = a x, or a x + y. A single matrix is read once.
template <bool matrices> struct Times {
    static constexpr double tolerance = 20;
    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto x, auto... rest) {
                 const auto m = [&] {
                     if constexpr (matrices) return a;
                     else return kept(a);
                 }();
                 const auto d = last(rest...);
                 const int inner = a.cols;
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k)
                     for (int i = 0; i < d.cols; ++i) {
                         auto sum = m(k, i, 0) * x(k, 0, 0);
                         for (int l = 1; l < inner; ++l) sum += m(k, i, l) * x(k, 0, l);
                         if constexpr (sizeof...(rest) == 2) sum += first(rest...)(k, 0, i);
                         d(k, 0, i) = sum;
                     }
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, auto x, auto... rest) {
                 const typename decltype(a)::Matrix m = a.eigen(0);
                 const auto d = last(rest...);
                 for (int k = range.begin; k < range.end; ++k) {
                     const auto plus = [&](const auto& product) {
                         if constexpr (sizeof...(rest) == 2) d.assign(k, product + first(rest...).eigen(k));
                         else d.assign(k, product);
                     };
                     if constexpr (matrices) plus((a.eigen(k).lazyProduct(x.eigen(k).transpose())).transpose());
                     else plus((m.lazyProduct(x.eigen(k).transpose())).transpose());
                 }
             }},
    };
};

struct Pairwise : Times<true> {
    static constexpr const char* name = "Mul_mava";
    static constexpr auto functions = KESL_FUNCTIONS(keslMul_mava);
    static constexpr auto alone = KESL_ALONE(keslMul_mv);
    template <int N> using Operands = std::tuple<withSizes<ma<N, N>>, withSizes<va<N>>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{};
};
struct OneMatrix : Times<false> {
    static constexpr const char* name = "Mul_mva";
    static constexpr auto functions = KESL_FUNCTIONS(keslMul_mva);
    template <int N> using Operands = std::tuple<withSizes<m<N, N>>, withSizes<va<N>>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{};
};
struct Gaxpy : Times<false> {
    static constexpr const char* name = "Gaxpy_mva";
    static constexpr auto functions = KESL_FUNCTIONS(keslGaxpy_mva);
    template <int N> using Operands = std::tuple<withSizes<m<N, N>>, withSizes<va<N>>, withSizes<va<N>>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{};
};

[[maybe_unused]] const bool registered = rows<Pairwise, Plan::full, 3, 4, 5, 6>() &&
                                         rows<OneMatrix, Plan::full, 3, 4, 5, 6>() &&
                                         rows<Gaxpy, Plan::packed, 3, 4, 5, 6>();

} // namespace
