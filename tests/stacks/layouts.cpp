#include "suites.h"

#include <algorithm>
#include <cmath>

namespace stacks {
namespace {

void expectSame(const Level& level, const Problem& p, const Outcome& expected, const Placement& placement,
                const std::string& what)
{
    const std::string wrong = difference(expected, run(level, p, placement));
    if (!wrong.empty()) FAIL() << describe(p) << ", " << what << ": " << wrong;
}

// Objects of other magnitudes side by side: of some products underflow, of some they overflow.
void testNeighbours(const Level& level, Problem p, Random& random)
{
    for (Values& v : p.sources)
        withType(p.type, [&]<class T>(T) {
            for (std::ptrdiff_t k = 0; k < v.count && !v.integers; ++k) {
                const int power = random.between(-1, 1) * (sizeof(T) == 4 ? 70 : 530);
                for (std::ptrdiff_t e = 0; e < v.elements(); ++e) v.object<T>(k)[e] = std::ldexp(v.object<T>(k)[e], power);
            }
        });
    const Outcome expected = oneByOne(level, p);
    const size_t operands = p.function->sources.size() + p.function->destinations.size();
    for (const Layout& layout : {packed, columns, planes})
        expectSame(level, p, expected, {.layouts = std::vector<Layout>(operands, layout)},
                   std::string(layout.name) + ", objects of several magnitudes");
}

// A source of which elements share their memory, as windows do that slide over one signal.
struct Window {
    std::vector<char> memory;
    std::ptrdiff_t first = 0, strides[3] = {}; // in elements

    Window(Values& v, char type, Random& random)
    {
        const std::ptrdiff_t steps[] = {-v.cols, -1, 0, 1, 1, 2, v.rows, v.cols, v.cols + 1, v.elements(), v.elements() + 1};
        const std::ptrdiff_t extents[] = {v.count, v.rows, v.cols};
        // Those of packed objects, by rows or by columns, if rows and columns were exchanged.
        const std::ptrdiff_t mistaken[2][3] = {{v.elements(), v.rows, 1}, {v.elements(), 1, v.cols}};
        const bool isMistaken = random.chance(30);
        const int kind = random.below(2);
        std::ptrdiff_t last = 0;
        for (int axis = 0; axis < 3; ++axis) {
            strides[axis] = isMistaken ? mistaken[kind][axis] : random.pick(steps);
            const std::ptrdiff_t reach = strides[axis] * (extents[axis] - 1);
            first -= std::min<std::ptrdiff_t>(reach, 0), last += std::max<std::ptrdiff_t>(reach, 0);
        }
        memory.resize(size_t((first + last + 1) * v.bytes));
        withType(type, [&]<class T>(T) {
            T* const x = reinterpret_cast<T*>(memory.data());
            std::generate_n(x, first + last + 1, [&] { return T(2 * random.unit() - 1); });
            for (std::ptrdiff_t k = 0; k < v.count; ++k)
                for (int i = 0; i < v.rows; ++i)
                    for (int j = 0; j < v.cols; ++j)
                        v.at<T>(k, i, j) = x[first + k * strides[0] + i * strides[1] + j * strides[2]];
        });
    }
};

void testWindows(const Level& level, const Function& f, const Sizes& sizes, char type, Random& random)
{
    Problem p{&f, type, sizes, random.between(1, 37), {}};
    std::vector<Window> windows;
    for (const Operand& o : f.sources) {
        p.sources.push_back(p.blank(o, p.count));
        windows.emplace_back(p.sources.back(), type, random);
    }
    Outcome actual;
    actual.info.assign(size_t(p.count), 7);
    std::vector<std::ptrdiff_t> arguments(sizes);
    arguments.push_back(p.count);
    const auto add = [&](char* memory, const std::ptrdiff_t* strides, const Operand& o) {
        arguments.push_back(reinterpret_cast<std::ptrdiff_t>(memory));
        for (size_t axis = 0; axis <= o.extents.size(); ++axis) arguments.push_back(strides[axis] * p.bytes());
    };
    for (size_t i = 0; i < windows.size(); ++i)
        add(windows[i].memory.data() + windows[i].first * p.bytes(), windows[i].strides, f.sources[i]);
    for (const Operand& o : f.destinations) actual.results.push_back(p.blank(o, p.count));
    for (size_t i = 0; i < f.destinations.size(); ++i) {
        Values& v = actual.results[i];
        const std::ptrdiff_t strides[] = {v.elements(), v.cols, 1};
        add(v.data.data(), strides, f.destinations[i]);
    }
    arguments.push_back(reinterpret_cast<std::ptrdiff_t>(actual.info.data()));
    actual.status = callWith(level, f, type, arguments);
    std::string strides;
    for (const Window& w : windows)
        for (std::ptrdiff_t s : w.strides) strides += ' ' + std::to_string(s);
    ASSERT_EQ(difference(oneByOne(level, p), actual), "") << describe(p) << ", strides of the sources" << strides;
}

} // namespace

void testLayouts(const Level& level, const Function& f)
{
    setThreads(1);
    const size_t operands = f.sources.size() + f.destinations.size();
    int number = 0;
    for (const Sizes& sizes : shapes(f))
        forTypes([&](char type) {
            Random random(f.name + type, 100 + number++);
            Problem p = makeProblem(f, type, sizes, random.between(17, 37), random);
            const Outcome expected = oneByOne(level, p);
            ASSERT_EQ(expected.fault, "") << describe(p);
            ASSERT_EQ(expected.status, 0) << describe(p);
            for (const Layout& layout : layouts)
                expectSame(level, p, expected, {.layouts = std::vector<Layout>(operands, layout)}, layout.name);
            testNeighbours(level, p, random);
            for (long round = 0; round < cases(10); ++round) {
                Placement mixed;
                std::string what;
                for (size_t i = 0; i < operands; ++i) {
                    mixed.layouts.push_back(random.pick(layouts));
                    what += std::string(i ? ", " : "") + mixed.layouts.back().name;
                }
                expectSame(level, p, expected, mixed, what);
            }
            for (size_t i = 0; i < f.sources.size(); ++i)
                for (unsigned axes = 1; axes < 8; ++axes) {
                    const bool matrix = i > 0 || f.data == Data::any; // others would be singular
                    if (axes > 1 && (!matrix || f.sources[i].integers)) continue;
                    Problem flat = p;
                    flatten(flat.sources[i], axes);
                    Placement placement{.shared = std::vector<unsigned>(i + 1)};
                    placement.shared[i] = axes;
                    for (const Layout& layout : {packed, columns, planes}) {
                        placement.layouts.assign(operands, layout);
                        expectSame(level, flat, oneByOne(level, flat), placement,
                                   std::string(layout.name) + ", strides of a source 0, mask " + std::to_string(axes));
                    }
                }
            const bool integers = f.data == Data::factors || std::any_of(f.destinations.begin(), f.destinations.end(),
                                                                         [](const Operand& o) { return o.integers; });
            for (long round = 0; round < cases(4) && !integers; ++round) testWindows(level, f, sizes, type, random);
        });
}

} // namespace stacks
