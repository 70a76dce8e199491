// Loops over the objects of a call, and the choice of the fixed orders.
#pragma once
#include "frame/blocks.h"
#include "keslmx.h"

namespace kesl {

template <int n> using Fixed = std::integral_constant<int, n>;
using One = Fixed<1>; // the count of a member without an array

// f(Fixed<n>) for an order of 3 to 6, which have bodies of their own, and f(Fixed<0>) for any other.
auto withOrder(int order, auto f)
{
    switch (order) {
    case 3: return f(Fixed<3>{});
    case 4: return f(Fixed<4>{});
    case 5: return f(Fixed<5>{});
    case 6: return f(Fixed<6>{});
    default: return f(Fixed<0>{});
    }
}

// body(k) for k = 0 .. count - 1 until one fails.
KeslStatus eachObject(auto count, auto body)
{
    for (int k = 0; k < count; ++k)
        if (const KeslStatus status = body(k)) return status;
    return keslStatusOk;
}

// The same by packs: body(Objects<V>) must store nothing if it fails in any lane. Its objects are then done again one by
// one, so that the first failure, and what it has written, are those of the scalar loop.
template <class T, int bytes = widest> KeslStatus eachPack(auto count, auto body)
{
    using V = Pack<T, bytes>;
    if constexpr (std::is_same_v<decltype(count), One>) return body(Objects<T>{0});
    else
        for (int k = 0; k < count;) {
            const int left = count - k;
            if (left >= lanes<V> && body(Objects<V>{k}) == keslStatusOk) {
                k += lanes<V>;
                continue;
            }
            for (int end = left < lanes<V> ? count : k + lanes<V>; k < end; ++k)
                if (const KeslStatus status = body(Objects<T>{k})) return status;
        }
    return keslStatusOk;
}

} // namespace kesl
