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

// ---- Packs, of arrays only: in packs of doubles, of which a pack of floats is one or two.
template <class V, bool single, int n>
[[gnu::noinline]] bool symVectorsPack(Local<V, single, n, n>& a, Local<V, single, n>& values, Local<V, single, n, n>& z,
                                      double eps, double reductionEps)
{
    return symmetric<symVectorsArray, V>(a, values, z, Fixed<n>{}, eps, reductionEps, false) == keslStatusOk;
}
template <class V> using Doubles = Pack<double, std::min(widest, lanes<V>* int(sizeof(double)))>;
template <class V, int part> Doubles<V> partOf(V x)
{
    if constexpr (lanes<V> == lanes<Doubles<V>>) return converted<Doubles<V>>(x);
    else return widened<part>(x);
}
template <class V> V fromParts(Doubles<V> first, [[maybe_unused]] Doubles<V> last)
{
    if constexpr (lanes<V> == lanes<Doubles<V>>) return converted<V>(first);
    else return narrowed<V>(first, last);
}
// In place; false where a lane fails.
template <class V, int n> bool symVectorsParts(Block<V, n, n>& x, Block<V, 1, n>& values, double reductionEps)
{
    using T = ElementOf<V>;
    constexpr bool single = sizeof(T) == 4;
    constexpr int parts = lanes<V> / lanes<Doubles<V>>;
    struct Part {
        Local<Doubles<V>, single, n> values;
        Local<Doubles<V>, single, n, n> z;
    } part[2];
    const auto solve = [&](auto i) {
        Local<Doubles<V>, single, n, n> a;
        eachElement<n, n>([&](int r, int c) KESL_INLINE { a.e[r][c] = partOf<V, i>(x(r, c)); });
        return symVectorsPack(a, part[i].values, part[i].z, Precision<T>::eps, reductionEps);
    };
    if (!solve(Fixed<0>{})) return false;
    if constexpr (parts > 1)
        if (!solve(Fixed<1>{})) return false;
    eachElement<n, n>([&](int r, int c) KESL_INLINE { x(r, c) = fromParts<V>(part[0].z(r, c), part[parts - 1].z(r, c)); });
    eachElement<1, n>([&](int, int c)
                          KESL_INLINE { values(0, c) = fromParts<V>(part[0].values(c), part[parts - 1].values(c)); });
    return true;
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
        const auto body = [&]<class V>(Objects<V> k) -> KeslStatus {
            T* const found = dstValues.object(k.first);
            Block<V, n, n> x;
            load(src, k, x);
            if constexpr (lanes<V> == 1) {
                constexpr SymRules rules = array ? symVectorsArray : symVectorsSingle;
                const KeslStatus status = symVectorsOne<rules, SymScalar<T, array>>(x, found, limits);
                store(dst, k, x);
                return status;
            } else {
                Block<V, 1, n> values;
                if (!symVectorsParts(x, values, limits.reductionEps)) return keslStatusSingular;
                store(dst, k, x);
                storeTable<n>(found, values.e[0]);
                return keslStatusOk;
            }
        };
        if constexpr (array) return eachPack<T>(count, src, body);
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
