// Destinations on sources, beyond what the cases of the values do.
#include "../special.h"

namespace {
// dst = a x + y with dst at each place of the memory that holds a, x and y.
template <class T> void gaxpyAnywhere(const Level& level, const char* name, int n, int gap)
{
    const int matrix = n * n * gap, vector = n * gap, stride2 = gap * int(sizeof(T));
    std::vector<T> start(size_t(matrix + 3 * vector));
    Random random(name, n);
    for (T& e : start) e = T(random.between(-9, 9));
    const auto gaxpy = [&](std::vector<T>& memory, T* dst) {
        T *const a = memory.data(), *const x = a + matrix, *const y = x + vector;
        const int row = n * stride2;
        if constexpr (sizeof(T) == 4)
            return get<decltype(keslGaxpy_mv_32f)>(level, name)(a, row, stride2, n, n, x, stride2, n, y, stride2, n, dst,
                                                                stride2);
        else
            return get<decltype(keslGaxpy_mv_64f)>(level, name)(a, row, stride2, n, n, x, stride2, n, y, stride2, n, dst,
                                                                stride2);
    };
    std::vector<T> apart = start, expected(size_t(vector), T(0));
    ASSERT_EQ(gaxpy(apart, expected.data()), keslStatusOk);
    for (int at = 0; at <= matrix + 2 * vector; ++at) {
        std::vector<T> memory = start;
        ASSERT_EQ(gaxpy(memory, memory.data() + at), keslStatusOk);
        for (int i = 0; i < n; ++i)
            ASSERT_EQ(memory[size_t(at + i * gap)], expected[size_t(i * gap)])
                << "order " << n << ", gap " << gap << ", at " << at;
    }
}

const Special gaxpy("InPlace", "Gaxpy_mv overlaps as it likes", [](const Level& level) {
    for (int n = 3; n <= 6; ++n)
        for (int gap : {1, 2}) {
            gaxpyAnywhere<float>(level, "keslGaxpy_mv_32f", n, gap);
            gaxpyAnywhere<double>(level, "keslGaxpy_mv_64f", n, gap);
        }
});

const Special gaxpyByLists("InPlace", "Gaxpy_mv of lists overlaps as it likes", [](const Level& level) {
    const auto f = get<decltype(keslGaxpy_mv_64f_P)>(level, "keslGaxpy_mv_64f_P");
    for (int n = 3; n <= 6; ++n) {
        const int elements = n * n + 2 * n;
        for (int at = 0; at <= elements - n; ++at) {
            std::vector<double> memory(static_cast<size_t>(elements)), apart(static_cast<size_t>(n));
            for (int e = 0; e < elements; ++e) memory[size_t(e)] = e % 7 - 3;
            std::vector<const double*> list;
            std::vector<double*> there, result;
            for (double& e : memory) list.push_back(&e);
            for (int i = 0; i < n; ++i) there.push_back(&memory[size_t(at + i)]), result.push_back(&apart[size_t(i)]);
            const double *const *const a = list.data(), *const *const x = a + n * n, *const *const y = x + n;
            ASSERT_EQ(f(a, 0, n, n, x, 0, n, y, 0, n, result.data(), 0), keslStatusOk);
            ASSERT_EQ(f(a, 0, n, n, x, 0, n, y, 0, n, there.data(), 0), keslStatusOk);
            for (int i = 0; i < n; ++i) ASSERT_EQ(*there[size_t(i)], apart[size_t(i)]) << "order " << n << ", at " << at;
        }
    }
});

// More than the caches hold goes past them.
const Special large("InPlace", "large arrays", [](const Level& level) {
    constexpr int count = 1000000, row = 12, object = 36;
    std::vector<float> a(9 * count), b(9 * count), result;
    for (int e = 0; e < 9 * count; ++e) a[size_t(e)] = float(e % 1001), b[size_t(e)] = float(e % 17);
    setThreads({1});
    const auto every = [&](const char* what, auto expected) {
        for (int e = 0; e < 9 * count; ++e)
            ASSERT_EQ(result[size_t(e)], expected(a[size_t(e)], b[size_t(e)], e % 9)) << what << " at " << e;
    };
    const auto add = get<decltype(keslAdd_mama_32f)>(level, "keslAdd_mama_32f");
    result = a;
    EXPECT_EQ(add(result.data(), object, row, 4, b.data(), object, row, 4, result.data(), object, row, 4, 3, 3, count), 0);
    every("the first source", [](float x, float y, int) { return x + y; });
    result = b;
    EXPECT_EQ(add(a.data(), object, row, 4, result.data(), object, row, 4, result.data(), object, row, 4, 3, 3, count), 0);
    every("the second source", [](float x, float y, int) { return x + y; });
    result = b;
    const auto addTransposed = get<decltype(keslAdd_tama_32f)>(level, "keslAdd_tama_32f");
    EXPECT_EQ(
        addTransposed(a.data(), object, row, 4, result.data(), object, row, 4, result.data(), object, row, 4, 3, 3, count),
        0);
    for (int e = 0; e < 9 * count; ++e)
        ASSERT_EQ(result[size_t(e)], a[size_t(e / 9 * 9 + e % 3 * 3 + e % 9 / 3)] + b[size_t(e)])
            << "beside a transposed one, at " << e;
    result = a;
    const float single[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    const auto sub = get<decltype(keslSub_mat_32f)>(level, "keslSub_mat_32f");
    EXPECT_EQ(sub(result.data(), object, row, 4, single, row, 4, result.data(), object, row, 4, 3, 3, count), 0);
    every("less a single matrix", [&](float x, float, int e) { return x - single[e % 3 * 3 + e / 3]; });
    result = a;
    const auto scale = get<decltype(keslMul_mac_32f)>(level, "keslMul_mac_32f");
    EXPECT_EQ(scale(result.data(), object, row, 4, result.data(), object, row, 4, 3, 3, count, 0.5f), 0);
    every("by a constant", [](float x, float, int) { return x * 0.5f; });
});
} // namespace
