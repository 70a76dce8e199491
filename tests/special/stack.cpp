// How much stack a call needs; the header says it.
#include "../special.h"

#include <algorithm>
#include <fstream>
#include <pthread.h>
#include <regex>
#include <sys/mman.h>

namespace {
constexpr size_t stackSize = 512 << 10;
constexpr char paint = 0x5A;

// The bytes of a painted stack that a thread changes.
template <class F> size_t stackOf(F body)
{
    static char* const stack =
        static_cast<char*>(mmap(nullptr, stackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    std::fill(stack, stack + stackSize, paint);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, stackSize);
    pthread_t thread;
    const auto start = [](void* f) -> void* { return (*static_cast<F*>(f))(), nullptr; };
    EXPECT_EQ(pthread_create(&thread, &attributes, start, &body), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return size_t(std::find_if(stack, stack + stackSize, [](char c) { return c != paint; }) - stack);
}

const Special stack("Stack", "as the header says", [](const Level& level) {
    size_t most = 0;
    std::string deepest;
    setThreads({1});
    const size_t nothing = stackSize - stackOf([] {});
    for (const auto& [name, f] : functions())
        for (int number = 0; number < cases(16); ++number) {
            Wish wish;
            wish.elements = number % 2 ? Elements::contiguous : Elements::any;
            Case c(f, *findReference(f), number, wish);
            const size_t used = stackSize - stackOf([&] { c.run(level); }) - nothing;
            if (used > most) most = used, deepest = c.name();
        }
    std::ifstream file(KESLMX_HEADER);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    std::smatch m;
    ASSERT_TRUE(std::regex_search(text, m, std::regex(R"(at most (\d+) KiB of stack)")));
#ifdef KESLMX_RELEASE // the frames of other builds are larger
    EXPECT_LE(most, size_t(std::stoi(m[1])) << 10) << deepest;
#endif
    std::printf("deepest stack: %zu bytes, %s\n", most, deepest.c_str());
});
} // namespace
