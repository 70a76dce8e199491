// QR decomposition and back substitution, at the values where something turns, and what they promise as a whole.
#include "../special.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace {
template <class T> struct Factors {
    std::vector<T> qr;
    int status;
};

#define GET(name) get<decltype(name)>(level, #name)

template <class T> Factors<T> decompose(const Level& level, int w, int h, const std::vector<T>& a)
{
    Factors<T> f{std::vector<T>(a.size(), T(77)), 0};
    std::vector<T> buffer(size_t(h), T(NAN));
    const int e = sizeof(T);
    const auto call = [&](auto* function) {
        f.status = function(a.data(), w * e, e, buffer.data(), f.qr.data(), w * e, e, w, h);
    };
    if constexpr (e == 4) call(GET(keslQRDecomp_m_32f));
    else call(GET(keslQRDecomp_m_64f));
    return f;
}

// One right-hand side, by mv, by mva or by mava; the scratch before and after the call is compared by the caller.
enum Shape { mv, mva, mava };
template <class T> std::vector<T> solve(const Level& level, Shape shape, int w, int h, const std::vector<T>& qr,
                                        const std::vector<T>& b, std::vector<T>& buffer)
{
    std::vector<T> x(size_t(w), T(77));
    const int e = sizeof(T);
    const auto call = [&](auto* one, auto* many, auto* pairs) {
        if (shape == mv) return one(qr.data(), w * e, e, buffer.data(), b.data(), e, x.data(), e, w, h);
        if (shape == mva) return many(qr.data(), w * e, e, buffer.data(), b.data(), h * e, e, x.data(), w * e, e, w, h, 1);
        return pairs(qr.data(), w * h * e, w * e, e, buffer.data(), b.data(), h * e, e, x.data(), w * e, e, w, h, 1);
    };
    int status;
    if constexpr (e == 4)
        status = call(GET(keslQRBackSubst_mv_32f), GET(keslQRBackSubst_mva_32f), GET(keslQRBackSubst_mava_32f));
    else status = call(GET(keslQRBackSubst_mv_64f), GET(keslQRBackSubst_mva_64f), GET(keslQRBackSubst_mava_64f));
    EXPECT_EQ(status, keslStatusOk);
    return x;
}
template <class T> std::vector<T> solve(const Level& level, int w, int h, const std::vector<T>& qr, const std::vector<T>& b)
{
    std::vector<T> buffer(size_t(h), T(NAN));
    return solve(level, mv, w, h, qr, b, buffer);
}

template <class T> std::vector<T> diagonal(int w, int h, T value)
{
    std::vector<T> a(size_t(w * h));
    for (int i = 0; i < w; ++i) a[size_t(i * w + i)] = value;
    return a;
}

// A single element has no reflection and no test, in a column of its own it has both.
const Special order1("QRDecomp", "order 1", [](const Level& level) {
    for (float x : {0.0f, -3.0f}) {
        EXPECT_EQ(decompose<float>(level, 1, 1, {x}).status, keslStatusOk);
        EXPECT_EQ(decompose<float>(level, 1, 1, {x}).qr[0], x);
    }
    EXPECT_EQ(solve<float>(level, 1, 1, {4}, {6})[0], 1.5f);
    EXPECT_EQ(solve<float>(level, 1, 1, {0}, {6})[0], INFINITY);
    EXPECT_EQ(decompose<float>(level, 1, 2, {0, 0}).status, keslStatusDivideByZero);
});

