// Whatever rounding, flags and traps the caller has set: the same results, and the control word as it was.
#include "suites.h"

#include <cmath>

namespace stacks {
namespace {

constexpr unsigned flags = 0x3f, traps = 0x1f80, up = 0x4000, down = 0x2000, zero = 0x6000, flush = 0x8000, asZero = 0x40;
constexpr unsigned controls[] = {
    traps | up,    traps | down, traps | zero,          traps | flush | asZero, traps | flags, // all flags raised
    0 /* traps */, up | flush,   flush | asZero | zero, traps | asZero | 0x21,
};

void expectUntouched(const Level& level, const Problem& p)
{
    const Outcome expected = run(level, p);
    ASSERT_EQ(expected.fault, "") << describe(p);
    for (unsigned control : controls) {
        const Outcome actual = run(level, p, {.control = control});
        ASSERT_EQ(difference(expected, actual), "") << describe(p) << ", control word " << std::hex << control;
        ASSERT_EQ(actual.control, control) << describe(p);
    }
    ASSERT_EQ(expected.control, 0x1f80u) << describe(p) << " leaves flags";
}

} // namespace

void testEnvironment(const Level& level, const Function& f)
{
    setThreads(1);
    int number = 0;
    for (const Sizes& sizes : shapes(f))
        forTypes([&](char type) {
            Random random(f.name + type, 400 + number++);
            const Problem p = makeProblem(f, type, sizes, 1 + number % 19, random);
            ASSERT_NO_FATAL_FAILURE(expectUntouched(level, p));
            for (const int scale : {-1, 1}) { // numbers that vanish without subnormals, and those that overflow
                Problem extreme = p;
                withType(type, [&]<class T>(T) {
                    for (Values& v : extreme.sources)
                        for (std::ptrdiff_t e = 0; e < v.count * v.elements() && !v.integers; ++e) {
                            T& x = v.object<T>(0)[e];
                            x = std::ldexp(x, scale * (type == 'f' ? 120 : 1018) - (scale < 0 ? 12 : 0));
                        }
                });
                ASSERT_NO_FATAL_FAILURE(expectUntouched(level, extreme));
            }
            for (Way way : waysToFail(f)) { // nor do failures leave flags
                Problem bad = p;
                for (std::ptrdiff_t k = 0; k < p.count; k += 2) spoil(bad, k, way, random);
                ASSERT_NO_FATAL_FAILURE(expectUntouched(level, bad));
            }
        });
}

} // namespace stacks
