// Inverts an array of matrices, and an array with a singular one.
#include <array>
#include <cmath>
#include <keslmx.h>
#include <vector>

using Matrix = std::array<double, 9>;

int main()
{
    std::vector<Matrix> a(1000, {2, 0, 0, 0, 4, 0, 1, 0, 8}), inverse(a.size());
    const auto invert = [&] {
        constexpr int e = sizeof(double), row = 3 * e, object = sizeof(Matrix);
        double buffer[12];
        return keslInvert_ma_64f(a[0].data(), object, row, e, buffer, inverse[0].data(), object, row, e, 3, int(a.size()));
    };
    if (invert() != keslStatusOk) return 1;
    const Matrix expected{0.5, 0, 0, 0, 0.25, 0, -0.0625, 0, 0.125};
    for (const Matrix& m : inverse)
        for (unsigned i = 0; i < m.size(); ++i)
            if (!(std::abs(m[i] - expected[i]) < 1e-15)) return 2;
    a[500] = {};
    return invert() == keslStatusSingular ? 0 : 3;
}
