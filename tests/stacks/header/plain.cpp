// kesl.hpp on containers of the standard library, on C arrays, on views with strides and on a type of the user's.
#include <kesl.hpp>

#include "expect.h"

#include <limits>
#include <vector>

// A record of a program, whose matrix lies among other things.
struct Measurement {
    double time;
    float m[2][3];
    int sensor;
};

// A type of the user's own.
struct Symmetric {
    double xx, xy, xz, yx, yy, yz, zx, zy, zz;
};
template <> struct kesl::object<Symmetric> : kesl::dense_object<double, 3, 3> {};

namespace {

using Matrix = std::array<std::array<float, 3>, 3>;
const Matrix diagonal = {{{2, 0, 0}, {0, 4, 0}, {0, 0, 8}}};

void testContainers()
{
    const std::vector<Matrix> a(5, diagonal);
    std::vector<Matrix> x(5);
    EXPECT(kesl::inv(a, x) == 0);
    for (const Matrix& m : x) EXPECT(m[0][0] == 0.5f && m[1][1] == 0.25f && m[2][2] == 0.125f && m[0][1] == 0);

    std::vector<float> d(5);
    EXPECT(kesl::det(a, d) == 0);
    EXPECT(d[4] == 64);
    EXPECT(kesl::trace(a, d) == 0);
    EXPECT(d[0] == 14);

    const std::vector<std::array<float, 3>> b(5, {2, 8, 32});
    std::vector<std::array<float, 3>> y(5);
    EXPECT(kesl::solve(a, b, y) == 0);
    EXPECT(y[2][0] == 1 && y[2][1] == 2 && y[2][2] == 4);
    EXPECT(kesl::matmul(a, y, y) == 0); // in place, a vector as a matrix of one column
    EXPECT(y[3] == b[3]);
    EXPECT(kesl::vecdot(b, b, d) == 0);
    EXPECT(d[1] == 4 + 64 + 1024);
    const std::array<float, 3> only[1] = {{3, 0, 4}};
    EXPECT(kesl::norm(only, d) == 0); // one object for all
    EXPECT(d[4] == 5);
    EXPECT(kesl::cross(b, b, y) == 0);
    EXPECT(y[0][1] == 0);

    double c[2][2][2] = {{{4, 2}, {2, 5}}, {{9, 3}, {3, 17}}}, l[2][2][2];
    EXPECT(kesl::cholesky(c, l) == 0);
    EXPECT(l[0][0][0] == 2 && l[0][1][0] == 1 && l[0][1][1] == 2 && l[0][0][1] == 0 && l[1][1][1] == 4);
    double side[2][2] = {{8, 9}, {9, 19}}, z[2][2];
    EXPECT(kesl::cholesky_solve(l, side, z) == 0);
    EXPECT(z[1][1] == 1);
}

void testFactors()
{
    const std::vector<Matrix> a(3, Matrix{{{0, 2, 0}, {4, 0, 0}, {0, 0, 8}}});
    std::vector<Matrix> lu(3), q(3), r(3);
    std::vector<std::array<int, 3>> pivots(3);
    EXPECT(kesl::lu(a, lu, pivots) == 0);
    EXPECT((pivots[2] == std::array<int, 3>{2, 2, 3}) && lu[2][0][0] == 4);
    const std::vector<std::array<float, 3>> b(3, {2, 4, 8});
    std::vector<std::array<float, 3>> x(3), w(3);
    EXPECT(kesl::lu_solve(lu, pivots, b, x) == 0);
    EXPECT(x[1][0] == 1 && x[1][1] == 1 && x[1][2] == 1);
    EXPECT(kesl::lstsq(a, b, x) == 0);
    EXPECT(x[1][0] > 0.999f && x[1][0] < 1.001f);
    EXPECT(kesl::qr(a, q, r) == 0);
    EXPECT(r[0][0][0] > 3.999f && r[0][1][0] == 0);

    std::vector<Matrix> v(3), vt(3);
    const std::vector<Matrix> s(3, diagonal);
    EXPECT(kesl::eigvalsh(s, w) == 0);
    EXPECT(w[0][0] == 2 && w[0][2] == 8);
    EXPECT(kesl::eigh(s, w, v) == 0);
    EXPECT(v[2][0][0] == 1);
    EXPECT(kesl::svdvals(s, w) == 0);
    EXPECT(w[0][0] == 8 && w[0][2] == 2);
    EXPECT(kesl::svd(s, v, w, vt) == 0);
    EXPECT(vt[2][0][2] == 1);
}

void testComplex()
{
    const std::array<std::array<double, 2>, 2> rotation[1] = {{{{0, -2}, {2, 0}}}};
    std::vector<std::array<std::complex<double>, 2>> w(4);
    EXPECT(kesl::eigvals(rotation, w) == 0);
    EXPECT(std::abs(w[3][0] - std::complex<double>(0, 2)) < 1e-14 && w[3][1] == std::conj(w[3][0]));
    double wr[4][2], wi[4][2], vr[4][2][2], vl[4][2][2];
    EXPECT(kesl::eigvals(rotation, wr, wi) == 0);
    EXPECT(std::abs(wi[1][0] - 2) < 1e-14);
    EXPECT(kesl::eig(rotation, wr, wi, vr, vl) == 0);
    EXPECT(std::abs(vr[0][0][0] * vr[0][0][0] + vr[0][1][1] * vr[0][1][1] - 1) < 1e-14 || vr[0][0][0] == 0);
    EXPECT(kesl::eig(rotation, w, vr, nullptr) == 0);
    EXPECT(std::abs(w[0][0].imag() - 2) < 1e-14);
}

void testViews()
{
    // Column by column: the transposed of row by row.
    const float columns[2][6] = {{1, 4, 2, 5, 3, 6}, {1, 4, 2, 5, 3, 6}};
    const auto a = kesl::stack(&columns[0][0], 2, 3, 2).transposed();
    EXPECT(a.rows() == 2 && a.cols() == 3 && a(1, 0, 2) == 3 && a(0, 1, 0) == 4);
    float c[2][2][2];
    EXPECT(kesl::matmul(a, a.transposed(), c) == 0);
    EXPECT(c[1][0][0] == 14 && c[1][0][1] == 32 && c[1][1][1] == 77);

    // Records.
    std::vector<Measurement> records(4);
    for (std::size_t k = 0; k < 4; ++k)
        for (int i = 0; i < 2; ++i)
            for (int j = 0; j < 3; ++j) records[k].m[i][j] = float(i + 1) * float(j + 1);
    const kesl::stack<const float> m(&records[0].m[0][0], 4, 2, 3, {sizeof(Measurement), 3 * sizeof(float), sizeof(float)});
    std::vector<std::array<std::array<float, 2>, 2>> product(4);
    EXPECT(kesl::matmul(m, m.transposed(), product) == 0);
    EXPECT(product[3][1][1] == 56);
    EXPECT(kesl::matmul(m.slice(1, 2), m.slice(1, 2).transposed(), kesl::stack(product).slice(0, 2)) == 0);

    std::vector<Symmetric> own(2, Symmetric{1, 0, 0, 0, 2, 0, 0, 0, 4}), inverse(2);
    EXPECT(kesl::inv(own, inverse) == 0);
    EXPECT(inverse[1].zz == 0.25 && inverse[1].xy == 0);
}

void testFailures()
{
    std::vector<Matrix> a(5, diagonal), x(5);
    a[1][1][1] = 0;
    a[3][0][2] = std::numeric_limits<float>::quiet_NaN();
    std::vector<int> info(5, 7);
    EXPECT(kesl::inv(a, x, info) == 2);
    EXPECT((info == std::vector<int>{0, 2, 0, -1, 0}));
    EXPECT(x[1][0][0] != x[1][0][0] && x[2][0][0] == 0.5f);
    int plain[5] = {};
    EXPECT(kesl::inv(a, x, plain) == 2 && plain[3] == -1);
    EXPECT(kesl::inv(a, x, nullptr) == 2);
    const std::vector<Matrix> nothing;
    std::vector<Matrix> none;
    EXPECT(kesl::inv(nothing, none) == 0);
}

void testRefusals()
{
    std::vector<Matrix> a(5, diagonal), x(5), few(4);
    std::vector<std::array<float, 2>> b(5);
    std::vector<int> info(4);
    EXPECT_THROW(kesl::inv(a, few), "kesl_inv: a has 5 objects instead of 4");
    EXPECT_THROW(kesl::inv(few, a), "kesl_inv: a has 4 objects instead of 5");
    EXPECT_THROW(kesl::solve(a, b, b), "kesl_solve: the size of b does not fit");
    EXPECT_THROW(kesl::inv(a, x, info), "kesl_inv: info has 4 elements for 5 objects");
    EXPECT_THROW(kesl::inv(kesl::stack<float>(nullptr, 5, 3, 3), x), "kesl_inv");
    EXPECT_THROW(kesl::inv(a, kesl::stack<float>(&x[0][0][0], 5, 3, 3, {36, 12, 3})), "kesl_inv");
}

} // namespace

int main()
{
    testContainers();
    testFactors();
    testComplex();
    testViews();
    testFailures();
    testRefusals();
    return failures;
}
