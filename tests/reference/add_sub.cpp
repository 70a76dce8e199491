// Element-wise sum and difference. A vector is a matrix of one row, a constant has its value everywhere.
#include "../reference.h"

namespace {
struct ElementWise {
    // Of matrices each element is read before it is written; that cannot hold for a source that is read transposed, or
    // more than once. Of vectors nothing is promised.
    static bool inPlace(const Function& f, const Dims&, int source)
    {
        const Operand& o = f.operands[size_t(source)];
        return o.letter == 'm' && o.array == f.array;
    }
};

struct Sum : ElementWise {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        for (int i = 0; i < o.f.operands.back().rows(o.dims); ++i)
            for (int j = 0; j < o.f.operands.back().columns(o.dims); ++j)
                o.destination()(i, j) = o.source(0)(i, j) + o.source(1)(i, j);
        return Ok;
    }
};

struct Difference : ElementWise {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        for (int i = 0; i < o.f.operands.back().rows(o.dims); ++i)
            for (int j = 0; j < o.f.operands.back().columns(o.dims); ++j)
                o.destination()(i, j) = o.source(0)(i, j) - o.source(1)(i, j);
        return Ok;
    }
};

const Register sum("Add", "", Sum());
const Register difference("Sub", "", Difference());
} // namespace
