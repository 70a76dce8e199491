// A call of kesl that bytes choose: function, type, sizes, count, data, layout and place of each operand, threads, control
// word. Whatever they choose, each level gives what the plain one gives for each object by itself, and touches nothing else.
#include "../memory.h"
#include "../stacks/problems.h"
#include "fuzz.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace {
using namespace stacks;

Sizes sizesFrom(const Function& f, Random& random)
{
    Sizes sizes;
    for (size_t i = 0; i < f.sizes.size(); ++i) {
        const bool large = random.chance(20);
        sizes.push_back(random.between(1, large ? f.small[i] ? limit : 40 : 9));
    }
    if (f.tall && sizes[0] < sizes[1]) std::swap(sizes[0], sizes[1]);
    return sizes;
}

template <class T> T oddNumber(Random& random)
{
    return random.chance(50) ? special<T>(random) : std::ldexp(T(random.between(-128, 127)), random.between(-120, 120));
}

// Numbers as other tests have them, of which some become odd, whole objects get another scale, and some objects fail.
Problem problemFrom(const Function& f, char type, Random& random)
{
    const int wanted = random.chance(4) ? random.between(1, 3000) : random.between(1, 40);
    const Sizes sizes = sizesFrom(f, random);
    int largest = 3; // kesl_cross has no sizes
    for (const std::ptrdiff_t n : sizes) largest = std::max(largest, int(n));
    const int count = std::min(wanted, (1 << 20) / (largest * largest)); // four times the bytes with gaps, of 64 MiB
    Problem p = makeProblem(f, type, sizes, count, random);
    withType(type, [&]<class T>(T) {
        for (Values& v : p.sources) {
            const std::ptrdiff_t all = v.count * v.elements();
            if (v.integers) continue;
            const int scale = random.chance(25) ? random.between(-120, 120) * (type == 'd' ? 8 : 1) : 0;
            const bool whole = random.chance(25);
            for (std::ptrdiff_t e = 0; e < all && (scale || whole); ++e) {
                T& x = v.object<T>(0)[e];
                x = std::ldexp(whole ? std::rint(2 * x) : x, scale);
            }
            for (int odd = random.chance(30) ? random.below(12) : 0; odd > 0; --odd)
                v.object<T>(0)[random.below(int(all))] = oddNumber<T>(random);
        }
    });
    for (Way way : waysToFail(f))
        if (random.chance(15)) spoil(p, random.below(count), way, random);
    return p;
}

Layout layoutFrom(Random& random)
{
    Layout layout = random.pick(layouts);
    if (random.chance(50)) return layout;
    const std::vector<int> axes = random.permutation(3);
    layout.name = "any";
    for (int i = 0; i < 3; ++i) {
        layout.axes[i] = axes[size_t(i)];
        layout.gaps[i] = random.chance(30) ? random.below(4) : 0;
        layout.backwards[i] = random.chance(20);
    }
    return layout;
}

Placement placementFrom(Problem& p, Random& random)
{
    const Function& f = *p.function;
    const size_t sources = f.sources.size(), operands = sources + f.destinations.size();
    Placement placement;
    const bool alike = random.chance(50);
    for (size_t i = 0; i < operands; ++i)
        placement.layouts.push_back(alike && i ? placement.layouts[0] : layoutFrom(random));
    placement.atEnd = random.chance(70);
    placement.shift = random.below(20);
    placement.info = random.chance(80);
    const unsigned rounding = unsigned(random.below(4)) << 13, flush = random.chance(20) ? 0x8040 : 0,
                   traps = random.chance(20) ? 0 : 0x1f80, flags = random.chance(20) && traps ? 0x3f : 0;
    placement.control = rounding | flush | traps | flags;
    if (random.chance(20)) { // in place
        const size_t s = size_t(random.below(int(sources))), d = size_t(random.below(int(operands - sources)));
        const Operand &from = f.sources[s], &to = f.destinations[d];
        const bool same = from.extents.size() == to.extents.size() && rows(f, p.sizes, from) == rows(f, p.sizes, to) &&
                          cols(f, p.sizes, from) == cols(f, p.sizes, to) && from.integers == to.integers;
        const bool small = std::ranges::all_of(p.sizes, [](std::ptrdiff_t n) { return n <= limit; });
        if (same && small) {
            placement.inPlace = int(s), placement.replacing = int(d);
            placement.layouts[sources + d] = placement.layouts[s];
            return placement;
        }
    }
    for (size_t i = 0; i < sources && random.chance(25); ++i) {
        placement.shared.push_back(unsigned(random.below(8)));
        flatten(p.sources[i], placement.shared[i]);
    }
    return placement;
}

// What holds of every outcome by itself.
std::string inconsistency(const Problem& p, const Outcome& o)
{
    const Function& f = *p.function;
    if (!o.fault.empty()) return o.fault;
    if (std::count_if(o.info.begin(), o.info.end(), [](int i) { return i != 0; }) != o.status) return "status against infos";
    for (std::ptrdiff_t k = 0; k < p.count; ++k) {
        const int info = o.info[size_t(k)];
        if (info < -1) return "info of no meaning";
        if (info && !(f.failures.nonFinite || f.failures.singular)) return "a failure of what cannot fail";
        for (const Values& v : o.results)
            for (std::ptrdiff_t e = 0; e < v.elements() && info; ++e) {
                const bool failed = v.integers     ? v.object<int>(k)[e] == 0
                                    : v.bytes == 4 ? std::isnan(v.object<float>(k)[e])
                                                   : std::isnan(v.object<double>(k)[e]);
                if (!failed) return "a number in an object that failed";
            }
    }
    return "";
}

