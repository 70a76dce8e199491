// General eigenproblems: residuals of right and left vectors, their length and phase, and eigenvalues against LAPACK's
// within what the condition of each of them explains.
#include "../packed.h"
#include "../promises.h"
#include "../special.h"

#include <complex>
#include <limits>

namespace {
using Complex = std::complex<double>;

enum Kind { dense, integers, orthogonal, companion, triangular, illConditioned, graded, large, small, huge, tiny };
const char* const names[] = {"dense",  "integers",  "orthogonal", "companion",  "triangular", "ill-conditioned",
                             "graded", "times 1e3", "times 1e-3", "times 1e30", "times 1e-30"};

std::vector<double> make(Kind kind, int n, Random& random)
{
    std::vector<double> a(size_t(n * n));
    for (double& x : a) x = kind == integers ? random.between(-9, 9) : 2 * random.unit() - 1;
    const auto each = [&](auto&& element) {
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) a[size_t(i * n + j)] = element(i, j, a[size_t(i * n + j)]);
    };
    if (kind == orthogonal) a = withSpectrum(std::vector<double>(size_t(n), 1), false, random);
    if (kind == illConditioned) {
        std::vector<double> d;
        for (int i = 0; i < n; ++i) d.push_back(std::pow(10, -6.0 * i / n));
        a = withSpectrum(d, false, random);
    }
    if (kind == companion) each([&](int i, int j, double x) { return i == 0 ? 4 * x : i == j + 1; });
    if (kind == triangular) each([&](int i, int j, double x) { return i < j ? x : i == j ? x + i : 0; });
    if (kind == graded) each([&](int i, int j, double x) { return x * std::exp2(-(i + j) / 2.0); });
    if (kind == large) each([&](int, int, double x) { return x * 1e3; });
    if (kind == small) each([&](int, int, double x) { return x * 1e-3; });
    if (kind == huge) each([&](int, int, double x) { return x * 1e30; });
    if (kind == tiny) each([&](int, int, double x) { return x * 1e-30; });
    return a;
}

struct Errors {
    Figures values, right, left, length, phase; // in n epsilon, the first three also of the norm
};

// LAPACK's eigenvalues and how well each of them is determined: the cosine of its left and right vectors.
struct Exact {
    std::vector<Complex> values;
    std::vector<double> cosines;
    explicit Exact(std::vector<double> a, int n)
    {
        const size_t N = size_t(n);
        std::vector<double> re(N), im(N), l(N * N), r(N * N);
        LAPACKE_dgeev(LAPACK_ROW_MAJOR, 'V', 'V', n, a.data(), n, re.data(), im.data(), l.data(), n, r.data(), n);
        for (size_t j = 0; j < N; ++j) {
            const size_t first = im[j] < 0 ? j - 1 : j;
            Complex dot = 0;
            for (size_t i = 0; i < N; ++i) {
                const auto at = [&](const std::vector<double>& v) {
                    return Complex(v[i * N + first], im[j] == 0 ? 0 : v[i * N + first + 1]);
                };
                dot += std::conj(at(l)) * at(r);
            }
            values.push_back({re[j], im[j]}), cosines.push_back(std::abs(dot));
        }
    }
};

template <class T>
void judgeValues(int n, double norm, const Exact& exact, const std::vector<T>& re, const std::vector<T>& im, Figures& f)
{
    const double eps = double(std::numeric_limits<T>::epsilon());
    std::vector<bool> taken(size_t(n), false);
    for (size_t i = 0; i < size_t(n); ++i) {
        const Complex value{double(re[i]), double(im[i])};
        size_t nearest = 0;
        double distance = INFINITY;
        for (size_t j = 0; j < size_t(n); ++j)
            if (const double d = std::abs(value - exact.values[j]); !taken[j] && d < distance) distance = d, nearest = j;
        taken[nearest] = true;
        // Behind a certain condition the first order of the perturbation says nothing.
        if (exact.cosines[nearest] > 100 * std::sqrt(n * eps))
            f.add(n, distance * exact.cosines[nearest] / (n * eps * norm));
    }
}

