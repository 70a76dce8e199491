// The determinant, at the values where something turns.
#include "../special.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace {
// Of one matrix, by the function for one or by that for arrays.
template <class T> T det(const Level& level, bool array, int n, const std::vector<T>& a)
{
    const int e = sizeof(T);
    T result = 77;
    int status;
    std::vector<T> buffer(size_t(n * n + n), T(NAN));
    const auto call = [&](auto* m, auto* ma) {
        status = array ? ma(a.data(), n * n * e, n * e, e, n, buffer.data(), &result, 1)
                       : m(a.data(), n * e, e, n, buffer.data(), &result);
    };
#define GET(name) get<decltype(name)>(level, #name)
    if constexpr (e == 4) call(GET(keslDet_m_32f), GET(keslDet_ma_32f));
    else call(GET(keslDet_m_64f), GET(keslDet_ma_64f));
#undef GET
    EXPECT_EQ(status, keslStatusOk);
    for (T x : buffer) EXPECT_TRUE(n < 3 || n > 6 || std::isnan(x)) << "the buffer is not for order " << n;
    return result;
}
template <class T> std::vector<T> diagonal(int n, T first)
{
    std::vector<T> a(size_t(n * n));
    for (int i = 0; i < n; ++i) a[size_t(i * n + i)] = i ? T(1) : first;
    return a;
}

template <class T> void thresholds(const Level& level)
{
    for (bool array : {false, true})
        for (int n : {1, 2, 7, 8}) {
            const T thr = T(2 * n * n * n) * std::numeric_limits<T>::min();
            for (int last : {0, n - 1}) { // a pivot passes at the threshold, the last element does not
                std::vector<T> a = diagonal(n, T(1));
                const auto with = [&](T x) { return a[size_t(last * n + last)] = x, det(level, array, n, a); };
                EXPECT_EQ(with(thr), last == n - 1 ? T(0) : thr) << n;
                EXPECT_EQ(with(-thr), last == n - 1 ? T(0) : -thr) << n;
                EXPECT_EQ(with(std::nextafter(thr, T(0))), T(0)) << n;
                EXPECT_EQ(with(std::nextafter(thr, T(1))), std::nextafter(thr, T(1))) << n;
            }
        }
    for (int n = 3; n <= 6; ++n) // no threshold
        EXPECT_EQ(det(level, false, n, diagonal(n, std::numeric_limits<T>::denorm_min())),
                  std::numeric_limits<T>::denorm_min());
}
const Special threshold("Det", "threshold", [](const Level& level) {
    thresholds<float>(level), thresholds<double>(level);
    EXPECT_EQ(det<float>(level, false, 3, diagonal(3, 1e-37f)), 1e-37f);
});

template <class T> void values(const Level& level)
{
    for (bool array : {false, true}) {
        EXPECT_EQ(det<T>(level, array, 2, {4, 2, 2, 3}), T(8));
        EXPECT_EQ(det<T>(level, array, 2, {1, 2, 1, 2}), T(0));
        EXPECT_EQ(det<T>(level, array, 3, {1, 1, 1, 1, 1, 1, 1, 1, 1}), T(0));
        for (int n = 2; n < 10; ++n) {
            std::vector<T> a = diagonal(n, T(3));
            EXPECT_EQ(det(level, array, n, a), T(3)) << n;
            for (int j = 0; j < n; ++j) std::swap(a[size_t(j)], a[size_t(n + j)]);
            EXPECT_EQ(det(level, array, n, a), T(-3)) << n;
        }
    }
}
const Special value("Det", "values", [](const Level& level) { values<float>(level), values<double>(level); });

// A NaN is no singular pivot, but fails the last test. A singular matrix of an array is a product with a sign of zero.
template <class T> void nans(const Level& level)
{
    for (bool array : {false, true}) {
        EXPECT_EQ(det<T>(level, array, 1, {T(NAN)}), T(0));
        EXPECT_EQ(det<T>(level, array, 2, {T(NAN), 1, 1, 1}), T(0));
        for (int n = 3; n <= 6; ++n) EXPECT_TRUE(std::isnan(det(level, array, n, diagonal(n, T(NAN))))) << n;
        EXPECT_EQ(det<T>(level, array, 2, {0, 0, 0, 5}), T(0));
        EXPECT_TRUE(std::signbit(det<T>(level, true, 2, {0, 0, 0, -5})));
        EXPECT_FALSE(std::signbit(det<T>(level, false, 2, {0, 0, 0, -5})));
        EXPECT_EQ(std::isnan(det<T>(level, array, 2, {0, 0, 0, T(INFINITY)})), array);
    }
}
const Special nan("Det", "NaN and zeros", [](const Level& level) { nans<float>(level), nans<double>(level); });

// Against an elimination in extended precision, relative to the product of the rows' lengths.
template <class T> void residual(const Level& level)
{
    Random random("determinant", sizeof(T));
    double worst = 0;
    for (int round = 0; round < 3000; ++round) {
        const int n = random.between(1, 9);
        std::vector<T> a(size_t(n * n));
        for (T& x : a) x = T(random.unit() - 0.5);
        std::vector<long double> b(a.begin(), a.end());
        long double expected = 1, scale = 1;
        for (int i = 0; i < n; ++i) {
            long double sum = 0;
            for (int j = 0; j < n; ++j) sum += b[size_t(i * n + j)] * b[size_t(i * n + j)];
            scale *= std::sqrt(sum);
        }
        for (int k = 0; k < n; ++k) {
            int q = k;
            for (int i = k + 1; i < n; ++i)
                if (std::fabs(b[size_t(i * n + k)]) > std::fabs(b[size_t(q * n + k)])) q = i;
            for (int j = 0; j < n && q != k; ++j) std::swap(b[size_t(k * n + j)], b[size_t(q * n + j)]);
            expected *= q == k ? b[size_t(k * n + k)] : -b[size_t(k * n + k)];
            for (int i = k + 1; i < n; ++i)
                for (int j = n - 1; j >= k; --j)
                    b[size_t(i * n + j)] -= b[size_t(i * n + k)] / b[size_t(k * n + k)] * b[size_t(k * n + j)];
        }
        const double error = std::fabs(double(expected - static_cast<long double>(det(level, false, n, a))));
        worst = std::max(worst, error / (double(scale) * n * double(std::numeric_limits<T>::epsilon())));
    }
    std::printf("error of the determinant, float%d: %.2f n eps times the product of the rows' lengths\n", int(8 * sizeof(T)),
                worst);
    EXPECT_LT(worst, 10);
}
const Special residuals("Det", "residual", [](const Level& level) { residual<float>(level), residual<double>(level); });
} // namespace
