// Back substitution with a Cholesky factor whose diagonal is stored as its reciprocals.
#include "../reference.h"

namespace {
// The terms of a row may be subtracted in any order at orders 3 to 6; the library takes that of the other orders for
// all.
struct CholeskySolve {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['n'];
        const View<T>&l = o.source(0), &b = o.source(1), &x = o.destination();
        for (int i = 0; i < n; ++i) {
            T t = b(i);
            for (int j = 0; j < i; ++j) t = t - l(i, j) * x(j);
            x(i) = t * l(i, i);
        }
        for (int i = n - 1; i >= 0; --i) {
            T t = x(i);
            for (int j = n - 1; j > i; --j) t = t - l(j, i) * x(j);
            x(i) = t * l(i, i);
        }
        return Ok;
    }

    // A zero on the diagonal multiplies like any other number.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int i = random.below(o.dims['n']);
        o.source(0)(i, i) = random.chance(50) ? T(0) : -T(0);
    }
};

const Register solve("CholeskyBackSubst", "", CholeskySolve());
} // namespace
