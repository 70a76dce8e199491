// Threaded calls in processes that hold a lock, unload the library or may not create threads.
#include <cstdio>
#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>
#include <keslmx.h>
#include <omp.h>
#include <pthread.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int count = 100000, order = 3, s2 = sizeof(float), s1 = order * s2, s0 = order * s1;

// The exit status of a child process, or -1 for one that hangs or dies.
template <class Body> int inChild(Body body)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (!child) {
        alarm(30);
        _exit(body());
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct Library {
    void* const handle = dlopen("libkeslmx.so.6.1", RTLD_NOW | RTLD_LOCAL);
    template <class F> F* get(const char* name) const { return reinterpret_cast<F*>(dlsym(handle, name)); }
};

struct Arrays {
    std::vector<float> a = std::vector<float>(count * order * order), dst = std::vector<float>(a.size());
    Arrays()
    {
        for (size_t i = 0; i < a.size(); ++i) a[i] = i % 9 % 4 ? 0.f : 2.f;
    }
};

// 0 if a threaded sum comes out right.
int adds(const Library& library)
{
    Arrays x;
    const float b[order * order] = {1};
    const auto add = library.get<decltype(keslAdd_mam_32f)>("keslAdd_mam_32f");
    const KeslStatus status = add(x.a.data(), s0, s1, s2, b, s1, s2, x.dst.data(), s0, s1, s2, order, order, count);
    for (size_t k = 0; k < count; ++k)
        if (x.dst[9 * k] != 3 || x.dst[9 * k + 4] != 2) return 2;
    return status == keslStatusOk ? 0 : 3;
}

// 0 if threads of a family that can fail come out right.
int inverts(const Library& library)
{
    Arrays x;
    float buffer[order * order + order];
    const auto invert = library.get<decltype(keslInvert_ma_32f)>("keslInvert_ma_32f");
    const KeslStatus status = invert(x.a.data(), s0, s1, s2, buffer, x.dst.data(), s0, s1, s2, order, count);
    for (size_t k = 0; k < count; ++k)
        if (x.dst[9 * k] != .5f) return 2;
    return status == keslStatusOk ? 0 : 3;
}

int threadsOfThisProcess()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "Threads:" && status >> word) return std::stoi(word);
    return 0;
}

// Asks for two threads; 0 if the companion takes it.
int askForTwo(const Library& library) { return library.get<int(int)>("keslCoreSetNumThreads")(2); }

TEST(Critical, InsideACriticalSectionOfTheProgram)
{
    EXPECT_EQ(inChild([] {
                  const Library library;
                  if (askForTwo(library)) return 4;
                  int result = 0;
#pragma omp critical
                  result = inverts(library);
#pragma omp critical(named)
                  result |= inverts(library);
                  return threadsOfThisProcess() < 2 ? 5 : result;
              }),
              0);
}

int loadsCallsAndCloses()
{
    const Library library;
    if (!library.handle || askForTwo(library)) return 4;
    const int result = adds(library);
    if (threadsOfThisProcess() < 2) return 5;
    if (dlclose(library.handle)) return 6;
    usleep(20000); // until the workers sleep, or look for work
    return result;
}

TEST(Unloading, AfterAThreadedCall)
{
    EXPECT_EQ(inChild([] {
                  for (int i = 0; i < 10; ++i)
                      if (const int result = loadsCallsAndCloses()) return result;
                  return 0;
              }),
              0);
}

TEST(Unloading, InThreadsThatEnd)
{
    EXPECT_EQ(inChild([] {
                  for (int i = 0; i < 10; ++i) {
                      pthread_t thread;
                      void* result = nullptr;
                      const auto body = [](void*) { return reinterpret_cast<void*>(std::intptr_t(loadsCallsAndCloses())); };
                      if (pthread_create(&thread, nullptr, body, nullptr)) return 7;
                      pthread_join(thread, &result);
                      if (result) return int(reinterpret_cast<std::intptr_t>(result));
                  }
                  return 0;
              }),
              0);
}

// Without a number that the program has set: the automatic one must see that there is no room.
TEST(Limits, NoThreadMayBeCreated)
{
    EXPECT_EQ(inChild([] {
                  const Library library;
                  const rlimit one = {1, 1};
                  if (!library.handle || setrlimit(RLIMIT_NPROC, &one)) return 4;
                  if (getuid() == 0 && (setgid(65534) || setuid(65534))) return 5; // root is not bound
                  pthread_t thread;
                  if (!pthread_create(
                          &thread, nullptr, [](void* p) { return p; }, nullptr))
                      return 6; // it would show nothing
                  return adds(library);
              }),
              0);
}

TEST(Limits, NoAddressSpaceForAStack)
{
    EXPECT_EQ(inChild([] {
                  const Library library;
                  Arrays inherited;
                  std::ifstream statm("/proc/self/statm");
                  rlim_t pages = 0;
                  statm >> pages;
                  const rlimit little = {pages * 4096 + (12 << 20), RLIM_INFINITY}; // for the arrays, and less than a stack
                  if (!library.handle || setrlimit(RLIMIT_AS, &little)) return 4;
                  return adds(library);
              }),
              0);
}

} // namespace
