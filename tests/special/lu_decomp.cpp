// LU decomposition, at the values where something turns, and what it promises as a whole.
#include "../special.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace {
template <class T> struct Factors {
    std::vector<T> lu;
    std::vector<int> p;
    int status;
};

template <class T> Factors<T> decompose(const Level& level, int n, const std::vector<T>& a)
{
    Factors<T> f{std::vector<T>(a.size(), T(77)), std::vector<int>(size_t(n), -1), 0};
    const int e = sizeof(T);
    if constexpr (e == 4)
        f.status = get<decltype(keslLUDecomp_m_32f)>(level, "keslLUDecomp_m_32f")(a.data(), n * e, e, f.p.data(),
                                                                                  f.lu.data(), n * e, e, n);
    else
        f.status = get<decltype(keslLUDecomp_m_64f)>(level, "keslLUDecomp_m_64f")(a.data(), n * e, e, f.p.data(),
                                                                                  f.lu.data(), n * e, e, n);
    return f;
}

template <class T> std::vector<T> diagonal(int n, T value)
{
    std::vector<T> a(size_t(n * n));
    for (int i = 0; i < n; ++i) a[size_t(i * n + i)] = value;
    return a;
}

const Special order1("LUDecomp", "order 1", [](const Level& level) {
    EXPECT_EQ(decompose<float>(level, 1, {1e-8f}).status, keslStatusSingular);
    EXPECT_EQ(decompose<float>(level, 1, {0x1p-23f}).status, keslStatusSingular);
    EXPECT_EQ(decompose<double>(level, 1, {0x1p-52}).status, keslStatusSingular);
    const Factors<float> f = decompose<float>(level, 1, {1e-6f});
    EXPECT_EQ(f.status, keslStatusOk);
    EXPECT_EQ(f.p[0], 0);
    EXPECT_EQ(f.lu[0], 1e-6f);
});

// Orders 3 to 6 accept what lies at their bound, the others reject it, and the bounds are far apart.
template <class T> void atThreshold(const Level& level)
{
    const T tiny = 2 * std::numeric_limits<T>::min(), eps = std::numeric_limits<T>::epsilon();
    for (int n = 1; n < 10; ++n) {
        const bool fixed = n >= 3 && n <= 6;
        const T bound = fixed ? tiny : eps;
        EXPECT_EQ(decompose(level, n, diagonal(n, bound)).status, fixed ? keslStatusOk : keslStatusSingular) << n;
        EXPECT_EQ(decompose(level, n, diagonal(n, -bound)).status, fixed ? keslStatusOk : keslStatusSingular) << n;
        EXPECT_EQ(decompose(level, n, diagonal(n, std::nextafter(bound, T(0)))).status, keslStatusSingular) << n;
        EXPECT_EQ(decompose(level, n, diagonal(n, std::nextafter(bound, T(1)))).status, keslStatusOk) << n;
        EXPECT_EQ(decompose(level, n, diagonal(n, T(1e-30))).status, fixed ? keslStatusOk : keslStatusSingular) << n;
        EXPECT_EQ(decompose(level, n, diagonal(n, T(0))).status, keslStatusSingular) << n;
    }
}
const Special thresholds("LUDecomp", "threshold",
                         [](const Level& level) { atThreshold<float>(level), atThreshold<double>(level); });

template <class T> void ties(const Level& level)
{
    for (int n = 2; n < 10; ++n) {
        std::vector<T> a = diagonal(n, T(2));
        a[size_t(n)] = -2; // element (1, 0)
        const Factors<T> f = decompose(level, n, a);
        EXPECT_EQ(f.status, keslStatusOk);
        for (int i = 0; i < n; ++i) EXPECT_EQ(f.p[size_t(i)], i) << n;
    }
}
const Special tie("LUDecomp", "tied pivots", [](const Level& level) { ties<float>(level), ties<double>(level); });

template <class T> void nans(const Level& level)
{
    for (int n = 2; n < 10; ++n) {
        std::vector<T> a = diagonal(n, T(1));
        a[0] = T(NAN); // stays the pivot
        EXPECT_EQ(decompose(level, n, a).status, keslStatusOk) << n;
        EXPECT_EQ(decompose(level, n, a).p[0], 0) << n;
        a[0] = T(1e-3), a[size_t(n)] = T(NAN); // is never chosen
        EXPECT_EQ(decompose(level, n, a).status, keslStatusOk) << n;
        EXPECT_EQ(decompose(level, n, a).p[0], 0) << n;
    }
}
const Special nan("LUDecomp", "NaN", [](const Level& level) { nans<float>(level), nans<double>(level); });

// What is written before a failure: rows with good pivots at orders 3 to 6, and nothing where the first fails.
const Special failing("LUDecomp", "what a failure leaves", [](const Level& level) {
    const Factors<float> first = decompose<float>(level, 3, {0, 1, 2, 0, 3, 4, 0, 5, 6});
    EXPECT_EQ(first.status, keslStatusSingular);
    for (float x : first.lu) EXPECT_EQ(x, 77);
    EXPECT_EQ(first.p, (std::vector{0, 1, 2}));
    const Factors<float> second = decompose<float>(level, 3, {1, 2, 3, 4, 8, 4, 2, 4, 1});
    EXPECT_EQ(second.status, keslStatusSingular);
    EXPECT_EQ(second.lu, (std::vector<float>{77, 77, 77, 4, 8, 4, 77, 77, 77}));
    const Factors<float> common = decompose<float>(level, 2, {1, 2, 2, 4});
    EXPECT_EQ(common.status, keslStatusSingular);
    EXPECT_EQ(common.p, (std::vector{1, 0}));
    EXPECT_EQ(common.lu, (std::vector<float>{0.5f, 0, 2, 4}));
});

// P A = L U.
template <class T> void residual(const Level& level)
{
    Random random("LU", sizeof(T));
    double worst = 0;
    for (int round = 0; round < 2000; ++round) {
        const int n = random.between(1, 9);
        std::vector<T> a(size_t(n * n));
        for (T& x : a) x = T(random.unit() - 0.5);
        const Factors<T> f = decompose(level, n, a);
        if (f.status != keslStatusOk) continue; // order 1 by chance
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                const auto row = [&](int r) { return size_t(f.p[size_t(r)] * n); };
                double sum = -double(a[row(i) + size_t(j)]), scale = 0;
                for (int k = 0; k <= std::min(i, j); ++k) {
                    const double l = k == i ? 1 : double(f.lu[row(i) + size_t(k)]);
                    sum += l * double(f.lu[row(k) + size_t(j)]), scale += std::fabs(l * double(f.lu[row(k) + size_t(j)]));
                }
                worst = std::max(worst, std::fabs(sum) / (scale * n * double(std::numeric_limits<T>::epsilon())));
            }
    }
    std::printf("residual of P A = L U, float%d: %.2f n eps |L||U|\n", int(8 * sizeof(T)), worst);
    EXPECT_LT(worst,
              1); // Higham, Accuracy and Stability of Numerical Algorithms, 9.3, and a rounding for the reciprocal
}
const Special residuals("LUDecomp", "residual", [](const Level& level) { residual<float>(level), residual<double>(level); });
} // namespace
