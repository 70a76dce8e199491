// An object that fails has its info and NaN; all others have what they have without it.
#include "suites.h"

#include <algorithm>
#include <cmath>

namespace stacks {
namespace {

void expectFailures(const Level& level, const Problem& bad, const Outcome& expected, const Layout& layout,
                    const std::string& what)
{
    const size_t operands = bad.sources.size() + expected.results.size();
    const Outcome actual = run(level, bad, {.layouts = std::vector<Layout>(operands, layout)});
    ASSERT_EQ(difference(expected, actual), "") << describe(bad) << ", " << what << ", " << layout.name;
}

// NaN and infinities go the way of arithmetic, in their own object only.
void testArithmetic(const Level& level, const Problem& p, const Outcome& good, Random& random)
{
    for (std::ptrdiff_t k = 0; k < p.count; ++k)
        for (size_t source = 0; source < p.sources.size(); ++source) {
            if (p.function->sources[source].integers || (source == 0 && p.function->failures.nonFinite)) continue;
            Problem bad = p;
            Values& v = bad.sources[source];
            const int i = random.below(v.rows), j = p.function->name == "trace" ? i : random.below(v.cols);
            withType(p.type, [&]<class T>(T) { v.at<T>(k, i, j) = T(k % 2 ? NAN : INFINITY); });
            const Outcome one = run(level, bad.object(k));
            ASSERT_EQ(one.status, 0) << describe(bad);
            Outcome expected = good;
            bool seen = false;
            for (size_t d = 0; d < expected.results.size(); ++d) {
                Values& to = expected.results[d];
                std::memcpy(to.data.data() + k * to.elements() * to.bytes, one.results[d].data.data(),
                            one.results[d].data.size());
                withType(p.type, [&]<class T>(T) {
                    for (std::ptrdiff_t e = 0; e < to.elements(); ++e) seen |= !std::isfinite(to.object<T>(k)[e]);
                });
            }
            ASSERT_TRUE(seen) << describe(bad) << ": a NaN or an infinity got lost";
            ASSERT_NO_FATAL_FAILURE(expectFailures(level, bad, expected, packed, "not finite at " + std::to_string(k)));
        }
}

} // namespace

void testFailures(const Level& level, const Function& f)
{
    setThreads(1);
    int number = 0;
    for (const Sizes& sizes : shapes(f))
        forTypes([&](char type) {
            Random random(f.name + type, 300 + number++);
            // Two packs of sixteen and seven objects, with large orders one: remainders of packs of eight and of four have three at least.
            const bool large = !sizes.empty() && *std::max_element(sizes.begin(), sizes.end()) > 12;
            const Problem p = makeProblem(f, type, sizes, large ? 23 : 39, random);
            const Outcome good = oneByOne(level, p);
            ASSERT_EQ(good.status, 0) << describe(p);
            ASSERT_NO_FATAL_FAILURE(testArithmetic(level, p, good, random));
            const std::vector<Way> ways = waysToFail(f);
            if (ways.empty()) return;
            for (Way way : ways)
                for (std::ptrdiff_t k = 0; k < p.count; ++k) {
                    Problem bad = p;
                    Outcome expected = good;
                    fail(expected, k, spoil(bad, k, way, random));
                    const Layout& layout = k % 3 == 0 ? packed : k % 3 == 1 ? columns : planes;
                    ASSERT_NO_FATAL_FAILURE(
                        expectFailures(level, bad, expected, layout, std::string(name(way)) + " at " + std::to_string(k)));
                }
            for (int percent : {10, 50, 100}) { // many at once
                Problem bad = p;
                Outcome expected = good;
                for (std::ptrdiff_t k = 0; k < p.count; ++k)
                    if (random.chance(percent)) fail(expected, k, spoil(bad, k, random.pick(ways), random));
                ASSERT_NO_FATAL_FAILURE(expectFailures(level, bad, expected, packed, "several failures"));
            }
        });
}

} // namespace stacks
