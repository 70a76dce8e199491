// Determinants.
#include "kit.h"

#include <Eigen/LU>
#include <utility>

using namespace bench;

namespace {
// What one writes by hand: closed forms up to order 4, above them elimination with row exchanges.
template <class T> T det(T (&a)[2][2]) { return a[0][0] * a[1][1] - a[0][1] * a[1][0]; }
template <class T> T det(T (&a)[3][3])
{
    return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) - a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
           a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
}
template <class T> T det(T (&a)[4][4])
{
    const auto minor = [&](int i, int p, int q) { return a[i][p] * a[i + 1][q] - a[i][q] * a[i + 1][p]; };
    return minor(0, 0, 1) * minor(2, 2, 3) - minor(0, 0, 2) * minor(2, 1, 3) + minor(0, 0, 3) * minor(2, 1, 2) +
           minor(0, 1, 2) * minor(2, 0, 3) - minor(0, 1, 3) * minor(2, 0, 2) + minor(0, 2, 3) * minor(2, 0, 1);
}
template <class T, std::size_t N> T det(T (&a)[N][N])
{
    T result = 1;
    for (std::size_t k = 0; k < N; ++k) {
        std::size_t q = k;
        for (std::size_t i = k + 1; i < N; ++i)
            if (std::abs(a[i][k]) > std::abs(a[q][k])) q = i;
        if (q != k) std::swap(a[k], a[q]), result = -result;
        result *= a[k][k];
        const T r = 1 / a[k][k];
        for (std::size_t i = k + 1; i < N; ++i) {
            const T f = a[i][k] * r;
            for (std::size_t j = k + 1; j < N; ++j) a[i][j] -= f * a[k][j];
        }
    }
    return result;
}

struct Det {
    static constexpr const char* name = "Det_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslDet_ma);
    static constexpr auto alone = KESL_ALONE(keslDet_m);
    template <int N> using Operands = std::tuple<withOrder<ma<N, N>>, scratch<N * N + N>, result>;
    template <int N> static constexpr std::tuple sizes{};
    static constexpr double tolerance = 1000;

    template <class T> static void fill(int, T* a, int n, Random& random) { fillRegular(a, n, random); }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto, auto dst) {
                 constexpr int N = n;
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     std::decay_t<decltype(src(0, 0, 0))> a[N][N];
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j < N; ++j) a[i][j] = src(k, i, j);
                     dst(k, 0, 0) = det(a);
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto, auto dst) {
                 for (int k = range.begin; k < range.end; ++k) dst(k, 0, 0) = src.eigen(k).determinant();
             }},
    };
};

[[maybe_unused]] const bool registered = rows<Det, Plan::packed, 3, 4, 5, 6>() && rows<Det, Plan::cache, 2, 7>();
} // namespace
