// Adds arrays of matrices by two threads.
#include <cstddef>
#include <keslcorex.h>
#include <keslmx.h>
#include <vector>

int main()
{
    const int order = 3, count = 20000, e = sizeof(float), row = order * e, object = order * row;
    std::vector<float> a(std::size_t(order * order * count), 1.5f), b(a.size(), 2.0f), sum(a.size());
    if (keslCoreSetNumThreads(2) != keslStatusOk || keslCoreGetNumThreads() != 2) return 1;
    if (keslAdd_mama_32f(a.data(), object, row, e, b.data(), object, row, e, sum.data(), object, row, e, order, order,
                         count) != keslStatusOk)
        return 2;
    for (float x : sum)
        if (x != 3.5f) return 3;
    return keslCoreSetNumThreads(-1) == keslStatusBadCount ? 0 : 4;
}
