// The inverse, at the values where something turns.
#include "../special.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace {
template <class T> struct Inverse {
    std::vector<T> result;
    int status;
};

template <class T> Inverse<T> invert(const Level& level, int n, const std::vector<T>& a)
{
    Inverse<T> inverse{std::vector<T>(a.size(), T(77)), 0};
    std::vector<T> buffer(size_t(n * n + n), T(NAN));
    const int e = sizeof(T);
    if constexpr (e == 4)
        inverse.status = get<decltype(keslInvert_m_32f)>(level, "keslInvert_m_32f")(a.data(), n * e, e, buffer.data(),
                                                                                    inverse.result.data(), n * e, e, n);
    else
        inverse.status = get<decltype(keslInvert_m_64f)>(level, "keslInvert_m_64f")(a.data(), n * e, e, buffer.data(),
                                                                                    inverse.result.data(), n * e, e, n);
    return inverse;
}

template <class T> std::vector<T> diagonal(int n, T first)
{
    std::vector<T> a(size_t(n * n));
    for (int i = 0; i < n; ++i) a[size_t(i * n + i)] = i ? T(1) : first;
    return a;
}

template <class T> void order1(const Level& level)
{
    const T limit = 2 * std::numeric_limits<T>::min();
    EXPECT_EQ(invert<T>(level, 1, {limit}).status, keslStatusSingular);
    EXPECT_EQ(invert<T>(level, 1, {-limit}).status, keslStatusSingular);
    EXPECT_EQ(invert<T>(level, 1, {0}).status, keslStatusSingular);
    EXPECT_EQ(invert<T>(level, 1, {NAN}).status, keslStatusSingular);
    EXPECT_EQ(invert<T>(level, 1, {NAN}).result[0], T(77));
    EXPECT_EQ(invert<T>(level, 1, {std::nextafter(limit, T(1))}).status, keslStatusOk);
    EXPECT_EQ(invert<T>(level, 1, {T(1e-30)}).result[0], T(1) / T(1e-30));
}
const Special orders1("Invert", "order 1", [](const Level& level) { order1<float>(level), order1<double>(level); });

template <class T> void order2(const Level& level)
{
    EXPECT_EQ(invert<T>(level, 2, {0, 1, 0, 2}).status, keslStatusSingular);
    EXPECT_EQ(invert<T>(level, 2, {1, 1, 1, 1}).status, keslStatusSingular);
    const Inverse<T> inverse = invert<T>(level, 2, {1, 2, 3, 4});
    EXPECT_EQ(inverse.status, keslStatusOk);
    const T expected[] = {-2, 1, T(1.5), T(-0.5)};
    for (size_t i = 0; i < 4; ++i) EXPECT_NEAR(inverse.result[i], expected[i], 8 * std::numeric_limits<T>::epsilon());
}
const Special orders2("Invert", "order 2", [](const Level& level) { order2<float>(level), order2<double>(level); });

// Closed forms reject below the threshold, the others at it as well.
template <class T> void atThreshold(const Level& level)
{
    for (int n = 2; n < 10; ++n) {
        const T limit = T(2 * n * n * n) * std::numeric_limits<T>::min();
        const bool closed = n >= 3 && n <= 6;
        EXPECT_EQ(invert<T>(level, n, diagonal<T>(n, limit)).status, closed ? keslStatusOk : keslStatusSingular) << n;
        EXPECT_EQ(invert<T>(level, n, diagonal<T>(n, std::nextafter(limit, T(0)))).status, keslStatusSingular) << n;
        EXPECT_EQ(invert<T>(level, n, diagonal<T>(n, std::nextafter(limit, T(1)))).status, keslStatusOk) << n;
        EXPECT_EQ(invert<T>(level, n, diagonal<T>(n, -limit)).status, closed ? keslStatusOk : keslStatusSingular) << n;
    }
}
const Special thresholds("Invert", "threshold", [](const Level& level) {
    atThreshold<float>(level), atThreshold<double>(level);
    EXPECT_EQ(invert<float>(level, 3, diagonal<float>(3, 1e-37f)).status, keslStatusSingular);
    EXPECT_EQ(invert<float>(level, 3, diagonal<float>(3, 1e-36f)).status, keslStatusOk);
});

