// Products and sums, by hand.
#include "../special.h"

#include <cmath>
#include <limits>

namespace {
const Special transposed("Mul", "a transposed matrix has the sizes of its storage", [](const Level& level) {
    // 2 wide and 3 high, read as 2 by 3; times 3 by 2
    const double a[3][2] = {{1, 4}, {2, 5}, {3, 6}}, b[3][2] = {{1, 0}, {0, 1}, {1, 1}};
    double result[2][2];
    const auto mul = get<decltype(keslMul_tm_64f)>(level, "keslMul_tm_64f");
    EXPECT_EQ(mul(a[0], 16, 8, 2, 3, b[0], 16, 8, 2, 3, result[0], 16, 8), 0);
    EXPECT_EQ(result[0][0], 4);
    EXPECT_EQ(result[0][1], 5);
    EXPECT_EQ(result[1][0], 10);
    EXPECT_EQ(result[1][1], 11);
});

const Special sizes("Mul", "a mismatch comes behind the sizes and before the strides", [](const Level& level) {
    EXPECT_EQ(statusOf(level, "keslMul_mm_32f", {{"src1Width", 4}, {"src2Height", 5}, {"src1Stride2", 6}}),
              keslStatusSizeMismatch);
    EXPECT_EQ(statusOf(level, "keslMul_mm_32f", {{"src1Width", 4}, {"src2Height", 5}, {"src1Height", 0}}),
              keslStatusBadSize);
    EXPECT_EQ(statusOf(level, "keslGaxpy_mv_32f", {{"src1Height", 4}, {"src3Len", 5}}), keslStatusSizeMismatch);
});

// -0 times 1 everywhere: where the sum begins with a product it stays -0, where it begins at +0 it does not.
const Special zeros("Mul", "the sign of a sum of products that are all -0", [](const Level& level) {
    float a[36], b[36], x[36];
    const auto fill = [&] {
        for (int e = 0; e < 36; ++e) a[e] = -0.0f, b[e] = 1, x[e] = 77;
    };
    const float *la = a, *lb = b;
    float* lx = x;
    for (int n = 1; n <= 6; ++n) {
        const int row = 4 * n, object = row * n;
        fill();
        get<decltype(keslMul_mama_32f)>(level, "keslMul_mama_32f")(a, object, row, 4, n, n, b, object, row, 4, n, n, x,
                                                                   object, row, 4, 1);
        EXPECT_EQ(std::signbit(x[n * n - 1]), n >= 3) << n;
        fill();
        get<decltype(keslMul_mama_32f_L)>(level, "keslMul_mama_32f_L")(&la, 0, row, 4, n, n, &lb, 0, row, 4, n, n, &lx, 0,
                                                                       row, 4, 1);
        EXPECT_FALSE(std::signbit(x[n * n - 1])) << n;
        fill();
        get<decltype(keslMul_mam_32f_L)>(level, "keslMul_mam_32f_L")(&la, 0, row, 4, n, n, b, row, 4, n, n, &lx, 0, row, 4,
                                                                     1);
        EXPECT_EQ(std::signbit(x[n * n - 1]), n >= 3) << n;
    }
});

const Special orders("Gaxpy", "the last column comes first in order 4", [](const Level& level) {
    // 2^24 + 1 is not a float: the sum depends on where the large terms stand.
    const float a[4][4] = {{1, 1, -0x1p24f, 0x1p24f}}, ones[] = {1, 1, 1, 1}, zero[4] = {};
    float y[4], product[4];
    EXPECT_EQ(get<decltype(keslGaxpy_mv_32f)>(level, "keslGaxpy_mv_32f")(a[0], 16, 4, 4, 4, ones, 4, 4, zero, 4, 4, y, 4),
              0);
    EXPECT_EQ(get<decltype(keslMul_mv_32f)>(level, "keslMul_mv_32f")(a[0], 16, 4, 4, 4, ones, 4, 4, product, 4), 0);
    EXPECT_EQ(y[0], 0);       // ((2^24 + 1) + 1) - 2^24
    EXPECT_EQ(product[0], 2); // ((1 + 1) - 2^24) + 2^24
});

const Special norms("L2Norm", "lengths, and no scaling", [](const Level& level) {
    const float v[] = {3, 4, 0}, large[] = {1e30f, 0, 0};
    float result;
    const auto norm = get<decltype(keslL2Norm_v_32f)>(level, "keslL2Norm_v_32f");
    EXPECT_EQ(norm(v, 4, &result, 3), 0);
    EXPECT_EQ(result, 5);
    EXPECT_EQ(norm(large, 4, &result, 3), 0);
    EXPECT_EQ(result, INFINITY);
    const float nan[] = {NAN, 0, 0};
    EXPECT_EQ(norm(nan, 4, &result, 3), 0);
    EXPECT_TRUE(std::isnan(result));
});

const Special frobenius("FrobNorm", "order 1 is the absolute value", [](const Level& level) {
    const float a = -7;
    float result;
    EXPECT_EQ(get<decltype(keslFrobNorm_m_32f)>(level, "keslFrobNorm_m_32f")(&a, 4, 4, 1, 1, &result), 0);
    EXPECT_EQ(result, 7);
});

const Special alignment("DotProduct", "the same bits at every alignment", [](const Level& level) {
    float a[80], b[80], expected = 0, result;
    const auto dot = get<decltype(keslDotProduct_vv_32f)>(level, "keslDotProduct_vv_32f");
    for (int shift = 0; shift < 16; ++shift) {
        for (int j = 0; j < 61; ++j) a[j] = 1 / float(j + 3), b[j + shift] = std::sqrt(float(j + 1));
        EXPECT_EQ(dot(a, 4, b + shift, 4, shift ? &result : &expected, 61), 0);
        if (shift) { EXPECT_EQ(result, expected) << shift; }
    }
});
} // namespace
