// Many callers at once, signals during a call, and little stack.
#include "work.h"

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/time.h>
#include <thread>

namespace {

TEST(Threads, SixtyFourCallersAtOnce)
{
    askFor(2);
    std::atomic<int> wrong = 0;
    std::vector<std::thread> callers;
    for (int caller = 0; caller < 64; ++caller)
        callers.emplace_back([&wrong, caller] {
            Work work(libraries[caller % 2], caller % 3 ? few : 20000);
            for (int round = 0; round < (caller % 3 ? 2000 : 5); ++round) wrong += !work.isRight();
        });
    for (std::thread& caller : callers) caller.join();
    EXPECT_EQ(wrong, 0);
}

// ---- A handler that interrupts calls may make calls itself: the serial path has no lock and no state.
Work* inHandler;
std::atomic<int> handled, wrongInHandler;

TEST(Signals, HandlersMayCallToo)
{
    for (Library library : libraries)
        for (int threads : {1, 2}) {
            askFor(threads);
            Work small(library, few), large(library, many);
            ASSERT_TRUE(large.isRight());
            inHandler = &small, handled = 0, wrongInHandler = 0;
            struct sigaction action = {}, before = {};
            action.sa_handler = [](int) {
                static std::atomic<bool> busy =
                    false; // one at a time: several threads get signals, and there is one set of results
                if (busy.exchange(true)) return;
                ++handled, wrongInHandler += !inHandler->isRight();
                busy = false;
            };
            sigaction(SIGPROF, &action, &before);
            const itimerval often = {{0, 200}, {0, 200}};
            setitimer(ITIMER_PROF, &often, nullptr);
            int wrong = 0, rounds = 0;
            for (; rounds < 20 || (handled < 20 && rounds < 5000); ++rounds) wrong += !large.isRight();
            const itimerval never = {};
            setitimer(ITIMER_PROF, &never, nullptr);
            sigaction(SIGPROF, &before, nullptr);
            EXPECT_EQ(wrong, 0) << name(library);
            EXPECT_EQ(wrongInHandler, 0) << name(library);
            EXPECT_GE(handled, 20) << name(library) << " was hardly interrupted";
        }
}

// ---- The programs that measure stacks are those of each library; here a small thread makes a call of order 3.
bool isRightOnStackOf(size_t kibibytes, auto body)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    if (pthread_attr_setstacksize(&attributes, kibibytes << 10)) return false;
    struct Context {
        decltype(body)& call;
        bool right;
    } context{body, false};
    pthread_t thread;
    const auto start = [](void* c) -> void* {
        static_cast<Context*>(c)->right = static_cast<Context*>(c)->call();
        return nullptr;
    };
    const bool started = pthread_create(&thread, &attributes, start, &context) == 0;
    if (started) pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return started && context.right;
}

TEST(Stack, OfSixtyFourKibibytes)
{
    askFor(1);
    for (Library library : libraries)
        EXPECT_EQ(inChild([=] {
                      Work work(library, few);
                      return !isRightOnStackOf(64, [&] { return work.isRight(); });
                  }),
                  0)
            << name(library);
}

} // namespace
