// Floating-point exceptions: which calls raise any, and that none traps on ordinary data.
#include "../packed.h"
#include "../special.h"

#include <cfenv>
#include <cstring>
#include <xmmintrin.h>

namespace {
// Nothing traps, and no flag is left: with every exception unmasked, a call on data that need different numbers of
// steps. (The values suite does the same for all functions.)
const Special exceptions("EigenValuesSym", "no trap and no flag", [](const Level& level) {
    std::vector<float> a, values(48), buffer(9);
    for (int k = 0; k < 16; ++k) {
        const float x = k % 3 ? 1.f : 0.f;
        a.insert(a.end(), {4.f + float(k), x, .5f * x, x, 3, .25f * x, .5f * x, .25f * x, 2});
    }
    const auto symmetric = get<decltype(keslEigenValuesSym_ma_32f)>(level, "keslEigenValuesSym_ma_32f");
    for (int count : {1, 4, 16}) {
        setThreads({1});
        const unsigned own = _mm_getcsr(), strict = own & ~unsigned(_MM_MASK_MASK | _MM_EXCEPT_MASK);
        unsigned after = 0;
        int status = PassesChecks;
        EXPECT_TRUE(survives([&] {
            _mm_setcsr(strict);
            status = symmetric(a.data(), 36, 12, 4, buffer.data(), values.data(), 3, count);
            after = _mm_getcsr();
            _mm_setcsr(own);
        })) << count;
        EXPECT_EQ(status, keslStatusOk);
        EXPECT_EQ(after, strict);
    }
});

// Element by element: nothing is raised but by the operations on elements. With every exception unmasked, exact sums and
// products pass, between elements and behind the end of which there are NaN; one that is too large sets its flags.
const Special elements("Element by element", "exceptions of its own operations alone", [](const Level& level) {
    const auto addMatrix = get<decltype(keslAdd_mam_32f)>(level, "keslAdd_mam_32f");
    const auto addConstants = get<decltype(keslAdd_vaca_32f)>(level, "keslAdd_vaca_32f");
    const auto scale = get<decltype(keslMul_vac_32f)>(level, "keslMul_vac_32f");
    const auto combine = get<decltype(keslSaxpy_vav_32f)>(level, "keslSaxpy_vav_32f");
    setThreads({1});
    for (int gap : {0, 4})
        for (int n = 3; n <= 6; ++n)
            for (int count : {1, 3, 4, 17, 50}) {
                const int vector = 4 * n + gap, matrix = 4 * n * n + gap;
                const auto array = [&](int each, int stride) {
                    std::vector<float> a(size_t(count * stride / 4 + 16), std::numeric_limits<float>::signaling_NaN());
                    for (int k = 0; k < count; ++k)
                        for (int e = 0; e < each; ++e) a[size_t(k * stride / 4 + e)] = float(e + 1);
                    return a;
                };
                const auto matrices = array(n * n, matrix), vectors = array(n, vector), constants = array(1, 4 + gap);
                std::vector<float> to(matrices);
                const unsigned own = _mm_getcsr(), strictly = own & ~unsigned(_MM_MASK_MASK | _MM_EXCEPT_MASK);
                const bool survived = survives([&] {
                    _mm_setcsr(strictly);
                    addMatrix(matrices.data(), matrix, 4 * n, 4, matrices.data(), 4 * n, 4, to.data(), matrix, 4 * n, 4, n,
                              n, count);
                    addConstants(vectors.data(), vector, 4, constants.data(), 4 + gap, to.data(), vector, 4, n, count);
                    scale(vectors.data(), vector, 4, to.data(), vector, 4, n, count, 2);
                    combine(vectors.data(), vector, 4, vectors.data(), 4, to.data(), vector, 4, n, count, 2);
                });
                const unsigned after = _mm_getcsr();
                _mm_setcsr(own);
                EXPECT_TRUE(survived) << "order " << n << ", count " << count << ", gap " << gap;
                EXPECT_EQ(after & ~unsigned(_MM_EXCEPT_MASK), strictly & ~unsigned(_MM_EXCEPT_MASK));
                EXPECT_EQ(after & _MM_EXCEPT_MASK, 0u);
            }
    const float large[3] = {1, 3e38f, 2};
    float to[3];
    std::feclearexcept(FE_ALL_EXCEPT);
    scale(large, 12, 4, to, 12, 4, 3, 1, 2);
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), FE_OVERFLOW | FE_INEXACT);
    std::feclearexcept(FE_ALL_EXCEPT);
});

// Ordinary data for any family: matrices that are symmetric, positive definite and far from singular.
template <class T> std::vector<T> ordinary(const Operand& o, const Dims& dims)
{
    const int rows = o.storedRows(dims), columns = o.storedColumns(dims);
    std::vector<T> x(size_t(rows * columns));
    if (o.integer) // rows that stay where they are
        for (int i = 0; i < columns; ++i) std::memcpy(reinterpret_cast<char*>(x.data()) + i * int(sizeof i), &i, sizeof i);
    else
        for (int i = 0; i < rows * columns; ++i)
            x[size_t(i)] = T(i / columns == i % columns ? 3 * columns : 1.0 / (1 + std::abs(i / columns - i % columns)));
    return x;
}

template <class T> bool trapsOnOrdinaryData(const Level& level, const Function& f, int n, int gap)
{
    Dims dims;
    for (char letter : f.letters()) dims[letter] = n;
    std::vector<std::vector<T>> sources;
    for (const Operand& o : f.operands)
        if (!o.destination && !o.scratch) sources.push_back(ordinary<T>(o, dims));
    const unsigned own = _mm_getcsr();
    const bool survived = survives([&] {
        _mm_setcsr(own & ~unsigned(_MM_MASK_INVALID | _MM_MASK_DIV_ZERO | _MM_MASK_OVERFLOW | _MM_EXCEPT_MASK));
        EXPECT_EQ(callPacked<T>(level, f.name, dims, sources, 1, gap).status, Ok) << f.name << ", order " << n;
    });
    _mm_setcsr(own);
    return !survived;
}

// One object: with everything but inexact and tiny results unmasked, a call of any function passes.
const Special one("One object", "no trap on ordinary data", [](const Level& level) {
    int calls = 0;
    for (const auto& [name, f] : functions())
        for (int n = 1; n <= 8; ++n)
            for (int gap : {1, 2}) {
                if (f.letters().empty() && n > 1) continue;
                ++calls;
                EXPECT_FALSE(f.elemSize == 4 ? trapsOnOrdinaryData<float>(level, f, n, gap)
                                             : trapsOnOrdinaryData<double>(level, f, n, gap))
                    << name << ", order " << n << ", gap " << gap;
            }
    EXPECT_GT(calls, 10000);
});
} // namespace
