#include "suites.h"

namespace stacks {

void testLevels(const Level& level, const Function& f)
{
    setThreads(1);
    int number = 0;
    for (const Sizes& sizes : shapes(f))
        forTypes([&](char type) {
            for (long round = 0; round < cases(4); ++round) {
                Random random(f.name + type, 700 + number++);
                Problem p = makeProblem(f, type, sizes, 70, random);
                for (Way way : waysToFail(f)) spoil(p, random.below(70), way, random);
                const Outcome expected = run(levels().front(), p);
                ASSERT_EQ(expected.fault, "") << describe(p);
                ASSERT_EQ(difference(expected, run(level, p)), "") << describe(p) << " differs from level plain";
            }
        });
}

} // namespace stacks
