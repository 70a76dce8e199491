// How much stack a call needs; the header says it.
#include "../painted_stack.h"
#include "suites.h"

#include <fstream>
#include <regex>

namespace stacks {
namespace {

size_t promised(const char* what)
{
    std::ifstream file(KESL_HEADER);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    std::smatch match;
    const bool found = std::regex_search(text, match, std::regex(std::string("(\\d+) KiB ") + what));
    EXPECT_TRUE(found) << what;
    return found ? size_t(std::stoi(match[1])) << 10 : 0;
}

} // namespace

void testStack(const Level& level, const Function& f)
{
    setThreads(1);
    const size_t nothing = stackOf([] {}), small = promised("for square"), most = promised("for others");
    for (const int order : {1, 2, 3, 4, 5, 6, 7, 16, 32})
        for (int round = 0; round < 2; ++round)
            forTypes([&](char type) {
                Random random(f.name + type, 800 + 2 * order + round);
                Sizes sizes(f.sizes.size(), order);
                for (size_t i = 1; i < sizes.size() && round; ++i) sizes[i] = random.between(1, order);
                const Problem p = makeProblem(f, type, sizes, random.between(1, 33), random);
                const size_t used = stackOf([&] { run(level, p); }) - nothing;
#ifdef KESLMX_RELEASE // the frames of other builds are larger
                const bool square = std::ranges::all_of(sizes, [&](std::ptrdiff_t n) { return n == order; });
                EXPECT_LE(used, square && order <= 4 && f.name != "lstsq" ? small : most) << describe(p);
#else
                EXPECT_GT(used, 0u) << describe(p) << small << most;
#endif
            });
}

} // namespace stacks
