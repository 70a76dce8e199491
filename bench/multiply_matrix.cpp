// Products of matrices.
#include "kit.h"

#ifdef BENCH_XSMM
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#include <libxsmm.h>
#pragma GCC diagnostic pop
#endif

using namespace bench;

namespace {

void put(const auto& d, int k, const auto& product)
{
    if constexpr (d.planes) d.assign(k, product);
    else d.eigen(k).noalias() = product;
}

// What one writes by hand, and Eigen. Single operands are read once.
template <bool firstIsArray, bool secondIsArray> struct Product {
    static constexpr double tolerance = 20;
    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto a, auto b, auto d) {
                 const auto x = [&] {
                     if constexpr (firstIsArray) return a;
                     else return kept(a);
                 }();
                 const auto y = [&] {
                     if constexpr (secondIsArray) return b;
                     else return kept(b);
                 }();
                 const int inner = a.cols;
                 elements(range, d, [&](int k, int i, int j) {
                     auto sum = x(k, i, 0) * y(k, 0, j);
                     for (int l = 1; l < inner; ++l) sum += x(k, i, l) * y(k, l, j);
                     d(k, i, j) = sum;
                 });
             }},
        Peer{"eigen",
             [](auto, Range range, auto a, auto b, auto d) {
                 const typename decltype(a)::Matrix x = a.eigen(0);
                 const typename decltype(b)::Matrix y = b.eigen(0);
                 for (int k = range.begin; k < range.end; ++k)
                     if constexpr (firstIsArray && secondIsArray) put(d, k, a.eigen(k) * b.eigen(k));
                     else if constexpr (firstIsArray) put(d, k, a.eigen(k) * y);
                     else put(d, k, x * b.eigen(k));
             }},
#ifdef BENCH_XSMM
        // By columns: the transposed product of the transposed factors.
        Peer{"libxsmm",
             [](auto, Range range, auto a, auto b, InOnePiece auto d) {
                 using T = std::remove_cvref_t<decltype(a(0, 0, 0))>;
                 const auto rowLength = [](auto view) { return int(&view(0, 1, 0) - &view(0, 0, 0)); };
                 const libxsmm_mmfunction<T> product(LIBXSMM_GEMM_FLAG_NONE, d.cols, d.rows, a.cols, rowLength(b),
                                                     rowLength(a), rowLength(d), T(1), T(0));
                 for (int k = range.begin; k < range.end; ++k)
                     product(&b(secondIsArray ? k : 0, 0, 0), &a(firstIsArray ? k : 0, 0, 0), &d(k, 0, 0));
             }},
#endif
    };
};

struct Pairwise : Product<true, true> {
    static constexpr const char* name = "Mul_mama";
    static constexpr auto functions = KESL_FUNCTIONS(keslMul_mama);
    static constexpr auto alone = KESL_ALONE(keslMul_mm);
    template <int N> using Operands = std::tuple<withSizes<ma<N, N>>, withSizes<ma<N, N>>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{};
};
struct ByOne : Product<true, false> {
    static constexpr const char* name = "Mul_mam";
    static constexpr auto functions = KESL_FUNCTIONS(keslMul_mam);
    template <int N> using Operands = std::tuple<withSizes<ma<N, N>>, withSizes<m<N, N>>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{};
};
struct OneBy : Product<false, true> {
    static constexpr const char* name = "Mul_mma";
    static constexpr auto functions = KESL_FUNCTIONS(keslMul_mma);
    template <int N> using Operands = std::tuple<withSizes<m<N, N>>, withSizes<ma<N, N>>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{};
};
// N by 6 times 6 by N.
struct Rectangular : Product<true, true> {
    static constexpr const char* name = "Mul_mama_Nx6";
    static constexpr auto functions = KESL_FUNCTIONS(keslMul_mama);
    template <int N> using Operands = std::tuple<withSizes<ma<N, 6>>, withSizes<ma<6, N>>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{};
};

[[maybe_unused]] const bool registered = rows<Pairwise, Plan::full, 3, 4, 5, 6>() &&
                                         rows<ByOne, Plan::packed, 3, 4, 5, 6>() &&
                                         rows<OneBy, Plan::packed, 3, 4, 5, 6>() && rows<Rectangular, Plan::cache, 3>();

} // namespace
