// Back substitution with the factors and the table of an LU decomposition.
#include "../reference.h"

#include <cmath>

namespace {
struct LUSolve {
    static bool fixed(int n) { return n >= 3 && n <= 6; }
    static bool inPlace(const Function&, const Dims& d, int source) { return source == 2 && fixed(d['n']); }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['n'];
        const View<int>& p = o.tables[0];
        const auto lu = [&](int i, int j) { return o.source(0)(p(i), j); };
        const auto b = [&](int i) { return o.source(1)(p(i)); };
        std::vector<T> values(size_t(n), 0);
        T* const x = values.data();
        if (fixed(n)) { // reciprocals, and one term after the other
            T r[6];
            for (int i = 0; i < n; ++i) r[i] = T(1) / lu(i, i);
            x[0] = b(0);
            for (int i = 1; i < n; ++i) {
                x[i] = b(i);
                for (int j = 1; j < i; ++j) x[i] = x[i] - lu(i, j) * x[j];
                x[i] = x[i] - lu(i, 0) * x[0];
            }
            x[n - 1] = x[n - 1] * r[n - 1];
            for (int i = n - 2; i >= 0; --i) {
                for (int j = n - 1; j > i; --j) x[i] = x[i] - lu(i, j) * x[j];
                x[i] = x[i] * r[i];
            }
        } else { // sums, and divisions
            x[0] = b(0);
            for (int i = 1; i < n; ++i) {
                T s = 0;
                for (int j = 0; j < i; ++j) s = s + lu(i, j) * x[j];
                x[i] = b(i) - s;
            }
            x[n - 1] = x[n - 1] / lu(n - 1, n - 1);
            for (int i = n - 2; i >= 0; --i) {
                T s = 0;
                for (int j = i + 1; j < n; ++j) s = s + lu(i, j) * x[j];
                x[i] = (x[i] - s) / lu(i, i);
            }
        }
        for (int i = 0; i < n; ++i) o.destination()(i) = x[i];
        return Ok;
    }

    // Diagonals of zero, and factors as a decomposition leaves them: none greater than 1.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        if (random.chance(50)) a(random.below(n), random.below(n)) = random.chance(50) ? T(0) : -T(0);
        else
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j)
                    if (std::fabs(a(i, j)) > 1) a(i, j) = T(1) / a(i, j);
    }
};

const Register solve("LUBackSubst", "", LUSolve());
} // namespace
