// Teams: results, the number of regions and threads, scratch.
#include "tests.h"

#include <algorithm>
#include <memory>

namespace {
struct Team {
    int first, second; // answers of the companion within one call
};

// Sizes and a count whose measure is just at the threshold; count 0 if there are none that are affordable.
Wish largeEnough(const Function& f, const Reference& reference, Elements elements, Random& random, int count)
{
    Wish wish;
    wish.elements = elements, wish.plain = true;
    const int threshold = f.threshold(elements == Elements::contiguous);
    for (int size = count ? 1 : random.between(2, 7); size <= (count ? 150 : 7); size += 1 + size / 16) {
        for (char c : f.letters()) wish.dims[c] = size;
        std::vector<Value> values(f.arguments.size());
        for (size_t i = 0; i < values.size(); ++i) {
            const Argument& a = f.arguments[i];
            values[i].i = a.role == Role::size ? f.size(a.name, wish.dims) : 0;
        }
        const auto measure = [&](int n) {
            values[size_t(f.at("count"))].i = n;
            return f.measure(values);
        };
        const double cost = reference.cost ? reference.cost(wish.dims) : size * size;
        if (count) {
            if (measure(count) < threshold) continue;
            if (cost * count > 1e7) break;
            wish.count = count;
            return wish;
        }
        int n = 1;
        while (measure(n) < threshold) n += 1 + n / 64;
        while (n > 1 && measure(n - 1) >= threshold) --n;
        if (cost * n > 3e7) continue;
        wish.count = n;
        return wish;
    }
    return wish;
}

// The case of this number or of one of the next whose strides are as wished: a vector or a column may have others.
std::unique_ptr<Case> asWished(const Function& f, const Reference& reference, const Wish& wish, int& number)
{
    for (const int end = number + 40; number < end; ++number) {
        auto c = std::make_unique<Case>(f, reference, number, wish);
        if (f.layout == "P" || f.contiguous(c->values) == (wish.elements == Elements::contiguous)) return c;
    }
    return nullptr;
}

void run(const Function& f, const Level& level, const Reference& reference, const Wish& wish, Team team, int number)
{
    const std::unique_ptr<Case> made = asWished(f, reference, wish, number);
    ASSERT_TRUE(made) << f.name << ": no case has the strides that it shall have";
    Case& c = *made;
    const bool parallel =
        f.threaded() && f.measure(c.values) >= f.threshold(f.contiguous(c.values)) && !f.beforeMeasure(c.dims['n']);
    const bool region = parallel && team.first >= 2 && c.count >= team.first;
    setThreads({team.first, team.second});
    const int status = c.run(level);
    std::string problem = c.fault;
    const Watch seen = watch;
    // Never more threads than the first answer was.
    const int size = region ? std::min(team.first, team.second) : 1;
    const int threads = regionsAreSeen && seen.regions ? seen.team : size;
    if (problem.empty() && !c.expect(status, slicesOf(c.count, threads))) problem = "status " + std::to_string(status);
    if (problem.empty()) problem = c.compare(!region);
    const auto same = [&](const char* what, int got, int want) {
        if (problem.empty() && got != want)
            problem = std::string(what) + " " + std::to_string(got) + ", expected " + std::to_string(want);
    };
    same("questions for the number of threads:", seen.asked, parallel ? region ? 2 : 1 : 0);
    if (regionsAreSeen) same("parallel regions:", seen.regions, region);
    if (regionsAreSeen && region && !(team.first < team.second && seen.team == team.first)) // fewer is allowed
        same("threads:", seen.team, size);
    const int bytes = region && !f.scratch().empty() ? product(f.scratch(), c.dims) * f.elemSize * team.first : 0;
    same("blocks of scratch:", seen.blocks, bytes > 0);
    same("blocks of scratch freed:", seen.freed, bytes > 0);
    if (bytes) same("bytes of scratch:", int(seen.bytes), bytes);
    if (problem.empty() && bytes && c.usesBuffer() && status == Ok) { // each thread its own share, if nothing fails early
        const int share = bytes / team.first;
        for (int i = 0; i < team.first; ++i) {
            const auto begin = seen.used.begin() + i * share;
            const bool used = std::find(begin, begin + share, true) != begin + share;
            if (!used && reference.scratchAtWill && reference.scratchAtWill(c.dims)) continue;
            same(("scratch of thread " + std::to_string(i) + " used:").c_str(), used, i < threads);
        }
    }
    if (!problem.empty())
        FAIL() << "with " << team.first << ", then " << team.second << " threads"
               << Case(f, reference, number, wish).source(problem);
}
} // namespace

void testThreads(const Function& f, const Level& level)
{
    const Reference* reference = findReference(f);
    ASSERT_TRUE(reference) << "no reference for " << f.name << " in tests/reference";
    Random random(f.name + "threads", 0);
    if (!f.threaded()) { // for any count on the calling thread
        for (int number = 0; number < 4; ++number) {
            Wish wish;
            wish.count = 20000 + number, wish.plain = true;
            for (char c : f.letters()) wish.dims[c] = 3;
            Case c(f, *reference, number, wish);
            setThreads({4});
            EXPECT_TRUE(c.expect(c.run(level), {c.count})) << c.name() << c.fault;
            EXPECT_EQ(c.compare(true), "") << c.name();
            EXPECT_EQ(watch.asked, 0) << c.name();
        }
        return;
    }
    const Team teams[] = {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {4, 2}, {2, 4}};
    int number = 1000000; // away from the cases of the values
    for (Elements elements : {Elements::contiguous, Elements::general}) {
        if (f.layout == "P" && elements == Elements::contiguous) continue;
        for (int round = 0; round < cases(2); ++round)
            for (const Team& team : teams) {
                Wish wish = largeEnough(f, *reference, elements, random, 0);
                wish.failing = round % 2 ? 100 : 0;
                if (!wish.count || testing::Test::HasFatalFailure()) continue;
                run(f, level, *reference, wish, team, number += 40);
                Wish fewer = wish;
                if (--fewer.count > 0) run(f, level, *reference, fewer, team, number += 40);
            }
        // As many objects as threads, and one more or less.
        for (const Team& team : {Team{2, 2}, Team{3, 3}, Team{4, 4}})
            for (int count : {team.first - 1, team.first, team.first + 1}) {
                const Wish wish = largeEnough(f, *reference, elements, random, count);
                if (wish.count && !testing::Test::HasFatalFailure()) run(f, level, *reference, wish, team, number += 40);
            }
    }
}
