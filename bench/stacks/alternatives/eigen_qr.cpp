#include "eigen.h"

#include <Eigen/QR>

namespace bench::stacks {
namespace {

struct Qr {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0), q(p, 1), r(p, 2);
        Square<T, N> m = a.blank();
        Eigen::HouseholderQR<Square<T, N>> qr(p.order, p.order);
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m);
            qr.compute(m);
            m = qr.householderQ();
            q.store(k, m);
            m = qr.matrixQR().template triangularView<Eigen::Upper>();
            r.store(k, m);
        }
    }
};

const bool registered = addEigen<Qr>("qr", few);

} // namespace
} // namespace bench::stacks
