// The solvers of order 2 inside the eigenvectors, whose exits and scales are hardly reached through an exported function.
#include "eigen/small_solvers.h"

#include "random.h"

#include <complex>
#include <gtest/gtest.h>

namespace {
using kesl::Solution;
template <class T> constexpr T smini = kesl::Precision<T>::floorNorm;
template <class T> constexpr T big = kesl::bigNorm<T>;

template <class T> struct SmallSolvers : testing::Test {};
using Types = testing::Types<float, double>;
TYPED_TEST_SUITE(SmallSolvers, Types);

// |C y - scale b| for the matrix of the elements (1,1), (2,1), (1,2), (2,2), with ci beside the diagonal.
template <class T>
double residual(const T (&c)[4], T ci, std::complex<double> b1, std::complex<double> b2, const Solution<T>& y)
{
    const std::complex<double> i(0, double(ci)), y1(double(y.re[0]), double(y.im[0])), y2(double(y.re[1]), double(y.im[1]));
    const double s = double(y.scale);
    return std::abs((double(c[0]) + i) * y1 + double(c[2]) * y2 - s * b1) +
           std::abs(double(c[1]) * y1 + (double(c[3]) + i) * y2 - s * b2);
}

TYPED_TEST(SmallSolvers, solve_with_the_pivot_at_each_place)
{
    using T = TypeParam;
    Random random("SmallSolvers", int(sizeof(T)));
    for (int round = 0; round < 400; ++round) {
        T x[9]; // the elements, both right-hand sides, ci
        for (T& e : x) e = T(2 * random.unit() - 1);
        T c[4] = {x[0], x[1], x[2], x[3]};
        c[round % 4] *= 4;
        const double tolerance = 400 * double(kesl::Precision<T>::eps);
        Solution<T> y;
        ASSERT_TRUE(kesl::solveTwo(c, x[4], x[5], smini<T>, y));
        EXPECT_EQ(y.scale, 1);
        const double real = double(std::abs(y.re[0]) + std::abs(y.re[1]));
        EXPECT_LE(residual<T>(c, 0, double(x[4]), double(x[5]), y), tolerance * (1 + real)) << "pivot " << round % 4;
        EXPECT_EQ(y.norm, std::max(std::abs(y.re[0]), std::abs(y.re[1])));

        ASSERT_TRUE(kesl::solveTwoComplex(c, x[8], x[4], x[5], x[6], x[7], smini<T>, y));
        EXPECT_EQ(y.scale, 1);
        const double size = double(std::abs(y.re[0]) + std::abs(y.im[0]) + std::abs(y.re[1]) + std::abs(y.im[1]));
        EXPECT_LE(residual(c, x[8], {double(x[4]), double(x[5])}, {double(x[6]), double(x[7])}, y), tolerance * (1 + size))
            << "pivot " << round % 4;
    }
}

TYPED_TEST(SmallSolvers, refuse_a_block_below_smini)
{
    using T = TypeParam;
    Solution<T> y;
    const T below[4] = {T(0.25), T(-0.25), T(0.125), 0}, equal[4] = {0, T(0.25), T(-0.5), 0};
    EXPECT_FALSE(kesl::solveTwo<T>(below, 1, 1, T(0.5), y));
    EXPECT_TRUE(kesl::solveTwo<T>(equal, 1, 1, T(0.5), y)) << "the test is strict";
    EXPECT_FALSE(kesl::solveTwoComplex<T>(below, T(-0.125), 1, 1, 1, 1, T(0.5), y));
    EXPECT_TRUE(kesl::solveTwoComplex<T>(below, T(-0.25), 1, 1, 1, 1, T(0.5), y)) << "real and imaginary parts are added";

    const T nan = std::numeric_limits<T>::quiet_NaN(), nans[4] = {nan, nan, nan, nan};
    EXPECT_FALSE(kesl::solveTwo<T>(nans, 1, 1, T(0.5), y)) << "a NaN is never the pivot";
}

TYPED_TEST(SmallSolvers, replace_a_small_second_pivot)
{
    using T = TypeParam;
    Solution<T> y;
    const T singular[4] = {4, 2, 2, 1};
    ASSERT_TRUE(kesl::solveTwo<T>(singular, 0, 1, T(0.5), y)); // 0.5 stands for the 0
    EXPECT_EQ(y.re[1], 2);
    EXPECT_EQ(y.re[0], -1);
    const T diagonal[4] = {4, 0, 0, 0};
    ASSERT_TRUE(kesl::solveTwoComplex<T>(diagonal, T(0.25), 0, 0, 1, 1, T(0.5), y)); // and for 0.25 i
    EXPECT_EQ(y.re[1], 2);
    EXPECT_EQ(y.im[1], 2);
}

TYPED_TEST(SmallSolvers, scale_against_overflow)
{
    using T = TypeParam;
    Solution<T> y;
    const T flat[4] = {1, 0, 0, smini<T>}, flatFirst[4] = {smini<T>, 0, 0, 1};
    ASSERT_TRUE(kesl::solveTwo<T>(flat, 1, 8, smini<T>, y));
    EXPECT_EQ(y.scale, T(0.125));
    EXPECT_EQ(y.re[0], T(0.125));
    EXPECT_EQ(y.re[1], big<T>);
    ASSERT_TRUE(kesl::solveTwo<T>(flatFirst, 8, 1, smini<T>, y));
    EXPECT_EQ(y.scale, T(0.125));
    EXPECT_EQ(y.re[0], big<T>) << "rows and columns are exchanged";
    ASSERT_TRUE(kesl::solveTwo<T>(flat, 1, 1, smini<T>, y));
    EXPECT_EQ(y.scale, 1) << "the tests are strict";

    const T wide[4] = {4, 0, 0, big<T> > 1e200 ? T(0x1p-996) : T(0x1p-100)}; // y2 = big before the limit of big / 4
    ASSERT_TRUE(kesl::solveTwo<T>(wide, 1, wide[3] * big<T>, smini<T>, y));
    EXPECT_EQ(y.scale, 4 / big<T>);
    EXPECT_EQ(y.re[1], 4);
    EXPECT_EQ(y.norm, 4);

    ASSERT_TRUE(kesl::solveTwoComplex<T>(flat, 0, 1, 0, 8, 0, smini<T>, y));
    EXPECT_EQ(y.scale, T(0.125));
    EXPECT_TRUE(std::isinf(y.re[1])) << "the plain quotient squares the pivot, which is 0 then";
}

TYPED_TEST(SmallSolvers, of_order_one)
{
    using T = TypeParam;
    EXPECT_EQ(kesl::solveOne<T>(4, 2, T(0.5)).re[0], T(0.5));
    EXPECT_EQ(kesl::solveOne<T>(T(-0.25), 2, T(0.5)).re[0], 4) << "smini stands for what is smaller, without its sign";
    const Solution<T> scaled = kesl::solveOne<T>(smini<T>, 8, smini<T>);
    EXPECT_EQ(scaled.scale, T(0.125));
    EXPECT_EQ(scaled.re[0], big<T>);

    const Solution<T> y = kesl::solveOneComplex<T>(3, 4, 1, 2, T(0.5), 1000);
    EXPECT_EQ(y.scale, 1);
    EXPECT_NEAR(double(y.re[0]), 0.44, 1e-6);
    EXPECT_NEAR(double(y.im[0]), 0.08, 1e-6);
    EXPECT_EQ(kesl::solveOneComplex<T>(T(0.25), T(0.125), 1, 0, T(0.5), 1000).re[0], 2);
    EXPECT_EQ(kesl::solveOneComplex<T>(T(0.5), 0, 6, 2, T(0.25), 8).scale, T(0.125)) << "8 > 0.5 * 8";
}
} // namespace
