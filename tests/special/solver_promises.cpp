// Direct solvers: residuals in units of what rounding explains, each beside that of LAPACK in the same precision.
#include "../packed.h"
#include "../promises.h"
#include "../special.h"

#include <bit>
#include <cstring>
#include <Eigen/Dense>
#include <limits>

namespace {
using Wide = long double; // judges both precisions
using Matrix = Eigen::Matrix<Wide, Eigen::Dynamic, Eigen::Dynamic>;

enum Kind { dense, orthogonal, illConditioned, graded };
const char* const names[] = {"dense", "orthogonal", "ill-conditioned", "graded rows"};

// By rows. The least singular value is about 1 or more, for the tests for singular matrices are absolute.
template <class T> std::vector<T> make(Kind kind, int width, int height, bool definite, Random& random)
{
    std::vector<double> d(size_t(width), 3), a(size_t(width * height));
    const double condition = 0.01 / (height * double(std::numeric_limits<T>::epsilon()));
    for (int i = 0; i < width && kind == illConditioned; ++i)
        d[size_t(i)] = std::pow(condition, 1 - i / std::max(width - 1.0, 1.0));
    for (int i = 0; i < width && kind != illConditioned && kind != orthogonal; ++i) d[size_t(i)] += 97 * random.unit();
    if (definite || kind == orthogonal || kind == illConditioned) a = withSpectrum(d, definite, random, height);
    else
        for (double& x : a) x = (2 * random.unit() - 1) * (kind == dense ? 100 : 1);
    for (int i = 0; i < height && kind == graded; ++i)
        for (int j = 0; j < width; ++j) a[size_t(i * width + j)] *= std::exp2(2 * i + (definite ? 2 * j : 0));
    return {a.begin(), a.end()};
}

constexpr int count = 20; // objects of an array
template <class T> std::vector<T> makeArray(Kind kind, int width, int height, bool definite, Random& random)
{
    std::vector<T> all;
    for (int k = 0; k < count; ++k)
        for (T x : make<T>(kind, width, height, definite, random)) all.push_back(x);
    return all;
}

template <class T> std::vector<T> makeSides(int length, Random& random)
{
    std::vector<T> b;
    for (int i = 0; i < length * count; ++i) b.push_back(T(2 * random.unit() - 1));
    return b;
}

// Object k of an array.
template <class T> Matrix object(const std::vector<T>& all, int height, int width, int k = 0)
{
    Matrix m(height, width);
    for (int i = 0; i < height; ++i)
        for (int j = 0; j < width; ++j) m(i, j) = Wide(all.at(size_t((k * height + i) * width + j)));
    return m;
}
template <class T> std::vector<T> slice(const std::vector<T>& all, int size, int k)
{
    return {all.begin() + k * size, all.begin() + (k + 1) * size};
}

template <class T, class Single, class Double> auto lapack(Single s, Double d)
{
    if constexpr (sizeof(T) == 4) return s;
    else return d;
}

// The worst of the library and of LAPACK.
class Beside {
public:
    Figures ours, lapacks;
    void print(const char* what) const
    {
        if (ours.count() == 0) return;
        ours.print(what), lapacks.print("    LAPACK");
    }
};

// Every kind of array: body(kind, order or width, its rounds so far, random, errors).
template <class Errors, class T, class Body> void everyKind(const std::string& title, Body body)
{
    for (int kind = dense; kind <= graded; ++kind) {
        SCOPED_TRACE(title + ", " + names[kind]);
        Random random(names[kind], sizeof(T));
        Errors errors;
        const int rounds = cases(180);
        for (int round = 0; round < rounds; ++round) body(Kind(kind), 1 + round % 9, round / 9, random, errors);
        std::printf("%s, %s, in units of rounding:\n", title.c_str(), names[kind]);
        errors.conclude();
    }
}

// ------------------------------------------------------------------------------------------------------------- LU
struct LUErrors {
    Beside factors, solution;
    void conclude() const
    {
        factors.print("  P A - L U"), solution.print("  A x - b");
        EXPECT_LT(factors.ours.worst(), 2);
        EXPECT_LT(solution.ours.worst(), 2);
    }
};

// Row i of P A is row p[i] of A and of the factors.
Wide luResidual(const Matrix& a, const Matrix& lu, const int* p)
{
    Matrix permuted = a, factors = lu;
    for (int i = 0; i < a.rows(); ++i) permuted.row(i) = a.row(p[i]), factors.row(i) = lu.row(p[i]);
    const Matrix l = factors.triangularView<Eigen::UnitLower>(), u = factors.triangularView<Eigen::Upper>();
    return (l * u - permuted).norm() / a.norm();
}
Wide solveResidual(const Matrix& a, const Matrix& x, const Matrix& b) { return (a * x - b).norm() / (a.norm() * x.norm()); }

template <class T> void luPromises(const Level& level, const std::string& layout)
{
    const Form form{"ma", layout}, solver{"mava", layout};
    everyKind<LUErrors, T>(form.name<T>("LUDecomp"), [&](Kind kind, int n, int, Random& random, LUErrors& e) {
        const double unit = n * double(std::numeric_limits<T>::epsilon());
        Dims dims;
        dims['n'] = n;
        const std::vector<T> sources = makeArray<T>(kind, n, n, false, random);
        const std::vector<T> sides = makeSides<T>(n, random);
        const auto factored = callPacked<T>(level, form.name<T>("LUDecomp"), dims, {sources}, count, form.gap());
        ASSERT_EQ(factored.status, Ok);
        const std::vector<T>&index = factored.results[0], &lu = factored.results[1]; // ints in the storage of the first
        const auto solved = callPacked<T>(level, solver.name<T>("LUBackSubst"), dims, {lu, sides, index}, count, form.gap());
        ASSERT_EQ(solved.status, Ok);
        for (int k = 0; k < count; ++k) {
            const Matrix a = object(sources, n, n, k), b = object(sides, n, 1, k);
            std::vector<int> p(size_t(n * count));
            std::memcpy(p.data(), index.data(), p.size() * sizeof(int));
            e.factors.ours.add(n, double(luResidual(a, object(lu, n, n, k), &p[size_t(k * n)])) / unit);
            e.solution.ours.add(n, double(solveResidual(a, object(solved.results[0], n, 1, k), b)) / unit);

            std::vector<T> f = slice(sources, n * n, k), x = slice(sides, n, k);
            std::vector<int> exchanges(size_t(n), 0), rows(p.begin(), p.begin() + n);
            lapack<T>(LAPACKE_sgetrf, LAPACKE_dgetrf)(LAPACK_ROW_MAJOR, n, n, f.data(), n, exchanges.data());
            lapack<T>(LAPACKE_sgetrs, LAPACKE_dgetrs)(LAPACK_ROW_MAJOR, 'N', n, 1, f.data(), n, exchanges.data(), x.data(),
                                                      1);
            for (int i = 0; i < n; ++i) rows[size_t(i)] = i;
            for (int i = 0; i < n; ++i) std::swap(rows[size_t(i)], rows[size_t(exchanges[size_t(i)] - 1)]);
            Matrix placed(n, n);
            for (int i = 0; i < n; ++i) placed.row(rows[size_t(i)]) = object(f, n, n).row(i);
            e.factors.lapacks.add(n, double(luResidual(a, placed, rows.data())) / unit);
            e.solution.lapacks.add(n, double(solveResidual(a, object(x, n, 1), b)) / unit);
        }
    });
}

// ------------------------------------------------------------------------------------------------------- Cholesky
struct CholeskyErrors {
    Beside factor, solution;
    void conclude() const
    {
        factor.print("  A - L L'"), solution.print("  A x - b");
        EXPECT_LT(factor.ours.worst(), 2);
        EXPECT_LT(solution.ours.worst(), 3); // the reciprocals of the diagonal are rounded twice
    }
};
template <class T> void choleskyPromises(const Level& level, const std::string& layout)
{
    const Form form{"ma", layout}, solver{"mava", layout};
    everyKind<CholeskyErrors, T>(form.name<T>("CholeskyDecomp"), [&](Kind kind, int n, int, Random& random,
                                                                     CholeskyErrors& e) {
        const double unit = n * double(std::numeric_limits<T>::epsilon());
        Dims dims;
        dims['n'] = n;
        const std::vector<T> sources = makeArray<T>(kind, n, n, true, random);
        const std::vector<T> sides = makeSides<T>(n, random);
        const auto factored = callPacked<T>(level, form.name<T>("CholeskyDecomp"), dims, {sources}, count, form.gap());
        ASSERT_EQ(factored.status, Ok);
        const std::vector<T>& factors = factored.results[0];
        const auto solved =
            callPacked<T>(level, solver.name<T>("CholeskyBackSubst"), dims, {factors, sides}, count, form.gap());
        ASSERT_EQ(solved.status, Ok);
        const auto residual = [](const Matrix& a, const Matrix& l) {
            return double((l * l.transpose() - a).norm() / a.norm());
        };
        for (int k = 0; k < count; ++k) {
            // Only the lower triangle counts.
            const Matrix a = object(sources, n, n, k).template selfadjointView<Eigen::Lower>(), b = object(sides, n, 1, k);
            Matrix l = object(factors, n, n, k).template triangularView<Eigen::Lower>();
            for (int i = 0; i < n; ++i) l(i, i) = 1 / l(i, i);
            e.factor.ours.add(n, residual(a, l) / unit);
            e.solution.ours.add(n, double(solveResidual(a, object(solved.results[0], n, 1, k), b)) / unit);

            std::vector<T> f = slice(sources, n * n, k), x = slice(sides, n, k);
            lapack<T>(LAPACKE_spotrf, LAPACKE_dpotrf)(LAPACK_ROW_MAJOR, 'L', n, f.data(), n);
            lapack<T>(LAPACKE_spotrs, LAPACKE_dpotrs)(LAPACK_ROW_MAJOR, 'L', n, 1, f.data(), n, x.data(), 1);
            e.factor.lapacks.add(n, residual(a, object(f, n, n).template triangularView<Eigen::Lower>()) / unit);
            e.solution.lapacks.add(n, double(solveResidual(a, object(x, n, 1), b)) / unit);
        }
    });
}

// ------------------------------------------------------------------------------------------------------------- QR
struct QRErrors {
    Beside factors[2], solution[2]; // of square matrices and of higher ones, by their width
    void conclude() const
    {
        const char* const what[2][2] = {{"  A - Q R, square", "  A x - b, square"},
                                        {"  A - Q R, higher", "  A'(A x - b), higher"}};
        for (int higher : {0, 1}) {
            factors[higher].print(what[higher][0]), solution[higher].print(what[higher][1]);
            EXPECT_LT(factors[higher].ours.worst(), 2);
            EXPECT_LT(solution[higher].ours.worst(), 2);
        }
    }
};
// Reflections with v below the diagonal are orthogonal whatever v is: what counts is that they restore A.
Wide qrResidual(const Matrix& a, const Matrix& qr)
{
    const int h = int(a.rows()), w = int(a.cols());
    Matrix product = qr.triangularView<Eigen::Upper>();
    for (int k = std::min(w, h - 1) - 1; k >= 0; --k) {
        Matrix v = qr.block(k, k, h - k, 1);
        v(0) = 1;
        product.bottomRows(h - k) -= 2 / v.squaredNorm() * v * (v.transpose() * product.bottomRows(h - k));
    }
    return (product - a).norm() / a.norm();
}
// Of a least squares solution the residual is orthogonal to the columns.
Wide leastSquaresResidual(const Matrix& a, const Matrix& x, const Matrix& b)
{
    if (a.rows() == a.cols()) return solveResidual(a, x, b);
    const Matrix r = a * x - b;
    return (a.transpose() * r).norm() / (a.norm() * (r.norm() + a.norm() * x.norm()));
}
template <class T> void qrPromises(const Level& level, const std::string& layout)
{
    const Form form{"ma", layout}, solver{"mava", layout};
    everyKind<QRErrors, T>(form.name<T>("QRDecomp"), [&](Kind kind, int w, int round, Random& random, QRErrors& e) {
        const int h = w + (round % 2) * random.between(1, 12), higher = h > w;
        const double unit = h * double(std::numeric_limits<T>::epsilon());
        Dims dims;
        dims['w'] = w, dims['h'] = h;
        const std::vector<T> sources = makeArray<T>(kind, w, h, false, random);
        const std::vector<T> sides = makeSides<T>(h, random);
        const auto factored = callPacked<T>(level, form.name<T>("QRDecomp"), dims, {sources}, count, form.gap());
        ASSERT_EQ(factored.status, Ok);
        const std::vector<T>& qr = factored.results[0];
        const auto solved = callPacked<T>(level, solver.name<T>("QRBackSubst"), dims, {qr, sides}, count, form.gap());
        ASSERT_EQ(solved.status, Ok);
        for (int k = 0; k < count; ++k) {
            const Matrix a = object(sources, h, w, k), b = object(sides, h, 1, k);
            e.factors[higher].ours.add(w, double(qrResidual(a, object(qr, h, w, k))) / unit);
            e.solution[higher].ours.add(w, double(leastSquaresResidual(a, object(solved.results[0], w, 1, k), b)) / unit);

            std::vector<T> f = slice(sources, w * h, k), tau(f.size()), g = f, x = slice(sides, h, k);
            lapack<T>(LAPACKE_sgeqrf, LAPACKE_dgeqrf)(LAPACK_ROW_MAJOR, h, w, f.data(), w, tau.data());
            lapack<T>(LAPACKE_sgels, LAPACKE_dgels)(LAPACK_ROW_MAJOR, 'N', h, w, 1, g.data(), w, x.data(), 1);
            e.factors[higher].lapacks.add(w, double(qrResidual(a, object(f, h, w))) / unit);
            e.solution[higher].lapacks.add(w, double(leastSquaresResidual(a, object(x, w, 1), b)) / unit);
        }
    });
}

// ---------------------------------------------------------------------------------------- determinant and inverse
bool closed(int n) { return n >= 3 && n <= 6; } // by expansion, else by elimination

// The sum of the magnitudes of all terms of a minor, which bounds what rounding does to its expansion. Rows and columns: bits.
Wide permanent(const Matrix& a, unsigned rows, unsigned columns)
{
    if (rows == 0) return 1;
    Wide sum = 0;
    for (unsigned left = columns; left != 0; left &= left - 1)
        sum += std::fabs(a(std::countr_zero(rows), std::countr_zero(left))) *
               permanent(a, rows & (rows - 1), columns & ~(left & -left));
    return sum;
}
Wide permanent(const Matrix& a) { return permanent(a, (1u << a.rows()) - 1, (1u << a.rows()) - 1); }

struct DetErrors {
    Beside determinant;
    void conclude() const
    {
        determinant.print("  determinant");
        EXPECT_LT(determinant.ours.worst(), 2);
    }
};
template <class T> void detPromises(const Level& level, const std::string& layout)
{
    const Form form{"ma", layout};
    everyKind<DetErrors, T>(form.name<T>("Det"), [&](Kind kind, int n, int, Random& random, DetErrors& e) {
        Dims dims;
        dims['n'] = n;
        const std::vector<T> sources = makeArray<T>(kind, n, n, false, random);
        const auto result = callPacked<T>(level, form.name<T>("Det"), dims, {sources}, count, form.gap());
        ASSERT_EQ(result.status, Ok);
        for (int k = 0; k < count; ++k) {
            const Matrix a = object(sources, n, n, k);
            const Wide exact = a.determinant();
            // What a perturbation of A of the size of its rounding does.
            const Wide condition = closed(n) ? permanent(a) : a.norm() * (exact * a.inverse()).norm();
            const Wide unit = n * Wide(std::numeric_limits<T>::epsilon()) * condition;
            e.determinant.ours.add(n, double(std::fabs(Wide(result.results[0][size_t(k)]) - exact) / unit));

            std::vector<T> f = slice(sources, n * n, k);
            std::vector<int> exchanges(size_t(n), 0);
            lapack<T>(LAPACKE_sgetrf, LAPACKE_dgetrf)(LAPACK_ROW_MAJOR, n, n, f.data(), n, exchanges.data());
            T product = 1;
            for (int i = 0; i < n; ++i)
                product *= exchanges[size_t(i)] == i + 1 ? f[size_t(i * n + i)] : -f[size_t(i * n + i)];
            e.determinant.lapacks.add(n, double(std::fabs(Wide(product) - exact) / unit));
        }
    });
}

struct InvertErrors {
    Beside inverse, residual;
    void conclude() const
    {
        inverse.print("  inverse"), residual.print("  A X - 1");
        EXPECT_LT(inverse.ours.worst(), 2);
    }
};
template <class T> void invertPromises(const Level& level, const std::string& layout)
{
    const Form form{"ma", layout};
    everyKind<InvertErrors, T>(form.name<T>("Invert"), [&](Kind kind, int n, int, Random& random, InvertErrors& e) {
        Dims dims;
        dims['n'] = n;
        const std::vector<T> sources = makeArray<T>(kind, n, n, false, random);
        const auto result = callPacked<T>(level, form.name<T>("Invert"), dims, {sources}, count, form.gap());
        ASSERT_EQ(result.status, Ok);
        for (int k = 0; k < count; ++k) {
            const Matrix a = object(sources, n, n, k), exact = a.inverse();
            // Elimination answers for a perturbation of A; an expansion for one of every term, which is more where A has
            // more than one small singular value: there LAPACK's residual is the smaller one.
            const unsigned all = (1u << n) - 1;
            Wide condition = a.norm() * exact.norm() * exact.norm(), determinant = 0;
            if (closed(n)) {
                Matrix minors(n, n);
                for (int i = 0; i < n; ++i)
                    for (int j = 0; j < n; ++j) minors(i, j) = permanent(a, all ^ (1u << i), all ^ (1u << j));
                determinant = permanent(a) / std::fabs(a.determinant());
                condition = minors.norm() / std::fabs(a.determinant()) + exact.norm() * determinant;
            }
            const Wide eps = n * Wide(std::numeric_limits<T>::epsilon());
            const auto judge = [&](const Matrix& x, Figures& inverse, Figures& residual) {
                if (eps * determinant < 0.1)
                    inverse.add(n, double((x - exact).norm() / (eps * condition))); // else all is lost
                residual.add(n, double((a * x - Matrix::Identity(n, n)).norm() / (eps * a.norm() * x.norm())));
            };
            judge(object(result.results[0], n, n, k), e.inverse.ours, e.residual.ours);

            std::vector<T> f = slice(sources, n * n, k);
            std::vector<int> exchanges(size_t(n), 0);
            lapack<T>(LAPACKE_sgetrf, LAPACKE_dgetrf)(LAPACK_ROW_MAJOR, n, n, f.data(), n, exchanges.data());
            lapack<T>(LAPACKE_sgetri, LAPACKE_dgetri)(LAPACK_ROW_MAJOR, n, f.data(), n, exchanges.data());
            judge(object(f, n, n), e.inverse.lapacks, e.residual.lapacks);
        }
    });
}

#define PROMISES(function)                                                                                                  \
    [](const Level& level) {                                                                                                \
        for (const char* layout : {"", "P"}) function<float>(level, layout), function<double>(level, layout);               \
    }
const Special lu("LUDecomp", "promises", PROMISES(luPromises)),
    cholesky("CholeskyDecomp", "promises", PROMISES(choleskyPromises)), qr("QRDecomp", "promises", PROMISES(qrPromises)),
    det("Det", "promises", PROMISES(detPromises)), invert("Invert", "promises", PROMISES(invertPromises));
} // namespace
