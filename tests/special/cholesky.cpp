// Cholesky decomposition and back substitution, at the values where something turns, and what they promise together.
#include "../special.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace {
// The factor of one matrix by an array function in the layout "", "2" (standard, with gaps in the rows) or "P".
template <class T> struct Factor {
    std::vector<T> l;
    int status;
};
template <class T>
Factor<T> decompose(const Level& level, const std::string& layout, bool array, int n, const std::vector<T>& a)
{
    const int e = sizeof(T), gap = layout == "2" ? 2 : 1, s2 = gap * e, s1 = n * s2, s0 = n * s1;
    std::vector<T> src(size_t(n * n * gap), 0), dst(src.size(), T(77));
    std::vector<T*> from, to;
    for (int i = 0; i < n * n; ++i) {
        src[size_t(i * gap)] = a[size_t(i)];
        from.push_back(&src[size_t(i * gap)]), to.push_back(&dst[size_t(i * gap)]);
    }
    const bool P = layout == "P";
    Factor<T> f{{}, 0};
    const auto call = [&](auto* m, auto* mP, auto* ma, auto* maP) {
        if (array)
            f.status = P ? maP(from.data(), 0, s0, to.data(), 0, s0, n, 1)
                         : ma(src.data(), s0, s1, s2, dst.data(), s0, s1, s2, n, 1);
        else f.status = P ? mP(from.data(), 0, to.data(), 0, n) : m(src.data(), s1, s2, dst.data(), s1, s2, n);
    };
#define GET(name) get<decltype(name)>(level, #name)
    if constexpr (e == 4)
        call(GET(keslCholeskyDecomp_m_32f), GET(keslCholeskyDecomp_m_32f_P), GET(keslCholeskyDecomp_ma_32f),
             GET(keslCholeskyDecomp_ma_32f_P));
    else
        call(GET(keslCholeskyDecomp_m_64f), GET(keslCholeskyDecomp_m_64f_P), GET(keslCholeskyDecomp_ma_64f),
             GET(keslCholeskyDecomp_ma_64f_P));
#undef GET
    for (int i = 0; i < n * n; ++i) f.l.push_back(dst[size_t(i * gap)]);
    return f;
}
template <class T> std::vector<T> diagonal(int n, T value)
{
    std::vector<T> a(size_t(n * n));
    for (int i = 0; i < n; ++i) a[size_t(i * n + i)] = value;
    return a;
}

template <class T> void order1(const Level& level)
{
    EXPECT_EQ(decompose<T>(level, "", false, 1, {0}).status, keslStatusNotPositiveDefinite);
    const Factor<T> f = decompose<T>(level, "", false, 1, {4});
    EXPECT_EQ(f.status, keslStatusOk);
    EXPECT_EQ(f.l[0], T(0.5));
}
const Special orders1("CholeskyDecomp", "order 1", [](const Level& level) { order1<float>(level), order1<double>(level); });

// The bound of every form: one unit below it, at it, above it.
template <class T> void atThreshold(const Level& level)
{
    for (const std::string layout : {"", "2", "P"})
        for (bool array : {false, true})
            for (int n = 1; n < 10; ++n) {
                T bound = 0;
                if (layout == "P" && n == 3) bound = T(0x1p-23);
                if (layout == "2" && array && sizeof(T) == 8 && (n < 3 || n > 5)) bound = T(0x1p-52);
                const auto status = [&](T d) { return decompose(level, layout, array, n, diagonal(n, d)).status; };
                EXPECT_EQ(status(bound), keslStatusNotPositiveDefinite) << layout << array << n;
                EXPECT_EQ(status(std::nextafter(bound, T(1))), keslStatusOk) << layout << array << n;
                EXPECT_EQ(status(std::nextafter(bound, T(-1))), keslStatusNotPositiveDefinite) << layout << array << n;
                EXPECT_EQ(status(T(NAN)), keslStatusOk) << layout << array << n;
                EXPECT_EQ(status(T(1e-8)), bound > T(1e-8) ? keslStatusNotPositiveDefinite : keslStatusOk)
                    << layout << array << n;
                EXPECT_EQ(status(T(1e-17)), bound > T(1e-17) ? keslStatusNotPositiveDefinite : keslStatusOk)
                    << layout << array << n;
            }
}
const Special thresholds("CholeskyDecomp", "threshold",
                         [](const Level& level) { atThreshold<float>(level), atThreshold<double>(level); });

