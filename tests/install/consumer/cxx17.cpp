// Inverts two matrices of order 2, one of them singular, by the C++ header.
#include <array>
#include <kesl.hpp>
#include <vector>

int main()
{
    using Matrix = std::array<std::array<double, 2>, 2>;
    const std::vector<Matrix> a{{{{4, 7}, {2, 6}}}, {{{1, 2}, {2, 4}}}};
    std::vector<Matrix> x(2);
    std::array<int, 2> info{};

    if (kesl::inv(a, x, info) != 1) return 1;
    if (info[0] != 0 || info[1] != 2) return 2;
    const double one = x[0][0][0] * 4 + x[0][0][1] * 2;
    if (one < 0.999999 || one > 1.000001) return 3;
    return x[1][0][0] == x[1][0][0] ? 4 : 0;
}
