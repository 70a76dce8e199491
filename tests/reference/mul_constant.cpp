// A matrix or vector times a constant. A vector is a matrix of one row, a constant has its value everywhere.
#include "../reference.h"

namespace {
struct Scaled {
    // Each element is read once and written once in the same place, unless it is read transposed or for every object.
    static bool inPlace(const Function& f, const Dims&, int source)
    {
        const Operand& o = f.operands[size_t(source)];
        return o.letter != 't' && o.letter != 'c' && o.array == f.array && f.shape != "vaca";
    }
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        for (int i = 0; i < o.f.operands.back().rows(o.dims); ++i)
            for (int j = 0; j < o.f.operands.back().columns(o.dims); ++j)
                o.destination()(i, j) = o.source(0)(i, j) * o.source(1)(i, j);
        return Ok;
    }
};

const Register scaled("Mul", "mc tc mac tac vc vac vca vaca", Scaled());
} // namespace
