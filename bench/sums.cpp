// One value for each object, and the cross product.
#include "kit.h"

#include <cmath>

using namespace bench;

namespace {

struct Dot {
    static constexpr const char* name = "Dot_vava";
    static constexpr auto functions = KESL_FUNCTIONS(keslDotProduct_vava);
    static constexpr auto alone = KESL_ALONE(keslDotProduct_vv);
    template <int N> using Operands = std::tuple<va<N>, va<N>, result>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 10;
    static constexpr bool positive = true;
    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto b, auto d) {
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     auto sum = a(k, 0, 0) * b(k, 0, 0);
                     for (int j = 1; j < a.cols; ++j) sum += a(k, 0, j) * b(k, 0, j);
                     d(k, 0, 0) = sum;
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, auto b, auto d) {
                 for (int k = range.begin; k < range.end; ++k) d(k, 0, 0) = a.eigen(k).dot(b.eigen(k));
             }},
    };
};

struct Cross {
    static constexpr const char* name = "Cross_vava";
    static constexpr auto functions = KESL_FUNCTIONS(keslCrossProduct_vava);
    static constexpr auto alone = KESL_ALONE(keslCrossProduct_vv);
    template <int N> using Operands = std::tuple<va<3>, va<3>, out<va<3>>>;
    template <int N> static constexpr std::tuple sizes{};
    static constexpr double tolerance = 20;

    template <class T> static void fill(int operand, T* a, int, Random&) { a[operand] += 4; } // far from parallel

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto b, auto d) {
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     d(k, 0, 0) = a(k, 0, 1) * b(k, 0, 2) - a(k, 0, 2) * b(k, 0, 1);
                     d(k, 0, 1) = a(k, 0, 2) * b(k, 0, 0) - a(k, 0, 0) * b(k, 0, 2);
                     d(k, 0, 2) = a(k, 0, 0) * b(k, 0, 1) - a(k, 0, 1) * b(k, 0, 0);
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, auto b, auto d) {
                 for (int k = range.begin; k < range.end; ++k) d.assign(k, a.eigen(k).cross(b.eigen(k)));
             }},
    };
};

struct Norm {
    static constexpr double tolerance = 10;
    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto d) {
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     auto sum = a(k, 0, 0) * a(k, 0, 0);
                     for (int e = 1; e < a.rows * a.cols; ++e)
                         sum += a(k, e / a.cols, e % a.cols) * a(k, e / a.cols, e % a.cols);
                     d(k, 0, 0) = std::sqrt(sum);
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, auto d) {
                 for (int k = range.begin; k < range.end; ++k) d(k, 0, 0) = a.eigen(k).norm();
             }},
    };
};
struct L2 : Norm {
    static constexpr const char* name = "L2Norm_va";
    static constexpr auto functions = KESL_FUNCTIONS(keslL2Norm_va);
    static constexpr auto alone = KESL_ALONE(keslL2Norm_v);
    template <int N> using Operands = std::tuple<va<N>, result>;
    template <int N> static constexpr std::tuple sizes{N};
};
struct Frobenius : Norm {
    static constexpr const char* name = "FrobNorm_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslFrobNorm_ma);
    static constexpr auto alone = KESL_ALONE(keslFrobNorm_m);
    template <int N> using Operands = std::tuple<withSizes<ma<N, N>>, result>;
    template <int N> static constexpr std::tuple sizes{};
};

[[maybe_unused]] const bool registered = rows<Dot, Plan::full, 3, 4, 5, 6>() && rows<Cross, Plan::packed, 3>() &&
                                         rows<L2, Plan::packed, 3, 4, 5, 6>() && rows<Frobenius, Plan::packed, 3, 4, 5, 6>();

} // namespace
