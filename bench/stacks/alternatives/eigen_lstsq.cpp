#include "eigen.h"

#include <algorithm>
#include <Eigen/QR>

namespace bench::stacks {
namespace {

struct Lstsq {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        constexpr int M = N == Eigen::Dynamic ? N : std::min(2 * N, ::stacks::limit);
        using Tall = Eigen::Matrix<T, M, N>;
        const View<Tall> a(p, 0);
        const View<Column<T, M>> b(p, 1);
        const View<Column<T, N>> x(p, 2);
        Tall m = a.blank();
        Column<T, M> right = b.blank();
        Column<T, N> solution = x.blank();
        Eigen::HouseholderQR<Tall> qr(m.rows(), m.cols());
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m), b.load(k, right);
            solution = qr.compute(m).solve(right);
            x.store(k, solution);
        }
    }
};

const bool registered = addEigen<Lstsq>("lstsq", few);

} // namespace
} // namespace bench::stacks
