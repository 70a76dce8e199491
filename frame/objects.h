// Loops over the objects of a call, and the choice of the fixed orders.
#pragma once
#include "frame/blocks.h"
#include "keslmx.h"

#include <algorithm>

namespace kesl {

// f(Fixed<n>) for an order of 3 to 6, which have bodies of their own, and f(Fixed<0>) for any other.
[[gnu::always_inline]] inline auto withOrder(int order, auto f)
{
    switch (order) {
    case 3: return f(Fixed<3>{});
    case 4: return f(Fixed<4>{});
    case 5: return f(Fixed<5>{});
    case 6: return f(Fixed<6>{});
    default: return f(Fixed<0>{});
    }
}

// body(k), which may have a status to return.
[[gnu::always_inline]] inline KeslStatus statusOf(auto& body, auto k)
{
    if constexpr (std::is_void_v<decltype(body(k))>) return body(k), keslStatusOk;
    else return body(k);
}

// body(k) for k = 0 .. count - 1 until one fails.
[[gnu::always_inline]] inline KeslStatus eachObject(auto count, auto body)
{
    for (int k = 0; k < count; ++k)
        if (const KeslStatus status = statusOf(body, k)) return status;
    return keslStatusOk;
}

inline bool areGiven(const Argument&, int, int) { return true; } // where a body has no list of objects, see array.h

// Which packs a body can do.
struct Packs {
    int abreast = 1;  // the widest come as Objects<V, abreast>: several fill the gaps of a long chain of operations
    int least = 2;    // lanes of the widest
    bool four = true; // what is left at the end, or a small count, goes by packs of four
};

// The same by packs: body(Objects<V>) must store nothing if it fails in any lane. Its objects are then done again one by
// one, so that the first failure, and what it has written, are those of the scalar loop. So are those of a pack where an
// object of `src` is missing.
template <class T, Packs packs = Packs{}>
[[gnu::always_inline]] inline KeslStatus eachPack(auto count, const auto& src, auto body)
{
    using Wide = Pack<T>;
    if constexpr (std::is_same_v<decltype(count), One>) return statusOf(body, Objects<T>{0});
    else {
        int k = 0;
        const auto by = [&]<class V, int most>(Objects<V, most>) KESL_INLINE {
            for (int used; (used = std::min((count - k) / lanes<V>, most)) > 0; k += used * lanes<V>)
                if (!areGiven(src, k, used * lanes<V>) || statusOf(body, Objects<V, most>{k, used})) break;
        };
        while (k < count) {
            if constexpr (lanes<Wide> >= packs.least) by(Objects<Wide, packs.abreast>{});
            if constexpr (packs.four && lanes<Wide> > 4)
                if (count - k < lanes<Wide>) by(Objects<Four<T>>{});
            for (int left = std::min<int>(count - k, lanes<Wide>); left > 0; --left, ++k)
                if (const KeslStatus status = statusOf(body, Objects<T>{k})) return status;
        }
        return keslStatusOk;
    }
}
// For bodies that cannot fail, whose objects are all needed.
template <class T> [[gnu::always_inline]] inline KeslStatus eachPack(auto count, auto body)
{
    return eachPack<T>(count, Argument{}, body);
}

} // namespace kesl
