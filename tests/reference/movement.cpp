// Data as they are, in another place. The kit compares bits, those of NaNs too.
#include "../reference.h"

namespace {
struct Copy { // and Extract: a transposed source is read as its transpose
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        for (int i = 0; i < o.f.operands.back().rows(o.dims); ++i)
            for (int j = 0; j < o.f.operands.back().columns(o.dims); ++j) o.destination()(i, j) = o.source(0)(i, j);
        return Ok;
    }
};

struct LoadIdentity {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        for (int i = 0; i < o.f.operands.back().rows(o.dims); ++i)
            for (int j = 0; j < o.f.operands.back().columns(o.dims); ++j) o.destination()(i, j) = i == j ? T(1) : T(0);
        return Ok;
    }
};

struct Transpose {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const Operand& src = o.f.operands.front();
        for (int i = 0; i < src.rows(o.dims); ++i)
            for (int j = 0; j < src.columns(o.dims); ++j) o.destination()(j, i) = o.source(0)(i, j);
        return Ok;
    }
};

const Register copy("Copy", "", Copy());
const Register extract("Extract", "", Copy());
const Register loadIdentity("LoadIdentity", "", LoadIdentity());
const Register transpose("Transpose", "", Transpose());
} // namespace
