// Cholesky decomposition by rows, with the reciprocals of the diagonal.
#include "../reference.h"

#include <cmath>
#include <limits>

namespace {
struct Cholesky {
    static double cost(const Dims& d) { return d['n'] * d['n'] * d['n'] / 2 + 1; }
    static bool inPlace(const Function&, const Dims&, int) { return true; }

    // A pivot not above this is none.
    static double threshold(const Function& f, bool contiguous, int n)
    {
        if (f.layout == "P" && n == 3) return 1.1920928955078125e-7; // in both types
        if (f.shape == "ma" && f.elemSize == 8 && f.layout.empty() && !contiguous && (n < 3 || n > 5))
            return 2.220446049250313e-16;
        return 0;
    }

    template <class T> static T reciprocal(const Function& f, int n, T d)
    {
        const bool general = n < 3 || n > 6;
        if (general && f.layout == "P") return T(1) / T(std::sqrt(double(d)));
        return T(1.0 / std::sqrt(double(d)));
    }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['n'];
        const View<T>&a = o.source(0), &l = o.destination();
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < i; ++j) {
                T t = a(i, j);
                for (int k = 0; k < j; ++k) t = t - l(i, k) * l(j, k);
                l(i, j) = t * l(j, j);
            }
            T d = a(i, i);
            for (int k = 0; k < i; ++k) d = d - l(i, k) * l(i, k);
            if (T(threshold(o.f, o.contiguous, n)) >= d) return NotPositiveDefinite;
            l(i, i) = reciprocal(o.f, n, d);
        }
        return Ok;
    }

    // A dominant diagonal, so that most have a factor; above the diagonal there may be anything.
    template <class T> void inputs(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        if (random.chance(10)) return;
        for (int i = 0; i < n; ++i) {
            double sum = 0;
            for (int j = 0; j < n; ++j) {
                const double x = std::fabs(double(j < i ? a(i, j) : j > i ? a(j, i) : T(0)));
                sum += std::isfinite(x) && x < 1e6 ? x : 0;
            }
            a(i, i) = T((random.unit() * 0.5 + 0.6) * (sum + (sum == 0)));
        }
    }

    // Pivots at and beside the thresholds; NaN, which is no reason to reject.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        if (random.chance(30)) {
            const int i = random.below(n);
            a(i, random.below(i + 1)) = T(NAN);
            return;
        }
        const T least = std::numeric_limits<T>::denorm_min(), single = T(0x1p-23), twofold = T(0x1p-52);
        const T list[] = {0,
                          -T(0),
                          least,
                          -least,
                          T(1e-30),
                          T(1e-17),
                          T(1e-8),
                          single,
                          twofold,
                          T(INFINITY),
                          std::nextafter(single, T(0)),
                          std::nextafter(single, T(1)),
                          std::nextafter(twofold, T(0)),
                          std::nextafter(twofold, T(1))};
        const int row = random.below(n); // whose elements are all on the diagonal
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j)
                if (i == row || j == row) a(i, j) = i == j ? random.pick(list) : T(0);
    }

    template <class T> void fail(const Object<T>& o, Random& random) const
    {
        const int i = random.below(o.dims['n']);
        o.source(0)(i, i) = T(-random.unit());
    }
};

const Register cholesky("CholeskyDecomp", "", Cholesky());
} // namespace
