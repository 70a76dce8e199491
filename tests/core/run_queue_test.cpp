#include "core/run_queue.h"
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

TEST(RunQueue, WhatIsRunnableBesideTheCaller)
{
    namespace fs = std::filesystem;
    std::string root = fs::temp_directory_path() / "keslcorex.XXXXXX";
    ASSERT_NE(mkdtemp(root.data()), nullptr);
    EXPECT_EQ(kesl::otherRunnableThreads(root.c_str()), 0) << "no file";
    fs::create_directories(root + "/proc");
    // clang-format off
    const std::pair<const char*, int> cases[] = {
        {"2.96 2.03 2.06 5/158 16945\n", 4}, {"0.00 0.00 0.00 1/90 7\n", 0}, {"0.00 0.01 0.05 0/90 7\n", 0},
        {"123.45 100.00 99.99 129/20158 4194304\n", 128}, {"1.0 2.0 3.0 99999999999/1 1\n", 2147483647},
        {"", 0}, {"nonsense", 0}, {"1 2", 0}, {"1.0 2.0 3.0 ", 0}, {"1.0 2.0 3.0 -7/1 1\n", 0},
    };
    // clang-format on
    for (const auto& [text, expected] : cases) {
        std::ofstream(root + "/proc/loadavg") << text;
        EXPECT_EQ(kesl::otherRunnableThreads(root.c_str()), expected) << text;
    }
    EXPECT_EQ(kesl::otherRunnableThreads(std::string(500, 'x').c_str()), 0);
    fs::remove_all(root);
}

} // namespace
