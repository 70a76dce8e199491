// Householder QR decomposition, and back substitution with what it leaves.
#include "../reference.h"

#include <cmath>
#include <limits>

namespace {
int reflectors(const Dims& d) { return d['w'] < d['h'] ? d['w'] : d['w'] - 1; }

struct QR {
    static bool scratchAtWill(const Dims& d) { return d['w'] * d['h'] <= 256; } // packs need none
    static double cost(const Dims& d) { return d['h'] * d['w'] * d['w']; }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int h = o.dims['h'], w = o.dims['w'];
        const View<T>&src = o.source(0), &a = o.destination();
        for (int i = 0; i < h; ++i)
            for (int j = 0; j < w; ++j) a(i, j) = src(i, j);
        *o.buffer = w < 3 || w > 6; // objects of 3 to 6 columns are treated elsewhere
        std::vector<T> b(size_t(h), 0);
        T* const B = b.data();
        for (int k = 0; k < reflectors(o.dims); ++k) {
            T s = 0;
            for (int i = k; i < h; ++i) s = s + a(i, k) * a(i, k);
            if (double(std::numeric_limits<T>::epsilon()) > std::fabs(double(s))) return DivideByZero;
            T sigma = T(std::sqrt(double(s)));
            if (!(a(k, k) > 0)) sigma = 0 - sigma;
            B[k] = 1;
            const T t = 1 / (a(k, k) + sigma);
            T norm = 1;
            for (int i = k + 1; i < h; ++i) {
                B[i] = a(i, k) * t;
                norm = norm + B[i] * B[i];
            }
            const T beta = -2 / norm;
            for (int j = k; j < w; ++j) {
                T d = a(k, j);
                for (int i = k + 1; i < h; ++i) d = d + a(i, j) * B[i];
                d = d * beta;
                for (int i = k; i < h; ++i) a(i, j) = a(i, j) + B[i] * d;
            }
            for (int i = k + 1; i < h; ++i) a(i, k) = B[i];
        }
        return Ok;
    }

    // Diagonals without a sign, columns whose squared norm is next to the bound, a last column without a test.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int h = o.dims['h'], w = o.dims['w'], what = random.below(5);
        const View<T>& a = o.source(0);
        const T eps = std::numeric_limits<T>::epsilon();
        if (what == 0) {
            const int k = random.below(w);
            a(k, k) = random.chance(50) ? T(0) : -T(0);
        } else if (what == 1) { // only this column reaches below the diagonal
            const int k = random.below(w);
            for (int i = 0; i < h; ++i)
                for (int j = 0; j < w; ++j) a(i, j) = i > j ? T(0) : i == j ? T(1) : T(random.below(5));
            const T half = T(std::sqrt(double(eps) / 2)), list[] = {half, half * (1 - 2 * eps), -half, half * (1 + 2 * eps)};
            a(k, k) = random.pick(list);
            if (k + 1 < h) a(random.between(k + 1, h - 1), k) = random.pick(list);
        } else if (what == 2) {
            for (int i = 0; i < h; ++i) a(i, w - 1) = 0;
        } else if (what == 3) {
            const T list[] = {T(NAN), T(INFINITY), -T(INFINITY), std::numeric_limits<T>::max(),
                              -std::numeric_limits<T>::min()};
            a(random.below(h), random.below(w)) = random.pick(list);
        } else { // the whole matrix near the bound
            const T scale = T(std::sqrt(double(eps)));
            for (int i = 0; i < h; ++i)
                for (int j = 0; j < w; ++j) a(i, j) *= scale;
        }
    }

    // A column of zeros; the last one of a square matrix is not looked at.
    template <class T> void fail(const Object<T>& o, Random& random) const
    {
        if (reflectors(o.dims) < 1) return;
        const int zero = random.below(reflectors(o.dims));
        for (int i = 0; i < o.dims['h']; ++i) o.source(0)(i, zero) = 0;
    }
};

// The sums of the closed forms may have another order; the library takes this one for all sizes.
struct QRSolve {
    static double cost(const Dims& d) { return 3 * d['h'] * d['w']; }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int h = o.dims['h'], w = o.dims['w'];
        const View<T>&a = o.source(0), &b = o.source(1), &x = o.destination();
        *o.buffer = w != h || w < 3 || w > 6;
        std::vector<T> B(size_t(h), 0);
        const auto at = [&](int i) -> T& { return B[size_t(i)]; };
        for (int i = 0; i < h; ++i) at(i) = b(i);
        for (int k = 0; k < reflectors(o.dims); ++k) {
            T norm = 1, d = at(k);
            for (int i = k + 1; i < h; ++i) {
                norm = norm + a(i, k) * a(i, k);
                d = d + at(i) * a(i, k);
            }
            d = d * (-2 / norm);
            at(k) = at(k) + d;
            for (int i = k + 1; i < h; ++i) at(i) = at(i) + a(i, k) * d;
        }
        x(w - 1) = at(w - 1) / a(w - 1, w - 1);
        for (int i = w - 2; i >= 0; --i) {
            T s = 0;
            for (int j = i + 1; j < w; ++j) s = s + a(i, j) * x(j);
            x(i) = (at(i) - s) / a(i, i);
        }
        return Ok;
    }

    // A diagonal of zero is not looked at.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int i = random.below(o.dims['w']);
        o.source(0)(i, i) = random.chance(50) ? T(0) : -T(0);
    }
};

const Register qr("QRDecomp", "", QR());
const Register solve("QRBackSubst", "", QRSolve());
} // namespace
