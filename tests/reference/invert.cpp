// The inverse by the adjugate: cofactors times the reciprocal of the determinant.
#include "../reference.h"

#include <cmath>
#include <limits>

namespace {
template <class T> struct Matrix {
    T at[17][17];
    T* operator[](int i) { return at[i]; }
    const T* operator[](int i) const { return at[i]; }
};

// The minor of the last n columns of `columns`, on n of the rows, expanded along the first of these columns: the last
// row's term first, signs alternating, as in a20*M20 - a10*M10 + a00*M00.
template <class T> T minor(const Matrix<T>& a, const int* rows, const int* columns, int n)
{
    if (n == 1) return a[rows[0]][columns[0]];
    if (n == 2) return a[rows[0]][columns[0]] * a[rows[1]][columns[1]] - a[rows[0]][columns[1]] * a[rows[1]][columns[0]];
    T sum = 0;
    for (int omitted = n - 1; omitted >= 0; --omitted) {
        int others[17];
        for (int i = 0, k = 0; i < n; ++i)
            if (i != omitted) others[k++] = rows[i];
        const T term = a[rows[omitted]][columns[0]] * minor(a, others, columns + 1, n - 1);
        if (omitted == n - 1) sum = omitted % 2 ? -term : term;
        else sum = omitted % 2 ? sum - term : sum + term;
    }
    return sum;
}

const int all[17] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

void without(int omitted, int n, int* rest)
{
    for (int i = 0, k = 0; i < n; ++i)
        if (i != omitted) rest[k++] = i;
}

struct Inverse {
    static bool scratchAtWill(const Dims& d) { return d['n'] <= 16; } // packs need none
    static double cost(const Dims& d)
    {
        const double n = d['n'];
        return n == 2 || n > 6 ? n * n * n * n * n : n * n * n;
    }

    static bool inPlace(const Function&, const Dims& d, int) { return d['n'] == 1 || (d['n'] >= 3 && d['n'] <= 6); }

    template <class T> static T threshold(int n)
    {
        return T(int(2u * unsigned(n) * unsigned(n) * unsigned(n))) * std::numeric_limits<T>::min();
    }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['n'];
        Matrix<T> a;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) a[i][j] = o.source(0)(i, j);
        if (n == 1) {
            if (!(std::fabs(a[0][0]) > threshold<T>(1))) return Singular;
            o.destination()(0, 0) = T(1) / a[0][0];
            return Ok;
        }
        return n >= 3 && n <= 6 ? closed(o, a, n) : general(o, a, n);
    }

    template <class T> static Outcome closed(const Object<T>& o, const Matrix<T>& a, int n)
    {
        const T det = minor(a, all, all, n);
        if (threshold<T>(n) > std::fabs(det)) return Singular;
        const T r = T(1) / det;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                int rows[17], columns[17];
                without(j, n, rows), without(i, n, columns);
                const T m = minor(a, rows, columns, n - 1);
                o.destination()(i, j) = ((i + j) % 2 ? 0 - m : m) * r;
            }
        return Ok;
    }

    // Elimination with partial pivoting through a table of rows. False where a pivot is too small.
    template <class T> static bool eliminate(Matrix<T>& a, int* p, int n, T thr, T& result, int& sign)
    {
        for (int i = 0; i < n; ++i) p[i] = i;
        result = 1, sign = 1;
        for (int k = 0; k < n - 1; ++k) {
            T best = std::fabs(a[p[k]][k]);
            int q = k;
            for (int i = k + 1; i < n; ++i)
                if (std::fabs(a[p[i]][k]) > best) best = std::fabs(a[p[i]][k]), q = i;
            if (p[q] != p[k]) std::swap(p[q], p[k]), sign = -sign;
            if (thr > best) return false;
            const T r = T(1) / a[p[k]][k];
            for (int i = k + 1; i < n; ++i) {
                const T m = a[p[i]][k] * r;
                for (int j = k + 1; j < n; ++j) a[p[i]][j] = a[p[i]][j] - a[p[k]][j] * m;
            }
            result = result * a[p[k]][k];
        }
        return true;
    }

    template <class T> static Outcome general(const Object<T>& o, const Matrix<T>& source, int n)
    {
        *o.buffer = true;
        const T thr = threshold<T>(n);
        int p[17], sign;
        T result;
        Matrix<T> a = source;
        if (!eliminate(a, p, n, thr, result, sign)) return Singular;
        const T det = result * (T(sign) * a[p[n - 1]][n - 1]);
        if (thr >= std::fabs(det)) return Singular; // not strict, unlike the others
        const T reciprocal = T(1) / det;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                int rows[17], columns[17];
                without(i, n, rows), without(j, n, columns);
                for (int r = 0; r < n - 1; ++r)
                    for (int c = 0; c < n - 1; ++c) a[r][c] = source[rows[r]][columns[c]];
                T c;
                int s;
                if (!eliminate(a, p, n - 1, thr, c, s)) c = thr; // a singular minor is tiny, not zero
                const T last = a[p[n - 2]][n - 2];
                const T cofactor = std::fabs(last) > thr ? c * (last * T(s)) : thr;
                o.destination()(j, i) = (cofactor * reciprocal) * T((i + j) % 2 ? -1 : 1);
            }
        return Ok;
    }

    // Determinants at the threshold and next to it, minors that vanish, tied pivots.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        const int what = random.below(6);
        if (what < 2) { // a permuted diagonal whose products are exact
            const std::vector<int> p = random.permutation(n);
            const T thr = threshold<T>(n);
            const T list[] = {thr, std::nextafter(thr, T(0)), std::nextafter(thr, T(1)), thr * 2, thr, -thr};
            const int small = random.below(n);
            const T value = random.pick(list),
                    others = random.chance(50) ? T(1) : T(4); // the pivot or the product decides
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) = j != p[size_t(i)] ? T(0) : i == small ? value : others;
        } else if (what == 2) { // small whole numbers: singular minors, equal pivots
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) = i == j ? T(3) : T(random.between(-1, 1));
        } else if (what == 3) { // block triangular: some minors are exactly singular
            for (int i = 1; i < n; ++i) a(i, 0) = 0;
        } else if (what == 4) { // out of scale, but not out of range
            const T scale = T(std::exp2(random.between(-100, 100) / n));
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) *= scale;
        }
    }

    template <class T> void fail(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'], zero = random.below(n);
        for (int i = 0; i < n; ++i) o.source(0)(i, zero) = 0;
    }
};

const Register inverse("Invert", "", Inverse());
} // namespace
