// The first source times 2^k gives the results times a power of two, to the bit.
#include "suites.h"

#include <cmath>

namespace stacks {
namespace {

int powerOf(Degree degree, int k, int order, bool upper)
{
    switch (degree) {
    case Degree::zero: return 0;
    case Degree::one: return k;
    case Degree::inverse: return -k;
    case Degree::inverseSquare: return -2 * k;
    case Degree::root: return k / 2;
    case Degree::order: return order * k;
    case Degree::upper: return upper ? k : 0;
    }
    return 0;
}

template <class T> void multiply(Values& v, int order, const auto& power)
{
    (void)order;
    for (std::ptrdiff_t k = 0; k < v.count && !v.integers; ++k)
        for (int i = 0; i < v.rows; ++i)
            for (int j = 0; j < v.cols; ++j) v.at<T>(k, i, j) = std::ldexp(v.at<T>(k, i, j), power(i <= j));
}

} // namespace

void testScale(const Level& level, const Function& f)
{
    setThreads(1);
    int number = 0;
    for (const Sizes& sizes : shapes(f))
        forTypes([&](char type) {
            Random random(f.name + type, 500 + number++);
            const Problem p = makeProblem(f, type, sizes, 5, random);
            const Outcome expected = run(level, p);
            ASSERT_EQ(expected.fault, "") << describe(p);
            const int order = sizes.empty() ? 3 : int(sizes[0]);
            const bool root = f.degrees[0] == Degree::root;
            int most = f.degrees[0] == Degree::inverseSquare && type == 'f' ? 50 : 100;
            if (f.degrees[0] == Degree::order) most = std::min(100, (type == 'f' ? 100 : 900) / order);
            for (int k = -most; k <= most; k += root ? 2 : 1) {
                if (k % 7 != 0 && order > 12 && std::abs(k) < most - 4) continue; // some of them for large orders
                Problem scaled = p;
                Outcome wanted = expected;
                withType(type, [&]<class T>(T) {
                    multiply<T>(scaled.sources[0], order, [&](bool upper) {
                        return powerOf(f.data == Data::factors ? Degree::upper : Degree::one, k, order, upper);
                    });
                    for (size_t d = 0; d < wanted.results.size(); ++d)
                        multiply<T>(wanted.results[d], order,
                                    [&](bool upper) { return powerOf(f.degrees[d], k, order, upper); });
                });
                ASSERT_EQ(difference(wanted, run(level, scaled)), "") << describe(p) << ", times 2^" << k;
            }
        });
}

} // namespace stacks
