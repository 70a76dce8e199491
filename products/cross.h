// keslCrossProduct: the cross product of vectors of three elements.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/objects.h"

namespace kesl {

// ---- The order of the checks differs with the shape. Deliberate: in vav the count comes after the strides.
struct CrossProduct {
    static constexpr Threshold threshold = thresholds::vectorSums;

    template <class T, Form> [[gnu::always_inline]] static KeslStatus kernel(auto a, auto b, auto dst, auto count)
    {
        return withRuns<3>(
            [&](auto first, auto second, auto to) {
                return eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                    const auto x = load<1, 3>(first, k), y = load<1, 3>(second, k);
                    const auto minor = [&](int i, int j) { return x(0, i) * y(0, j) - x(0, j) * y(0, i); };
                    store(to, k, Block<V, 1, 3>{{{minor(1, 2), minor(2, 0), minor(0, 1)}}});
                    return KeslStatus(keslStatusOk);
                });
            },
            a, b, dst);
    }
};
struct CrossProduct_vv : CrossProduct {
    template <class T> static constexpr Checks checks = {"NB", "", "NR"};
};
struct CrossProduct_vav : CrossProduct {
    template <class T> static constexpr Checks checks = {"NBC", "NBRC", "NBCR"};
    static unsigned measure(unsigned count) { return 2 * count + 1; }
};
struct CrossProduct_vva : CrossProduct {
    template <class T> static constexpr Checks checks = {"NCB", "NCBR", "NCBR"};
    static unsigned measure(unsigned count) { return 2 * count + 1; }
};
struct CrossProduct_vava : CrossProduct {
    template <class T> static constexpr Checks checks = {"NCB", "NCBR", "NCBR"};
    static unsigned measure(unsigned count) { return 3 * count; }
};

} // namespace kesl

// clang-format off
// ---- Their functions, by module: the kinds of src1, src2 and dst.
#define KESL_CROSS(as, F, T, a, b, d) as##_in(a, src1, F, T), as##_in(b, src2, F, T), as##_out(d, dst, F, T)
#define KESL_CROSSES(as, F, T, a, b, d) KESL_CROSS(as, F, T, a, b, d), as##_count(count)

#define KESL_CROSS_VV(X) X(CrossProduct, vv, KESL_CROSS, v, v, v)
#define KESL_CROSS_VAV(X) X(CrossProduct, vav, KESL_CROSSES, va, v, va)
// Deliberate: P of 64f is never threaded.
#define KESL_CROSS_VVA(X) X##_T(CrossProduct, vva, 32f, KESL_CROSSES, v, va, va)  X##_S(CrossProduct, vva, 64f, KESL_CROSSES, v, va, va) \
                          X##_L(CrossProduct, vva, 64f, KESL_CROSSES, v, va, va)
#define KESL_CROSS_VVA_SERIAL(X) X##_P(CrossProduct, vva, 64f, KESL_CROSSES, v, va, va)
#define KESL_CROSS_VAVA(X) X(CrossProduct, vava, KESL_CROSSES, va, va, va)
