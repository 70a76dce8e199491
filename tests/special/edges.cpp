// What a call does to the process around it: memory that it must not touch, floating-point control, scratch that is refused.
#include "../memory.h"
#include "../special.h"
#include "frame/team.h"

#include <array>
#include <cfenv>
#include <climits>
#include <cstring>
#include <random>
#include <sys/mman.h>
#include <xmmintrin.h>

namespace {

// Single pages, each between two that are inaccessible.
class Pages {
    char* memory;
    size_t bytes;

public:
    static constexpr int apart = 2 * pageSize;
    explicit Pages(int count) : bytes(size_t(count + 1) * apart)
    {
        memory = static_cast<char*>(mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        if (memory == MAP_FAILED) throw std::bad_alloc();
        for (int i = 0; i < count; ++i) mprotect(memory + i * apart, pageSize, PROT_READ | PROT_WRITE);
    }
    Pages(const Pages&) = delete;
    ~Pages() { munmap(memory, bytes); }
    char* end(int i) const { return memory + i * apart + pageSize; }
};

// ---- Nothing above the diagonal is read where rows have gaps. Row i ends with its element (i, i) at the end of a page.
const Special upper("CholeskyDecomp", "rows end at the diagonal", [](const Level& level) {
    constexpr int e = sizeof(float);
    for (int n = 3; n <= 6; ++n)
        for (int count : {1, 3, 4, 20}) {
            const Pages pages(n * count);
            const int stride1 = Pages::apart - e, stride0 = n * Pages::apart;
            char* const first = pages.end(0) - e; // element (0, 0); (i, i) lies i pages and i elements further
            std::vector<float*> objects;
            for (int k = 0; k < count; ++k) {
                objects.push_back(reinterpret_cast<float*>(first + k * stride0));
                for (int i = 0; i < n; ++i)
                    for (int j = 0; j <= i; ++j)
                        *reinterpret_cast<float*>(first + k * stride0 + i * stride1 + j * e) = i == j ? 4.f : .5f;
            }
            const float* const a = objects[0];
            std::vector<float> dst(size_t(count * n * n)), b(size_t(count * n), 1.f), x(b.size());
            const std::vector<const float*> sources(objects.begin(), objects.end());
            std::vector<float*> destinations;
            for (int k = 0; k < count; ++k) destinations.push_back(&dst[size_t(k * n * n)]);
            int status = PassesChecks;
            setThreads({1});
            const auto decompose = get<decltype(keslCholeskyDecomp_ma_32f)>(level, "keslCholeskyDecomp_ma_32f");
            EXPECT_TRUE(survives([&] {
                status = decompose(a, stride0, stride1, e, dst.data(), n * n * e, n * e, e, n, count);
            })) << n
                << " " << count;
            EXPECT_EQ(status, keslStatusOk);
            const auto decomposeL = get<decltype(keslCholeskyDecomp_ma_32f_L)>(level, "keslCholeskyDecomp_ma_32f_L");
            EXPECT_TRUE(survives([&] {
                status = decomposeL(sources.data(), 0, stride1, e, destinations.data(), 0, n * e, e, n, count);
            })) << n
                << " " << count;
            EXPECT_EQ(status, keslStatusOk);
            const auto solve = get<decltype(keslCholeskyBackSubst_mava_32f)>(level, "keslCholeskyBackSubst_mava_32f");
            EXPECT_TRUE(survives([&] {
                status = solve(a, stride0, stride1, e, b.data(), n * e, e, x.data(), n * e, e, n, count);
            })) << n
                << " " << count;
            EXPECT_EQ(status, keslStatusOk);
            const auto solveAll = get<decltype(keslCholeskyBackSubst_mva_32f)>(level, "keslCholeskyBackSubst_mva_32f");
            EXPECT_TRUE(survives([&] {
                status = solveAll(a, stride1, e, b.data(), n * e, e, x.data(), n * e, e, n, count);
            })) << n
                << " " << count;
            EXPECT_EQ(status, keslStatusOk);
        }
});

// ---- A null entry of a list behind an object that fails is not looked at, for any place of the two.
template <class Call> void nullBehindFailure(int status, Call call)
{
    constexpr int n = 3, objects = 40;
    for (int failing = 0; failing < objects; ++failing)
        for (int count : {failing + 2, objects + 1}) {
            std::vector<std::array<float, n * n>> a(size_t(objects + 1), {2, 1, 0, 1, 3, 1, 0, 1, 4}), dst(a.size());
            a[size_t(failing)] = {};
            std::vector<const float*> from(a.size());
            std::vector<float*> to(a.size());
            for (int k = 0; k <= failing; ++k) from[size_t(k)] = a[size_t(k)].data(), to[size_t(k)] = dst[size_t(k)].data();
            KeslStatus got = keslStatusOk;
            setThreads({1});
            ASSERT_TRUE(survives([&] { got = call(from.data(), to.data(), count); })) << failing << " of " << count;
            ASSERT_EQ(got, status) << failing << " of " << count;
        }
}
const Special behind("Lists", "null behind a failing object", [](const Level& level) {
    float buffer[200], values[200];
    int p[200];
    constexpr int n = 3, s1 = 12, s2 = 4;
    const auto lu = get<decltype(keslLUDecomp_ma_32f_L)>(level, "keslLUDecomp_ma_32f_L");
    nullBehindFailure(keslStatusSingular,
                      [&](auto from, auto to, int count) { return lu(from, 0, s1, s2, p, to, 0, s1, s2, n, count); });
    const auto invert = get<decltype(keslInvert_ma_32f_L)>(level, "keslInvert_ma_32f_L");
    nullBehindFailure(keslStatusSingular, [&](auto from, auto to, int count) {
        return invert(from, 0, s1, s2, buffer, to, 0, s1, s2, n, count);
    });
    const auto cholesky = get<decltype(keslCholeskyDecomp_ma_32f_L)>(level, "keslCholeskyDecomp_ma_32f_L");
    nullBehindFailure(keslStatusNotPositiveDefinite,
                      [&](auto from, auto to, int count) { return cholesky(from, 0, s1, s2, to, 0, s1, s2, n, count); });
    const auto qr = get<decltype(keslQRDecomp_ma_32f_L)>(level, "keslQRDecomp_ma_32f_L");
    nullBehindFailure(keslStatusDivideByZero, [&](auto from, auto to, int count) {
        return qr(from, 0, s1, s2, buffer, to, 0, s1, s2, n, n, count);
    });
    const auto symmetric = get<decltype(keslEigenValuesSym_ma_32f_L)>(level, "keslEigenValuesSym_ma_32f_L");
    nullBehindFailure(keslStatusSingular,
                      [&](auto from, auto, int count) { return symmetric(from, 0, s1, s2, buffer, values, n, count); });
    const auto vectors = get<decltype(keslEigenValuesVectorsSym_ma_32f_L)>(level, "keslEigenValuesVectorsSym_ma_32f_L");
    nullBehindFailure(keslStatusSingular, [&](auto from, auto to, int count) {
        return vectors(from, 0, s1, s2, buffer, to, 0, s1, s2, values, n, count);
    });
});

// ---- Workers of a team compute as the calling thread does, and nobody's control word stays changed.
std::vector<float> scaledInThreads(const Level& level, float x, float by)
{
    constexpr int count = 20000;
    std::vector<float> a(3 * count, x), dst(a.size());
    setThreads({4});
    const auto multiply = get<decltype(keslMul_vac_32f)>(level, "keslMul_vac_32f");
    EXPECT_EQ(multiply(a.data(), 12, 4, dst.data(), 12, 4, 3, count, by), keslStatusOk);
    EXPECT_EQ(watch.asked, 2) << "no team was used, so this test would show nothing";
    return dst;
}
const Special control("Threads", "compute under the caller's control word", [](const Level& level) {
    const float halfOfTiny = 1.5e-38f * .5f;
    for (float x : scaledInThreads(level, 1.5e-38f, .5f)) ASSERT_EQ(x, halfOfTiny);
    const unsigned own = _mm_getcsr();
    _mm_setcsr(own | _MM_FLUSH_ZERO_ON);
    const std::vector<float> flushed = scaledInThreads(level, 1.5e-38f, .5f);
    _mm_setcsr(own);
    for (float x : flushed) ASSERT_EQ(x, 0.f);
    std::fesetround(FE_UPWARD);
    volatile float close = 1 + 0x1p-23f; // its square lies just above a float
    const float up = close * close;
    const std::vector<float> rounded = scaledInThreads(level, close, close);
    std::fesetround(FE_TONEAREST);
    ASSERT_NE(up, close * close);
    for (float x : rounded) ASSERT_EQ(x, up);
    for (float x : scaledInThreads(level, 1.5e-38f, .5f)) ASSERT_EQ(x, halfOfTiny); // the workers have theirs back
});

// ---- Scratch of teams.
const Special refused("Threads", "scratch that is refused", [](const Level& level) {
    constexpr int n = 7, count = 2000, bytes = n * n * 4;
    std::vector<float> a(size_t(count * n * n)), inverse(a.size()), expected(a.size()), buffer(n * n + n);
    std::mt19937 random(7);
    std::uniform_real_distribution<float> number(-1, 1);
    for (size_t i = 0; i < a.size(); ++i) a[i] = number(random) + (i % (n * n) % (n + 1) == 0 ? 4.f : 0.f);
    const auto invert = get<decltype(keslInvert_ma_32f)>(level, "keslInvert_ma_32f");
    const auto run = [&](std::vector<float>& to) {
        return invert(a.data(), bytes, n * 4, 4, buffer.data(), to.data(), bytes, n * 4, 4, n, count);
    };
    setThreads({1});
    ASSERT_EQ(run(expected), keslStatusOk);
    setThreads({3});
    refuseBlocks = true;
    const KeslStatus status = run(inverse);
    refuseBlocks = false;
    EXPECT_EQ(status, keslStatusOk);
    EXPECT_EQ(watch.bytes, 3 * sizeof(float) * (n * n + n)); // it was asked for
    EXPECT_EQ(watch.regions, 0);
    EXPECT_EQ(watch.freed, 0);
    EXPECT_EQ(std::memcmp(inverse.data(), expected.data(), expected.size() * sizeof(float)), 0);

    // Its size is formed without overflow: 64 threads, order 8192. Nothing is behind the pointers, as nothing is allocated.
    setThreads({64});
    refuseBlocks = true;
    const auto det = get<decltype(keslDet_ma_32f)>(level, "keslDet_ma_32f");
    float* const nowhere = reinterpret_cast<float*>(forbidden());
    EXPECT_FALSE(survives([&] { det(nowhere, 4, 4, 4, 8192, nowhere, nowhere, 64); }));
    refuseBlocks = false;
    EXPECT_EQ(watch.bytes, 64 * sizeof(float) * (size_t(8192) * 8192 + 8192));
    EXPECT_EQ(kesl::allocated<double>(8192, SIZE_MAX / 8192), nullptr);
    EXPECT_EQ(kesl::allocated<double>(2, SIZE_MAX / 16), nullptr); // more than there can be
});

} // namespace
