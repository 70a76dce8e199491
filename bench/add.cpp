// Sums and differences of matrices.
#include "kit.h"

using namespace bench;

namespace {

template <bool subtract> auto plus(auto a, auto b)
{
    if constexpr (subtract) return a - b;
    else return a + b;
}

// Each object of an array and one matrix.
template <bool subtract> struct WithOne {
    static constexpr const char* name = subtract ? "Sub_mam" : "Add_mam";
    static constexpr auto functions = [] {
        if constexpr (subtract) return KESL_FUNCTIONS(keslSub_mam);
        else return KESL_FUNCTIONS(keslAdd_mam);
    }();
    template <int N> using Operands = std::tuple<ma<N, N>, m<N, N>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{N, N};
    static constexpr double tolerance = 1;

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto b, auto d) {
                 const auto one = kept(b);
                 elements(range, d, [&](int k, int i, int j) { d(k, i, j) = plus<subtract>(a(k, i, j), one(0, i, j)); });
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, auto b, auto d) {
                 const typename decltype(b)::Matrix one = b.eigen(0);
                 if constexpr (d.planes) {
                     using Run = Eigen::Map<Eigen::ArrayX<std::decay_t<decltype(a(0, 0, 0))>>>;
                     for (int i = 0; i < d.rows; ++i)
                         for (int j = 0; j < d.cols; ++j)
                             Run(&d(range.begin, i, j), range.end - range.begin) =
                                 plus<subtract>(Run(&a(range.begin, i, j), range.end - range.begin), one(i, j));
                 } else {
                     for (int k = range.begin; k < range.end; ++k) d.eigen(k) = plus<subtract>(a.eigen(k), one);
                 }
             }},
    };
};

// Each object of an array and its partner in another.
template <bool subtract> struct Pairwise {
    static constexpr const char* name = subtract ? "Sub_mama" : "Add_mama";
    static constexpr auto functions = [] {
        if constexpr (subtract) return KESL_FUNCTIONS(keslSub_mama);
        else return KESL_FUNCTIONS(keslAdd_mama);
    }();
    static constexpr auto alone = [] {
        if constexpr (subtract) return KESL_ALONE(keslSub_mm);
        else return KESL_ALONE(keslAdd_mm);
    }();
    template <int N> using Operands = std::tuple<ma<N, N>, ma<N, N>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{N, N};
    static constexpr double tolerance = 1;

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto b, auto d) {
                 elements(range, d, [&](int k, int i, int j) { d(k, i, j) = plus<subtract>(a(k, i, j), b(k, i, j)); });
             }},
        Peer{"flat", // without gaps the arrays are three runs
             [](auto, Range range, Packed auto a, Packed auto b, Packed auto d) {
                 const std::int64_t length = std::int64_t{range.end - range.begin} * d.rows * d.cols;
                 const auto *x = a.object(range.begin), *y = b.object(range.begin);
                 auto* z = d.object(range.begin);
#pragma GCC ivdep
                 for (std::int64_t i = 0; i < length; ++i) z[i] = plus<subtract>(x[i], y[i]);
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, auto b, auto d) {
                 if constexpr (d.planes) {
                     using Run = Eigen::Map<Eigen::ArrayX<std::decay_t<decltype(a(0, 0, 0))>>>;
                     const int length = range.end - range.begin;
                     for (int i = 0; i < d.rows; ++i)
                         for (int j = 0; j < d.cols; ++j)
                             Run(&d(range.begin, i, j), length) =
                                 plus<subtract>(Run(&a(range.begin, i, j), length), Run(&b(range.begin, i, j), length));
                 } else {
                     for (int k = range.begin; k < range.end; ++k) d.eigen(k) = plus<subtract>(a.eigen(k), b.eigen(k));
                 }
             }},
    };
};

[[maybe_unused]] const bool registered =
    rows<WithOne<false>, Plan::full, 3, 4, 5, 6>() && rows<Pairwise<false>, Plan::full, 3, 4, 5, 6>() &&
    rows<WithOne<true>, Plan::packed, 3, 4, 5, 6>() && rows<Pairwise<true>, Plan::packed, 3, 4, 5, 6>();

} // namespace
