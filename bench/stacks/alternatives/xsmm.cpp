// libxsmm's products: they are made for the processor at hand when they are asked for.
#ifdef BENCH_XSMM
#include "element.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#include <libxsmm.h>
#pragma GCC diagnostic pop

namespace bench::stacks {
namespace {

void run(const Problem& p, Range range)
{
    const bool isSwapped = p.layout == Layout::packed; // by columns: the transposed product of the transposed factors
    const Array &a = p.arrays[isSwapped], &b = p.arrays[!isSwapped], &c = p.arrays[2];
    const int n = p.order;
    const libxsmm_mmfunction<Element> product(LIBXSMM_GEMM_FLAG_NONE, n, n, n, n, n, n, Element(1), Element(0));
    for (int k = range.begin; k < range.end; ++k)
        product(&a.at<Element>(k, 0, 0), &b.at<Element>(k, 0, 0), &c.at<Element>(k, 0, 0));
}

const bool registered = [] {
    alternatives().push_back(
        {"matmul", "libxsmm", sizeof(Element), run, 0, [](const Problem& p) { return p.isContiguous(); }});
    return true;
}();

} // namespace
} // namespace bench::stacks
#endif
