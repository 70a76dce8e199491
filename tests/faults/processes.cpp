// Fork and dlclose at any time.
#include "work.h"

#include <atomic>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace {

int isWrong(Library library, int count)
{
    Work work(library, count);
    return !work.isRight();
}

TEST(Fork, BeforeAndAfterThreads)
{
    for (Library library : libraries)
        EXPECT_EQ(inChild([=] {
                      askFor(2);
                      if (inChild([=] { return isWrong(library, many); })) return 2; // the parent has no threads yet
                      if (isWrong(library, many)) return 3;
                      if (inChild([=] { return isWrong(library, many); })) return 4; // threads of the parent are not there
                      return isWrong(library, many);
                  }),
                  0)
            << name(library);
}

TEST(Fork, WhileAnotherThreadCalls)
{
    for (Library library : libraries)
        EXPECT_EQ(inChild([=] {
                      askFor(2);
                      std::atomic<bool> stop = false;
                      std::atomic<int> wrong = 0;
                      Work here(library, many), there(library, many);
                      std::thread caller([&] {
                          while (!stop) wrong += !here.isRight();
                      });
                      int worst = 0;
                      for (int i = 0; i < 30; ++i) worst = std::max(worst, inChild([&] { return int(!there.isRight()); }));
                      stop = true;
                      caller.join();
                      return worst + wrong;
                  }),
                  0)
            << name(library);
}

// It stays in memory, so that neither memory nor threads can become more with each time.
TEST(Loading, AThousandTimes)
{
    for (const char* file : {"libkesl.so.1", "libkeslmx.so.6.1", "libkeslcorex64.so.6.1"}) {
        const auto once = [file] {
            void* const handle = dlopen(file, RTLD_NOW | RTLD_LOCAL);
            return handle && dlclose(handle) == 0;
        };
        for (int i = 0; i < 1000; ++i) ASSERT_TRUE(once()) << file << ' ' << i;
    }
    for (Library library : libraries) EXPECT_EQ(isWrong(library, many), 0);
}

} // namespace