template <class T> void nans(const Level& level)
{
    for (int n = 3; n <= 6; ++n) {
        const Inverse<T> inverse = invert<T>(level, n, std::vector<T>(size_t(n * n), T(NAN)));
        EXPECT_EQ(inverse.status, keslStatusOk) << n;
        for (T x : inverse.result) EXPECT_TRUE(std::isnan(x)) << n;
    }
}
const Special nan("Invert", "NaN is not singular", [](const Level& level) { nans<float>(level), nans<double>(level); });

// A minor that is singular counts as tiny, not as zero.
template <class T> void tinyMinors(const Level& level)
{
    const T limit = T(2 * 7 * 7 * 7) * std::numeric_limits<T>::min();
    const Inverse<T> inverse = invert<T>(level, 7, diagonal<T>(7, 1));
    EXPECT_EQ(inverse.status, keslStatusOk);
    for (int i = 0; i < 7; ++i)
        for (int j = 0; j < 7; ++j) // off the diagonal with the sign of the exchanges before the end of the elimination
            EXPECT_EQ(std::fabs(inverse.result[size_t(i * 7 + j)]), i == j ? T(1) : limit) << i << j;
}
const Special tiny("Invert", "singular minors",
                   [](const Level& level) { tinyMinors<float>(level), tinyMinors<double>(level); });

// A determinant that overflows is not reported: zeros, or NaN where a cofactor overflows, too.
const Special overflow("Invert", "overflow", [](const Level& level) {
    const auto scaled = [&](float d) { return invert<float>(level, 3, {d, 0, 0, 0, d, 0, 0, 0, d}); };
    EXPECT_EQ(scaled(1e13f).status, keslStatusOk);
    EXPECT_EQ(scaled(1e13f).result, std::vector<float>(9, 0));
    EXPECT_EQ(scaled(1e20f).status, keslStatusOk);
    EXPECT_TRUE(std::isnan(scaled(1e20f).result[0]));
    const float a[9] = {1e13f, 0, 0, 0, 1e13f, 0, 0, 0, 1e13f};
    float buffer[12], det;
    EXPECT_EQ(get<decltype(keslDet_m_32f)>(level, "keslDet_m_32f")(a, 12, 4, 3, buffer, &det), keslStatusOk);
    EXPECT_EQ(det, INFINITY);
});

// Whether it is the inverse, whatever the order of terms: to the conditioning.
template <class T> void residual(const Level& level)
{
    Random random("residual", sizeof(T));
    double worst = 0;
    for (int round = 0; round < 2000; ++round) {
        const int n = random.between(2, 9);
        std::vector<T> a(size_t(n * n));
        for (T& x : a) x = T(random.unit() - 0.5);
        for (int i = 0; i < n; ++i) a[size_t(i * n + i)] += 2; // well conditioned
        const Inverse<T> inverse = invert<T>(level, n, a);
        ASSERT_EQ(inverse.status, keslStatusOk);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                double sum = -(i == j);
                for (int k = 0; k < n; ++k) sum += double(a[size_t(i * n + k)]) * double(inverse.result[size_t(k * n + j)]);
                worst = std::max(worst, std::fabs(sum) / (n * double(std::numeric_limits<T>::epsilon())));
            }
    }
    std::printf("residual of the inverse, float%d: %.2f n eps\n", int(8 * sizeof(T)), worst);
    EXPECT_LT(worst, 30) << "largest element of A inv(A) - I, in units of n eps";
}
const Special residuals("Invert", "residual", [](const Level& level) { residual<float>(level), residual<double>(level); });
} // namespace
