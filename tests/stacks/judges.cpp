#include "judges.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <Eigen/Dense>
#include <functional>
#include <map>

namespace stacks {
namespace {

using Wide = long double;
using Matrix = Eigen::Matrix<Wide, Eigen::Dynamic, Eigen::Dynamic>;
using Vector = Eigen::Matrix<Wide, Eigen::Dynamic, 1>;
using Complex = std::complex<Wide>;

constexpr double systems = 30, symmetric = 50, general = 20;

Wide norm1(const Matrix& a) { return a.size() == 0 ? 0 : a.cwiseAbs().colwise().sum().maxCoeff(); }
Matrix identity(Eigen::Index n) { return Matrix::Identity(n, n); }
double over(Wide error, Wide unit)
{
    return error == 0 ? 0 : unit > 0 && std::isfinite(error) ? double(error / unit) : INFINITY;
}

// What a judge sees: sources and results of one object, in extended precision.
struct Case {
    std::vector<Matrix> sources, results;
    std::vector<int> pivots; // of a source or a result
    Wide eps;                // unit roundoff; LAPACK's tests of eigenproblems take twice of it
    const TestMatrix& matrix;
    std::vector<Ratio> ratios;

    const Matrix& a() const { return sources[0]; }
    Eigen::Index n() const { return a().cols(); }
    Wide ulp() const { return 2 * eps; }
    void promise(const char* what, bool kept) { ratios.push_back({what, kept ? 0 : INFINITY, 0}); }
    void add(const char* what, double value, double limit)
    {
        ratios.push_back({what, std::isnan(value) ? INFINITY : value, limit});
    }
};

Matrix lowerOf(const Matrix& a) { return a.triangularView<Eigen::Lower>(); }
Matrix symmetricOf(const Matrix& a)
{
    const Matrix lower = lowerOf(a), strict = a.triangularView<Eigen::StrictlyLower>();
    return lower + strict.transpose();
}
// P^T L U
Matrix productOf(const Matrix& lu, const std::vector<int>& pivots)
{
    Matrix a = Matrix(lu.triangularView<Eigen::UnitLower>()) * Matrix(lu.triangularView<Eigen::Upper>());
    for (Eigen::Index i = a.rows() - 1; i >= 0; --i) a.row(i).swap(a.row(pivots[size_t(i)] - 1));
    return a;
}
Wide departure(const Matrix& q) { return norm1(identity(q.cols()) - q.transpose() * q); } // from orthonormal columns
bool ascends(const Matrix& w)
{
    for (Eigen::Index i = 1; i < w.size(); ++i)
        if (!(w(i - 1) <= w(i))) return false;
    return true;
}
// The first of the largest components is positive.
bool isPointed(const Matrix& columns)
{
    for (Eigen::Index j = 0; j < columns.cols(); ++j) {
        Eigen::Index at;
        columns.col(j).cwiseAbs().maxCoeff(&at); // the first
        if (!(columns(at, j) > 0)) return false;
    }
    return true;
}

// Each column of the right sides for itself: xGET02.
void addSystem(Case& c, const Matrix& a, const Matrix& b, const Matrix& x)
{
    double worst = 0;
    for (Eigen::Index j = 0; j < b.cols(); ++j)
        worst = std::max(worst, over(norm1(b.col(j) - a * x.col(j)), norm1(a) * norm1(x.col(j)) * c.eps));
    c.add("\\|B - A X\\| / (\\|A\\| \\|X\\| ε)", worst, systems); // NaN: over() makes it infinite
}

// The distance of a computed eigenvalue from those of a matrix near by: the least singular value of A - wI, by inverse
// iteration from a vector without pattern: one with a period may hold next to nothing of the vector that is sought.
Wide distance(const Matrix& a, Complex w)
{
    using Complexes = Eigen::Matrix<Complex, Eigen::Dynamic, Eigen::Dynamic>;
    Complexes shifted = a.cast<Complex>();
    shifted.diagonal().array() -= w;
    const Eigen::PartialPivLU<Complexes> lu(shifted);
    if (lu.matrixLU().diagonal().cwiseAbs().minCoeff() == 0) return 0; // in extended precision
    Eigen::Matrix<Complex, Eigen::Dynamic, 1> x(a.rows());
    for (Eigen::Index i = 0; i < x.size(); ++i) x(i) = std::polar(Wide(1), Wide(i) * Wide(i + 1));
    x.normalize();
    Wide growth = 0, before = 0;
    for (int step = 0; step < 3 || (growth > before * Wide(1.01) && step < 30); ++step) {
        x = lu.adjoint().solve(lu.solve(x)).eval();
        before = growth;
        growth = std::sqrt(x.norm()); // tends to the largest singular value of the inverse from below
        x.normalize();
    }
    return 1 / growth;
}

// Of a matrix D B D^-1 that is badly scaled by D the errors are those of B: beside the large elements of the matrix itself
// the small eigenvalues would not count.
Vector unitsOf(const Case& c)
{
    Vector d = Vector::Ones(c.n());
    for (size_t i = 0; i < c.matrix.units.size(); ++i) d(Eigen::Index(i)) = std::exp2(Wide(c.matrix.units[i]));
    return d;
}
Matrix inItsUnits(const Case& c)
{
    const Vector d = unitsOf(c), inverse = d.cwiseInverse();
    return inverse.asDiagonal() * c.a() * d.asDiagonal();
}

// xGET22, for vectors as real columns: that of a real eigenvalue, or the real and the imaginary part of a pair's first.
// sign: -1 for left vectors, whose matrix comes transposed. Vectors of a matrix D B D^-1 are judged as those of B.
void addVectors(Case& c, const char* residual, const char* length, const Matrix& a, const Vector& d, Matrix v, int sign)
{
    const Matrix &wr = c.results[0], &wi = c.results[1];
    Matrix vw(v.rows(), v.cols());
    const auto toUnits = [&](auto vectors) {
        if (!c.matrix.units.empty()) vectors = d.cwiseInverse().asDiagonal() * vectors, vectors /= vectors.norm();
    };
    Wide enorm = 0, worstLength = 0;
    bool real = true; // the largest component of a complex vector
    for (Eigen::Index j = 0; j < v.cols(); ++j) {
        if (wi(j) == 0) {
            worstLength = std::max(worstLength, std::abs(v.col(j).norm() - 1));
            toUnits(v.middleCols(j, 1));
            vw.col(j) = wr(j) * v.col(j);
            enorm = std::max(enorm, norm1(v.col(j)));
            continue;
        }
        if (j + 1 == v.cols() || !(wi(j) > 0 && wi(j + 1) == -wi(j) && wr(j + 1) == wr(j))) {
            c.promise("pairs of eigenvalues", false);
            return;
        }
        const auto re = v.col(j), im = v.col(j + 1);
        worstLength = std::max(worstLength, std::abs(std::sqrt(re.squaredNorm() + im.squaredNorm()) - 1));
        Wide largest = 0, largestReal = 0;
        for (Eigen::Index i = 0; i < v.rows(); ++i) {
            const Wide size = std::hypot(re(i), im(i));
            largest = std::max(largest, size);
            if (im(i) == 0) largestReal = std::max(largestReal, size);
        }
        real &= largestReal >= largest * (1 - 4 * c.ulp());
        toUnits(v.middleCols(j, 2));
        vw.col(j) = wr(j) * re - sign * wi(j) * im;
        vw.col(j + 1) = wr(j) * im + sign * wi(j) * re;
        enorm = std::max(enorm, (re.cwiseAbs() + im.cwiseAbs()).sum());
        ++j;
    }
    c.add(residual, over(norm1(a * v - vw) / enorm, norm1(a) * c.ulp()), general);
    c.add(length, over(worstLength, Wide(v.rows()) * c.ulp()), general);
    c.promise("largest component real", real);
}

void judgeDeterminant(Case& c)
{
    // A change of a in its last place changes it by |A| |A^-1| |det|.
    const Eigen::FullPivLU<Matrix> lu(c.a());
    if (c.n() == 0 || !c.matrix.regular || !lu.isInvertible()) return;
    const Wide d = lu.determinant(), unit = norm1(c.a()) * norm1(lu.inverse()) * std::abs(d) * Wide(c.n()) * c.eps,
               x = c.results[0](0);
    const Wide most = c.eps == 0x1p-24L ? 0x1p128L : 0x1p1024L, least = c.eps == 0x1p-24L ? 0x1p-126L : 0x1p-1022L;
    if (std::abs(d) > 2 * most) c.promise("overflow as an infinity", std::isinf(x) && std::signbit(x) == std::signbit(d));
    else if (std::abs(d) < least / 2) c.promise("underflow", std::abs(x) <= least);
    else if (std::abs(d) < most / 2 && unit * c.eps > least)
        c.add("\\|d - det A\\| / (n \\|A\\| \\|A⁻¹\\| \\|det A\\| ε)", over(std::abs(x - d), unit), systems);
}

void judgeInverse(Case& c) // xGET03
{
    const Matrix& x = c.results[0];
    c.add("\\|I - X A\\| / (n \\|A\\| \\|X\\| ε)",
          over(norm1(identity(c.n()) - x * c.a()), Wide(c.n()) * norm1(c.a()) * norm1(x) * c.eps), systems);
}

void judgeLU(Case& c) // xGET01
{
    const Matrix& lu = c.results[0];
    bool good = true;
    for (Eigen::Index i = 0; i < c.n(); ++i) good &= c.pivots[size_t(i)] > i && c.pivots[size_t(i)] <= c.n();
    const Wide largest = Matrix(lu.triangularView<Eigen::StrictlyLower>()).cwiseAbs().maxCoeff();
    c.promise("pivots, multipliers up to 1", good && largest <= 1);
    if (good)
        c.add("\\|P A - L U\\| / (n \\|A\\| ε)",
              over(norm1(c.a() - productOf(lu, c.pivots)), Wide(c.n()) * norm1(c.a()) * c.eps), systems);
}

void judgeCholesky(Case& c) // xPOT01
{
    const Matrix a = symmetricOf(c.a()), &l = c.results[0];
    c.promise("zeros above, positive diagonal", l == lowerOf(l) && l.diagonal().minCoeff() > 0);
    c.add("\\|A - L Lᵀ\\| / (n \\|A\\| ε)", over(norm1(a - l * l.transpose()), Wide(c.n()) * norm1(a) * c.eps), systems);
}

void judgeQR(Case& c) // xQRT01, xORT01
{
    const Matrix &q = c.results[0], &r = c.results[1];
    const Wide m = Wide(c.a().rows());
    c.add("\\|A - Q R\\| / (m \\|A\\| ε)", over(norm1(c.a() - q * r), m * norm1(c.a()) * c.eps), systems);
    c.add("\\|I - Qᵀ Q\\| / (m ε)", over(departure(q), m * c.eps), systems);
    c.promise("R upper", r == Matrix(r.triangularView<Eigen::Upper>()));
    c.promise("diagonal of R not negative", r.diagonal().minCoeff() >= 0);
}

void judgeLeastSquares(Case& c)
{
    const Matrix &a = c.a(), &b = c.sources[1], &x = c.results[0];
    const Wide d = Wide(std::max({a.rows(), a.cols(), b.cols()})), error = norm1(a.transpose() * (b - a * x));
    if (c.matrix.wellConditioned)
        c.add("\\|Aᵀ (B - A X)\\| / (max(m,n,k) \\|A\\| \\|B\\| ε)", over(error, d * norm1(a) * norm1(b) * c.eps),
              systems); // xQRT17
    c.add("\\|Aᵀ (B - A X)\\| / (max(m,n,k) \\|A\\| (\\|B\\| + \\|A\\| \\|X\\|) ε)",
          over(error, d * norm1(a) * (norm1(b) + norm1(a) * norm1(x)) * c.eps), systems);
}

void judgeEigenvaluesSym(Case& c) // xSYT21, xDRVST
{
    const Matrix a = symmetricOf(c.a()), &w = c.results[0];
    const Eigen::SelfAdjointEigenSolver<Matrix> exact(a, Eigen::EigenvaluesOnly);
    c.add("\\|w - λ\\| / (\\|A\\| ε)", over((w - exact.eigenvalues()).cwiseAbs().maxCoeff(), norm1(a) * c.ulp()), symmetric);
    c.promise("ascending", ascends(w));
}

void judgeEigenvectorsSym(Case& c)
{
    const Matrix a = symmetricOf(c.a()), &w = c.results[0], &v = c.results[1];
    const Wide n = Wide(c.n());
    c.add("\\|A - V W Vᵀ\\| / (n \\|A\\| ε)",
          over(norm1(a - v * Vector(w).asDiagonal() * v.transpose()), n * norm1(a) * c.ulp()), symmetric);
    c.add("\\|I - V Vᵀ\\| / (n ε)", over(departure(v.transpose()), n * c.ulp()), symmetric);
    c.promise("ascending", ascends(w));
    c.promise("largest component of each vector positive", isPointed(v));
}

void judgeEigenvalues(Case& c)
{
    const Matrix &wr = c.results[0], &wi = c.results[1], a = inItsUnits(c);
    Wide worst = 0;
    bool pairs = true;
    for (Eigen::Index j = 0; j < c.n(); ++j) {
        worst = std::max(worst, distance(a, {wr(j), wi(j)}));
        if (wi(j) == 0) continue;
        pairs &= j + 1 < c.n() && wi(j) > 0 && wi(j + 1) == -wi(j) && wr(j + 1) == wr(j);
        ++j;
    }
    c.add("σ(A - w I) / (\\|A\\| ε)", over(worst, norm1(a) * c.ulp()), general);
    c.promise("pairs of eigenvalues", pairs);
}

void judgeEigenvectors(Case& c)
{
    const Matrix a = inItsUnits(c);
    const Vector d = unitsOf(c);
    addVectors(c, "\\|A V - V W\\| / (\\|A\\| \\|V\\| ε)", "length of V / (n ε)", a, d, c.results[2], 1);
    addVectors(c, "\\|Aᵀ U - U W*\\| / (\\|A\\| \\|U\\| ε)", "length of U / (n ε)", a.transpose(), d.cwiseInverse(),
               c.results[3], -1);
}

Vector singularValues(const Matrix& a) { return Eigen::JacobiSVD<Matrix>(a).singularValues(); }

void judgeSingularValues(Case& c)
{
    const Matrix& s = c.results[0];
    const Vector exact = singularValues(c.a());
    c.add("\\|s - σ\\| / (\\|A\\| ε)", over((s - exact).cwiseAbs().maxCoeff(), exact(0) * c.ulp()), symmetric);
    c.promise("descending, not negative", ascends(-s) && s.minCoeff() >= 0);
    if (c.matrix.scaledColumns) // a promise of one-sided Jacobi that LAPACK's bidiagonal form does not make
        c.add("scaled columns: \\|s - σ\\| / (n σ ε)",
              over((s - exact).cwiseQuotient(exact).cwiseAbs().maxCoeff(), Wide(c.n()) * c.ulp()), symmetric);
}

void judgeSingularVectors(Case& c) // xBDT01, xORT01
{
    const Matrix &u = c.results[0], &s = c.results[1], &vt = c.results[2];
    const Wide d = Wide(std::max(c.a().rows(), c.a().cols()));
    c.add("\\|A - U S Vᵀ\\| / (max(m,n) \\|A\\| ε)",
          over(norm1(c.a() - u * Vector(s).asDiagonal() * vt), d * norm1(c.a()) * c.ulp()), symmetric);
    c.add("\\|I - Uᵀ U\\| / (max(m,n) ε)", over(departure(u), d * c.ulp()), symmetric);
    c.add("\\|I - Vᵀ V\\| / (max(m,n) ε)", over(departure(vt.transpose()), d * c.ulp()), symmetric);
    c.promise("descending, not negative", ascends(-s) && s.minCoeff() >= 0);
    c.promise("largest component of each row of Vᵀ positive", isPointed(vt.transpose()));
}

void judgeNorm(Case& c)
{
    const Wide exact = c.a().norm();
    c.add("\\|x - \\|a\\|\\| / ((n/2 + 3) \\|a\\| 2ε)",
          over(std::abs(c.results[0](0) - exact), (Wide(c.a().size()) / 2 + 3) * exact * c.ulp()), 1);
}

const std::map<std::string, std::function<void(Case&)>> judges = {
    {"norm", judgeNorm},
    {"det", judgeDeterminant},
    {"inv", judgeInverse},
    {"solve", [](Case& c) { addSystem(c, c.a(), c.sources[1], c.results[0]); }},
    {"lu", judgeLU},
    {"lu_solve", [](Case& c) { addSystem(c, productOf(c.a(), c.pivots), c.sources[2], c.results[0]); }},
    {"cholesky", judgeCholesky},
    {"cholesky_solve",
     [](Case& c) {
         const Matrix l = lowerOf(c.a());
         addSystem(c, l * l.transpose(), c.sources[1], c.results[0]);
     }},
    {"qr", judgeQR},
    {"lstsq", judgeLeastSquares},
    {"eigvalsh", judgeEigenvaluesSym},
    {"eigh", judgeEigenvectorsSym},
    {"eigvals", judgeEigenvalues},
    {"eig", judgeEigenvectors},
    {"svdvals", judgeSingularValues},
    {"svd", judgeSingularVectors},
};

} // namespace

bool isJudged(const Function& f) { return judges.contains(f.name); }

std::vector<Ratio> judge(const Problem& p, const Outcome& o, std::ptrdiff_t k, const TestMatrix& matrix)
{
    Case c{{}, {}, {}, p.type == 'f' ? 0x1p-24L : 0x1p-53L, matrix, {}};
    const auto widen = [&](const Values& v, std::vector<Matrix>& to) {
        to.push_back(Matrix::Zero(v.rows, v.cols));
        for (int i = 0; i < v.rows; ++i) {
            if (v.integers) c.pivots.push_back(v.at<int>(k, i, 0));
            for (int j = 0; j < v.cols && !v.integers; ++j)
                withType(p.type, [&]<class T>(T) { to.back()(i, j) = Wide(v.at<T>(k, i, j)); });
        }
    };
    for (const Values& v : p.sources) widen(v, c.sources);
    for (const Values& v : o.results) widen(v, c.results);
    for (const Matrix& x : c.results)
        if (!x.allFinite() && p.function->name != "det") return {{"finite", INFINITY, 0}};
    judges.at(p.function->name)(c);
    return c.ratios;
}

} // namespace stacks
