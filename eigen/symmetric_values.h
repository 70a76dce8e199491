// keslEigenValuesSym: the eigenvalues of one symmetric matrix, or of each matrix of an array.
#pragma once
#include "eigen/order_two.h"
#include "eigen/symmetric.h"
#include "frame/arguments.h"
#include "frame/array_blocks.h"
#include "frame/call.h"

// clang-format off
#define KESL_VALUESSYM(as, F, T, k)                                                                                 \
    as##_bare(k, src, F, T), as##_buffer(buffer, T), as##_table(KESL_T_##T, dst, widthHeight), as##_size(widthHeight)
#define KESL_VALUESSYMS(as, F, T, k) KESL_VALUESSYM(as, F, T, k), as##_count(count)
// clang-format on

namespace kesl {

template <SymRules rules, class T, int n> [[gnu::noinline]] KeslStatus symValuesOne(const Block<T, n, n>& src, T* dst)
{
    Local<T, false, n, n> a;
    eachElement<n, n>([&](int i, int j) { a.e[i][j] = src(i, j); });
    auto values = inMemory<T>([dst](int i, int) -> T& { return dst[i]; });
    NoVectors none;
    return symmetric<rules, T>(a, values, none, Fixed<n>{}, Precision<T>::eps, Precision<T>::eps, false);
}
// Of one pack, or of two abreast, of which y and yValues are the second. False where a lane fails.
template <class N, SymRules rules, class V, int n> [[gnu::noinline]] bool
symValuesAbreast(const Block<V, n, n>& x, const Block<V, n, n>& y, Block<V, 1, n>& xValues, Block<V, 1, n>& yValues)
{
    constexpr auto eps = Precision<ElementOf<V>>::eps;
    Local<N, false, n, n> a;
    Local<N, false, n> found;
    eachElement<n, n>([&](int i, int j) KESL_INLINE { a.e[i][j] = numbersOf<N>(x(i, j), y(i, j)); });
    NoVectors none;
    if (symmetric<rules, N>(a, found, none, Fixed<n>{}, eps, eps, false)) return false;
    eachElement<1, n>([&](int, int j) KESL_INLINE { toPacks(found(j), xValues(0, j), yValues(0, j)); });
    return true;
}
// Orders 1, 2 and 7 upward, of arrays; false where a lane fails.
template <class V> [[gnu::noinline]] bool symValuesTile(Tile<V> x, V* values, int n, ElementOf<V> singular)
{
    constexpr auto eps = Precision<ElementOf<V>>::eps;
    if (n == 1) values[0] = x(0, 0);
    else if (n == 2) {
        SymPair<V> pair{.a = x(0, 0), .b = x(0, 1), .d = x(1, 1)};
        if (pair.values(singular)) return false;
        values[0] = pair.first, values[1] = pair.second;
    } else {
        InTile<V, V, 1> a{reinterpret_cast<Unaligned<V>*>(x.e), n}, found{reinterpret_cast<Unaligned<V>*>(values), 1};
        NoVectors none;
        return symmetric<symValuesArray, V>(a, found, none, n, eps, eps, false) == keslStatusOk;
    }
    return true;
}
template <SymRules rules, class T> [[gnu::noinline]] KeslStatus symValuesCommon(T* buffer, T* dst, int n)
{
    InMemory<T, Rows<T>> a{{buffer, n * std::int64_t(sizeof(T))}};
    auto values = inMemory<T>([dst](int i, int) -> T& { return dst[i]; });
    NoVectors none;
    return symmetric<rules, T>(a, values, none, n, Precision<T>::eps, Precision<T>::eps, false);
}

// ---- The family.
struct EigenValuesSym : Iterative {
    static constexpr Threshold threshold = thresholds::usual;
    static constexpr bool canFail = true;

    // Order 2: a determinant up to this is singular. One member is more patient than its type.
    template <class T, Form F, bool array> static constexpr T singularUpTo =
        array && F == S ? T(0x1p-52) : Precision<T>::eps;

