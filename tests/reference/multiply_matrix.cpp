// The product of two matrices, each sum in ascending order.
#include "../reference.h"

#include <limits>

namespace {
struct MatrixProduct {
    static bool fixed(const Dims& d) { return d['M'] == d['K'] && d['K'] == d['N'] && d['M'] >= 3 && d['M'] <= 6; }

    // A square product of order 3 to 6 begins with its first product and any other with +0, which shows where all
    // products are -0. But where src2 is an array, L functions on contiguous rows begin with +0 at every size.
    template <class T> static bool beginsAtZero(const Object<T>& o)
    {
        return !fixed(o.dims) || (o.f.layout == "L" && o.contiguous && o.f.operands[1].array);
    }

    static bool inPlace(const Function& f, const Dims& d, int source) { return !f.array && source == 1 && fixed(d); }
    static double cost(const Dims& d) { return d['M'] * d['K'] * d['N']; }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int M = o.dims['M'], K = o.dims['K'], N = o.dims['N'];
        std::vector<T> result(size_t(M) * size_t(N));
        for (int i = 0; i < M; ++i)
            for (int j = 0; j < N; ++j) {
                T sum = o.source(0)(i, 0) * o.source(1)(0, j);
                if (beginsAtZero(o)) sum = T(0) + sum;
                for (int k = 1; k < K; ++k) sum = sum + o.source(0)(i, k) * o.source(1)(k, j);
                result[size_t(i * N + j)] = sum;
            }
        for (int i = 0; i < M; ++i)
            for (int j = 0; j < N; ++j) o.destination()(i, j) = result[size_t(i * N + j)];
        return Ok;
    }

    // Sums of products that are all -0, and products that vanish by underflow.
    template <class T> void inputs(const Object<T>& o, Random& random) const
    {
        const int what = random.below(8);
        const T zero = what == 0 ? T(-0.0) : what == 1 ? -std::numeric_limits<T>::min() : T(0);
        if (what > 1) return;
        for (int k = 0; k < o.dims['K']; ++k) {
            for (int i = 0; i < o.dims['M']; ++i) o.source(0)(i, k) = random.chance(8) ? T(0) : zero;
            for (int j = 0; j < o.dims['N']; ++j) o.source(1)(k, j) = std::numeric_limits<T>::min();
        }
    }
};

const Register matrixProduct("Mul", "mm mt tm tt mam mat tam tat mma mta tma tta mama mata tama tata", MatrixProduct());
} // namespace
