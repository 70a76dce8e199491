// keslEigenValuesSym: the eigenvalues of one symmetric matrix, or of each matrix of an array.
#pragma once
#include "eigen/symmetric.h"
#include "frame/arguments.h"
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
template <SymRules rules, class V, int n>
[[gnu::noinline]] bool symValuesPack(const Block<V, n, n>& src, Local<V, false, n>& values)
{
    constexpr auto eps = Precision<ElementOf<V>>::eps;
    Local<V, false, n, n> a;
    eachElement<n, n>([&](int i, int j) KESL_INLINE { a.e[i][j] = src(i, j); });
    NoVectors none;
    return symmetric<rules, V>(a, values, none, Fixed<n>{}, eps, eps, false) == keslStatusOk;
}
template <SymRules rules, class T> [[gnu::noinline]] KeslStatus symValuesCommon(T* buffer, T* dst, int n)
{
    InMemory<T, Rows<T>> a{{buffer, n * std::int64_t(sizeof(T))}};
    auto values = inMemory<T>([dst](int i, int) -> T& { return dst[i]; });
    NoVectors none;
    return symmetric<rules, T>(a, values, none, n, Precision<T>::eps, Precision<T>::eps, false);
}

// ---- The family.
struct EigenValuesSym {
    static constexpr Threshold threshold = setW;
    static constexpr bool canFail = true;

    // Order 2: a determinant up to this is singular. One member is more patient than its type.
    template <class T, Form F, bool array> static constexpr T singularUpTo =
        array && F == S ? T(0x1p-52) : Precision<T>::eps;

    template <class T, Form F, class Count = One>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Buffer<T> buffer, Table<T> dst, Size order, Count count = {})
    {
        constexpr SymRules rules = src.isArray ? symValuesArray : symValuesSingle;
        return withOrder(order, [&](auto n) {
            if constexpr (n > 0)
                return eachPack<T>(count, src, [&]<class V>(Objects<V> k) -> KeslStatus {
                    T* const to = dst.object(k.first);
                    const auto a = load<n, n>(src, k);
                    if constexpr (lanes<V> == 1) return symValuesOne<rules>(a, to);
                    else {
                        Local<V, false, n> values;
                        if (!symValuesPack<rules>(a, values)) return keslStatusSingular;
                        storeTable<n>(to, values.e[0]);
                        return keslStatusOk;
                    }
                });
            else
                return eachObject(count, [&](int k) -> KeslStatus {
                    const auto a = src.object(k, order, order);
                    T* const to = dst.object(k);
                    if (order == 1) to[0] = a(0, 0);
                    else if (order == 2) {
                        SymPair<T> pair{.a = a(0, 0), .b = a(0, 1), .d = a(1, 1)};
                        if (const KeslStatus status = pair.values(singularUpTo<T, F, src.isArray>)) return status;
                        to[0] = pair.first, to[1] = pair.second;
                    } else {
                        for (int i = 0; i < order; ++i)
                            for (int j = 0; j < order; ++j) buffer.p[std::int64_t(i) * order + j] = a(i, j);
                        return symValuesCommon<rules>(buffer.p, to, order);
                    }
                    return keslStatusOk;
                });
        });
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
