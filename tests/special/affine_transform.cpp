// The affine transform, at the values where something turns.
#include "../special.h"

#include <cmath>
#include <limits>

namespace {
using Transform = decltype(keslAffineTransform3DH_mva_32f);
const char* const name = "keslAffineTransform3DH_mva_32f";
const float most = std::numeric_limits<float>::max(), least = std::numeric_limits<float>::min();

// The identity but for its last row.
std::vector<float> transform(const Level& level, std::vector<float> lastRow, std::vector<float> point, int expected)
{
    const float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, lastRow[0], lastRow[1], lastRow[2], lastRow[3]};
    std::vector<float> result(3);
    setThreads({1});
    EXPECT_EQ(get<Transform>(level, name)(m, 16, 4, point.data(), 12, 4, result.data(), 12, 4, 1), expected);
    return result;
}

const Special rows("AffineTransform3DH", "last row", [](const Level& level) {
    using Point = std::vector<float>;
    EXPECT_EQ(transform(level, {0, 0, 0, 1}, {1.5f, -2, 3e10f}, keslStatusOk), (Point{1.5f, -2, 3e10f}));
    EXPECT_EQ(transform(level, {0, 0, 0, 2}, {1, -2, 3}, keslStatusOk), (Point{0.5f, -1, 1.5f}));
    const Point marker = {most, most, most};
    EXPECT_EQ(transform(level, {0, 0, 0, 0}, {1, -2, 3}, keslStatusDivideByZero), marker);
    EXPECT_EQ(transform(level, {0, 0, 0, least}, {1, -2, 3}, keslStatusDivideByZero), marker);
    EXPECT_EQ(transform(level, {0, 0, 0, -least}, {1, -2, 3}, keslStatusDivideByZero), marker);
    EXPECT_EQ(transform(level, {0, 0, 0, least / 2}, {1, -2, 3}, keslStatusDivideByZero), marker);
    EXPECT_EQ(transform(level, {0, 0, 0, NAN}, {1, -2, 3}, keslStatusDivideByZero), marker);
    EXPECT_EQ(transform(level, {0, 0, 0, 1}, {1, INFINITY, 3}, keslStatusDivideByZero), marker); // 0 * inf is in w
    const float more = std::nextafter(least, 1.f);
    EXPECT_EQ(transform(level, {0, 0, 0, more}, {1, 0, 0}, keslStatusOk), (Point{1 / more, 0, 0}));
    EXPECT_EQ(float(3.4028235e38), most);
});

const Special bad("AffineTransform3DH", "one bad point among many", [](const Level& level) {
    const float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0}; // w = x
    for (int count : {330, 331, 1000})
        for (int threads : {1, 2, 3})
            for (int spacing : {1, 2}) {
                std::vector<float> points(size_t(3 * spacing * count)), results(points.size(), 77);
                for (int k = 0; k < count; ++k) {
                    float* p = &points[size_t(3 * spacing * k)];
                    p[0] = k == count / 2 ? 0 : 2, p[spacing] = float(k), p[2 * spacing] = 1;
                }
                setThreads({threads});
                const int e = 4 * spacing;
                EXPECT_EQ(get<Transform>(level, name)(m, 16, 4, points.data(), 3 * e, e, results.data(), 3 * e, e, count),
                          keslStatusDivideByZero);
                EXPECT_EQ(watch.asked, count < 331 ? 0 : threads == 1 ? 1 : 2); // 6 * 331 + 16 is above 2000
                for (int k = 0; k < count; ++k) {
                    const float* r = &results[size_t(3 * spacing * k)];
                    ASSERT_EQ(r[0], k == count / 2 ? most : 1) << k;
                    ASSERT_EQ(r[spacing], k == count / 2 ? most : float(k) * 0.5f) << k;
                    ASSERT_EQ(r[2 * spacing], k == count / 2 ? most : 0.5f) << k;
                }
            }
});
} // namespace
