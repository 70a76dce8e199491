#include "mx.h"

#include "keslmx.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <map>
#include <numeric>
#include <stdexcept>

namespace stacks {
namespace {

const std::map<std::string, std::string> names = {{"det", "keslDet"},
                                                  {"inv", "keslInvert"},
                                                  {"lu", "keslLUDecomp"},
                                                  {"solve", "keslLUBackSubst"},
                                                  {"cholesky", "keslCholeskyDecomp"},
                                                  {"cholesky_solve", "keslCholeskyBackSubst"},
                                                  {"qr", "keslQRDecomp"},
                                                  {"lstsq", "keslQRBackSubst"},
                                                  {"eigvalsh", "keslEigenValuesSym"},
                                                  {"eigh", "keslEigenValuesVectorsSym"},
                                                  {"eigvals", "keslEigenValues"},
                                                  {"eig", "keslEigenValuesVectors"}};

// The function of either precision. The library is opened, not linked: the tests of kesl do not need it.
const char* file;
template <class F> F* found(const char* name)
{
    static void* const library = dlopen(file, RTLD_NOW);
    void* const address = library ? dlsym(library, name) : nullptr;
    if (!address) throw std::runtime_error(dlerror());
    return reinterpret_cast<F*>(address);
}
#define KESL_MX(name)                                                                                                       \
    [](auto... arguments) -> int {                                                                                          \
        if constexpr (sizeof(T) == 4) return found<decltype(name##_32f)>(#name "_32f")(arguments...);                       \
        else return found<decltype(name##_64f)>(#name "_64f")(arguments...);                                                \
    }

// One object, by functions on one or as one of `count` equal objects of an array.
template <class T> class Solver {
public:
    Solver(Problem& problem, Outcome& outcome, Shape wanted)
        : p(problem), o(outcome), shape(wanted), a(p.sources[0].object<T>(0)), m(p.sources[0].rows), n(p.sources[0].cols),
          count(shape != Shape::array ? 1
                : m * n > 64          ? 2
                                      : 17),
          src(repeated(a, m * n)), dst(blank(m * n)), scratch(size_t(4 * m * n + 5 * m), T(0))
    {
    }
    int solve()
    {
        const std::string& name = p.function->name;
        const bool substitutes = name == "solve" || name == "cholesky_solve" || name == "lstsq";
        if (names.contains(name) && (substitutes || shape != Shape::oneForAll)) {
            if (name == "det") return det();
            if (name == "inv") return invert();
            if (name == "lu") return lu();
            if (name == "solve") return luSolve();
            if (name == "cholesky") return cholesky();
            if (name == "cholesky_solve") return choleskySolve();
            if (name == "qr") return qr();
            if (name == "lstsq") return qrSolve();
            if (name == "eigvalsh") return valuesSym();
            if (name == "eigh") return vectorsSym();
            if (name == "eigvals") return values();
            return vectors();
        }
        o.results.clear();
        return 0;
    }

private:
    using Numbers = std::vector<T>;

    Problem& p;
    Outcome& o;
    const Shape shape;
    T* const a;
    const int m, n, count, e = sizeof(T), row = n * e, object = m * row;
    Numbers src, dst, scratch;

    bool alone() const { return shape != Shape::array; }
    T* result(size_t i) { return o.results[i].template object<T>(0); }
    Numbers blank(int each) const { return Numbers(size_t(each * count), T(0)); }
    Numbers repeated(const T* x, int each) const
    {
        Numbers all;
        for (int k = 0; k < count; ++k) all.insert(all.end(), x, x + each);
        return all;
    }
    // Equal objects must have equal results.
    void keep(const Numbers& all, T* to) const
    {
        const size_t each = all.size() / size_t(count);
        for (size_t k = 1; k < size_t(count); ++k)
            if (std::memcmp(all.data(), all.data() + k * each, each * sizeof(T)) != 0)
                throw std::runtime_error(names.at(p.function->name) + ": equal objects have different results");
        std::copy_n(all.data(), each, to);
    }

    int det()
    {
        Numbers d = blank(1);
        const int status = alone() ? KESL_MX(keslDet_m)(src.data(), row, e, n, scratch.data(), d.data())
                                   : KESL_MX(keslDet_ma)(src.data(), object, row, e, n, scratch.data(), d.data(), count);
        keep(d, result(0));
        return status;
    }
    int invert()
    {
        const int status = alone() ? KESL_MX(keslInvert_m)(src.data(), row, e, scratch.data(), dst.data(), row, e, n)
                                   : KESL_MX(keslInvert_ma)(src.data(), object, row, e, scratch.data(), dst.data(), object,
                                                            row, e, n, count);
        if (status == keslStatusOk) keep(dst, result(0));
        return status;
    }

    // Row i of the factors is row index[i] of dst.
    std::vector<int> index;
    int factorize()
    {
        index.assign(size_t(n * count), 0);
        return alone() ? KESL_MX(keslLUDecomp_m)(src.data(), row, e, index.data(), dst.data(), row, e, n)
                       : KESL_MX(keslLUDecomp_ma)(src.data(), object, row, e, index.data(), dst.data(), object, row, e, n,
                                                  count);
    }
    int lu()
    {
        const int status = factorize();
        if (status != keslStatusOk) return status;
        keep(dst, result(0));
        std::vector<int> rows(size_t(n), 0);
        std::iota(rows.begin(), rows.end(), 0);
        int* const pivots = o.results[1].template object<int>(0);
        for (int i = 0; i < n; ++i) {
            std::copy_n(&dst[size_t(index[size_t(i)] * n)], n, result(0) + i * n);
            const auto at = std::find(rows.begin(), rows.end(), index[size_t(i)]); // behind i: it is a permutation
            pivots[i] = int(at - rows.begin()) + 1;
            std::swap(rows[size_t(i)], *at);
        }
        return status;
    }
    // All right sides, as body(b, stride0, stride2, x, stride0, stride2, how many) wants them.
    int eachSide(int length, auto body)
    {
        const Values& b = p.sources.back();
        const int k = b.cols;
        if (shape == Shape::oneForAll) return body(b.object<T>(0), e, k * e, result(0), e, k * e, k);
        for (int j = 0; j < k; ++j) {
            Numbers side, x = blank(n), first(size_t(n), 0);
            for (int i = 0; i < length; ++i) side.push_back(b.at<T>(0, i, j));
            const Numbers sides = repeated(side.data(), length);
            const int status = body(sides.data(), length * e, e, x.data(), n * e, e, count);
            if (status != keslStatusOk) return status;
            keep(x, first.data());
            for (int i = 0; i < n; ++i) result(0)[i * k + j] = first[size_t(i)];
        }
        return keslStatusOk;
    }
    int luSolve()
    {
        const int status = factorize();
        if (status != keslStatusOk) return status;
        return eachSide(n, [&](auto b, int b0, int b2, auto x, int x0, int x2, int sides) {
            if (shape == Shape::single)
                return KESL_MX(keslLUBackSubst_mv)(dst.data(), row, e, index.data(), b, b2, x, x2, n);
            if (shape == Shape::oneForAll)
                return KESL_MX(keslLUBackSubst_mva)(dst.data(), row, e, index.data(), b, b0, b2, x, x0, x2, n, sides);
            return KESL_MX(keslLUBackSubst_mava)(dst.data(), object, row, e, index.data(), b, b0, b2, x, x0, x2, n, sides);
        });
    }

    // The diagonal of a factor is stored as its reciprocals.
    int cholesky()
    {
        const int status =
            alone() ? KESL_MX(keslCholeskyDecomp_m)(src.data(), row, e, dst.data(), row, e, n)
                    : KESL_MX(keslCholeskyDecomp_ma)(src.data(), object, row, e, dst.data(), object, row, e, n, count);
        if (status == keslStatusOk) keep(dst, result(0));
        for (int i = 0; i < n; ++i) result(0)[i * n + i] = 1 / result(0)[i * n + i];
        return status;
    }
    int choleskySolve()
    {
        for (int i = 0; i < n; ++i) a[i * n + i] = 1 / a[i * n + i];
        src = repeated(a, n * n);
        return eachSide(n, [&](auto b, int b0, int b2, auto x, int x0, int x2, int sides) {
            if (shape == Shape::single) return KESL_MX(keslCholeskyBackSubst_mv)(src.data(), row, e, b, b2, x, x2, n);
            if (shape == Shape::oneForAll)
                return KESL_MX(keslCholeskyBackSubst_mva)(src.data(), row, e, b, b0, b2, x, x0, x2, n, sides);
            return KESL_MX(keslCholeskyBackSubst_mava)(src.data(), object, row, e, b, b0, b2, x, x0, x2, n, sides);
        });
    }

    int reflect()
    {
        return alone() ? KESL_MX(keslQRDecomp_m)(src.data(), row, e, scratch.data(), dst.data(), row, e, n, m)
                       : KESL_MX(keslQRDecomp_ma)(src.data(), object, row, e, scratch.data(), dst.data(), object, row, e, n,
                                                  m, count);
    }
    // Q is formed of the reflections I - 2 v v' / v'v in extended precision; the diagonal of R becomes positive.
    int qr()
    {
        const int status = reflect();
        if (status != keslStatusOk) return status;
        Numbers factors(size_t(m * n), 0);
        keep(dst, factors.data());
        const auto at = [&](int i, int j) { return static_cast<long double>(factors[size_t(i * n + j)]); };
        std::vector<long double> q(size_t(m * n), 0);
        for (int j = 0; j < n; ++j) q[size_t(j * n + j)] = at(j, j) < 0 ? -1 : 1;
        for (int k = std::min(n, m - 1) - 1; k >= 0; --k) {
            const auto v = [&](int i) { return i == k ? 1 : at(i, k); };
            long double squares = 0;
            for (int i = k; i < m; ++i) squares += v(i) * v(i);
            for (int j = 0; j < n; ++j) {
                long double dot = 0;
                for (int i = k; i < m; ++i) dot += v(i) * q[size_t(i * n + j)];
                for (int i = k; i < m; ++i) q[size_t(i * n + j)] -= 2 * v(i) * dot / squares;
            }
        }
        std::copy(q.begin(), q.end(), result(0));
        for (int i = 0; i < n; ++i)
            for (int j = i; j < n; ++j) result(1)[i * n + j] = T(at(i, i) < 0 ? -at(i, j) : at(i, j));
        return status;
    }
    int qrSolve()
    {
        const int status = reflect();
        if (status != keslStatusOk) return status;
        return eachSide(m, [&](auto b, int b0, int b2, auto x, int x0, int x2, int sides) {
            T* const spare = scratch.data();
            if (shape == Shape::single) return KESL_MX(keslQRBackSubst_mv)(dst.data(), row, e, spare, b, b2, x, x2, n, m);
            if (shape == Shape::oneForAll)
                return KESL_MX(keslQRBackSubst_mva)(dst.data(), row, e, spare, b, b0, b2, x, x0, x2, n, m, sides);
            return KESL_MX(keslQRBackSubst_mava)(dst.data(), object, row, e, spare, b, b0, b2, x, x0, x2, n, m, sides);
        });
    }

    int valuesSym()
    {
        Numbers w = blank(n);
        const int status =
            alone() ? KESL_MX(keslEigenValuesSym_m)(src.data(), row, e, scratch.data(), w.data(), n)
                    : KESL_MX(keslEigenValuesSym_ma)(src.data(), object, row, e, scratch.data(), w.data(), n, count);
        if (status == keslStatusOk) keep(w, result(0));
        std::sort(result(0), result(0) + n);
        return status;
    }
    // Values in ascending order, and the largest component of each vector positive.
    int vectorsSym()
    {
        Numbers w = blank(n), values(size_t(n), 0), v(size_t(n * n), 0);
        const int status = alone() ? KESL_MX(keslEigenValuesVectorsSym_m)(src.data(), row, e, scratch.data(), dst.data(),
                                                                          row, e, w.data(), n)
                                   : KESL_MX(keslEigenValuesVectorsSym_ma)(src.data(), object, row, e, scratch.data(),
                                                                           dst.data(), object, row, e, w.data(), n, count);
        if (status != keslStatusOk) return status;
        keep(w, values.data()), keep(dst, v.data());
        std::vector<int> order(size_t(n), 0);
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(), [&](int i, int j) { return values[size_t(i)] < values[size_t(j)]; });
        for (int j = 0; j < n; ++j) {
            const int from = order[size_t(j)];
            T largest = 0;
            for (int i = 0; i < n; ++i)
                if (const T x = v[size_t(i * n + from)]; std::abs(x) > std::abs(largest)) largest = x;
            result(0)[j] = values[size_t(from)];
            for (int i = 0; i < n; ++i)
                result(1)[i * n + j] = largest < 0 ? -v[size_t(i * n + from)] : v[size_t(i * n + from)];
        }
        return status;
    }

    int values()
    {
        Numbers re = blank(n), im = blank(n);
        const int status = alone() ? KESL_MX(keslEigenValues_m)(src.data(), row, e, re.data(), im.data(), n, scratch.data())
                                   : KESL_MX(keslEigenValues_ma)(src.data(), object, row, e, re.data(), im.data(), n, count,
                                                                 scratch.data());
        if (status == keslStatusOk) keep(re, result(0)), keep(im, result(1));
        return status;
    }
    // Its left vectors are those that are usually called the vectors of the matrix, its right ones the conjugates of the left.
    int vectors()
    {
        Numbers re = blank(n), im = blank(n), right = blank(n * n);
        const int status = alone() ? KESL_MX(keslEigenValuesVectors_m)(src.data(), row, e, right.data(), row, e, dst.data(),
                                                                       row, e, re.data(), im.data(), n, scratch.data())
                                   : KESL_MX(keslEigenValuesVectors_ma)(src.data(), object, row, e, right.data(), object,
                                                                        row, e, dst.data(), object, row, e, re.data(),
                                                                        im.data(), n, count, scratch.data());
        if (status != keslStatusOk) return status;
        keep(re, result(0)), keep(im, result(1)), keep(dst, result(2)), keep(right, result(3));
        for (int j = 0; j < n; ++j)
            if (result(1)[j] < 0)
                for (int i = 0; i < n; ++i) result(3)[i * n + j] = -result(3)[i * n + j];
        return status;
    }
};
#undef KESL_MX

} // namespace

void openMx(const char* path) { file = path; }

std::string nameInMx(const Function& f)
{
    const auto found = names.find(f.name);
    return found == names.end() ? "" : found->second;
}

Outcome mx(const Problem& p, Shape shape)
{
    return objectByObject(p, [&](Problem& one, Outcome& o) {
        return withType(p.type, [&]<class T>(T) { return Solver<T>(one, o, shape).solve(); });
    });
}

} // namespace stacks
