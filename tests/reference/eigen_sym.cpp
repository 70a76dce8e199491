// Symmetric eigenproblems: Householder reduction of a dense copy, implicit QL in one of two directions, selection sort.
// Sums run over ascending indices; the first product starts them.
#include "../reference.h"

#include <cmath>
#include <limits>

namespace {
// T is the type of what is stored, S that of the scalars.
template <class T, class S> struct Symmetric {
    const Object<T>& o;
    const int n = o.dims['n'];
    const bool vectors = o.f.operation == "EigenValuesVectorsSym", array = o.f.array;
    const View<T>& values = o.destination(vectors); // and, during the reduction, the Householder vector
    const View<T>& V = o.destination();             // with vectors
    const T eps = std::numeric_limits<T>::epsilon();
    std::vector<T> copy = std::vector<T>(size_t(n * n));
    T product = 1;

    T& a(int i, int j) { return copy[size_t(i * n + j)]; }
    T& d(int i) { return a(i, i); }
    T& e(int i) { return a(i + 1, i); }

    int solve()
    {
        if (n == 1) {
            if (vectors) V(0, 0) = 1;
            values(0) = o.source(0)(0, 0);
            return Ok;
        }
        if (n == 2) return order2();
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                a(i, j) = o.source(0)(i, j);
                if (vectors) V(i, j) = T(i == j);
            }
        reduce();
        if (!(std::fabs(d(n - 1)) > std::fabs(d(0)) ? topDown() : bottomUp())) return NoConvergence;
        const bool sortFirst = vectors && !array && !(o.f.elemSize == 4 && !o.contiguous);
        if (sortFirst) sort();
        if (vectors && array ? double(eps) >= std::fabs(productOfValues()) : eps >= std::fabs(product)) return Singular;
        if (!sortFirst) sort();
        return Ok;
    }

    int order2()
    {
        const bool contiguousArray = array && o.f.layout.empty() && o.contiguous;
        const T threshold = !vectors && contiguousArray ? T(0x1p-52) : eps; // also in single precision
        const T a = o.source(0)(0, 0), b = o.source(0)(0, 1), d = o.source(0)(1, 1);
        const T det = a * d - b * b;
        if (threshold >= std::fabs(det)) return Singular;
        const T df = a - d, tb = b + b, root = std::sqrt(df * df + tb * tb), trace = a + d;
        T first, second;
        int sign1 = 1, sign2 = 1;
        if (trace > eps) first = (root + trace) * T(0.5), second = det / first;
        else if (trace < -eps) first = (trace - root) * T(0.5), second = det / first, sign1 = -1;
        else first = T(0.5) * root, second = T(-0.5) * root;
        values(0) = first, values(1) = second;
        if (!vectors) return Ok;

        T cs = df + root, cs1, sn1;
        if (df < -eps) cs = df - root, sign2 = -1;
        if (std::fabs(cs) > std::fabs(tb)) {
            const T ct = -tb / cs;
            sn1 = 1 / std::sqrt(1 + ct * ct), cs1 = ct * sn1;
        } else if (eps >= std::fabs(tb)) {
            cs1 = 1, sn1 = 0;
        } else {
            const T tn = -cs / tb;
            cs1 = 1 / std::sqrt(1 + tn * tn), sn1 = tn * cs1;
        }
        if (sign1 == sign2) {
            const T t = cs1;
            cs1 = -sn1, sn1 = t;
        }
        V(0, 0) = cs1, V(1, 0) = sn1, V(0, 1) = -sn1, V(1, 1) = cs1;
        return Ok;
    }