// A set of vectors: those of the transpose, or of a itself.
template <class T> void judgeVectors(int n, double norm, const std::vector<T>& a, bool transposed, const std::vector<T>& re,
                                     const std::vector<T>& im, const std::vector<T>& V, Errors& e)
{
    const size_t N = size_t(n);
    const double unit = n * double(std::numeric_limits<T>::epsilon());
    double residual = 0, length = 0, phase = 0;
    for (size_t j = 0; j < N; ++j) {
        const bool pair = im[j] != 0;
        const Complex value{double(re[j]), double(im[j])};
        std::vector<Complex> x;
        for (size_t i = 0; i < N; ++i) x.push_back({double(V[i * N + j]), pair ? double(V[i * N + j + 1]) : 0});
        double squares = 0, r = 0;
        Complex greatest = 0;
        for (size_t i = 0; i < N; ++i) {
            Complex sum = -value * x[i];
            for (size_t k = 0; k < N; ++k) sum += double(transposed ? a[k * N + i] : a[i * N + k]) * x[k];
            r += std::norm(sum), squares += std::norm(x[i]);
            if (std::norm(x[i]) > std::norm(greatest)) greatest = x[i];
        }
        residual = std::max(residual, std::sqrt(r)), length = std::max(length, std::fabs(std::sqrt(squares) - 1));
        if (pair) {
            phase = std::max(phase, std::fabs(greatest.imag()));
            EXPECT_GT(im[j], 0);
            EXPECT_EQ(im[j + 1], -im[j]);
            EXPECT_EQ(re[j + 1], re[j]);
            ++j;
        }
    }
    (transposed ? e.right : e.left).add(n, residual / (unit * norm));
    e.length.add(n, length / unit), e.phase.add(n, phase / unit);
}

template <class T> void promises(const Level& level, const Form& form)
{
    const bool single = sizeof(T) == 4;
    for (int kind = dense; kind <= tiny; ++kind) {
        const std::string name = form.name<T>("EigenValuesVectors") + ", " + names[kind];
        SCOPED_TRACE(name);
        // Shifts of single precision, also those of most vectors of double precision, need its range.
        const bool extreme = kind >= huge, narrow[] = {single, single || form.array(), true, true};
        Random random(names[kind], sizeof(T));
        Errors errors;
        for (int round = 0; round < cases(1400); ++round) {
            Dims dims;
            const int n = dims['n'] = 3 + round % 7;
            const std::vector<double> wide = make(Kind(kind), n, random);
            const std::vector<T> a(wide.begin(), wide.end());
            double norm = 0;
            for (T x : a) norm = std::hypot(norm, double(x));
            const Exact exact({a.begin(), a.end()}, n);
            static const char* const operations[] = {"EigenValues", "EigenValuesVectors", "EigenValuesVectorsRight",
                                                     "EigenValuesVectorsLeft"};
            for (int i = 0; i < 4; ++i) {
                const auto solved = callPacked<T>(level, form.name<T>(operations[i]), dims, {a}, 1, form.gap());
                if (extreme && narrow[i]) {
                    EXPECT_TRUE(kind == tiny || solved.status == NoConvergence);
                    continue;
                }
                ASSERT_EQ(solved.status, Ok);
                if (kind == tiny && i > 0) continue; // two real values closer than epsilon are not told from a pair
                const auto &re = solved.results.end()[-2], &im = solved.results.end()[-1];
                // Values alone take couplings next to epsilon for nothing, whatever the norm.
                judgeValues(n, i == 0 ? std::max(1.0, norm) : norm, exact, re, im, errors.values);
                if (i == 1 || i == 2) judgeVectors(n, norm, a, true, re, im, solved.results[0], errors);
                if (i == 1 || i == 3) judgeVectors(n, norm, a, false, re, im, solved.results[i == 1], errors);
            }
        }
        if (errors.values.count() == 0) continue;
        std::printf("%s, in n epsilon:\n", name.c_str());
        errors.values.print("  values"), errors.right.print("  right residual"), errors.left.print("  left residual");
        errors.length.print("  length"), errors.phase.print("  phase");
        EXPECT_LT(errors.values.worst(), 10);
        EXPECT_LT(errors.length.worst(), 10);
        EXPECT_LT(errors.phase.worst(), 10);
        // Of two almost equal real values the difference is only estimated, and the vectors then do not fit: random
        // triangular matrices have some.
        const int allowed = kind == triangular ? errors.right.count() / 500 + 2 : 0;
        EXPECT_LE(errors.right.above(10), allowed);
        EXPECT_LE(errors.left.above(10), allowed);
    }
}
const Special general("EigenGeneral", "promises", [](const Level& level) {
    for (const Form& form : {Form{"m", ""}, Form{"ma", ""}}) promises<float>(level, form), promises<double>(level, form);
});
} // namespace