// What is above the diagonal is neither used nor written; a failure leaves the rows above and its own up to the
// diagonal.
const Special triangles("CholeskyDecomp", "triangles", [](const Level& level) {
    const Factor<float> f = decompose<float>(level, "", true, 3, {4, NAN, NAN, 2, 5, NAN, 6, 3, 25});
    EXPECT_EQ(f.status, keslStatusOk);
    EXPECT_EQ(f.l, (std::vector<float>{0.5f, 77, 77, 1, 0.5f, 77, 3, 0, 0.25f}));
    const Factor<double> failed = decompose<double>(level, "", true, 3, {4, 0, 0, 2, 1, 0, 6, 3, 25});
    EXPECT_EQ(failed.status, keslStatusNotPositiveDefinite);
    EXPECT_EQ(failed.l, (std::vector<double>{0.5, 77, 77, 1, 77, 77, 77, 77, 77}));
});

// The two formulas for the reciprocal of a single-precision root differ in their last bits for some numbers: rounded
// once at all fixed orders, and twice at the others in the P layout.
const Special twice("CholeskyDecomp", "reciprocal root", [](const Level& level) {
    int differ = 0;
    for (int i = 1; i < 1000; ++i) {
        const float d = float(i) / 7, once = float(1 / std::sqrt(double(d))), root = float(std::sqrt(double(d)));
        const float narrowed = 1 / root;
        differ += once != narrowed;
        for (int n : {1, 2, 3, 6, 7})
            for (bool array : {false, true}) {
                const bool fixed = n >= 3 && n <= 6;
                EXPECT_EQ(decompose(level, "P", array, n, diagonal(n, d)).l[0], fixed ? once : narrowed) << n;
                EXPECT_EQ(decompose(level, "", array, n, diagonal(n, d)).l[0], once) << n;
            }
    }
    EXPECT_GT(differ, 100);
});

template <class T> void residual(const Level& level)
{
    Random random("Cholesky", sizeof(T));
    const double eps = std::numeric_limits<T>::epsilon();
    double worst = 0, worstSolution = 0;
    for (int round = 0; round < 2000; ++round) {
        const int n = random.between(1, 9), e = sizeof(T);
        std::vector<T> a(size_t(n * n)), b(size_t(n), 0), x = b;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j)
                a[size_t(i * n + j)] = a[size_t(j * n + i)] = T(random.unit() - 0.5 + (i == j ? n : 0));
        for (T& y : b) y = T(random.unit() - 0.5);
        const Factor<T> f = decompose(level, "", false, n, a);
        ASSERT_EQ(f.status, keslStatusOk);
        const auto l = [&](int i, int j) {
            return i == j ? 1 / double(f.l[size_t(i * n + i)]) : double(f.l[size_t(i * n + j)]);
        };
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j) {
                double sum = -double(a[size_t(i * n + j)]);
                for (int k = 0; k <= j; ++k) sum += l(i, k) * l(j, k);
                worst = std::max(worst, std::fabs(sum) / (double(a[size_t(i * n + i)]) * n * eps));
            }
        if constexpr (e == 4)
            get<decltype(keslCholeskyBackSubst_mv_32f)>(level, "keslCholeskyBackSubst_mv_32f")(f.l.data(), n * e, e,
                                                                                               b.data(), e, x.data(), e, n);
        else
            get<decltype(keslCholeskyBackSubst_mv_64f)>(level, "keslCholeskyBackSubst_mv_64f")(f.l.data(), n * e, e,
                                                                                               b.data(), e, x.data(), e, n);
        for (int i = 0; i < n; ++i) {
            double sum = -double(b[size_t(i)]), scale = std::fabs(double(b[size_t(i)]));
            for (int j = 0; j < n; ++j) {
                const double term = double(a[size_t(i * n + j)]) * double(x[size_t(j)]);
                sum += term, scale += std::fabs(term);
            }
            worstSolution = std::max(worstSolution, std::fabs(sum) / (scale * n * eps));
        }
    }
    std::printf("residual of A = L L', float%d: %.2f n eps; of A x = b: %.2f n eps\n", int(8 * sizeof(T)), worst,
                worstSolution);
    EXPECT_LT(worst, 2);
    EXPECT_LT(worstSolution, 10);
}
const Special residuals("Cholesky", "residual", [](const Level& level) { residual<float>(level), residual<double>(level); });
} // namespace
