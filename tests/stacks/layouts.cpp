#include "suites.h"

namespace stacks {
namespace {

void expectSame(const Level& level, const Problem& p, const Outcome& expected, const Placement& placement,
                const std::string& what)
{
    const std::string wrong = difference(expected, run(level, p, placement));
    if (!wrong.empty()) FAIL() << describe(p) << ", " << what << ": " << wrong;
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
        });
}

} // namespace stacks
