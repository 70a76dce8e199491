// keslEigenValuesVectorsSym: the eigenvalues and eigenvectors of one symmetric matrix, or of each matrix of an array.
#pragma once
#include "eigen/order_two.h"
#include "eigen/symmetric.h"
#include "frame/arguments.h"
#include "frame/array_blocks.h"

// clang-format off
#define KESL_VECTORSSYM(as, F, T, k)                                                                                \
    as##_in(k, src, F, T), as##_buffer(buffer, T), as##_vectors(k, dst, F, T), as##_table(KESL_T_##T, dstValues, widthHeight), \
    as##_size(widthHeight)
#define KESL_VECTORSSYMS(as, F, T, k) KESL_VECTORSSYM(as, F, T, k), as##_count(count)
// clang-format on

namespace kesl {

// The arithmetic of a member on elements T: in arrays that of doubles.
template <class T, bool array> using SymScalar = std::conditional_t<array, double, T>;

// What the bodies of a member take besides the object.
template <class S> struct SymLimits {
    S reductionEps;
    bool sortFirst; // before the test for singularity
};

// From order 3 upward: the working copy is in `a`.
template <SymRules rules, class V, class T>
[[gnu::always_inline]] inline KeslStatus symVectors(auto& a, T* dst, auto& z, auto n, SymLimits<V> limits)
{
    auto values = inMemory<V>([dst](int i, int) -> T& { return dst[i]; });
    return symmetric<rules, V>(a, values, z, n, Precision<T>::eps, limits.reductionEps, limits.sortFirst);
}
template <SymRules rules, class S, class T, int n>
[[gnu::noinline]] KeslStatus symVectorsOne(Block<T, n, n>& x, T* dst, SymLimits<S> limits)
{
    Local<S, sizeof(T) < sizeof(S), n, n> a, z;
    eachElement<n, n>([&](int i, int j) { a.e[i][j] = x(i, j); });
    const KeslStatus status = symVectors<rules, S>(a, dst, z, Fixed<n>{}, limits);
    eachElement<n, n>([&](int i, int j) { x(i, j) = T(z(i, j)); });
    return status;
}
template <SymRules rules, class S, class T>
[[gnu::noinline]] KeslStatus symVectorsCommon(T* buffer, T* dst, auto to, int n, SymLimits<S> limits)
{
    InMemory<S, Rows<T>> a{{buffer, n * std::int64_t(sizeof(T))}};
    auto z = inMemory<S>(to);
    return symVectors<rules, S>(a, dst, z, n, limits);
}

// ---- Packs, of arrays only: in packs of doubles. Those of a pack of floats go abreast, and so do two packs of doubles, of
// which y and yValues are the second. In place; false where a lane fails.
template <class N, class V, int n> [[gnu::noinline]] bool symVectorsAbreast(Block<V, n, n>& x, Block<V, n, n>& y,
                                                                            Block<V, 1, n>& xValues, Block<V, 1, n>& yValues,
                                                                            double reductionEps)
{
    using T = ElementOf<V>;
    Local<N, sizeof(T) == 4, n, n> a, z;
    Local<N, sizeof(T) == 4, n> found;
    eachElement<n, n>([&](int i, int j) KESL_INLINE { a.e[i][j] = numbersOf<N>(x(i, j), y(i, j)); });
    if (symmetric<symVectorsArray, N>(a, found, z, Fixed<n>{}, Precision<T>::eps, reductionEps, false)) return false;
    eachElement<n, n>([&](int i, int j) KESL_INLINE { toPacks(z(i, j), x(i, j), y(i, j)); });
    eachElement<1, n>([&](int, int j) KESL_INLINE { toPacks(found(j), xValues(0, j), yValues(0, j)); });
    return true;
}
template <class V> using Doubles = Pack<double, std::min(widest, lanes<V>* int(sizeof(double)))>;
template <int most, class V, int n>
bool symVectorsPacks(Block<V, n, n>* x, Block<V, 1, n>* values, int packs, double reductionEps)
{
    using D = Doubles<V>;
    if constexpr (most == 2)
        if (packs == 2) return symVectorsAbreast<Twice<V>>(x[0], x[1], values[0], values[1], reductionEps);
    using N = std::conditional_t<lanes<V> == lanes<D>, D, Twice<D>>;
    return symVectorsAbreast<N>(x[0], x[0], values[0], values[0], reductionEps);
}
// Orders 1, 2 and 7 upward, in x; false where a lane fails.
template <class V> [[gnu::noinline]] bool symVectorsTile(Tile<V> x, V* values, int n, double reductionEps)
{
    using T = ElementOf<V>;
    using D = Doubles<V>;
    using Kept = Pack<T, lanes<D>* int(sizeof(T))>;
    constexpr int parts = lanes<V> / lanes<D>;
    constexpr T eps = Precision<T>::eps;
    if (n == 1) values[0] = x(0, 0), x(0, 0) = splat<V>(1);
    else if (n == 2) {
        SymPair<V> pair{.a = x(0, 0), .b = x(0, 1), .d = x(1, 1)};
        if (pair.values(eps)) return false;
        values[0] = pair.first, values[1] = pair.second;
        pair.vectors(x);
    } else {
        Kept vectors[tileElements];
        for (int part = 0; part < parts; ++part) {
            const auto partOf = [part](V* packs) { return reinterpret_cast<Unaligned<Kept>*>(packs) + part; };
            InTile<D, Kept, parts> a{partOf(x.e), n}, found{partOf(values), 1};
            InTile<D, Kept, 1> z{reinterpret_cast<Unaligned<Kept>*>(vectors), n};
            if (symmetric<symVectorsArray, D>(a, found, z, n, double(eps), reductionEps, false)) return false;
            for (int i = 0; i < n * n; ++i) partOf(x.e)[i * parts] = z.e[i];
        }
    }
    return true;
}

// ---- The family.
struct EigenValuesVectorsSym : Iterative {
    static constexpr Threshold threshold = Threshold::everywhere(1701);
    static constexpr bool canFail = true;

