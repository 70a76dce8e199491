// Registers the tests of every exported function at run time: <suite>_<level>.<function>.
#include "tests.h"

#include <gtest/gtest.h>

namespace
{
class Test : public testing::Test
{
public:
    Test(Suite s, const Level& l, const std::string& name) : suite(s), level(l), function(name) {}
    void TestBody() override
    {
        if (!level.supported) GTEST_SKIP() << "level " << level.name << ": not supported by this processor";
        const auto known = functions().find(function);
        ASSERT_NE(known, functions().end()) << function << " is exported, but not in the table of the tests";
        ASSERT_TRUE(find(level, function)) << function << " is not in " << level.path;
        suite(known->second, level);
    }

private:
    const Suite suite;
    const Level& level;
    const std::string function;
};

void enroll(const char* suite, Suite run, const Level& level, const std::string& function)
{
    const std::string name = std::string(suite) + "_" + level.name;
    testing::RegisterTest(name.c_str(), function.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                          [=, &level]() -> Test* { return new Test(run, level, function); });
}
} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    installTrap();
    for (const Level& level : levels())
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
    return RUN_ALL_TESTS();
}
