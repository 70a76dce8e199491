// LU decomposition with partial pivoting through a table of rows.
#include "../reference.h"

#include <cmath>
#include <limits>

namespace {
struct LU {
    static double cost(const Dims& d) { return d['n'] * d['n'] * d['n']; }
    static bool inPlace(const Function&, const Dims&, int) { return true; }

    static bool fixed(int n) { return n >= 3 && n <= 6; }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['n'];
        const View<int>& p = o.tables[0];
        const View<T>& dst = o.destination();
        std::vector<T> a(size_t(n * n), 0);
        const auto at = [&](int i, int j) -> T& { return a[size_t(i * n + j)]; };
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) at(i, j) = o.source(0)(i, j);
        for (int i = 0; i < n; ++i) p(i) = i;
        const auto leave = [&](int rows, int status) -> Outcome { // rows of the factors that have reached dst
            for (int i = 0; i < rows; ++i)
                for (int j = 0; j < n; ++j) dst(p(i), j) = at(p(i), j);
            return status;
        };
        const T tiny = 2 * std::numeric_limits<T>::min(), eps = std::numeric_limits<T>::epsilon();
        for (int k = 0; k < n; ++k) {
            int q = k;
            for (int i = k + 1; i < n; ++i)
                if (std::fabs(at(p(i), k)) > std::fabs(at(p(q), k))) q = i;
            const T best = std::fabs(at(p(q), k));
            if (!fixed(n) && eps >= best) return leave(n, Singular);
            std::swap(p(k), p(q));
            if (fixed(n) && best < tiny) return leave(k, Singular);
            const T r = T(1) / at(p(k), k);
            for (int i = k + 1; i < n; ++i) {
                at(p(i), k) = at(p(i), k) * r;
                for (int j = k + 1; j < n; ++j) at(p(i), j) = at(p(i), j) - at(p(i), k) * at(p(k), j);
            }
        }
        return leave(n, Ok);
    }

    // Pivots that tie, vanish or lie at either threshold.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        const int what = random.below(5);
        const T tiny = 2 * std::numeric_limits<T>::min(), eps = std::numeric_limits<T>::epsilon();
        if (what == 0) { // a permuted triangle with a pivot at a threshold
            const T list[] = {tiny, std::nextafter(tiny, T(0)), std::nextafter(tiny, T(1)), -tiny, eps,
                              -eps, std::nextafter(eps, T(0)),  std::nextafter(eps, T(1)),  T(0)};
            const std::vector<int> p = random.permutation(n);
            const int small = random.below(n);
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j)
                    a(p[size_t(i)], j) = j < i ? T(0) : j > i ? T(random.below(5)) : i == small ? random.pick(list) : T(1);
        } else if (what == 1) { // ties
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) = i == j ? T(2) : T(random.below(2) ? 2 : -2);
        } else if (what == 2) { // a NaN, first or not
            a(random.below(n), random.below(n)) = T(NAN);
        } else if (what == 3) { // the whole matrix near a threshold
            const T scale = random.chance(50) ? tiny : eps;
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) *= scale;
        } else { // rows of very different size
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) *= T(std::exp2(i * random.between(-6, 6)));
        }
    }

    // A column without a pivot: the first, the last or one between.
    template <class T> void fail(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'], zero = random.below(n);
        for (int i = 0; i < n; ++i) o.source(0)(i, zero) = 0;
    }
};

const Register lu("LUDecomp", "", LU());
} // namespace
