#include "tests.h"

#include <cstdlib>

int cases(int usual)
{
    const char* effort = std::getenv("KESLMX_TEST_EFFORT");
    return effort ? std::max(1, usual * std::atoi(effort) / 100) : usual;
}

bool chosen(int number)
{
    const char* only = std::getenv("KESLMX_TEST_CASE");
    return !only || std::atoi(only) == number;
}

void testValues(const Function& f, const Level& level)
{
    const Reference* reference = findReference(f);
    ASSERT_TRUE(reference) << "no reference for " << f.name << " in tests/reference";
    setThreads({1});
    for (int number = 0; number < cases(3000); ++number) {
        if (!chosen(number)) continue;
        Wish wish;
        wish.elements = number % 3 == 0 ? Elements::contiguous : Elements::any;
        Case c(f, *reference, number, wish);
        const int status = c.run(level);
        std::string problem = c.fault;
        if (problem.empty() && !c.expect(status, {c.count})) problem = "status " + std::to_string(status);
        if (problem.empty()) problem = c.compare(true);
        if (!problem.empty()) FAIL() << Case(f, *reference, number, wish).source(problem);
    }
}
