// Products and sums are defined to the bit: ascending, each product rounded; vecdot by partial sums.
#include "suites.h"

#include <algorithm>

namespace stacks {
namespace {

template <class T> void reference(const std::string& name, const Problem& p, std::ptrdiff_t k, Values& to)
{
    const Values& a = p.sources[0];
    const Values& b = p.sources.back();
    const auto sum = [](int n, auto term) {
        T s = n > 0 ? term(0) : 0;
        for (int i = 1; i < n; ++i) {
            const T product = term(i);
            s += product;
        }
        return s;
    };
    const auto left = [&](int i) { return a.at<T>(k, i, 0); };
    const auto right = [&](int i) { return b.at<T>(k, i, 0); };
    if (name == "matmul")
        for (int i = 0; i < to.rows; ++i)
            for (int j = 0; j < to.cols; ++j)
                to.at<T>(k, i, j) = sum(a.cols, [&](int l) { return a.at<T>(k, i, l) * b.at<T>(k, l, j); });
    if (name == "vecdot") {
        constexpr int partial = 64 / int(sizeof(T));
        const auto every = [&](int first) {
            return sum((a.rows - first + partial - 1) / partial,
                       [&](int i) { return left(first + i * partial) * right(first + i * partial); });
        };
        to.at<T>(k, 0, 0) = sum(std::min(a.rows, partial), every);
    }
    if (name == "trace") to.at<T>(k, 0, 0) = sum(a.rows, [&](int i) { return a.at<T>(k, i, i); });
    if (name == "cross")
        for (int i = 0; i < 3; ++i) {
            const int j = (i + 1) % 3, l = (i + 2) % 3;
            const T first = left(j) * right(l), second = left(l) * right(j);
            to.at<T>(k, i, 0) = first - second;
        }
}

} // namespace

void testSums(const Level& level, const Function& f)
{
    if (f.name != "matmul" && f.name != "vecdot" && f.name != "trace" && f.name != "cross")
        GTEST_SKIP() << "not defined to the bit";
    setThreads(1);
    std::vector<Sizes> all = shapes(f);
    if (f.name == "matmul") all.insert(all.end(), {{33, 40, 5}, {70, 3, 41}, {1, 100, 1}, {64, 64, 64}, {5, 1, 90}});
    if (f.sizes.size() == 1) all.insert(all.end(), {{33}, {64}, {100}});
    int number = 0;
    for (const Sizes& sizes : all)
        forTypes([&](char type) {
            Random random(f.name + type, 800 + number++);
            const Problem p = makeProblem(f, type, sizes, 19, random);
            Outcome expected;
            expected.info.assign(19, 0);
            expected.results.push_back(p.blank(f.destinations[0], p.count));
            for (std::ptrdiff_t k = 0; k < p.count; ++k)
                withType(type, [&]<class T>(T) { reference<T>(f.name, p, k, expected.results[0]); });
            for (const Layout& layout : {packed, columns, planes})
                ASSERT_EQ(
                    difference(expected, run(level, p, {.layouts = std::vector<Layout>(f.sources.size() + 1, layout)})), "")
                    << describe(p) << ", " << layout.name;
        });
}

} // namespace stacks
