// keslGaxpy: dst = src1 * src2 + src3, a matrix and vectors.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "products/any_size.h"
#include "products/small_orders.h"
#include "products/small_vectors.h"

namespace kesl {

// y, an array without gaps or a single vector, added to a pack of rows at element e, or to one row.
template <int n, class Y> struct PlusRows {
    using T = typename Y::Element;
    static constexpr int most = std::max(widest / int(sizeof(T)), n); // elements that are read at once
    T repeated[most];
    const T* p;
    explicit PlusRows(const Y& y) : repeated(), p(y.p)
    {
        for (int l = 0; l < most && !Y::isArray; ++l) repeated[l] = p[l % n];
    }
    const T* at(std::int64_t e) const { return Y::isArray ? p + e : repeated; }
    template <class V> V operator()(V sum, std::int64_t e) const { return sum + loadPack<V>(at(e)); }
    Row<T, n> operator()(Row<T, n> sum, std::int64_t e) const
    {
        const Row<T, n> more = Row<T, n>::from(at(e));
        for (int i = 0; i < Row<T, n>::pieces; ++i) sum.v[i] = sum.v[i] + more.v[i];
        return sum;
    }
};
template <int n, class Y> PlusRows<n, Y> plusRows(const Y& y) { return PlusRows<n, Y>(y); }

// ---- keslGaxpy, alike in all kernels. Deliberate: in orders 4 to 6 the product of the last column comes first, unlike
// in order 3 and in keslMul; in other sizes the sum is ascending from zero. The element of y is added last.
struct MatrixTimesVectorPlusVector {
    static constexpr Threshold threshold = Threshold::everywhere(5001);
    static constexpr auto sizesMatch = [](unsigned w, unsigned h, unsigned len2, unsigned len3, auto...) {
        return w == len2 && h == len3;
    };

    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto a, int width, int height, auto x, int,
                                                                               auto y, int, auto dst, auto count)
    {
        withOrder(width == height ? width : 0, [&](auto n) KESL_INLINE {
            if constexpr (n > 0) square<T, F, n>(a, x, y, dst, count);
            else rectangles<T, F>(a, width, height, x, y, dst, count);
        });
        return keslStatusOk;
    }

    template <class T, Form F, int n> [[gnu::always_inline]] static void square(auto a, auto x, auto y, auto dst, auto count)
    {
        constexpr bool array = decltype(dst)::isArray;
        constexpr int ahead = aheadInGaxpy<n>;
        if constexpr (F == S && !array) {
            const Objects<T> one{0};
            return store(dst, one, plus(timesVector<ahead>(load<n, n>(a, one), load<1, n>(x, one)), load<1, n>(y, one)));
        }
        if constexpr (F == S && array)
            if (isRunOf(x, n) && isRunOf(dst, n) && isRunOf(y, n)) {
                const auto single = load<n, n>(a, Objects<T>{0});
                return tallProduct<false, ahead, n>(x.p, Flipped<Block<T, n, n>>{single}, dst.p, count, plusRows<n>(y));
            }
        if constexpr (contiguousRows(F))
            eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                store(dst, k, plus(timesVector<ahead>(load<n, n>(a, k), load<1, n>(x, k)), load<1, n>(y, k)));
            });
        else gaxpyAnywhere<n>(factor(a, n, n), factor(x, 1, n), factor(y, 1, n), {dst, 1, n}, count);
    }

    template <class T, Form F>
    [[gnu::always_inline]] static void rectangles(auto a, int width, int height, auto x, auto y, auto dst, auto count)
    {
        constexpr bool array = decltype(dst)::isArray;
        if constexpr (F == S && array)
            if (width == height && smallProductsDone(width, count, a, x, dst, y)) return;
        const auto summand = column(y, height);
        return productsOfAnySize<T>({height, width, 1}, factor(a, height, width), column(x, width), &summand,
                                    {dst, 1, height}, true, count);
    }
};
struct Gaxpy_mv : MatrixTimesVectorPlusVector {};
struct Gaxpy_mva : MatrixTimesVectorPlusVector {
    static unsigned measure(unsigned, unsigned, unsigned len2, unsigned len3, unsigned count)
    {
        return (len2 + 2 * len3) * count;
    }
};
struct Gaxpy_mvav : MatrixTimesVectorPlusVector {
    static unsigned measure(unsigned, unsigned, unsigned len2, unsigned len3, unsigned count)
    {
        return (len2 + len3) * count + len3;
    }
};

} // namespace kesl

// clang-format off
// ---- Their functions, by module: the kinds of the operands.
#define KESL_GAXPY(as, F, T, a, b, c, d)                                                                                    \
    as##_in(a, src1, F, T), as##_size(src1Width), as##_size(src1Height), as##_in(b, src2, F, T), as##_size(src2Len),        \
        as##_in(c, src3, F, T), as##_size(src3Len), as##_out(d, dst, F, T)
#define KESL_GAXPY_ALL(as, F, T, a, b, c, d) KESL_GAXPY(as, F, T, a, b, c, d), as##_count(count)

#define KESL_GAXPY_MV(X) X(Gaxpy, mv, KESL_GAXPY, m, v, v, v)
#define KESL_GAXPY_MVA(X) X(Gaxpy, mva, KESL_GAXPY_ALL, m, va, va, va) X(Gaxpy, mvav, KESL_GAXPY_ALL, m, va, v, va)