    // One member tests its reduction as finely as if it were of doubles; and of the members for one matrix one tests for
    // singularity before it sorts, as the arrays do.
    template <class T, Form F, bool array> static constexpr SymLimits<SymScalar<T, array>> limits = {
        .reductionEps = array && F == L ? SymScalar<T, array>(0x1p-52) : SymScalar<T, array>(Precision<T>::eps),
        .sortFirst = !array && !(sizeof(T) == 4 && F == S2),
    };

    template <bool array, class T, int n>
    [[gnu::noinline]] static KeslStatus fixed(const Array<const T>& from, const Array<T>& to, Table<T> dstValues, int count,
                                              SymLimits<SymScalar<T, array>> limits)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        const auto body = [&]<class V, int most>(Objects<V, most> k) -> KeslStatus {
            Block<V, n, n> x[most];
            const int packs = most == 1 ? 1 : k.packs;
            load(src, k.pack(0), x[0]);
            if (packs == 2) load(src, k.pack(1), x[most - 1]);
            if constexpr (lanes<V> == 1) {
                constexpr SymRules rules = array ? symVectorsArray : symVectorsSingle;
                const KeslStatus status = symVectorsOne<rules, SymScalar<T, array>>(x[0], dstValues.object(k.first), limits);
                store(dst, k.pack(0), x[0]);
                return status;
            } else {
                Block<V, 1, n> values[most];
                if (!symVectorsPacks<most>(x, values, packs, limits.reductionEps)) return keslStatusSingular;
                for (int p = 0; p < packs; ++p) {
                    store(dst, k.pack(p), x[p]);
                    storeTable<n>(dstValues.object(k.pack(p).first), values[p].e[0]);
                }
                return keslStatusOk;
            }
        };
        constexpr bool twice = sizeof(T) == 8 && n < (widest == 64 ? 6 : 5); // of larger ones too little is in registers
        constexpr Packs all{.abreast = twice ? 2 : 1};
        if constexpr (array) return eachPack<T, all>(count, src, body);
        else return body(Objects<T>{0});
    }
    template <bool array, class T>
    static KeslStatus common(auto a, T* buffer, auto v, T* to, int order, SymLimits<SymScalar<T, array>> limits)
    {
        if (order == 1) v(0, 0) = 1, to[0] = a(0, 0);
        else if (order == 2) {
            SymPair<T> pair{.a = a(0, 0), .b = a(0, 1), .d = a(1, 1)};
            if (const KeslStatus status = pair.values(Precision<T>::eps)) return status;
            to[0] = pair.first, to[1] = pair.second;
            pair.vectors(v);
        } else {
            for (int i = 0; i < order; ++i)
                for (int j = 0; j < order; ++j) buffer[std::int64_t(i) * order + j] = a(i, j);
            constexpr SymRules rules = array ? symVectorsArray : symVectorsSingle;
            return symVectorsCommon<rules, SymScalar<T, array>>(buffer, to, v, order, limits);
        }
        return keslStatusOk;
    }
    template <bool array, class T>
    [[gnu::noinline]] static KeslStatus other(const Array<const T>& from, T* buffer, const Array<T>& to, Table<T> dstValues,
                                              int order, int count, SymLimits<SymScalar<T, array>> limits)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        const auto body = [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            T* const found = dstValues.object(k.first);
            if constexpr (lanes<V> == 1)
                return withViews(
                    k.first, [&](auto a, auto v) { return common<array, T>(a, buffer, v, found, order, limits); }, src, dst);
            else {
                V elements[tileElements], values[tallestSquare];
                const Tile<V> x{elements, order};
                load(src, k, x, order);
                if (!symVectorsTile(x, values, order, limits.reductionEps)) return keslStatusSingular;
                store(dst, k, x, order);
                storeTable(dstValues, k, values, order);
                return keslStatusOk;
            }
        };
        if constexpr (array) return eachTile<T>(order, order, count, src, body);
        else return body(Objects<T>{0});
    }
    template <bool array, class T>
    [[gnu::noinline]] static KeslStatus all(const Array<const T>& src, T* buffer, const Array<T>& dst, Table<T> dstValues,
                                            int order, int count, SymLimits<SymScalar<T, array>> limits)
    {
        return withOrder(order, [&](auto n) {
            if constexpr (n > 0) return fixed<array, T, n>(src, dst, dstValues, count, limits);
            else return other<array, T>(src, buffer, dst, dstValues, order, count, limits);
        });
    }

    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src, Buffer<T> buffer, auto dst,
                                                                               Table<T> dstValues, Size order, int count)
    {
        constexpr bool array = src.isArray;
        return all<array, T>({src, order, order}, buffer, {dst, order, order}, dstValues, order, count, limits<T, F, array>);
    }
};

// clang-format off
// ---- The members.
struct EigenValuesVectorsSym_m : EigenValuesVectorsSym {};
struct EigenValuesVectorsSym_ma : EigenValuesVectorsSym {
    template <class T> static constexpr Checks checks = {"NSCB", "NSCRB", "NSCRB"};
    static unsigned measure(unsigned n, unsigned count) { return n * (2 * n + 1) * count; }
    static std::size_t scratch(std::size_t n, std::size_t) { return n * n; } // elements for a thread
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_EIGENVALUESVECTORSSYM_M(X)  X(EigenValuesVectorsSym, m, KESL_VECTORSSYM, m)
#define KESL_EIGENVALUESVECTORSSYM_MA(X) X(EigenValuesVectorsSym, ma, KESL_VECTORSSYMS, ma)
