// Nothing but the elements of the operands is read or written.
#include "../memory.h"
#include "suites.h"

#include <sys/mman.h>
#include <unistd.h>

namespace stacks {
namespace {

const std::vector<Layout> ways = {packed, columns, planes};

void testEdges(const Level& level, const Problem& p, const Outcome& expected)
{
    const size_t operands = p.sources.size() + expected.results.size();
    for (const Layout& layout : ways)
        for (bool atEnd : {true, false})
            for (int shift = 0; shift < 64 / p.bytes(); shift += p.count % 4 == 1 ? 1 : 5) { // each now and then
                const Placement placement{.layouts = std::vector<Layout>(operands, layout), .atEnd = atEnd, .shift = shift};
                const std::string wrong = difference(expected, run(level, p, placement));
                ASSERT_EQ(wrong, "") << describe(p) << ", " << layout.name << ", " << shift << " elements from the "
                                     << (atEnd ? "end" : "begin");
            }
    const Outcome silent = run(level, p, {.info = false});
    ASSERT_EQ(difference(expected, silent), "") << describe(p) << " without info";
}

// Every pair of a source and a destination of one shape may be the same storage.
void testInPlace(const Level& level, const Problem& p, const Outcome& expected)
{
    const size_t sources = p.sources.size();
    for (size_t d = 0; d < expected.results.size(); ++d)
        for (size_t s = 0; s < sources; ++s) {
            const Values &from = p.sources[s], &to = expected.results[d];
            const bool same = p.function->sources[s].extents.size() == p.function->destinations[d].extents.size() &&
                              from.rows == to.rows && from.cols == to.cols && from.integers == to.integers;
            if (!same) continue;
            for (const Layout& layout : layouts) {
                const Placement placement{.layouts = std::vector<Layout>(sources + expected.results.size(), layout),
                                          .inPlace = int(s),
                                          .replacing = int(d)};
                ASSERT_EQ(difference(expected, run(level, p, placement)), "")
                    << describe(p) << ", destination " << d << " in place of source " << s << ", " << layout.name;
            }
        }
}

// Objects further apart than 32 bits can tell. The memory in between does not exist.
void testFarApart(const Level& level, const Function& f, char type)
{
    constexpr std::ptrdiff_t apart = std::ptrdiff_t(5) << 30;
    const Sizes sizes(f.sizes.size(), 3);
    Random random(f.name, 7);
    const Problem p = makeProblem(f, type, sizes, 3, random);
    const Outcome expected = oneByOne(level, p);
    std::vector<std::ptrdiff_t> arguments(sizes);
    arguments.push_back(p.count);
    Outcome actual = expected;
    std::vector<char*> places;
    const auto pass = [&](const Operand& o, const Values& v, std::ptrdiff_t stride) {
        char* place = hugeArena(int(places.size())).begin + (stride < 0 ? 2 * apart : 0);
        places.push_back(place);
        const std::ptrdiff_t strides[3] = {stride, v.cols * v.bytes, v.bytes};
        arguments.push_back(reinterpret_cast<std::ptrdiff_t>(place));
        arguments.insert(arguments.end(), strides, strides + o.extents.size() + 1);
        return place;
    };
    const auto bytesOf = [](const Values& v) { return size_t(v.elements() * v.bytes); };
    for (size_t i = 0; i < f.sources.size(); ++i) {
        const std::ptrdiff_t stride = i % 2 ? -apart : apart;
        char* place = pass(f.sources[i], p.sources[i], stride);
        for (int k = 0; k < 3; ++k)
            std::memcpy(place + k * stride, p.sources[i].object<char>(0) + size_t(k) * bytesOf(p.sources[i]),
                        bytesOf(p.sources[i]));
    }
    for (size_t i = 0; i < f.destinations.size(); ++i) pass(f.destinations[i], expected.results[i], i % 2 ? apart : -apart);
    arguments.push_back(reinterpret_cast<std::ptrdiff_t>(actual.info.data()));
    ASSERT_TRUE(survives([&] { actual.status = callWith(level, f, type, arguments); })) << describe(p) << " far apart";
    for (size_t i = 0; i < f.destinations.size(); ++i)
        for (int k = 0; k < 3; ++k)
            std::memcpy(actual.results[i].object<char>(0) + size_t(k) * bytesOf(actual.results[i]),
                        places[f.sources.size() + i] + k * (i % 2 ? apart : -apart), bytesOf(actual.results[i]));
    ASSERT_EQ(difference(expected, actual), "") << describe(p) << " far apart";
}

// More objects than 32 bits can count: one number each, which all fall into the same two megabytes.
void testManyObjects(const Level& level)
{
    constexpr std::ptrdiff_t count = (std::ptrdiff_t(1) << 31) + 37, window = 2 << 20, whole = count * 4 + 2 * window;
    const int file = memfd_create("results", 0);
    ASSERT_EQ(ftruncate(file, window), 0);
    char* const begin =
        static_cast<char*>(mmap(nullptr, size_t(whole), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    ASSERT_NE(begin, MAP_FAILED);
    for (std::ptrdiff_t at = 0; at + window <= whole; at += window)
        ASSERT_NE(mmap(begin + at, window, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file, 0), MAP_FAILED);
    const float a = 3, b = 7;
    const auto number = [](const void* p) { return reinterpret_cast<std::ptrdiff_t>(p); };
    EXPECT_EQ(callWith(level, function("vecdot"), 'f', {1, count, number(&a), 0, 4, number(&b), 0, 4, number(begin), 4, 0}),
              0);
    const float* results = reinterpret_cast<float*>(begin);
    for (std::ptrdiff_t k = 0; k < window / 4; ++k) ASSERT_EQ(results[k], 21);
    std::memset(begin, 0, window);
    EXPECT_EQ(results[count - 1], 0);
    EXPECT_EQ(callWith(level, function("vecdot"), 'f',
                       {1, 37, number(&a), 0, 4, number(&b), 0, 4, number(&results[count - 37]), 4, 0}),
              0);
    EXPECT_EQ(results[count - 1], 21);
    munmap(begin, size_t(whole));
    close(file);
}

} // namespace

void testMemory(const Level& level, const Function& f)
{
    setThreads(1);
    int number = 0;
    for (const Sizes& sizes : shapes(f))
        forTypes([&](char type) {
            for (long round = 0; round < cases(6); ++round) {
                Random random(f.name + type, 200 + number++);
                const Problem p = makeProblem(f, type, sizes, 1 + inTurn(f.name, 36, number), random);
                const Outcome expected = oneByOne(level, p);
                ASSERT_EQ(expected.fault, "") << describe(p);
                ASSERT_NO_FATAL_FAILURE(testEdges(level, p, expected));
                if (round == 0) { ASSERT_NO_FATAL_FAILURE(testInPlace(level, p, expected)); }
            }
        });
    forTypes([&](char type) { testFarApart(level, f, type); });
    if (f.name == "vecdot" && cases(100) >= 100) testManyObjects(level);
}

} // namespace stacks
