// A call of keslmx that bytes choose: the function, and all that a case of the tests consists of. Each level leaves what the
// reference leaves, on one thread and in a team, and touches nothing else; bad arguments are answered by the status that
// the table has for them.
#include "../case.h"
#include "fuzz.h"

#include <climits>
#include <set>

namespace {

void expectGood(const Function& f, const Reference& reference, int number, const Wish& wish, const std::string& problem)
{
    if (!problem.empty()) report(Case(f, reference, number, wish).source(problem));
}

// One thread: the values of the reference, at every level.
void testValues(const Function& f, const Reference& reference, int number, const Wish& wish)
{
    for (const Level& level : levels()) {
        if (!level.supported) continue;
        setThreads({1});
        Case c(f, reference, number, wish);
        const int status = c.run(level);
        std::string problem = c.fault;
        if (problem.empty() && !c.expect(status, {c.count})) problem = "status " + std::to_string(status);
        if (problem.empty()) problem = c.compare(true);
        expectGood(f, reference, number, wish, problem.empty() ? "" : "at level " + level.name + ": " + problem);
    }
}

// Whatever number of threads: each has the slice that it shall have.
void testTeam(const Function& f, const Reference& reference, int number, const Wish& wish, int threads)
{
    Case c(f, reference, number, wish);
    const bool parallel = f.threaded() && f.measure(c.values) >= f.threshold(f.contiguous(c.values)) &&
                          !f.beforeMeasure(c.dims['n']) && c.count >= threads;
    setThreads({threads});
    const int status = c.run(levels().back().supported ? levels().back() : levels().front());
    std::string problem = c.fault;
    const int size = regionsAreSeen && watch.regions ? watch.team : parallel ? threads : 1;
    if (problem.empty() && !c.expect(status, slicesOf(c.count, size))) problem = "status " + std::to_string(status);
    if (problem.empty()) problem = c.compare(!parallel);
    expectGood(f, reference, number, wish, problem.empty() ? "" : std::to_string(threads) + " threads: " + problem);
}

// Arguments of a good call, of which some become odd and all pointers lead nowhere.
void testChecks(const Function& f, const Reference& reference, int number, const Wish& wish, Random& random)
{
    std::vector<Value> values = Case(f, reference, number, wish).values;
    const int e = f.elemSize,
              odd[] = {0, -1, 1, 2, 3, e, -e, e + 1, e / 2, 3 * e / 2, 64, INT_MIN, INT_MAX, INT_MAX - e + 1};
    for (size_t i = 0; i < values.size(); ++i)
        if (f.arguments[i].role == Role::pointer) values[i].p = forbidden();
    for (int faults = random.between(1, 5); faults > 0; --faults) {
        const size_t i = size_t(random.below(int(values.size())));
        if (f.arguments[i].role == Role::constant) continue;
        if (f.arguments[i].role == Role::pointer) values[i].p = nullptr;
        else values[i].i = random.pick(odd);
    }
    const int expected = f.expected(values);
    if (expected == Ok) return; // it would be done
    std::string text = f.name;
    for (size_t i = 0; i < values.size(); ++i)
        text += f.arguments[i].role == Role::pointer ? values[i].p ? " p" : " 0" : ' ' + std::to_string(values[i].i);
    for (const Level& level : levels()) {
        if (!level.supported) continue;
        setThreads({1});
        int status = Ok;
        if (!survives([&] { status = call(f, find(level, f.name), values); })) report(text + " touches its operands");
        if (status != expected) report(text + format(" answers %d, and not %d", status, expected));
    }
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("OMP_WAIT_POLICY", "passive", 0);
    installTrap();
    strict = true;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const std::vector<const Function*> all = [] {
        std::vector<const Function*> list;
        for (const auto& [name, f] : functions()) list.push_back(&f);
        return list;
    }();
    Random random(1);
    random.bytes = data, random.end = data + size;
    const Function& f = *all[size_t(random.next() % all.size())];
    const Reference& reference = *findReference(f);

    Wish wish;
    const int number = int(random.next() % 100000);
    const int kind = random.below(100);
    wish.elements = Elements(random.below(3));
    wish.failing = random.pick(std::vector<int>{0, 25, 100});
    if (random.chance(50))
        for (char c : f.letters()) wish.dims[c] = random.between(1, 9); // as far as the references go
    if (f.tallOnly() && wish.dims['w'] > wish.dims['h']) std::swap(wish.dims['w'], wish.dims['h']);
    if (random.chance(30)) wish.count = random.between(1, 100);
    wish.bytes = random.bytes, wish.end = random.end;
    if (kind < 15) testChecks(f, reference, number, wish, random);
    else if (kind < 30 && f.array) {
        wish.plain = true;
        if (wish.count) wish.count *= 20;
        testTeam(f, reference, number, wish, random.between(2, 4));
    } else testValues(f, reference, number, wish);
    return 0;
}
