// The eigenvalues and eigenvectors of general matrices: what the kernels call.
#include "eigen/general_vectors.h"
#include "eigen/substitution.h"
#include "frame/any_order.h"

namespace kesl {
namespace {

// From columns behind each other to the destinations of object k.
template <class T> void write(const Vectors<T>& dst, int k, const T* z, int n)
{
    const auto copy = [&](const T* columns, const Array<T>& array) {
        withViews(
            k,
            [&](auto to) {
                for (int i = 0; i < n; ++i)
                    for (int j = 0; j < n; ++j) to(i, j) = columns[std::int64_t(j) * n + i];
            },
            array);
    };
    if (dst.sides != Sides::left) copy(dst.sides == Sides::both ? z + std::int64_t(n) * n : z, dst.right);
    if (dst.sides != Sides::right) copy(z, dst.left);
}

// Object k. The memory holds vectorsBuffer(n) elements.
template <GeneralRules rules, class T, class N> [[gnu::noinline]] KeslStatus
object(const Array<const T>& src, const Vectors<T>& dst, Table<T> re, Table<T> im, int k, T* memory, N n)
{
    const std::int64_t all = std::int64_t(n) * n;
    withViews(
        k, [&](auto a) { readRows(a, memory, n); }, src);
    if (!schurForm<rules>(memory, memory + all, memory + 3 * all, re.object(k), im.object(k), n))
        return keslStatusNoConvergence;
    if (const KeslStatus failure = eigenvectors(dst.sides, memory, im.object(k), n)) return failure;
    write(dst, k, memory + all, n);
    return keslStatusOk;
}

template <GeneralRules rules, class T, int n>
[[gnu::noinline]] KeslStatus fixed(const Array<const T>& from, const Vectors<T>& dst, Table<T> re, Table<T> im, int count)
{
    const InPacks src(from, count);
    constexpr int all = n * n;
    constexpr Fixed<n> order;
    const auto body = [&]<class V>(Objects<V> k) -> KeslStatus {
        if constexpr (lanes<V> == 1) {
            T memory[vectorsBuffer(n)];
            return object<rules>(src, dst, re, im, k.first, memory, order);
        } else {
            Block<V, n, n> h;
            V z[all], scratch[2 * n], packRe[n], packIm[n];
            load(src, k, h);
            if (!schurForm<rules>(h.e[0], z, scratch, packRe, packIm, order)) return keslStatusNoConvergence;
            struct {
                T memory[vectorsBuffer(n)], im[n];
            } lane[lanes<V>];
            const Spaced<T> first{lane[0].memory, sizeof lane[0]};
            storeRun<all>(first, h.e[0]), storeRun<all>(first + all, z);
            storeRun<n>(Spaced<T>{lane[0].im, sizeof lane[0]}, packIm);
            for (auto& l : lane)
                if (const KeslStatus failure = eigenvectors(dst.sides, l.memory, l.im, order)) return failure;
            storeTable<n>(re.object(k.first), packRe), storeTable<n>(im.object(k.first), packIm);
            for (int l = 0; l < lanes<V>; ++l) write(dst, k.first + l, lane[l].memory + all, n);
            return keslStatusOk;
        }
    };
    if constexpr (rules.single) return eachPack<T, widePacks>(count, src, body);
    else return body(Objects<T>{0}); // these rules are those of one matrix
}

// Lane l of n * n packs, and elements into it.
template <class V> void fromLane(const V* x, int l, ElementOf<V>* to, int n)
{
    for (int i = 0; i < n; ++i) to[i] = x[i][l];
}
template <class V> void intoLane(V* x, int l, const ElementOf<V>* from, int n)
{
    for (int i = 0; i < n; ++i) x[i][l] = from[i];
}

// Other orders: h is the input; z becomes the vectors of one side or the left ones, and h the right ones of both, row by row.
// The memory is that of one object. A pack that fails is done again, so that a quiet end is one, too.
template <GeneralRules rules, class V>
[[gnu::noinline]] KeslStatus otherPack(V* h, V* z, V* re, V* im, Sides sides, ElementOf<V>* memory, int n)
{
    using T = ElementOf<V>;
    const int all = n * n;
    if (n == 1) {
        re[0] = h[0], im[0] = V{};
        h[0] = z[0] = splat<V>(1);
        return keslStatusOk;
    }
    V scratch[2 * tallestSquare];
    if (!schurForm<rules>(h, z, scratch, re, im, n)) return keslStatusNoConvergence;
    T imOfLane[tallestSquare];
    for (int l = 0; l < lanes<V>; ++l) {
        fromLane(h, l, memory, all), fromLane(z, l, memory + all, all), fromLane(im, l, imOfLane, n);
        if (const KeslStatus failure = eigenvectors(sides, memory, imOfLane, n)) return failure;
        intoLane(z, l, memory + all, all);
        if (sides == Sides::both) intoLane(h, l, memory + 2 * all, all);
    }
    for (V* x : {h, z})
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < i; ++j) std::swap(x[i * n + j], x[j * n + i]);
    return keslStatusOk;
}

template <GeneralRules rules, class T> [[gnu::noinline]] KeslStatus
other(const Array<const T>& from, const Vectors<T>& to, Table<T> re, Table<T> im, int n, int count, T* buffer)
{
    const InPacks src(from, count);
    const InPacks right(to.right, count), left(to.left, count);
    const auto body = [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
        if constexpr (lanes<V> == 1) {
            if (n > 1) return object<rules>(src, to, re, im, k.first, buffer, n);
            re.object(k.first)[0] = *src.element(k.first, 0, 0), im.object(k.first)[0] = 0;
            *right.element(k.first, 0, 0) = 1, *left.element(k.first, 0, 0) = 1;
            return keslStatusOk;
        } else {
            V elements[2][tileElements], packRe[tallestSquare], packIm[tallestSquare];
            const Tile<V> h{elements[0], n}, z{elements[1], n};
            load(src, k, h, n);
            if (const KeslStatus failure = otherPack<rules>(h.e, z.e, packRe, packIm, to.sides, buffer, n)) return failure;
            if (to.sides != Sides::left) store(right, k, to.sides == Sides::both ? h : z, n);
            if (to.sides != Sides::right) store(left, k, z, n);
            storeTable(re, k, packRe, n), storeTable(im, k, packIm, n);
            return keslStatusOk;
        }
    };
    if constexpr (rules.single) return eachTile<T, widePacks>(n, n, count, src, body);
    else return body(Objects<T>{0}); // these rules are those of one matrix
}

} // namespace

template <GeneralRules rules, class T> KeslStatus eigenVectors(const Array<const T>& src, const Vectors<T>& dst, Table<T> re,
                                                               Table<T> im, int order, int count, T* buffer)
{
    const KeslStatus status = withOrder(order, [&](auto n) {
        if constexpr (n > 0) return fixed<rules, T, n>(src, dst, re, im, count);
        else return other<rules, T>(src, dst, re, im, order, count, buffer);
    });
    return status == quietEnd ? keslStatusOk : status;
}

// clang-format off
#define KESL_EIGENVECTORS(rules, T)                                                                                 \
    template KeslStatus eigenVectors<rules, T>(const Array<const T>&, const Vectors<T>&, Table<T>, Table<T>, int, int, T*);
KESL_EIGENVECTORS(generalVectors, float)
KESL_EIGENVECTORS(generalVectors, double) KESL_EIGENVECTORS(generalVectorsSingle, double)

} // namespace kesl
