// The determinant: by minors at orders 3 to 6, by elimination at the others.
#include "../reference.h"

#include <cmath>
#include <limits>

namespace {
// The minor of the first rows and of some columns, along its last row, from the last column to the first. At orders 5
// and 6 the terms may come in any order; the library takes the same as at orders 3 and 4.
template <class T> T minor(const View<T>& a, std::vector<int> columns)
{
    const size_t n = columns.size();
    if (n == 1) return a(0, columns[0]);
    T sum = 0;
    for (size_t i = n; i-- > 0;) {
        std::vector<int> others = columns;
        others.erase(others.begin() + long(i));
        const T term = minor(a, others) * a(int(n) - 1, columns[i]);
        sum = i == n - 1 ? term : (n - 1 - i) % 2 ? sum - term : sum + term;
    }
    return sum;
}

struct Determinant {
    static bool scratchAtWill(const Dims& d) { return d['n'] <= 16; } // packs need none
    static double cost(const Dims& d)
    {
        const int n = d['n'];
        return n >= 3 && n <= 6 ? n * n * n * 4 : n * n * n;
    }
    static bool inPlace(const Function&, const Dims&, int) { return false; }

    template <class T> static T threshold(int n)
    {
        return T(int(2u * unsigned(n) * unsigned(n) * unsigned(n))) * std::numeric_limits<T>::min();
    }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['n'];
        T& result = o.destination()(0);
        if (n >= 3 && n <= 6) {
            std::vector<int> all;
            for (int i = 0; i < n; ++i) all.push_back(i);
            result = minor(o.source(0), all);
            return Ok;
        }
        *o.buffer = true;
        const T thr = threshold<T>(n);
        std::vector<T> a(size_t(n * n), 0);
        std::vector<int> p(size_t(n), 0);
        const auto at = [&](int i, int j) -> T& { return a[size_t(p[size_t(i)] * n + j)]; };
        for (int i = 0; i < n; ++i) p[size_t(i)] = i;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) at(i, j) = o.source(0)(i, j);
        T product = 1;
        int sign = 1;
        for (int k = 0; k < n - 1; ++k) {
            int q = k;
            for (int i = k + 1; i < n; ++i)
                if (std::fabs(at(i, k)) > std::fabs(at(q, k))) q = i;
            if (q != k) std::swap(p[size_t(q)], p[size_t(k)]), sign = -sign;
            if (thr > std::fabs(at(k, k))) {
                if (!o.f.array) {
                    result = 0;
                    return Ok;
                }
                sign = 0; // and on to the end
                break;
            }
            for (int i = k + 1; i < n; ++i) {
                const T m = at(i, k) / at(k, k);
                for (int j = k + 1; j < n; ++j) at(i, j) = at(i, j) - at(k, j) * m;
            }
            product = at(k, k) * product;
        }
        const T last = at(n - 1, n - 1);
        result = std::fabs(last) > thr ? product * (last * T(sign)) : T(0);
        return Ok;
    }

    // Singular matrices, alone and beside infinities; pivots and last elements at the threshold; ties.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        const int what = random.below(5);
        if (what == 0) {
            const T thr = threshold<T>(n);
            const T list[] = {thr, -thr, std::nextafter(thr, T(0)), std::nextafter(thr, T(1)), T(0), -T(0)};
            const std::vector<int> p = random.permutation(n);
            const int small = random.below(n);
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(p[size_t(i)], j) = j != i ? T(0) : i == small ? random.pick(list) : T(2);
        } else if (what == 1) { // two rows alike, or two columns
            for (int j = 0; j < n; ++j) random.chance(50) ? a(n - 1, j) = a(0, j) : a(j, n - 1) = a(j, 0);
        } else if (what == 2) { // singular from a column on, with the product so far and the last element finite or not
            const T list[] = {T(INFINITY), -T(INFINITY), std::numeric_limits<T>::max(), T(1), T(NAN)};
            const int column = random.below(n);
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) = i == j && j != column ? random.pick(list) : T(0);
        } else if (what == 3) {
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) = T(random.between(-1, 1));
        } else a(random.below(n), random.below(n)) = T(NAN);
    }
};

const Register determinant("Det", "", Determinant());
} // namespace
