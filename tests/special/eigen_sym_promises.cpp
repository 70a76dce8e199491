// Symmetric eigenproblems: residual, orthogonality, length, trace and values on the hard matrices of the field, judged
// by LAPACK. The tests of the method are absolute (couplings next to epsilon, and columns next to its root, count as
// nothing), and a sweep may end early, which spoils what it had begun: so a small share of matrices of ordinary size has
// wrong results with a good status. The share is printed and bounded; V is orthogonal and the trace is kept always.
#include "../packed.h"
#include "../promises.h"
#include "../special.h"

#include <limits>

namespace {
enum Kind { dense, ordinary, repeated, clustered, graded, thousand, huge, rankOne, ill, tiny };
const char* const names[] = {"dense",     "ordinary", "repeated", "clustered",       "graded",
                             "times 1e3", "1e30",     "rank one", "ill-conditioned", "times 1e-30"};

template <class T> std::vector<double> make(Kind kind, int n, Random& random)
{
    const bool single = sizeof(T) == 4;
    std::vector<double> d(size_t(n), 0);
    const auto sign = [&] { return random.chance(50) ? 1 : -1; };
    for (int i = 0; i < n; ++i) {
        double& x = d[size_t(i)];
        x = (0.5 + 2 * random.unit()) * sign();
        if (kind == repeated) x = i ? 1 : 2 * sign();
        if (kind == rankOne) x = i ? 0 : 1;
        if (kind == thousand) x *= 1000;
        if (kind == huge) x *= 1e30;
        if (kind == tiny) x *= 1e-30;
    }
    // A product of one keeps the test for singular matrices away; with the greatest value one, it must report.
    const double condition =
        kind == ill ? 1 / double(std::numeric_limits<T>::epsilon()) : std::exp2(random.unit() * (single ? 10 : 24));
    const double width = std::pow(10, -(2 + random.unit() * (single ? 5 : 13)));
    for (int i = 0; i < n && (kind == graded || kind == ill); ++i)
        d[size_t(i)] = sign() * std::pow(condition, (kind == graded ? 0.5 : 0) - double(i) / (n - 1));
    for (int i = 0; i < n && kind == clustered; ++i) d[size_t(i)] = 1 + width * random.unit();
    std::vector<double> a = withSpectrum(d, true, random);
    for (int i = 0; i < n && kind == dense; ++i)
        for (int j = 0; j <= i; ++j) a[size_t(i * n + j)] = a[size_t(j * n + i)] = 2 * random.unit() - 1 + (i == j);
    return a;
}

// Everything in units of n epsilon, and of the norm where that applies.
struct Errors {
    Figures values, residual, orthogonality, length, trace;
};

template <class T> void judge(int n, const std::vector<T>& a, const std::vector<T>& l, const std::vector<T>& V, Errors& e)
{
    const size_t N = size_t(n);
    std::vector<double> work(a.begin(), a.end()), exact(N);
    LAPACKE_dsyev(LAPACK_ROW_MAJOR, 'N', 'U', n, work.data(), n, exact.data());
    const double unit = n * double(std::numeric_limits<T>::epsilon());
    const double norm = std::max(std::fabs(exact[0]), std::fabs(exact[N - 1]));
    double values = 0, residual = 0, orthogonality = 0, length = 0, trace = 0, size = 0;
    for (size_t c = 0; c < N; ++c) {
        values = std::max(values, std::fabs(double(l[c]) - exact[N - 1 - c]));
        double squares = 0;
        for (size_t i = 0; i < N; ++i) {
            double x = -double(l[c]) * double(V[i * N + c]);
            for (size_t k = 0; k < N; ++k) x += double(a[i * N + k]) * double(V[k * N + c]);
            squares += x * x;
        }
        residual = std::max(residual, std::sqrt(squares));
        for (size_t k = 0; k <= c; ++k) {
            double dot = 0;
            for (size_t i = 0; i < N; ++i) dot += double(V[i * N + c]) * double(V[i * N + k]);
            if (k == c) length = std::max(length, std::fabs(std::sqrt(dot) - 1));
            else orthogonality = std::max(orthogonality, std::fabs(dot));
        }
        trace += double(l[c]) - double(a[c * N + c]), size += std::fabs(double(l[c]));
    }
    e.values.add(n, values / (unit * norm)), e.residual.add(n, residual / (unit * norm));
    e.orthogonality.add(n, orthogonality / unit), e.length.add(n, length / unit);
    e.trace.add(n, std::fabs(trace) / (unit * size));
}

template <class T> void promises(const Level& level, const Form& form)
{
    const double eps = double(std::numeric_limits<T>::epsilon());
    SCOPED_TRACE(form.name<T>("EigenValuesVectorsSym"));
    for (int kind = dense; kind <= tiny; ++kind) {
        SCOPED_TRACE(names[kind]);
        Random random(names[kind], sizeof(T));
        Errors errors;
        int statuses[2] = {};
        const int rounds = cases(2100);
        for (int round = 0; round < rounds; ++round) {
            Dims dims;
            const int n = dims['n'] = 3 + round % 7;
            const std::vector<double> wide = make<T>(Kind(kind), n, random);
            const std::vector<T> a(wide.begin(), wide.end());
            const auto values = callPacked<T>(level, form.name<T>("EigenValuesSym"), dims, {a}, 1, form.gap());
            const auto both = callPacked<T>(level, form.name<T>("EigenValuesVectorsSym"), dims, {a}, 1, form.gap());
            if (kind >= rankOne) {
                EXPECT_NE(values.status, Ok) << n;
                EXPECT_NE(both.status, Ok) << n;
                statuses[0] += values.status == Singular, statuses[1] += both.status == Singular;
                continue;
            }
            if (kind == huge && sizeof(T) == 4) {
                EXPECT_EQ(values.status, NoConvergence) << n;
                EXPECT_EQ(both.status, form.array() ? Ok : NoConvergence) << n;
            }
            statuses[0] += values.status == Ok, statuses[1] += both.status == Ok;
            if (both.status == Ok) judge(n, a, both.results[1], both.results[0], errors);
            if (both.status == Ok && values.status == Ok) { // as good as those with vectors
                double difference = 0, norm = 0;
                for (size_t i = 0; i < size_t(n); ++i) {
                    difference = std::max(difference, std::fabs(double(values.results[0][i]) - double(both.results[1][i])));
                    norm = std::max(norm, std::fabs(double(both.results[1][i])));
                }
                errors.values.add(n, difference / (n * eps * norm));
            }
        }
        const bool overflows = kind == huge && sizeof(T) == 4;
        std::printf("%s, %s: %d of %d, and %d without vectors, %s\n", form.name<T>("EigenValuesVectorsSym").c_str(),
                    names[kind], statuses[1], rounds, statuses[0],
                    kind >= rankOne ? "are singular" : "have a result; in n epsilon:");
        for (int count : statuses) EXPECT_GE(count, overflows ? 0 : rounds * 995 / 1000) << "the others do not converge";
        if (errors.residual.count() == 0) continue;
        errors.values.print("  values"), errors.residual.print("  residual"), errors.trace.print("  trace");
        errors.orthogonality.print("  orthogonality"), errors.length.print("  length");
        EXPECT_LT(errors.orthogonality.worst(), 10);
        EXPECT_LT(errors.length.worst(), 10);
        EXPECT_LT(errors.trace.worst(), 10);
        // Couplings up to 2 root(epsilon) count as nothing, which only clusters of that width show.
        const double bound = kind == clustered ? 2 / (3 * std::sqrt(eps)) : 10;
        const int allowed = rounds * (sizeof(T) == 4 || kind == repeated ? 20 : 2) / 1000 + 1;
        for (const Figures* figures : {&errors.values, &errors.residual}) {
            std::printf("  %d", figures->above(bound));
            EXPECT_LE(figures->above(bound), allowed);
        }
        std::printf(" values and residuals above %.3g\n", bound);
    }
}
const Special symmetric("EigenSym", "promises", [](const Level& level) {
    for (const Form& form : {Form{"m", ""}, Form{"m", "2"}, Form{"ma", ""}, Form{"ma", "L"}})
        promises<float>(level, form), promises<double>(level, form);
});
} // namespace