// A squared norm at the bound passes; all but the last column of a square matrix are tested.
template <class T> void atThreshold(const Level& level)
{
    const T eps = std::numeric_limits<T>::epsilon(),
            half = T(std::sqrt(double(eps) / 2)); // half * half * 2 == eps, or next to it
    const auto passes = [&](T x, T y) {
        const volatile T xx = x * x, yy = y * y, s = xx + yy;
        return !(eps > s);
    };
    int outcomes[2] = {};
    for (int w = 1; w < 10; ++w)
        for (int h = std::max(w, 2); h < 11; ++h)
            for (T x : {half, half * (1 - 2 * eps), half * (1 + 2 * eps), -half}) {
                const int k = std::min(w, h - 1) - 1; // the last column that is tested
                std::vector<T> a = diagonal(w, h, T(1));
                a[size_t(k * w + k)] = x, a[size_t(h * w - w + k)] = half;
                ++outcomes[passes(x, half)];
                EXPECT_EQ(decompose(level, w, h, a).status, passes(x, half) ? keslStatusOk : keslStatusDivideByZero)
                    << w << h;
                a = diagonal(w, h, T(1));
                a[size_t(w * w - 1)] = 0;
                EXPECT_EQ(decompose(level, w, h, a).status, w == h ? keslStatusOk : keslStatusDivideByZero) << w << h;
                if (w == h) { EXPECT_EQ(decompose(level, w, h, a).qr.back(), 0); }
            }
    EXPECT_GT(outcomes[0], 0);
    EXPECT_GT(outcomes[1], 0);
}
const Special thresholds("QRDecomp", "threshold", [](const Level& level) {
    atThreshold<float>(level), atThreshold<double>(level);
    EXPECT_EQ(decompose<double>(level, 1, 2, {0x1p-26, 0}).status, keslStatusOk); // 2^-52 exactly
    EXPECT_EQ(decompose<double>(level, 1, 2, {std::nextafter(0x1p-26, 0.0), 0}).status, keslStatusDivideByZero);
    EXPECT_EQ(decompose<float>(level, 1, 2, {0x1p-12f, 0x1p-12f}).status, keslStatusOk); // 2^-23 exactly
    EXPECT_EQ(decompose<float>(level, 1, 2, {0x1p-12f, std::nextafter(0x1p-12f, 0.0f)}).status, keslStatusDivideByZero);
    EXPECT_EQ(decompose<float>(level, 1, 2, {std::sqrt(1e-7f), 0}).status, keslStatusDivideByZero);
    EXPECT_EQ(decompose<float>(level, 1, 2, {std::sqrt(2e-7f), 0}).status, keslStatusOk);
    EXPECT_EQ(decompose<float>(level, 3, 5, diagonal(3, 5, 1e-3f)).status, keslStatusOk);
});

// R gets the opposite sign of the diagonal; a zero counts as negative.
template <class T> void signs(const Level& level)
{
    for (int h = 2; h < 10; ++h)
        for (int w = 1; w <= h; ++w)
            for (T x : {T(3), T(-3), T(0), -T(0)}) {
                std::vector<T> a = diagonal(w, h, T(1));
                if (w > 1) a[1] = 1; // or the second column would depend on the first
                a[0] = x, a[size_t(w)] = 4;
                const Factors<T> f = decompose(level, w, h, a);
                EXPECT_EQ(f.status, keslStatusOk);
                const T length = x == 0 ? T(4) : T(5);
                EXPECT_NEAR(f.qr[0], x > 0 ? -length : length, 8 * std::numeric_limits<T>::epsilon()) << w << h;
            }
}
const Special sign("QRDecomp", "signs", [](const Level& level) { signs<float>(level), signs<double>(level); });

template <class T> void nans(const Level& level)
{
    for (int h = 2; h < 10; ++h)
        for (int w = 1; w <= h; ++w) {
            std::vector<T> a = diagonal(w, h, T(1));
            a[0] = T(NAN);
            EXPECT_EQ(decompose(level, w, h, a).status, keslStatusOk) << w << h;
            a[0] = T(INFINITY);
            EXPECT_EQ(decompose(level, w, h, a).status, keslStatusOk) << w << h;
        }
}
const Special nan("QRDecomp", "NaN is not singular", [](const Level& level) { nans<float>(level), nans<double>(level); });

