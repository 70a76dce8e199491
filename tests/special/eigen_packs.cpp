// Eigenproblems of several objects at once: each object as in a call of its own, and nothing behind the first that fails.
#include "../packed.h"
#include "../special.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {
template <class T> bool same(T x, T y) // to the bit, but for the kind of a NaN
{
    return std::memcmp(&x, &y, sizeof x) == 0 || (std::isnan(x) && std::isnan(y));
}
template <class T> void asAlone(const Level& level, const char* operation, const char* layout, int n, int failing)
{
    const int count = 23, each = n * n; // no whole number of packs
    const Form form{"ma", layout};
    const std::string name = form.name<T>(operation);
    const bool symmetric = name.find("Sym") != std::string::npos;
    Dims dims;
    dims['n'] = n;
    std::vector<T> a(size_t(count * each));
    Random random(name, n);
    for (T& e : a) e = T(random.between(-99, 99)) / 8;
    const auto at = [&](int k, int i, int j) -> T& { return a[size_t(k * each + i * n + j)]; };
    for (int k = 0; symmetric && k < count; ++k)
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < i; ++j) at(k, i, j) = at(k, j, i);
    const T bad = symmetric ? T(0) : std::numeric_limits<T>::quiet_NaN(); // singular, or without convergence
    if (failing < count) std::fill_n(a.begin() + failing * each, each, bad);

    const auto together = callPacked<T>(level, name, dims, {a}, count, form.gap());
    int status = keslStatusOk;
    for (int k = 0; k < count; ++k) {
        const std::vector<T> one(a.begin() + k * each, a.begin() + (k + 1) * each);
        const auto alone = callPacked<T>(level, name, dims, {one}, 1, form.gap());
        for (size_t d = 0; d < together.results.size(); ++d) {
            std::vector<T> expected = alone.results[d];
            if (status != keslStatusOk) std::fill(expected.begin(), expected.end(), T(mark));
            const T* const got = together.results[d].data() + size_t(k) * expected.size();
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), got, same<T>))
                << name << " of order " << n << ", object " << k << ", destination " << d << ", failing " << failing;
        }
        if (status == keslStatusOk) status = alone.status;
    }
    ASSERT_EQ(together.status, status) << name << " of order " << n << ", failing " << failing;
    if (failing < count && n > 2) { ASSERT_NE(status, keslStatusOk) << name << " of order " << n; }
}

template <class T> void everyOrder(const Level& level)
{
    for (const char* operation : {"EigenValuesSym", "EigenValuesVectorsSym", "EigenValues", "EigenValuesVectors",
                                  "EigenValuesVectorsRight", "EigenValuesVectorsLeft"})
        for (int n : {1, 2, 7, 8, 11, 16, 17})
            for (const char* layout : {"", "2", "L", "P"})
                for (int failing : {0, 15, 16, 22, 23}) asAlone<T>(level, operation, layout, n, failing);
}
const Special packs("EigenPacks", "each object as alone", [](const Level& level) {
    everyOrder<float>(level);
    everyOrder<double>(level);
});
} // namespace
