// The companion library. It is aside: its accuracy is that of its reference, and factors have other forms.
#include "problem.h"

#include <keslmx.h>
#include <tuple>

namespace bench::stacks {
namespace {

template <class T> constexpr auto chosen(auto single, auto twice)
{
    if constexpr (sizeof(T) == 4) return single;
    else return twice;
}
#define KESLMX(name) []<class T>(T) { return chosen<T>(kesl##name##_32f, kesl##name##_64f); }

// Arguments of an operand from an object on: a matrix has three strides, a vector two, packed results none.
template <class T> struct Arguments {
    const Problem& p;
    int first;
    T* at(int i) const { return &p.arrays[std::size_t(i)].template at<T>(first, 0, 0); }
    auto matrix(int i) const
    {
        const Array& a = p.arrays[std::size_t(i)];
        return std::tuple{at(i), int(a.stride0), int(a.stride1), int(a.stride2)};
    }
    auto vector(int i) const
    {
        const Array& a = p.arrays[std::size_t(i)];
        return std::tuple{at(i), int(a.stride0), int(a.stride1)};
    }
    auto packed(int i) const { return std::tuple{at(i)}; }
    auto integers(int i) const { return std::tuple{&p.arrays[std::size_t(i)].template at<int>(first, 0, 0)}; }
    auto scratch() const
    {
        thread_local T buffer[(3 * ::stacks::limit + 5) * ::stacks::limit];
        return std::tuple{static_cast<T*>(buffer)};
    }
};

template <class T, class Name, class List> KeslStatus statusOf(const Problem& p, Range range)
{
    const Arguments<T> arguments{p, range.begin};
    return std::apply(Name{}(T{}), List{}(arguments, p.order, range.end - range.begin));
}
template <class T, class Name, class List> void run(const Problem& p, Range range) { statusOf<T, Name, List>(p, range); }

// It writes the values of an object side by side; and the first object that it refuses would end a call early.
template <class Name, class List> bool suits(const Problem& p)
{
    const Range all{0, p.count};
    if (!p.isContiguous()) return false;
    return (p.bytes == 4 ? statusOf<float, Name, List>(p, all) : statusOf<double, Name, List>(p, all)) == keslStatusOk;
}

template <class Name, class List> bool add(const char* function, Name, List)
{
    alternatives().push_back(
        {function, "keslmx", {run<float, Name, List>, run<double, Name, List>}, 0, suits<Name, List>, true, false});
    return true;
}
auto list(auto... parts) { return std::tuple_cat(parts...); }
auto numbers(auto... n) { return std::tuple{n...}; }

const bool registered =
    add("matmul", KESLMX(Mul_mama),
        [](auto a, int n, int count) {
            return list(a.matrix(0), numbers(n, n), a.matrix(1), numbers(n, n), a.matrix(2), numbers(count));
        }) &&
    add("vecdot", KESLMX(DotProduct_vava),
        [](auto a, int n, int count) { return list(a.vector(0), a.vector(1), a.packed(2), numbers(n, count)); }) &&
    add("norm", KESLMX(L2Norm_va),
        [](auto a, int n, int count) { return list(a.vector(0), a.packed(1), numbers(n, count)); }) &&
    add("cross", KESLMX(CrossProduct_vava),
        [](auto a, int, int count) { return list(a.vector(0), a.vector(1), a.vector(2), numbers(count)); }) &&
    add("trace", KESLMX(Trace_ma),
        [](auto a, int n, int count) { return list(a.matrix(0), numbers(n), a.packed(1), numbers(count)); }) &&
    add("det", KESLMX(Det_ma),
        [](auto a, int n, int count) { return list(a.matrix(0), numbers(n), a.scratch(), a.packed(1), numbers(count)); }) &&
    add("inv", KESLMX(Invert_ma),
        [](auto a, int n, int count) { return list(a.matrix(0), a.scratch(), a.matrix(1), numbers(n, count)); }) &&
    add("lu", KESLMX(LUDecomp_ma),
        [](auto a, int n, int count) { return list(a.matrix(0), a.integers(2), a.matrix(1), numbers(n, count)); }) &&
    add("cholesky", KESLMX(CholeskyDecomp_ma),
        [](auto a, int n, int count) { return list(a.matrix(0), a.matrix(1), numbers(n, count)); }) &&
    add("cholesky_solve", KESLMX(CholeskyBackSubst_mava),
        [](auto a, int n, int count) { return list(a.matrix(0), a.vector(1), a.vector(2), numbers(n, count)); }) &&
    add("eigvalsh", KESLMX(EigenValuesSym_ma),
        [](auto a, int n, int count) { return list(a.matrix(0), a.scratch(), a.packed(1), numbers(n, count)); }) &&
    add("eigh", KESLMX(EigenValuesVectorsSym_ma),
        [](auto a, int n, int count) {
            return list(a.matrix(0), a.scratch(), a.matrix(2), a.packed(1), numbers(n, count));
        }) &&
    add("eigvals", KESLMX(EigenValues_ma),
        [](auto a, int n, int count) {
            return list(a.matrix(0), a.packed(1), a.packed(2), numbers(n, count), a.scratch());
        }) &&
    add("eig", KESLMX(EigenValuesVectorsRight_ma), [](auto a, int n, int count) {
        return list(a.matrix(0), a.matrix(3), a.packed(1), a.packed(2), numbers(n, count), a.scratch());
    });

} // namespace
} // namespace bench::stacks
