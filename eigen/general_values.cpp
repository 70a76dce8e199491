// The eigenvalues of general matrices: what the kernels call.
#include "eigen/general_values.h"
#include "eigen/schur.h"
#include "frame/any_order.h"

namespace kesl {
namespace {

KeslStatus outcome(bool converged) { return converged ? keslStatusOk : keslStatusNoConvergence; }

template <class T, int n> KeslStatus fixed(const Array<const T>& from, Table<T> re, Table<T> im, int count)
{
    const InPacks src(from, count);
    return eachPack<T, widePacks>(count, src, [&]<class V>(Objects<V> k) -> KeslStatus {
        Block<V, n, n> h;
        V scratch[2 * n];
        load(src, k, h);
        if constexpr (lanes<V> == 1)
            return outcome(
                schurForm<generalValues>(h.e[0], h.e[0], scratch, re.object(k.first), im.object(k.first), Fixed<n>{}));
        else {
            V packRe[n], packIm[n];
            if (!schurForm<generalValues>(h.e[0], h.e[0], scratch, packRe, packIm, Fixed<n>{}))
                return keslStatusNoConvergence;
            storeTable<n>(re.object(k.first), packRe), storeTable<n>(im.object(k.first), packIm);
            return keslStatusOk;
        }
    });
}

template <class T>
[[gnu::noinline]] KeslStatus other(const Array<const T>& from, Table<T> re, Table<T> im, int order, int count, T* buffer)
{
    const InPacks src(from, count);
    return eachTile<T, widePacks>(order, order, count, src, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
        if constexpr (lanes<V> == 1) {
            T* const scratch = buffer + std::int64_t(order) * order;
            withViews(
                k.first, [&](auto a) { readRows(a, buffer, order); }, src);
            return outcome(schurForm<generalValues>(buffer, buffer, scratch, re.object(k.first), im.object(k.first), order));
        } else {
            V h[tileElements], scratch[2 * tallestSquare], packRe[tallestSquare], packIm[tallestSquare];
            load(src, k, Tile<V>{h, order}, order);
            if (!schurForm<generalValues>(h, h, scratch, packRe, packIm, order)) return keslStatusNoConvergence;
            storeTable(re, k, packRe, order), storeTable(im, k, packIm, order);
            return keslStatusOk;
        }
    });
}

} // namespace

template <class T>
KeslStatus eigenValues(const Array<const T>& src, Table<T> re, Table<T> im, int order, int count, T* buffer)
{
    return withOrder(order, [&](auto n) {
        if constexpr (n > 0) return fixed<T, n>(src, re, im, count);
        else return other(src, re, im, order, count, buffer);
    });
}
template KeslStatus eigenValues(const Array<const float>&, Table<float>, Table<float>, int, int, float*);
template KeslStatus eigenValues(const Array<const double>&, Table<double>, Table<double>, int, int, double*);

} // namespace kesl
