// Any number of threads gives the same bits, whatever fails where, in a child of fork too.
#include "suites.h"

#include <chrono>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace stacks {
namespace {

// Few objects again and again: the results repeat.
Problem repeated(const Problem& few, std::ptrdiff_t count)
{
    Problem p{few.function, few.type, few.sizes, count, {}};
    for (const Values& from : few.sources) {
        Values v(count, from.rows, from.cols, from.bytes, from.integers);
        for (size_t i = 0; i < v.data.size(); ++i) v.data[i] = from.data[i % from.data.size()];
        p.sources.push_back(v);
    }
    return p;
}

Outcome repeated(const Outcome& few, std::ptrdiff_t count)
{
    Outcome all;
    const std::ptrdiff_t period = few.results[0].count;
    for (std::ptrdiff_t k = 0; k < count; ++k) {
        all.info.push_back(few.info[size_t(k % period)]);
        all.status += all.info.back() != 0;
    }
    for (const Values& from : few.results) {
        Values v(count, from.rows, from.cols, from.bytes, from.integers);
        for (size_t i = 0; i < v.data.size(); ++i) v.data[i] = from.data[i % from.data.size()];
        all.results.push_back(v);
    }
    return all;
}

// Exit status of a child that does this; threads of the parent do not live in it.
int inChild(const auto& body)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(60); // instead of waiting for ever for a thread that is not there
        _exit(body() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

} // namespace

void testThreads(const Level& level, const Function& f)
{
    for (int order : {2, 3, 6, 13}) {
        Sizes sizes(f.sizes.size(), order);
        forTypes([&](char type) {
            Random random(f.name + type, 600 + order);
            Problem few = makeProblem(f, type, sizes, 101, random);
            for (Way way : waysToFail(f)) spoil(few, random.below(101), way, random);
            setThreads(1);
            const Outcome one = oneByOne(level, few);
            const std::ptrdiff_t count = 400000 / (order * order * (order > 6 ? 4 : 1)) + 17;
            const Problem p = repeated(few, count);
            const Outcome expected = repeated(one, count);
            for (int threads : {1, 2, 3, 8}) {
                setThreads(threads);
                const Layout& layout = threads == 3 ? planes : packed;
                const Placement placement{.layouts = std::vector<Layout>(f.sources.size() + f.destinations.size(), layout),
                                          .control = 0x5f80};
                const Outcome actual = run(level, p, placement);
                ASSERT_EQ(difference(expected, actual), "") << describe(p) << ", " << threads << " threads";
                ASSERT_EQ(actual.control, 0x5f80u);
            }
            if (order != 3) return;
            setThreads(2);
            ASSERT_EQ(inChild([&] { return difference(expected, run(level, p)).empty(); }), 0)
                << describe(p) << " after fork";
        });
    }
    setThreads(1);
}

} // namespace stacks
