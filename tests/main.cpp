// Registers the tests of every exported function at run time: <suite>_<level>.<function>.
#include "special.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace {
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

void enroll(const char* suite, const Level& level, const std::string& name, std::function<void()> body)
{
    testing::RegisterTest((std::string(suite) + "_" + level.name).c_str(), name.c_str(), nullptr, nullptr, __FILE__,
                          __LINE__, [=, &level]() -> Test* { return new Test(level, body); });
}

void enroll(const char* suite, Suite test, const Level& level, const std::string& function)
{
    enroll(suite, level, function, [=, &level] {
        const auto known = functions().find(function);
        ASSERT_NE(known, functions().end()) << function << " is exported, but not in the table of the tests";
        ASSERT_TRUE(find(level, function)) << function << " is not in " << level.path;
        test(known->second, level);
    });
}
} // namespace

int main(int argc, char** argv)
{
    // More threads than processors must not spin; the OpenMP runtime reads this before main.
    if (setenv("OMP_WAIT_POLICY", "passive", 0) == 0 && !std::getenv("KESLMX_TESTS_STARTED")) {
        setenv("KESLMX_TESTS_STARTED", "1", 1);
        execv("/proc/self/exe", argv);
    }
    testing::InitGoogleTest(&argc, argv);
    installTrap();
    strict = true;
    for (const Level& level : levels()) {
        for (const Special* special : specials())
            enroll("special", level, special->name, [special, &level] { special->run(level); });
        for (const std::string& function : exported()) {
            if (function == "keslGetLibVersion") continue;
            const auto known = functions().find(function);
            const bool array = known != functions().end() && known->second.array;
            enroll("values", testValues, level, function);
            enroll("checks", testChecks, level, function);
            enroll("thresholds", testThresholds, level, function);
            if (array) enroll("threads", testThreads, level, function);
            if (level.name != levels().front().name) enroll("levels", testLevels, level, function);
        }
    }
    const int result = RUN_ALL_TESTS();
    std::printf("%zu functions, %ld calls\n", exported().size(), callsMade);
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 0 || testing::GTEST_FLAG(list_tests)) return result;
    std::cerr << "no test has that name\n";
    return 1;
}
