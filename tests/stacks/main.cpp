// Registers the tests of every function at run time: <suite>_<level>.<function>. With --accuracy it prints the worst ratios
// instead, as the tables of docs/accuracy.md, or those of the file of keslmx that is named behind it.
#include "../memory.h"
#include "accuracy.h"
#include "mx.h"
#include "suites.h"

#include <functional>
#include <iostream>

namespace {
using namespace stacks;

class Test : public testing::Test {
public:
    Test(const Level& l, std::function<void()> b) : level(l), body(std::move(b)) {}
    void TestBody() override
    {
        if (!level.supported) GTEST_SKIP() << "level " << level.name << " is not supported by this processor";
        body();
    }

private:
    const Level& level;
    const std::function<void()> body;
};

struct Named {
    const char* name;
    Suite suite;
    bool once = false; // at the best level only: all give the same bits
};
constexpr Named suites[] = {{"layouts", testLayouts},   {"memory", testMemory},           {"arguments", testArguments},
                            {"failures", testFailures}, {"environment", testEnvironment}, {"scale", testScale},
                            {"threads", testThreads},   {"levels", testLevels},           {"sums", testSums},
                            {"stack", testStack},       {"accuracy", testAccuracy, true}, {"random", testRandom, true}};

const Level& best()
{
    const Level* result = &plain();
    for (const Level& level : levels())
        if (level.supported) result = &level;
    return *result;
}

void enroll(const Named& named, const Level& level, const Function& f)
{
    const std::string suite = named.name + (named.once ? std::string() : "_" + level.name);
    testing::RegisterTest(
        suite.c_str(), f.name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
        [=, &level, &f]() -> testing::Test* { return new Test(level, [=, &level, &f] { named.suite(level, f); }); });
}
} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    installTrap();
    if (argc > 1 && std::string(argv[1]) == "--accuracy") {
        setThreads(1);
        if (argc > 2) openMx(argv[2]), printMx(std::cout);
        else printPage(std::cout, best());
        return 0;
    }
    for (const Named& named : suites)
        for (const Function& f : functions()) {
            if (named.once) enroll(named, best(), f);
            else
                for (const Level& level : levels()) enroll(named, level, f);
        }
    const int result = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 0 || testing::GTEST_FLAG(list_tests)) return result;
    std::cerr << "no test has that name\n";
    return 1;
}
