// A point (x, y, z, 1) through a 4 by 4 matrix, and back to three coordinates.
#include "../reference.h"

#include <cmath>
#include <limits>

namespace {
struct AffineTransform {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const View<T>&m = o.source(0), &point = o.source(1), &dst = o.destination();
        const T x = point(0), y = point(1), z = point(2);
        T t[4];
        for (int r = 0; r < 4; ++r) t[r] = ((m(r, 0) * x + m(r, 3)) + m(r, 1) * y) + m(r, 2) * z;
        if (std::fabs(double(t[3])) > 1.1754943508222875e-38) { // not for a NaN
            const T inverse = T(1) / t[3];
            for (int r = 0; r < 3; ++r) dst(r) = t[r] * inverse;
            return Ok;
        }
        for (int r = 0; r < 3; ++r) dst(r) = std::numeric_limits<T>::max();
        return {DivideByZero, false}; // the points that follow are transformed nevertheless
    }

    // w is the x of the point: at the limit, and around it. The matrix is shared, so all points follow the last one.
    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        lastRow(o);
        const T limit = std::numeric_limits<T>::min();
        const T list[] = {limit,
                          -limit,
                          std::nextafter(limit, T(1)),
                          -std::nextafter(limit, T(1)),
                          limit / 2,
                          T(0),
                          T(-0.0),
                          std::nextafter(limit, T(0)),
                          T(INFINITY),
                          T(NAN),
                          T(1),
                          T(-3),
                          T(1e-30),
                          T(1e30),
                          std::numeric_limits<T>::max()};
        o.source(1)(0) = random.pick(list);
    }

    template <class T> void fail(const Object<T>& o, Random&) const { lastRow(o), o.source(1)(0) = 0; }

private:
    template <class T> static void lastRow(const Object<T>& o)
    {
        for (int c = 0; c < 4; ++c) o.source(0)(3, c) = c == 0;
    }
};

const Register affineTransform("AffineTransform3DH", "", AffineTransform());
} // namespace