    void reduce()
    {
        // This one member has the twofold bound in single precision, too.
        const S bound = vectors && o.f.layout == "L" && o.contiguous ? S(0x1p-52) : S(eps);
        const View<T>& u = values;
        for (int k = 0; k <= n - 3; ++k) {
            S s = S(a(k + 1, k)) * S(a(k + 1, k));
            for (int i = k + 2; i < n; ++i) s = s + S(a(i, k)) * S(a(i, k));
            if (array && bound >= s) continue;
            const S alpha = std::sqrt(s), x = a(k + 1, k);
            for (int i = k + 2; i < n; ++i) u(i) = a(i, k);
            if ((array || vectors) && bound >= std::fabs(alpha - x)) continue;
            S H;
            if (x > bound) u(k + 1) = T(x + alpha), H = (s + alpha * x) * 2;
            else if (bound >= std::fabs(x)) u(k + 1) = T(alpha), H = s + s;
            else u(k + 1) = T(x - alpha), H = (s - alpha * x) * 2;
            if (bound >= H) continue;
            const S beta = 2 / H;
            for (int c = k; c < n; ++c) {
                S t = S(a(k + 1, c)) * S(u(k + 1));
                for (int i = k + 2; i < n; ++i) t = t + S(a(i, c)) * S(u(i));
                t = t * beta;
                for (int i = k + 1; i < n; ++i) a(i, c) = T(S(a(i, c)) - S(u(i)) * t);
            }
            const auto fromTheRight = [&](auto&& m, int first) {
                for (int r = first; r < n; ++r) {
                    S t = S(m(r, k + 1)) * S(u(k + 1));
                    for (int j = k + 2; j < n; ++j) t = t + S(m(r, j)) * S(u(j));
                    t = t * beta;
                    for (int j = k + 1; j < n; ++j) m(r, j) = T(S(m(r, j)) - S(u(j)) * t);
                }
            };
            fromTheRight([this](int r, int j) -> T& { return a(r, j); }, k);
            if (vectors) fromTheRight(V, 1);
        }
    }

    // Sine and cosine of one position of a sweep, and the rotation of columns i and i+1 of V.
    void rotate(int i, S f, S g, S r, S& s, S& c, bool down)
    {
        const S inverse = 1 / r;
        if (vectors && array) s = f * inverse, c = g * inverse;
        else s = f / r, c = g / r;
        for (int row = 0; row < n && vectors; ++row) {
            S z = V(row, i), w = V(row, i + 1), co = c, si = s;
            if (array) z = z * inverse, w = w * inverse, co = g, si = f;
            V(row, i) = T(down ? co * z - si * w : co * z + si * w);
            V(row, i + 1) = T(down ? si * z + co * w : co * w - si * z);
        }
    }

    // What a sweep starts with; next is the neighbour of l inside the block, m its other end.
    S shift(int l, int next, int m)
    {
        const S off = e(std::min(l, next)), g = (S(d(next)) - S(d(l))) / (off * 2), r = std::sqrt(g * g + 1);
        return (S(d(m)) - S(d(l))) + off / (g > S(eps) ? g + r : g - r);
    }

    bool bottomUp()
    {
        const bool interim = !(vectors && array); // values are stored, and multiplied, at every hit
        for (int l = n - 1; l >= 0; --l)
            for (int iter = 0;; ++iter) {
                int m = l;
                for (; m >= 1; --m)
                    if (eps >= T(0.5) * std::fabs(e(m - 1))) {
                        if (interim) values(m) = d(m), product = product * d(m);
                        break;
                    }
                if (m == l) break;
                if (iter == 30) return false;
                S g = shift(l, l - 1, m), s = 1, c = 1, p = 0, r2 = 0;
                bool early = false;
                for (int i = m; i < l; ++i) {
                    const S f = s * S(e(i)), b = c * S(e(i)), r = std::sqrt(f * f + g * g);
                    if (i != m) e(i - 1) = T(r);
                    if (S(eps) >= std::fabs(r)) {
                        d(i) = T(S(d(i)) - p), e(m) = 0, early = true;
                        break;
                    }
                    rotate(i, f, g, r, s, c, false);
                    g = S(d(i)) - p;
                    r2 = (S(d(i + 1)) - g) * s + (c + c) * b;
                    p = r2 * s;
                    d(i) = T(g + p);
                    g = r2 * c - b;
                }
                if (early || S(eps) >= std::fabs(r2)) continue;
                d(l) = T(S(d(l)) - p), e(l - 1) = T(g);
            }
        if (interim) values(0) = d(0), product = product * d(0);
        else
            for (int i = 0; i < n; ++i) values(i) = d(i);
        return true;
    }