    template <bool array, class T, int n>
    [[gnu::noinline]] static KeslStatus fixed(const Array<const T>& from, Table<T> dst, int count)
    {
        const InPacks src(from, count);
        constexpr SymRules rules = array ? symValuesArray : symValuesSingle;
        const auto body = [&]<class V, int most>(Objects<V, most> k) -> KeslStatus {
            Block<V, n, n> a[most];
            const int packs = most == 1 ? 1 : k.packs;
            load(src, k.pack(0), a[0]);
            if (packs == 2) load(src, k.pack(1), a[most - 1]);
            if constexpr (lanes<V> == 1) return symValuesOne<rules>(a[0], dst.object(k.first));
            else {
                Block<V, 1, n> values[most];
                const bool good = packs == 2
                                      ? symValuesAbreast<Twice<V>, rules>(a[0], a[most - 1], values[0], values[most - 1])
                                      : symValuesAbreast<V, rules>(a[0], a[0], values[0], values[0]);
                if (!good) return keslStatusSingular;
                for (int p = 0; p < packs; ++p) storeTable<n>(dst.object(k.pack(p).first), values[p].e[0]);
                return keslStatusOk;
            }
        };
        if constexpr (array) return eachPack<T, Packs{.abreast = 2}>(count, src, body);
        else return body(Objects<T>{0});
    }
    template <bool array, class T> static KeslStatus common(auto a, T* buffer, T* to, int order, T singular)
    {
        if (order == 1) to[0] = a(0, 0);
        else if (order == 2) {
            SymPair<T> pair{.a = a(0, 0), .b = a(0, 1), .d = a(1, 1)};
            if (const KeslStatus status = pair.values(singular)) return status;
            to[0] = pair.first, to[1] = pair.second;
        } else {
            for (int i = 0; i < order; ++i)
                for (int j = 0; j < order; ++j) buffer[std::int64_t(i) * order + j] = a(i, j);
            return symValuesCommon < array ? symValuesArray : symValuesSingle > (buffer, to, order);
        }
        return keslStatusOk;
    }
    template <bool array, class T> [[gnu::noinline]] static KeslStatus other(const Array<const T>& from, T* buffer,
                                                                             Table<T> dst, int order, int count, T singular)
    {
        const InPacks src(from, count);
        const auto body = [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            if constexpr (lanes<V> == 1)
                return withViews(
                    k.first, [&](auto a) { return common<array, T>(a, buffer, dst.object(k.first), order, singular); }, src);
            else {
                V elements[tileElements], values[tallestSquare];
                const Tile<V> a{elements, order};
                load(src, k, a, order);
                if (!symValuesTile(a, values, order, singular)) return keslStatusSingular;
                storeTable(dst, k, values, order);
                return keslStatusOk;
            }
        };
        if constexpr (array) return eachTile<T>(order, order, count, src, body);
        else return body(Objects<T>{0});
    }
    template <bool array, class T> [[gnu::noinline]] static KeslStatus all(const Array<const T>& src, T* buffer,
                                                                           Table<T> dst, int order, int count, T singular)
    {
        return withOrder(order, [&](auto n) {
            if constexpr (n > 0) return fixed<array, T, n>(src, dst, count);
            else return other<array, T>(src, buffer, dst, order, count, singular);
        });
    }

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Buffer<T> buffer, Table<T> dst, Size order, int count)
    {
        constexpr bool array = src.isArray;
        return all<array, T>({src, order, order}, buffer, dst, order, count, singularUpTo<T, F, array>);
    }
};

// clang-format off
// ---- The members.
struct EigenValuesSym_m : EigenValuesSym {};
struct EigenValuesSym_ma : EigenValuesSym {
    template <class T> static constexpr Checks checks = {"NSCB", "NSCRB", "NSCRB"};
    static unsigned measure(unsigned n, unsigned count) { return n * (n + 1) * count; }
    static std::size_t scratch(std::size_t n, std::size_t) { return n * n; } // elements for a thread
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_EIGENVALUESSYM_M(X)  X(EigenValuesSym, m, KESL_VALUESSYM, m)
#define KESL_EIGENVALUESSYM_MA(X) X(EigenValuesSym, ma, KESL_VALUESSYMS, ma)