// A failure leaves the copy, with the steps before it.
template <class T> void failures(const Level& level)
{
    for (int h = 2; h < 10; ++h)
        for (int w = 1; w <= h; ++w) {
            std::vector<T> a(size_t(w * h));
            for (size_t i = 0; i < a.size(); ++i) a[i] = T(i % 7) - 3;
            for (int i = 0; i < h; ++i) a[size_t(i * w)] = 0;
            EXPECT_EQ(decompose(level, w, h, a).status, keslStatusDivideByZero);
            EXPECT_EQ(decompose(level, w, h, a).qr, a) << w << h;
        }
}
const Special failing("QRDecomp", "what a failure leaves", [](const Level& level) {
    failures<float>(level), failures<double>(level);
    // The first step is exact: column (3, 4) has length 5, v = (1, 1/2), beta = -8/5.
    const Factors<double> f = decompose<double>(level, 3, 3, {3, 0, 1, 4, 0, 1, 0, 0, 7});
    EXPECT_EQ(f.status, keslStatusDivideByZero);
    const double expected[] = {-5, 0, -1.4, 0.5, 0, -0.2, 0, 0, 7};
    for (size_t i = 0; i < 9; ++i) EXPECT_NEAR(f.qr[i], expected[i], 1e-15) << i;
});

// Square matrices of order 3 to 6 leave the scratch alone, all others overwrite it.
template <class T> void scratch(const Level& level)
{
    for (Shape shape : {mv, mva, mava})
        for (int h = 1; h < 10; ++h)
            for (int w = 1; w <= h; ++w) {
                std::vector<T> buffer(size_t(h), T(NAN));
                solve(level, shape, w, h, diagonal(w, h, T(1)), std::vector<T>(size_t(h), T(5)), buffer);
                for (T x : buffer) EXPECT_EQ(std::isnan(x), w == h && w >= 3 && w <= 6) << shape << w << h;
            }
    // The same in an array: 3 by 4, so many that they go by packs.
    const int e = sizeof(T), w = 3, h = 4;
    const std::vector<T> qr = diagonal(w, h, T(1));
    std::vector<T> buffer(h, T(NAN)), b(h * 64, T(5)), x(w * 64);
    if constexpr (e == 4) GET(keslQRBackSubst_mva_32f)
    (qr.data(), w * e, e, buffer.data(), b.data(), h * e, e, x.data(), w * e, e, w, h, 64);
    else GET(keslQRBackSubst_mva_64f)(qr.data(), w * e, e, buffer.data(), b.data(), h * e, e, x.data(), w * e, e, w, h, 64);
    for (T y : buffer) EXPECT_FALSE(std::isnan(y));
}
const Special buffers("QRBackSubst", "scratch", [](const Level& level) { scratch<float>(level), scratch<double>(level); });

// True divisions at all sizes, and zeros are not reported.
const Special division("QRBackSubst", "division", [](const Level& level) {
    const volatile double r = 1 / 49.0;
    ASSERT_NE(5 / 49.0, 5 * r);
    for (int h = 1; h < 10; ++h)
        for (int w = 1; w <= h; ++w) {
            std::vector<double> b(size_t(h), 0), qr = diagonal(w, h, 49.0);
            b[size_t(w - 1)] = h == w ? 5 : -5; // a reflector for the last column turns its sign
            EXPECT_EQ(solve(level, w, h, qr, b)[size_t(w - 1)], 5 / 49.0) << w << h;
            qr[size_t(w * w - 1)] = 0;
            EXPECT_EQ(solve(level, w, h, qr, b)[size_t(w - 1)], INFINITY) << w << h;
        }
});