    bool topDown()
    {
        for (int l = 0; l < n; ++l)
            for (int iter = 0;; ++iter) {
                int m = l;
                while (m <= n - 2 && !(eps >= T(0.5) * std::fabs(e(m)))) ++m;
                if (m == l) break;
                if (iter == 30) return false;
                S g = shift(l, l + 1, m), s = 1, c = 1, p = 0, r2 = 0;
                bool early = false;
                int i = m - 1;
                for (; i >= l; --i) {
                    const S f = s * S(e(i)), b = c * S(e(i)), r = std::sqrt(f * f + g * g);
                    if (i != m - 1) e(i + 1) = T(r);
                    if (S(eps) >= std::fabs(r)) {
                        d(i + 1) = T(S(d(i + 1)) - p), e(m - 1) = 0, early = true;
                        break;
                    }
                    rotate(i, f, g, r, s, c, true);
                    g = S(d(i + 1)) - p;
                    r2 = (S(d(i)) - g) * s + (c + c) * b;
                    p = r2 * s;
                    d(i + 1) = T(g + p);
                    g = r2 * c - b;
                }
                if ((early || S(eps) >= std::fabs(r2)) && i >= 0) continue;
                d(l) = T(S(d(l)) - p), e(l) = T(g);
            }
        for (int i = 0; i < n; ++i) values(i) = d(i), product = product * d(i);
        return true;
    }

    double productOfValues() const
    {
        double p = 1;
        for (int i = 0; i < n; ++i) p = p * double(values(i));
        return p;
    }

    void sort()
    {
        for (int i = 0; i < n - 1; ++i) {
            int k = i;
            for (int j = i + 1; j < n; ++j)
                if (values(j) > values(k)) k = j;
            if (k == i) continue;
            std::swap(values(i), values(k));
            for (int r = 0; r < n && vectors; ++r) std::swap(V(r, i), V(r, k));
        }
    }
};

