// How much stack a call needs; the header says it.
#include "../painted_stack.h"
#include "../special.h"

#include <fstream>
#include <regex>

namespace {
const Special stack("Stack", "as the header says", [](const Level& level) {
    size_t most = 0;
    std::string deepest;
    setThreads({1});
    const size_t nothing = stackOf([] {});
    for (const auto& [name, f] : functions())
        for (int number = 0; number < cases(16); ++number) {
            Wish wish;
            wish.elements = number % 2 ? Elements::contiguous : Elements::any;
            Case c(f, *findReference(f), number, wish);
            const size_t used = stackOf([&] { c.run(level); }) - nothing;
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
