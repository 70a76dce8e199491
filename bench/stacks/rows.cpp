// Every function of kesl becomes rows: each type, order and layout in cache, one object at a time, and 128 MiB.
#include "problem.h"

#include <algorithm>

namespace bench::stacks {
namespace {

// A call for each object, a barrier behind it; else one for all.
Contender contenderOf(const std::string& name, Size size, auto run)
{
    if (size != Size::one) return {name, [=](int begin, int end) mutable { run(Range{begin, end}); }};
    return {name, [=](int begin, int end) mutable {
                for (int k = begin; k < end; ++k) {
                    run(Range{k, k + 1});
                    asm volatile("" ::: "memory");
                }
            }};
}

Prepared prepare(const Function& f, int order, int bytes, Layout layout, Size size, int count)
{
    const auto problem = std::make_shared<Problem>(problemOf(f, order, bytes, layout, count));
    Prepared row{};
    row.count = count;
    row.tolerance = toleranceOf(f) * (bytes == 4 ? 0x1p-23 : 0x1p-52);
    for (const Array& a : problem->arrays) (a.isOutput ? row.bytesWritten : row.bytesRead) += a.size;
    row.poison = [problem] {
        for (const Array& a : problem->arrays)
            if (a.isOutput && a.data) std::fill_n(a.data, a.size, char(0xff));
    };
    row.result = [problem](int k) { return comparable(*problem, k); };

    row.contenders.push_back(contenderOf("kesl", size, libraryOn(*problem)));
    row.contenders.back().threadsItself = true;
    for (const Alternative& other : alternatives()) {
        if (other.function != f.name || other.bytes != bytes || (other.order != 0 && other.order != order)) continue;
        if ((other.isSlow && size == Size::stream) || (other.suits && !other.suits(*problem))) continue;
        row.contenders.push_back(contenderOf(other.name, size, [=, run = other.run](Range range) { run(*problem, range); }));
        row.contenders.back().aside = other.isAside;
    }
    return row;
}

void addRow(const Function& f, int bytes, int order, Layout layout, Size size)
{
    allRows().push_back({f.name, bytes == 4 ? "32f" : "64f", order, layout, size, 1, bytesOf(f, order, bytes, layout),
                         [=, &f](int count) { return prepare(f, order, bytes, layout, size, count); }});
}

bool iterates(const Function& f) { return f.name.starts_with("eig") || f.name.starts_with("svd"); }

const bool registered = [] {
    for (const Function& f : ::stacks::functions())
        for (int bytes : {4, 8})
            for (int order : {1, 2, 3, 4, 5, 6, 7, 8, 10, 12, 16, 24, 32}) {
                if (f.sizes.empty() && order != 3) continue; // the cross product
                for (Layout layout : {Layout::packed, Layout::columns, Layout::strided, Layout::soa})
                    addRow(f, bytes, order, layout, Size::cache);
                addRow(f, bytes, order, Layout::packed, Size::one);
                // What computes long on each object does not depend on memory.
                const bool streams = order == 3 || order == 6 || order == 16;
                if (streams && !iterates(f)) addRow(f, bytes, order, Layout::packed, Size::stream);
            }
    return true;
}();

} // namespace
} // namespace bench::stacks