// Q R = A, Q orthogonal, x solves A x = b or, for least squares, A' (A x - b) = 0.
template <class T> void residual(const Level& level)
{
    Random random("QR", sizeof(T));
    const double eps = std::numeric_limits<T>::epsilon();
    double worst = 0, worstQ = 0, worstX = 0, worstNormal = 0;
    for (int round = 0; round < 2000; ++round) {
        const int h = random.between(1, 9), w = random.between(1, h);
        std::vector<T> a(size_t(w * h)), b(size_t(h), 0);
        for (T& x : a) x = T(random.unit() - 0.5);
        for (T& x : b) x = T(random.unit() - 0.5);
        const Factors<T> f = decompose(level, w, h, a);
        ASSERT_EQ(f.status, keslStatusOk);
        // Q explicitly: the reflections from the last to the first on the unit matrix.
        std::vector<double> q(size_t(h * h));
        const auto Q = [&](int i, int j) -> double& { return q[size_t(i * h + j)]; };
        for (int i = 0; i < h; ++i) Q(i, i) = 1;
        for (int k = (w < h ? w : w - 1) - 1; k >= 0; --k) {
            std::vector<double> v(size_t(h), 0);
            double norm = 0;
            for (int i = k; i < h; ++i) {
                v[size_t(i)] = i == k ? 1 : double(f.qr[size_t(i * w + k)]);
                norm += v[size_t(i)] * v[size_t(i)];
            }
            for (int j = 0; j < h; ++j) {
                double d = 0;
                for (int i = k; i < h; ++i) d += v[size_t(i)] * Q(i, j);
                for (int i = k; i < h; ++i) Q(i, j) -= 2 / norm * d * v[size_t(i)];
            }
        }
        const auto A = [&](int i, int j) { return double(a[size_t(i * w + j)]); };
        double error = 0, normA = 0, orthogonal = 0;
        for (int i = 0; i < h; ++i) {
            for (int j = 0; j < w; ++j) {
                double sum = -A(i, j);
                for (int k = 0; k <= j; ++k) sum += Q(i, k) * double(f.qr[size_t(k * w + j)]);
                error += sum * sum, normA += A(i, j) * A(i, j);
            }
            for (int j = 0; j < h; ++j) {
                double sum = -(i == j);
                for (int k = 0; k < h; ++k) sum += Q(i, k) * Q(j, k);
                orthogonal = std::max(orthogonal, std::fabs(sum));
            }
        }
        normA = std::sqrt(normA);
        worst = std::max(worst, std::sqrt(error) / (normA * h * eps));
        worstQ = std::max(worstQ, orthogonal / (h * 0x1p-52));

        const std::vector<T> x = solve(level, w, h, f.qr, b);
        double normX = 0, normB = 0, r2 = 0;
        std::vector<double> r(size_t(h), 0);
        for (int j = 0; j < w; ++j) normX += double(x[size_t(j)]) * double(x[size_t(j)]);
        for (int i = 0; i < h; ++i) {
            r[size_t(i)] = -double(b[size_t(i)]), normB += r[size_t(i)] * r[size_t(i)];
            for (int j = 0; j < w; ++j) r[size_t(i)] += A(i, j) * double(x[size_t(j)]);
            r2 += r[size_t(i)] * r[size_t(i)];
        }
        const double scale = (normA * std::sqrt(normX) + std::sqrt(normB)) * h * eps;
        if (w == h) worstX = std::max(worstX, std::sqrt(r2) / scale);
        else
            for (int j = 0; j < w; ++j) {
                double sum = 0;
                for (int i = 0; i < h; ++i) sum += A(i, j) * r[size_t(i)];
                worstNormal = std::max(worstNormal, std::fabs(sum) / (normA * scale));
            }
    }
    std::printf("QR, float%d: A - Q R %.2f h eps |A|, A x - b %.2f and A'(A x - b) / |A| %.2f h eps (|A||x| + |b|)\n",
                int(8 * sizeof(T)), worst, worstX, worstNormal);
    EXPECT_LT(worst, 3);
    EXPECT_LT(worstQ, 3); // of the reflectors in double precision: they are what they say to the last bit
    EXPECT_LT(worstX, 3);
    EXPECT_LT(worstNormal, 3);
}
const Special residuals("QR", "residual", [](const Level& level) { residual<float>(level), residual<double>(level); });
#undef GET
} // namespace
