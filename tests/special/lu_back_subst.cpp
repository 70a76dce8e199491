// LU back substitution, where order and rounding turn, and decomposition and solution together.
#include "../special.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace {
template <class T>
std::vector<T> solve(const Level& level, int n, const std::vector<T>& lu, const std::vector<int>& p, const std::vector<T>& b)
{
    std::vector<T> x(size_t(n), T(77));
    const int e = sizeof(T);
    int status;
    if constexpr (e == 4)
        status = get<decltype(keslLUBackSubst_mv_32f)>(level, "keslLUBackSubst_mv_32f")(lu.data(), n * e, e, p.data(),
                                                                                        b.data(), e, x.data(), e, n);
    else
        status = get<decltype(keslLUBackSubst_mv_64f)>(level, "keslLUBackSubst_mv_64f")(lu.data(), n * e, e, p.data(),
                                                                                        b.data(), e, x.data(), e, n);
    EXPECT_EQ(status, keslStatusOk);
    return x;
}

const Special order1("LUBackSubst", "order 1", [](const Level& level) {
    EXPECT_EQ(solve<float>(level, 1, {3}, {0}, {10})[0], 10.0f / 3);
    EXPECT_EQ(solve<float>(level, 1, {0}, {0}, {10})[0], INFINITY);
});

// A true division at order 2, a reciprocal at order 3: 5 / 49 and 5 * (1 / 49) differ.
const Special rounding("LUBackSubst", "division or reciprocal", [](const Level& level) {
    const volatile double r = 1 / 49.0;
    ASSERT_NE(5 / 49.0, 5 * r);
    EXPECT_EQ(solve<double>(level, 2, {49, 0, 0, 1}, {0, 1}, {5, 0})[0], 5 / 49.0);
    EXPECT_EQ(solve<double>(level, 3, {49, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2}, {5, 0, 0})[0], 5 * r);
});

// The right-hand side stays in the caller's order; zero diagonals are not reported.
const Special permuted("LUBackSubst", "permuted rows", [](const Level& level) {
    EXPECT_EQ(solve<float>(level, 3, {0, 2, 0, 0, 0, 4, 1, 0, 0}, {2, 0, 1}, {6, 20, 9}), (std::vector<float>{9, 3, 5}));
    EXPECT_EQ(solve<float>(level, 2, {0, 2, 1, 0}, {1, 0}, {6, 9}), (std::vector<float>{9, 3}));
    EXPECT_TRUE(std::isnan(solve<float>(level, 3, {1, 0, 0, 0, 1, 0, 0, 0, 0}, {0, 1, 2}, {1, 1, 0})[2]));
});

template <class T> void residual(const Level& level)
{
    Random random("LU solve", sizeof(T));
    double worst = 0;
    for (int round = 0; round < 2000; ++round) {
        const int n = random.between(1, 9), e = sizeof(T);
        std::vector<T> a(size_t(n * n)), lu = a, b(size_t(n), 0);
        for (T& x : a) x = T(random.unit() - 0.5);
        for (T& x : b) x = T(random.unit() - 0.5);
        std::vector<int> p(size_t(n), 0);
        int status;
        if constexpr (e == 4)
            status = get<decltype(keslLUDecomp_m_32f)>(level, "keslLUDecomp_m_32f")(a.data(), n * e, e, p.data(), lu.data(),
                                                                                    n * e, e, n);
        else
            status = get<decltype(keslLUDecomp_m_64f)>(level, "keslLUDecomp_m_64f")(a.data(), n * e, e, p.data(), lu.data(),
                                                                                    n * e, e, n);
        if (status != keslStatusOk) continue; // order 1 by chance
        const std::vector<T> x = solve(level, n, lu, p, b);
        double error = 0, normA = 0, normX = 0;
        for (int i = 0; i < n; ++i) {
            double sum = -double(b[size_t(i)]), row = 0;
            for (int j = 0; j < n; ++j)
                sum += double(a[size_t(i * n + j)]) * double(x[size_t(j)]), row += std::fabs(double(a[size_t(i * n + j)]));
            error = std::max(error, std::fabs(sum)), normA = std::max(normA, row);
            normX = std::max(normX, std::fabs(double(x[size_t(i)])));
        }
        worst = std::max(worst, error / (normA * normX * n * double(std::numeric_limits<T>::epsilon())));
    }
    std::printf("residual of A x = b by LU, float%d: %.2f n eps |A||x|\n", int(8 * sizeof(T)), worst);
    EXPECT_LT(worst, 5);
}
const Special residuals("LUBackSubst", "residual",
                        [](const Level& level) { residual<float>(level), residual<double>(level); });
} // namespace
