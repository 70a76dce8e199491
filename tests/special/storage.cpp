// Ways of storing matrices of which the header tells: by columns, but given as if by rows; symmetric ones by six numbers.
#include "../special.h"

#include <cmath>

namespace {
template <int height, int width> struct Columns {
    double at[width][height];
    double& operator()(int i, int j) { return at[j][i]; }
    double* data() { return at[0]; }
};
using Square = Columns<3, 3>;
constexpr int row = 24, size = 8;
constexpr double little = 1e-12;

Square general() { return {{{4, 1, 0.5}, {-2, 5, 1}, {1, 0.25, 3}}}; }
Square symmetric() { return {{{4, 1, 0.5}, {1, 5, -2}, {0.5, -2, 3}}}; }

#define GET(name) get<decltype(name)>(level, #name)

const Special inverse("ByColumns", "the inverse and the determinant", [](const Level& level) {
    Square a = general(), b;
    double buffer[12], det, other;
    EXPECT_EQ(GET(keslInvert_m_64f)(a.data(), row, size, buffer, b.data(), row, size, 3), 0);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            double sum = 0;
            for (int k = 0; k < 3; ++k) sum += a(i, k) * b(k, j);
            EXPECT_NEAR(sum, i == j, little);
        }
    EXPECT_EQ(GET(keslDet_m_64f)(a.data(), row, size, 3, buffer, &det), 0);
    EXPECT_EQ(GET(keslDet_m_64f)(a.data(), size, row, 3, buffer, &other), 0);
    EXPECT_NEAR(det, other, little);
});

const Special products("ByColumns", "products", [](const Level& level) {
    Columns<3, 2> a{{{1, 2, 3}, {4, 5, 6}}};
    Columns<2, 4> b{{{1, 2}, {3, 4}, {5, 6}, {7, 8}}};
    Columns<3, 4> ab;
    EXPECT_EQ(GET(keslMul_mm_64f)(b.data(), 16, 8, 2, 4, a.data(), 24, 8, 3, 2, ab.data(), 24, 8), 0);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 4; ++j) EXPECT_EQ(ab(i, j), a(i, 0) * b(0, j) + a(i, 1) * b(1, j));
    double y[3];
    EXPECT_EQ(GET(keslMul_tv_64f)(a.data(), 24, 8, 3, 2, b.data(), 8, 2, y, 8), 0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(y[i], ab(i, 0));
});

const Special symmetricEigen("ByColumns", "symmetric eigenproblems", [](const Level& level) {
    Square a = symmetric(), v;
    double buffer[9], values[3];
    EXPECT_EQ(GET(keslEigenValuesVectorsSym_m_64f)(a.data(), row, size, buffer, v.data(), row, size, values, 3), 0);
    for (int c = 0; c < 3; ++c) // a row of v each
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(a(i, 0) * v(c, 0) + a(i, 1) * v(c, 1) + a(i, 2) * v(c, 2), values[c] * v(c, i), little);
});

const Special generalEigen("ByColumns", "right eigenvectors", [](const Level& level) {
    Square a{{{1, 0, 0}, {2, 4, 0}, {3, 5, 6}}}, v, rows; // upper triangular: all values are real
    double re[3], im[3], buffer[3 * 14];
    const auto right = GET(keslEigenValuesVectorsRight_m_64f);
    EXPECT_EQ(right(a.data(), row, size, v.data(), size, row, re, im, 3, buffer), 0);
    EXPECT_EQ(right(a.data(), row, size, rows.data(), row, size, re, im, 3, buffer), 0);
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(im[c], 0);
            EXPECT_NEAR(a(i, 0) * v(0, c) + a(i, 1) * v(1, c) + a(i, 2) * v(2, c), re[c] * v(i, c), little);
            EXPECT_EQ(rows(c, i), v(i, c));
        }
});

const Special cholesky("ByColumns", "the Cholesky factor", [](const Level& level) {
    Square a = symmetric(), factor;
    double b[3] = {1, 2, 3}, x[3];
    EXPECT_EQ(GET(keslCholeskyDecomp_m_64f)(a.data(), row, size, factor.data(), row, size, 3), 0);
    EXPECT_EQ(GET(keslCholeskyBackSubst_mv_64f)(factor.data(), row, size, b, size, x, size, 3), 0);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(a(i, 0) * x[0] + a(i, 1) * x[1] + a(i, 2) * x[2], b[i], little);
    const double root = std::sqrt(a(0, 0)); // of the factor, the reciprocal
    EXPECT_NEAR(factor(0, 0), 1 / root, little);
    EXPECT_NEAR(factor(0, 2), a(0, 2) / root, little); // in the upper triangle by columns
});

const Special voigt("SixNumbers", "in the order of Voigt", [](const Level& level) {
    const double t[6] = {4, 5, 3, -2, 0.5, 1}; // xx yy zz yz xz xy of symmetric()
    const double* const list[9] = {t, t + 5, t + 4, t + 5, t + 1, t + 3, t + 4, t + 3, t + 2};
    double buffer[9], values[3], expected[3];
    EXPECT_EQ(GET(keslEigenValuesSym_ma_64f_P)(list, 0, sizeof t, buffer, values, 3, 1), 0);
    EXPECT_EQ(GET(keslEigenValuesSym_ma_64f)(symmetric().data(), 72, row, size, buffer, expected, 3, 1), 0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(values[i], expected[i]);
});
#undef GET
} // namespace
