// Multiplication by constants and linear combinations, by hand.
#include "../special.h"

#include <cmath>

namespace {
using Floats = std::vector<float>;

const Special tc("Mul", "transposed is stored the other way round", [](const Level& level) {
    const float stored[2][3] = {{1, 2, 3}, {4, 5, 6}};
    Floats result(6);
    const auto mul = get<decltype(keslMul_tc_32f)>(level, "keslMul_tc_32f");
    EXPECT_EQ(mul(stored[0], 12, 4, result.data(), 8, 4, 2, 3, 10), 0);
    EXPECT_EQ(result, (Floats{10, 40, 20, 50, 30, 60}));
});

const Special zero("Mul", "zero times infinity", [](const Level& level) {
    const float src[] = {INFINITY, -3};
    float result[2];
    EXPECT_EQ(get<decltype(keslMul_vc_32f)>(level, "keslMul_vc_32f")(src, 4, result, 4, 2, 0), 0);
    EXPECT_TRUE(std::isnan(result[0]));
    EXPECT_TRUE(result[1] == 0 && std::signbit(result[1]));
});

const Special infinite("Saxpy", "zero times infinity", [](const Level& level) {
    const float src1[] = {INFINITY, 1}, src2[] = {1, 1};
    float result[2];
    EXPECT_EQ(get<decltype(keslSaxpy_vv_32f)>(level, "keslSaxpy_vv_32f")(src1, 4, src2, 4, result, 4, 2, 0), 0);
    EXPECT_TRUE(std::isnan(result[0]));
    EXPECT_EQ(result[1], 1);
});

const Special rounded("Saxpy", "the product is rounded", [](const Level& level) {
    const float x = 1 + 0x1p-12f, y = -(x * x);
    Floats src1(19, x), dst(19, y); // fused: 2^-24
    const auto saxpy = get<decltype(keslSaxpy_vv_32f)>(level, "keslSaxpy_vv_32f");
    EXPECT_EQ(saxpy(src1.data(), 4, dst.data(), 4, dst.data(), 4, 19, x), 0);
    EXPECT_EQ(dst, Floats(19, 0));
});

const Special sum("LComb", "of ones is a sum", [](const Level& level) {
    const float a[] = {0.1f, 1e30f, -7}, b[] = {0.2f, -1e30f, 1e-20f};
    Floats combined(3), added(3);
    EXPECT_EQ(get<decltype(keslLComb_vv_32f)>(level, "keslLComb_vv_32f")(a, 4, b, 4, combined.data(), 4, 3, 1, 1), 0);
    EXPECT_EQ(get<decltype(keslAdd_vv_32f)>(level, "keslAdd_vv_32f")(a, 4, b, 4, added.data(), 4, 3), 0);
    EXPECT_EQ(combined, added);
});
} // namespace
