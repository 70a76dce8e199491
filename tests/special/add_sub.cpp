// Sums and differences of matrices, by hand.
#include "../special.h"

#include <cmath>

namespace {
const Special mam("Sub", "which operand is the array", [](const Level& level) {
    const float array[] = {10, 20, 30}, one = 1;
    float result[3];
    EXPECT_EQ(get<decltype(keslSub_mam_32f)>(level, "keslSub_mam_32f")(array, 4, 4, 4, &one, 4, 4, result, 4, 4, 4, 1, 1, 3),
              0);
    EXPECT_EQ(std::vector<float>(result, result + 3), (std::vector<float>{9, 19, 29}));
    EXPECT_EQ(get<decltype(keslSub_mma_32f)>(level, "keslSub_mma_32f")(&one, 4, 4, array, 4, 4, 4, result, 4, 4, 4, 1, 1, 3),
              0);
    EXPECT_EQ(std::vector<float>(result, result + 3), (std::vector<float>{-9, -19, -29}));
});

const Special mt("Sub", "transposed is stored the other way round", [](const Level& level) {
    const double a[3][2] = {{10, 20}, {30, 40}, {50, 60}}, stored[2][3] = {{1, 2, 3}, {4, 5, 6}};
    double result[3][2];
    const auto sub = get<decltype(keslSub_mt_64f)>(level, "keslSub_mt_64f");
    EXPECT_EQ(sub(a[0], 16, 8, stored[0], 24, 8, result[0], 16, 8, 2, 3), 0);
    const double expected[3][2] = {{9, 16}, {28, 35}, {47, 54}};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 2; ++j) EXPECT_EQ(result[i][j], expected[i][j]);
});

const Special tam("Add", "list of a transposed array", [](const Level& level) {
    float a[6], b[6], result[6];
    const float *listA[6], *listB[6];
    float* list[6];
    for (int e = 0; e < 6; ++e)
        a[e] = float(e), b[e] = float(10 * e), listA[e] = &a[e], listB[e] = &b[e], list[e] = &result[e];
    const auto add = get<decltype(keslAdd_tam_32f_P)>(level, "keslAdd_tam_32f_P");
    EXPECT_EQ(add(listA, 0, 4, listB, 0, list, 0, 4, 2, 3, 1), 0);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 2; ++j) EXPECT_EQ(result[i * 2 + j], a[j * 3 + i] + b[i * 2 + j]);
});

const Special nan("Add", "NaN and infinity pass", [](const Level& level) {
    const float a[] = {NAN, INFINITY, INFINITY, -INFINITY}, b[] = {1, 1, -INFINITY, -INFINITY};
    float result[4];
    EXPECT_EQ(get<decltype(keslAdd_mm_32f)>(level, "keslAdd_mm_32f")(a, 16, 4, b, 16, 4, result, 16, 4, 4, 1), 0);
    EXPECT_TRUE(std::isnan(result[0]) && std::isnan(result[2]));
    EXPECT_EQ(result[1], INFINITY);
    EXPECT_EQ(result[3], -INFINITY);
});

// Results of more than 32 MiB, of each of two threads, are written past the caches.
template <class T, class Sub, class Add> void large(Sub sub, Add add)
{
    constexpr int n = 3, size = sizeof(T), object = n * n * size;
    const int count = 72'000'000 / object + 5;
    const size_t all = size_t(n * n) * size_t(count);
    std::vector<T> a(all + 2), b(all + 2), result(all + 2, T(77)); // one element to each side
    for (size_t e = 0; e < all + 2; ++e) a[e] = T(e % 8191), b[e] = T(e % 127);
    const auto wrong = [&](auto expected) {
        size_t differing = 0;
        for (size_t e = 1; e <= all; ++e) differing += result[e] != expected(e);
        return differing + (result[0] != 77) + (result[all + 1] != 77);
    };
    for (int threads : {1, 2}) {
        setThreads({threads});
        ASSERT_EQ(sub(&a[1], object, n * size, size, &b[1], object, n * size, size, &result[1], object, n * size, size, n, n,
                      count),
                  Ok);
        EXPECT_EQ(wrong([&](size_t e) { return a[e] - b[e]; }), 0u);
        ASSERT_EQ(add(&a[1], object, n * size, size, &b[1], n * size, size, &result[1], object, n * size, size, n, n, count),
                  Ok);
        EXPECT_EQ(wrong([&](size_t e) { return a[e] + b[1 + (e - 1) % 9]; }), 0u);
    }
    setThreads({1});
}
const Special pastCaches("Add", "more than the caches hold", [](const Level& level) {
    large<float>(get<decltype(keslSub_mama_32f)>(level, "keslSub_mama_32f"),
                 get<decltype(keslAdd_mam_32f)>(level, "keslAdd_mam_32f"));
    large<double>(get<decltype(keslSub_mama_64f)>(level, "keslSub_mama_64f"),
                  get<decltype(keslAdd_mam_64f)>(level, "keslAdd_mam_64f"));
});
} // namespace
