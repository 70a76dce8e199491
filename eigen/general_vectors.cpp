// The eigenvalues and eigenvectors of general matrices: what the kernels call.
#include "eigen/general_vectors.h"
#include "eigen/substitution.h"

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

template <class T> void one(const Array<const T>& src, const Vectors<T>& dst, Table<T> re, Table<T> im, int k)
{
    re.object(k)[0] = *src.element(k, 0, 0), im.object(k)[0] = 0;
    *dst.right.element(k, 0, 0) = 1, *dst.left.element(k, 0, 0) = 1;
}

} // namespace

template <GeneralRules rules, class T> KeslStatus eigenVectors(const Array<const T>& src, const Vectors<T>& dst, Table<T> re,
                                                               Table<T> im, int order, int count, T* buffer)
{
    const KeslStatus status = withOrder(order, [&](auto n) {
        if constexpr (n > 0) return fixed<rules, T, n>(src, dst, re, im, count);
        else
            return eachObject(count, [&](int k) -> KeslStatus {
                if (order == 1) return one(src, dst, re, im, k), keslStatusOk;
                return object<rules>(src, dst, re, im, k, buffer, order);
            });
    });
    return status == quietEnd ? keslStatusOk : status;
}

// clang-format off
#define KESL_EIGENVECTORS(rules, T)                                                                                 \
    template KeslStatus eigenVectors<rules, T>(const Array<const T>&, const Vectors<T>&, Table<T>, Table<T>, int, int, T*);
KESL_EIGENVECTORS(generalVectors, float)
KESL_EIGENVECTORS(generalVectors, double) KESL_EIGENVECTORS(generalVectorsSingle, double)

} // namespace kesl
