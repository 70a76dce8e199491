// Linear combinations of two vectors. Each product is rounded before it is added.
#include "../reference.h"

namespace {
struct Saxpy {
    static bool inPlace(const Function& f, const Dims&, int source) { return f.shape == "vv" && source == 1; }
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        for (int j = 0; j < o.f.operands.back().columns(o.dims); ++j)
            o.destination()(j) = o.source(0)(j) * o.source(2)(j) + o.source(1)(j);
        return Ok;
    }
};

struct LComb {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        for (int j = 0; j < o.f.operands.back().columns(o.dims); ++j)
            o.destination()(j) = o.source(0)(j) * o.source(2)(j) + o.source(1)(j) * o.source(3)(j);
        return Ok;
    }
};

const Register saxpy("Saxpy", "", Saxpy());
const Register lcomb("LComb", "", LComb());
} // namespace