void testCall(const Function& f, char type, Random& random)
{
    Problem p = problemFrom(f, type, random);
    const Placement placement = placementFrom(p, random);
    const int threads = random.pick(std::vector<int>{1, 2, 3, 8});
    setThreads(1);
    const Outcome expected = p.count > 40 ? run(plain(), p) : oneByOne(plain(), p);
    const std::string wrong = inconsistency(p, expected);
    if (!wrong.empty()) report(describe(p) + ": " + wrong);
    setThreads(threads);
    for (const Level& level : levels()) {
        if (!level.supported) continue;
        const Outcome actual = run(level, p, placement);
        const std::string problem = difference(expected, actual);
        if (!problem.empty()) report(describe(p) + " at level " + level.name + ": " + problem);
        if (actual.control != placement.control) report(describe(p) + " leaves another control word");
    }
}

// The number of the first argument that is not acceptable, negated; 0 if there is none.
std::ptrdiff_t statusOf(const Function& f, char type, const std::vector<std::ptrdiff_t>& values)
{
    const std::vector<Argument> list = arguments(f);
    const Sizes sizes(values.begin(), values.begin() + std::ptrdiff_t(f.sizes.size()));
    const std::ptrdiff_t count = values[sizes.size()];
    bool unwanted = false; // a destination that may be null, and is
    for (size_t i = 0; i < list.size(); ++i) {
        const Argument& a = list[i];
        const std::ptrdiff_t value = values[i], fault = -std::ptrdiff_t(i) - 1;
        if (a.role == Argument::count && value < 0) return fault;
        if (a.role == Argument::size) {
            if (value < 0 || (f.small[size_t(a.index)] && value > limit)) return fault;
            if (f.tall && a.index == 1 && value > sizes[0]) return fault;
        }
        if (a.role != Argument::pointer && a.role != Argument::stride) continue;
        const size_t sources = f.sources.size(), index = size_t(a.index);
        const bool destination = index >= sources;
        const Operand& o = destination ? f.destinations[index - sources] : f.sources[index];
        const bool matrix = o.extents.size() == 2;
        const int m = rows(f, sizes, o), n = cols(f, sizes, o);
        const bool empty = count == 0 || m == 0 || n == 0;
        if (a.role == Argument::pointer) {
            unwanted = f.optional && destination && matrix && !value;
            if (!value && !empty && !unwanted) return fault;
        } else if (!unwanted) {
            const std::ptrdiff_t extent = a.axis == 0 ? count : a.axis == 1 ? m : n;
            if (value % (type == 'f' || o.integers ? 4 : 8)) return fault;
            if (destination && !empty && value == 0 && extent > 1) return fault;
        }
    }
    return 0;
}

void testArguments(const Function& f, char type, Random& random)
{
    const std::vector<Argument> list = arguments(f);
    std::vector<std::ptrdiff_t> values;
    const std::ptrdiff_t nowhere = reinterpret_cast<std::ptrdiff_t>(forbidden());
    for (const Argument& a : list)
        values.push_back(a.role == Argument::pointer || a.role == Argument::info ? nowhere
                         : a.role == Argument::stride                            ? 8 * random.between(1, 40)
                                                                                 : random.between(1, 9));
    if (f.tall) values[0] += 9;
    const std::ptrdiff_t odd[] = {0,  -1, 1,  2,  4,       -4,          8,           -8,
                                  12, 32, 33, 40, 1 << 20, PTRDIFF_MIN, PTRDIFF_MAX, PTRDIFF_MAX - 7};
    for (int faults = random.between(1, 5); faults > 0; --faults) {
        const size_t i = size_t(random.below(int(list.size())));
        const bool pointer = list[i].role == Argument::pointer || list[i].role == Argument::info;
        values[i] = pointer ? 0 : random.pick(odd);
    }
    // Sizes that no int holds have no operands; they are judged by themselves.
    for (size_t i = 0; i < f.sizes.size(); ++i)
        if (values[i] > INT_MAX && !f.small[i]) values[i] = 40;
    const std::ptrdiff_t expected = statusOf(f, type, values);
    if (expected == 0) return; // it would be done
    for (const Level& level : levels()) {
        if (!level.supported) continue;
        std::ptrdiff_t status = 0;
        std::string what = "kesl_" + f.name + (type == 'f' ? "_32f" : "_64f");
        for (std::ptrdiff_t value : values) what += ' ' + std::to_string(value);
        if (!survives([&] { status = callWith(level, f, type, values); })) report(what + " touches its operands");
        if (status != expected) report(what + " answers " + std::to_string(status) + " and not " + std::to_string(expected));
    }
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    installTrap();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Random random(1);
    random.bytes = data, random.end = data + size;
    const Function& f = functions()[size_t(random.below(int(functions().size())))];
    const char type = random.chance(50) ? 'f' : 'd';
    if (random.chance(15)) testArguments(f, type, random);
    else testCall(f, type, random);
    return 0;
}
