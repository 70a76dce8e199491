// Sums and differences of vectors and constants, by hand.
#include "../special.h"

namespace {
using Floats = std::vector<float>;
using Doubles = std::vector<double>;

const Special cv("Sub", "which operand is the constant", [](const Level& level) {
    const float src = 3;
    float result = 0;
    EXPECT_EQ(get<decltype(keslSub_cv_32f)>(level, "keslSub_cv_32f")(&src, 4, &result, 4, 1, 1), 0);
    EXPECT_EQ(result, -2);
    EXPECT_EQ(get<decltype(keslSub_vc_32f)>(level, "keslSub_vc_32f")(&src, 4, &result, 4, 1, 1), 0);
    EXPECT_EQ(result, 2);
});

const Special vca("Sub", "one vector and three constants", [](const Level& level) {
    const double src[] = {10, 20}, val[] = {1, 0, 0, 2, 0, 0, 3};
    Doubles result(6);
    const auto sub = get<decltype(keslSub_vca_64f)>(level, "keslSub_vca_64f");
    EXPECT_EQ(sub(src, 8, val, 24, result.data(), 16, 8, 2, 3), 0);
    EXPECT_EQ(result, (Doubles{9, 19, 8, 18, 7, 17}));
    const auto reversed = get<decltype(keslSub_cav_64f)>(level, "keslSub_cav_64f");
    EXPECT_EQ(reversed(src, 8, val, 24, result.data(), 16, 8, 2, 3), 0);
    EXPECT_EQ(result, (Doubles{-9, -19, -8, -18, -7, -17}));
});

const Special constants("Add", "where constants lie", [](const Level& level) {
    const float src[] = {1, 2}, val[] = {100, 10, 200, 20};
    const float *vectors[] = {src + 1, src}, *list[] = {val + 2, val}, *elements[] = {src};
    Floats result(2);
    float *results[] = {&result[0], &result[1]}, *first[] = {&result[0]};
    const auto inL = get<decltype(keslAdd_vaca_32f_L)>(level, "keslAdd_vaca_32f_L");
    EXPECT_EQ(inL(vectors, 0, 4, list, 4, results, 0, 4, 1, 2), 0);
    EXPECT_EQ(result, (Floats{2 + 20, 1 + 10}));
    const auto inP = get<decltype(keslAdd_vaca_32f_P)>(level, "keslAdd_vaca_32f_P");
    EXPECT_EQ(inP(elements, 0, 4, val, 8, first, 0, 4, 1, 2), 0);
    EXPECT_EQ(result, (Floats{1 + 100, 2 + 200}));
});

const Special one("Add", "a count of one is a single vector", [](const Level& level) {
    const float src[] = {1, 2, 3, 4, 5};
    Floats a(5), b(5);
    EXPECT_EQ(get<decltype(keslAdd_vac_32f)>(level, "keslAdd_vac_32f")(src, 20, 4, a.data(), 20, 4, 5, 1, 0.1f), 0);
    EXPECT_EQ(get<decltype(keslAdd_vc_32f)>(level, "keslAdd_vc_32f")(src, 4, b.data(), 4, 5, 0.1f), 0);
    EXPECT_EQ(a, b);
});
} // namespace
