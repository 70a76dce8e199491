#include "eigen.h"

#include <Eigen/Geometry>

namespace bench::stacks {
namespace {

// Bodies for both ways in which objects lie.
template <class Body> struct EitherWay {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        if (p.isContiguous()) Body::template run<true, T, N>(p, range);
        else Body::template run<false, T, N>(p, range);
    }
};

struct Matmul {
    template <bool isMapped, class T, int N> static void run(const Problem& p, Range range)
    {
        const bool swapped = p.layout == Layout::packed; // the transposed product of the transposed factors
        const Direct<isMapped, T, N, N> a(p, swapped), b(p, !swapped), c(p, 2);
        for (int k = range.begin; k < range.end; ++k) c.store(k, a(k) * b(k));
    }
};

struct Vecdot {
    template <bool isMapped, class T, int N> static void run(const Problem& p, Range range)
    {
        const Direct<isMapped, T, N, 1> a(p, 0), b(p, 1);
        for (int k = range.begin; k < range.end; ++k) p.arrays[2].at<T>(k, 0, 0) = a(k).dot(b(k));
    }
};

struct Norm {
    template <bool isMapped, class T, int N> static void run(const Problem& p, Range range)
    {
        const Direct<isMapped, T, N, 1> a(p, 0);
        for (int k = range.begin; k < range.end; ++k) p.arrays[1].at<T>(k, 0, 0) = a(k).norm();
    }
};
struct Cross {
    template <bool isMapped, class T, int> static void run(const Problem& p, Range range)
    {
        const Direct<isMapped, T, 3, 1> a(p, 0), b(p, 1), c(p, 2);
        for (int k = range.begin; k < range.end; ++k) c.store(k, a(k).cross(b(k)));
    }
};

struct Trace {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const int n = N < 0 ? p.order : N;
        const Array &a = p.arrays[0], &x = p.arrays[1];
        for (int k = range.begin; k < range.end; ++k) {
            const Eigen::Map<Column<T, N>, 0, Eigen::InnerStride<>> diagonal(
                &a.at<T>(k, 0, 0), n, Eigen::InnerStride<>((a.stride1 + a.stride2) / a.bytes));
            x.at<T>(k, 0, 0) = diagonal.sum();
        }
    }
};

const bool registered = addEigen<EitherWay<Matmul>>("matmul", all) && addEigen<EitherWay<Vecdot>>("vecdot", all) &&
                        addEigen<EitherWay<Norm>>("norm", all) && addEigen<Trace>("trace", all) &&
                        addEigen<EitherWay<Cross>, 3>("cross", "eigen");

} // namespace
} // namespace bench::stacks