struct Sym {
    static bool scratchAtWill(const Dims&) { return true; }
    static double cost(const Dims& d) { return d['n'] * d['n'] * d['n']; }
    static bool zerosAlike(const Dims& d) { return d['n'] <= 2; }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        *o.buffer = true;
        if (o.f.operation == "EigenValuesVectorsSym" && o.f.array) return Symmetric<T, double>{o}.solve();
        return Symmetric<T, T>{o}.solve();
    }

    // Mostly symmetric, and of a size at which it has a result: what fails hides the objects behind it.
    template <class T> void inputs(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        if (random.chance(o.f.array ? 1 : 12)) return;
        const bool symmetric = random.chance(90);
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                const T x = std::fabs(a(i, j));
                if (!(x < 1000 && (x > T(0.001) || x == 0))) a(i, j) = T(random.unit() - 0.5);
                if (j < i && symmetric) a(i, j) = a(j, i);
            }
            if (random.chance(80)) a(i, i) += T(a(i, i) < 0 ? -0.5 : 0.5); // the product of the values decides
        }
    }

    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        const T eps = std::numeric_limits<T>::epsilon();
        const auto each = [&](auto&& element) {
            for (int i = 0; i < n; ++i)
                for (int j = 0; j <= i; ++j) a(i, j) = a(j, i) = T(element(i, j));
        };
        const auto sign = [&] { return random.chance(50) ? 1 : -1; };
        const T near[] = {eps,
                          eps * 2,
                          eps / 2,
                          T(0x1p-52),
                          std::nextafter(eps, T(0)),
                          std::nextafter(eps, T(1)),
                          std::nextafter(eps * 2, T(1)),
                          T(0x1p-26),
                          T(0x1p-12),
                          0};
        std::vector<T> u;
        for (int i = 0; i < n; ++i) u.push_back(T(random.unit() - 0.5));
        const auto at = [&](int i) { return u[size_t(i)]; };
        switch (random.below(14)) {
        case 0: // diagonal, values repeated
            each([&](int i, int j) { return i == j ? sign() * random.between(1, 3) : 0; });
            break;
        case 1: // one value n-1 times, and both corners the same where the vector is
            if (random.chance(30)) u.assign(u.size(), T(sign()));
            each([&](int i, int j) { return (i == j ? T(sign()) : T(0)) + at(i) * at(j); });
            break;
        case 2: { // a cluster
            const T width = random.pick(near);
            each([&](int i, int j) { return T(i == j) + width * T(random.unit() - 0.5); });
            break;
        }
        case 3: // graded, in either direction; one step per row keeps the product above its bound
        {
            const bool up = random.chance(50);
            const double step = random.between(1, 30) / double(n);
            each([&](int i, int j) {
                const double place = up ? i + j : 2 * n - 2 - i - j;
                return std::exp2(step * (place / 2 - n * 0.25)) * (random.unit() + (i == j));
            });
            break;
        }
        case 4: { // tridiagonal already, couplings of either sign or near the bounds
            const bool nearly = random.chance(50);
            each([&](int i, int j) {
                if (i == j) return T(random.between(1, 4) * sign());
                return i > j + 1 ? T(0) : nearly ? random.pick(near) * T(sign()) : T(random.between(-2, 2));
            });
            break;
        }
        case 5: // exchanges: nothing on the diagonal, but for the middle one
            each([&](int i, int j) { return T(i + j == n - 1 || (random.chance(20) && i != j)); });
            break;
        case 6: // second differences, and Wilkinson's pairs
        {
            const bool pairs = random.chance(50);
            each([&](int i, int j) {
                return i == j ? (pairs ? std::abs(i - n / 2) : 2) : i == j + 1 ? (pairs ? 1 : -1) : 0;
            });
            break;
        }
        case 7: // corners of the same size
            a(n - 1, n - 1) = a(0, 0) * T(sign());
            break;
        case 8: { // a first column near the bounds of the reduction
            for (int i = 1; i < n; ++i)
                a(i, 0) = a(0, i) = std::sqrt(random.pick(near)) * T(random.chance(50) ? 1 : random.unit());
            if (n > 1 && random.chance(50)) a(1, 0) = a(0, 1) = T(random.unit() * sign());
            break;
        }
        case 9: { // a product at its bound
            const T last = random.pick(near);
            each([&](int i, int j) { return i == j ? i == n - 1 ? last : T(sign()) : T(0); });
            break;
        }
        case 10: { // of another scale: the product passes its bound where it is the greater one
            const T scale = T(std::exp2(random.between(random.chance(90) ? 0 : -100, 100 / n)));
            each([&](int i, int j) { return a(i, j) * scale; });
            break;
        }
        case 11: // blocks that do not meet
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j)
                    if (i / 2 != j / 2) a(i, j) = 0;
            break;
        case 12: // small whole numbers
            each([&](int i, int j) { return i == j ? 3 : random.between(-1, 1); });
            break;
        default:
            if (random.chance(20)) fail(o, random);
        }
    }

    template <class T> void fail(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        const int row = random.below(n), column = random.below(n);
        std::vector<T> u;
        for (int i = 0; i < n; ++i) u.push_back(T(random.unit() - 0.5));
        const T scale = T(random.pick(std::vector<double>{1e-30, 1e30, 1e-10, 1e-5}));
        switch (random.below(5)) {
        case 0:
            for (int i = 0; i < n; ++i) a(i, row) = a(row, i) = 0;
            break;
        case 1: a(row, column) = a(column, row) = T(random.chance(50) ? NAN : INFINITY); break;
        case 2: // of rank one, or a negative one of order two
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) = u[size_t(i)] * u[size_t(j)];
            break;
        case 3:
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) *= scale;
            break;
        default: // an unsymmetric one, which may need more sweeps than there are
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) = T((random.unit() - 0.5) * (i > j ? 1 : 1e6));
        }
    }
};

const Register values("EigenValuesSym", "", Sym());
const Register vectors("EigenValuesVectorsSym", "", Sym());
} // namespace
