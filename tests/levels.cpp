#include "tests.h"

void testLevels(const Function& f, const Level& level)
{
    const Reference* reference = findReference(f);
    ASSERT_TRUE(reference) << "no reference for " << f.name << " in tests/reference";
    setThreads({1});
    for (int number = 2000000; number < 2000000 + cases(300); ++number) {
        if (!chosen(number)) continue;
        Case c(f, *reference, number);
        const int plain = c.run(levels().front());
        std::string problem = c.fault;
        const std::vector<char> results = c.results();
        const int status = c.run(level);
        if (problem.empty()) problem = c.fault;
        if (problem.empty() && (status != plain || c.results() != results))
            problem = "differs from level " + levels().front().name;
        if (!problem.empty()) FAIL() << Case(f, *reference, number).source(problem);
    }
}
