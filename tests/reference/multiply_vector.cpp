// The product of a matrix and a vector, and the same with a vector added.
#include "../reference.h"

#include <limits>

namespace {
// Matrices that are square of order 3 to 6 have forms of their own.
bool fixed(const Dims& d) { return d['M'] == d['K'] && d['M'] >= 3 && d['M'] <= 6; }

// Sums of products that are all -0, and products that vanish by underflow.
template <class T> void zeros(const Object<T>& o, Random& random)
{
    const int what = random.below(8);
    const T zero = what == 0 ? T(-0.0) : -std::numeric_limits<T>::min();
    if (what > 1) return;
    for (int k = 0; k < o.dims['K']; ++k) {
        for (int i = 0; i < o.dims['M']; ++i) o.source(0)(i, k) = random.chance(8) ? T(0) : zero;
        o.source(1)(k) = std::numeric_limits<T>::min();
    }
}

// In ascending order; the fixed forms begin with the first product and the others with +0. But L functions on
// contiguous vectors begin with +0 at every size.
struct MatrixVectorProduct {
    static double cost(const Dims& d) { return d['M'] * d['K']; }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const bool atZero = !fixed(o.dims) || (o.f.layout == "L" && o.contiguous);
        for (int i = 0; i < o.dims['M']; ++i) {
            T sum = o.source(0)(i, 0) * o.source(1)(0);
            if (atZero) sum = T(0) + sum;
            for (int k = 1; k < o.dims['K']; ++k) sum = sum + o.source(0)(i, k) * o.source(1)(k);
            o.destination()(i) = sum;
        }
        return Ok;
    }

    template <class T> void inputs(const Object<T>& o, Random& random) const { zeros(o, random); }
};

// The same in every kernel: from +0 in ascending order, but in the fixed forms from the first product, which in orders
// 4 to 6 is that of the last column.
struct Gaxpy {
    // One object of the fixed orders is read whole before it is written.
    static bool inPlace(const Function& f, const Dims& d, int source) { return f.shape == "mv" && fixed(d) && source > 0; }

    static double cost(const Dims& d) { return d['M'] * (d['K'] + 1); }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int K = o.dims['K'];
        std::vector<T> result; // all of it before any is written
        for (int i = 0; i < o.dims['M']; ++i) {
            const auto product = [&](int k) { return o.source(0)(i, k) * o.source(1)(k); };
            T sum = 0;
            if (fixed(o.dims) && K == 3) sum = product(0) + product(1) + product(2);
            else if (fixed(o.dims)) {
                sum = product(K - 1);
                for (int k = 0; k < K - 1; ++k) sum = sum + product(k);
            } else
                for (int k = 0; k < K; ++k) sum = sum + product(k);
            result.push_back(sum + o.source(2)(i));
        }
        for (int i = 0; i < o.dims['M']; ++i) o.destination()(i) = result[size_t(i)];
        return Ok;
    }

    template <class T> void inputs(const Object<T>& o, Random& random) const
    {
        zeros(o, random);
        if (random.chance(20))
            for (int i = 0; i < o.dims['M']; ++i) o.source(2)(i) = T(-0.0);
    }
};

const Register matrixVectorProduct("Mul", "mv tv mav tav mva tva mava tava", MatrixVectorProduct());
const Register gaxpy("Gaxpy", "", Gaxpy());
} // namespace
