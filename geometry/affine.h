// keslAffineTransform3DH: points of three coordinates through a 4 by 4 matrix, and back from homogeneous coordinates.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/constants.h"
#include "frame/objects.h"

namespace kesl {

struct AffineTransform3DH_mva {
    static constexpr Threshold threshold = Threshold::everywhere(2001);
    static constexpr bool canFail = true;
    template <class T> static constexpr Checks checks = {"NCB", "", ""}; // no sizes: 4 by 4, and 3 coordinates
    static unsigned measure(unsigned count) { return 6 * count + 16; }

    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, Count count)
    {
        const auto m = load<4, 4>(src1, Objects<T>{0});
        // Distances that the compiler knows let it treat several points at once.
        constexpr int e = sizeof(T);
        if (F == S && src2.stride0 == 3 * e && dst.stride0 == 3 * e)
            return transform<T>(m, src2, dst, count, Fixed<3 * e>{});
        if (F == S2 && src2.stride0 == e && dst.stride0 == e) return transform<T>(m, src2, dst, count, Fixed<e>{});
        return transform<T>(m, src2, dst, count, 0);
    }

    // A point whose w is too small, or a NaN, becomes the marker, and the others are transformed all the same.
    template <class T> static KeslStatus transform(const Block<T, 4, 4>& m, auto src, auto dst, int count, auto known)
    {
        const std::int64_t from = known ? known : src.stride0, to = known ? known : dst.stride0;
        const auto in = src.object(0, 1, 3);
        const auto out = dst.object(0, 1, 3);
        const T *const px = &in(0, 0), *const py = &in(0, 1), *const pz = &in(0, 2);
        T *const qx = &out(0, 0), *const qy = &out(0, 1), *const qz = &out(0, 2);
        constexpr T marker = std::numeric_limits<T>::max();
        int failed = 0;
#pragma GCC ivdep
        for (std::int64_t k = 0; k < count; ++k) {
            const T x = *moved(px, k * from), y = *moved(py, k * from), z = *moved(pz, k * from);
            const auto row = [&](int r) { return ((m(r, 0) * x + m(r, 3)) + m(r, 1) * y) + m(r, 2) * z; };
            const T w = row(3), inverse = 1 / w;
            const bool finite = abs(w) > Precision<T>::smallest; // strict, and false for a NaN
            *moved(qx, k * to) = finite ? row(0) * inverse : marker;
            *moved(qy, k * to) = finite ? row(1) * inverse : marker;
            *moved(qz, k * to) = finite ? row(2) * inverse : marker;
            failed |= !finite;
        }
        return failed ? keslStatusDivideByZero : keslStatusOk;
    }
};

} // namespace kesl

// ---- Its functions: the only member is in single precision and in the standard layout.
// clang-format off
#define KESL_AFFINE(as, F, T, a, b, d) as##_in(a, src1, F, T), as##_in(b, src2, F, T), as##_out(d, dst, F, T), as##_count(count)
#define KESL_AFFINE_MVA(X)             X(AffineTransform3DH, mva, 32f, KESL_AFFINE, m, va, va)
