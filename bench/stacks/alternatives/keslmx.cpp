// The companion library. It is aside: its accuracy is that of its reference, and factors have other forms.
#include "element.h"

#include <keslmx.h>
#include <tuple>

namespace bench::stacks {
namespace {

// Arguments of an operand from an object on: a matrix has three strides, a vector two, packed results none.
struct Arguments {
    const Problem& p;
    int first;
    template <class T = Element> T* at(int i) const { return &p.arrays[std::size_t(i)].at<T>(first, 0, 0); }
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
    auto integers(int i) const { return std::tuple{at<int>(i)}; }
    auto scratch() const
    {
        thread_local Element buffer[(3 * ::stacks::limit + 5) * ::stacks::limit];
        return std::tuple{static_cast<Element*>(buffer)};
    }
};

template <auto function, class List> KeslStatus statusOf(const Problem& p, Range range)
{
    return std::apply(function, List{}(Arguments{p, range.begin}, p.order, range.end - range.begin));
}
template <auto function, class List> void run(const Problem& p, Range range) { statusOf<function, List>(p, range); }

// It writes the values of an object side by side; and the first object that it refuses would end a call early.
template <auto function, class List> bool suits(const Problem& p)
{
    return p.isContiguous() && statusOf<function, List>(p, {0, p.count}) == keslStatusOk;
}

template <auto function, class List> bool add(const char* name, List)
{
    alternatives().push_back({name, "keslmx", sizeof(Element), run<function, List>, 0, suits<function, List>, true, true});
    return true;
}
#define KESLMX(name) chosen(kesl##name##_32f, kesl##name##_64f)
auto list(auto... parts) { return std::tuple_cat(parts...); }
auto numbers(auto... n) { return std::tuple{n...}; }

const bool registered =
    add<KESLMX(Mul_mama)>("matmul",
                          [](auto a, int n, int count) {
                              return list(a.matrix(0), numbers(n, n), a.matrix(1), numbers(n, n), a.matrix(2),
                                          numbers(count));
                          }) &&
    add<KESLMX(DotProduct_vava)>(
        "vecdot", [](auto a, int n, int count) { return list(a.vector(0), a.vector(1), a.packed(2), numbers(n, count)); }) &&
    add<KESLMX(L2Norm_va)>("norm",
                           [](auto a, int n, int count) { return list(a.vector(0), a.packed(1), numbers(n, count)); }) &&
    add<KESLMX(CrossProduct_vava)>(
        "cross", [](auto a, int, int count) { return list(a.vector(0), a.vector(1), a.vector(2), numbers(count)); }) &&
    add<KESLMX(Trace_ma)>(
        "trace", [](auto a, int n, int count) { return list(a.matrix(0), numbers(n), a.packed(1), numbers(count)); }) &&
    add<KESLMX(Det_ma)>(
        "det",
        [](auto a, int n, int count) { return list(a.matrix(0), numbers(n), a.scratch(), a.packed(1), numbers(count)); }) &&
    add<KESLMX(Invert_ma)>(
        "inv", [](auto a, int n, int count) { return list(a.matrix(0), a.scratch(), a.matrix(1), numbers(n, count)); }) &&
    add<KESLMX(LUDecomp_ma)>(
        "lu", [](auto a, int n, int count) { return list(a.matrix(0), a.integers(2), a.matrix(1), numbers(n, count)); }) &&
    add<KESLMX(CholeskyDecomp_ma)>(
        "cholesky", [](auto a, int n, int count) { return list(a.matrix(0), a.matrix(1), numbers(n, count)); }) &&
    add<KESLMX(CholeskyBackSubst_mava)>(
        "cholesky_solve",
        [](auto a, int n, int count) { return list(a.matrix(0), a.vector(1), a.vector(2), numbers(n, count)); }) &&
    add<KESLMX(EigenValuesSym_ma)>(
        "eigvalsh",
        [](auto a, int n, int count) { return list(a.matrix(0), a.scratch(), a.packed(1), numbers(n, count)); }) &&
    add<KESLMX(EigenValuesVectorsSym_ma)>(
        "eigh", [](auto a, int n,
                   int count) { return list(a.matrix(0), a.scratch(), a.matrix(2), a.packed(1), numbers(n, count)); }) &&
    add<KESLMX(EigenValues_ma)>("eigvals",
                                [](auto a, int n, int count) {
                                    return list(a.matrix(0), a.packed(1), a.packed(2), numbers(n, count), a.scratch());
                                }) &&
    add<KESLMX(EigenValuesVectorsRight_ma)>("eig", [](auto a, int n, int count) {
        return list(a.matrix(0), a.matrix(3), a.packed(1), a.packed(2), numbers(n, count), a.scratch());
    });

} // namespace
} // namespace bench::stacks
