// Symmetric matrices of order 2.
#pragma once
#include "frame/constants.h"
#include "frame/lanes.h"
#include "keslmx.h"

namespace kesl {

// In closed form: the value of greater magnitude first, but for a trace of almost 0. Returns whether a
// negative trace decided.
template <class T> struct SymPair {
    T a, b, d; // of the matrix (a b; . d)
    T first = 0, second = 0;
    bool negative = false;

    KeslStatus values(T singularUpTo)
    {
        constexpr T eps = Precision<T>::eps;
        const T det = a * d - b * b;
        if (singularUpTo >= abs(det)) return keslStatusSingular;
        const T root = hypotenuse(), trace = a + d;
        if (trace > eps) first = (root + trace) * T(0.5), second = det / first;
        else if (trace < -eps) first = (trace - root) * T(0.5), second = det / first, negative = true;
        else first = T(0.5) * root, second = T(-0.5) * root;
        return keslStatusOk;
    }
    void vectors(auto v) const
    {
        const T df = a - d, tb = b + b, rt = hypotenuse();
        const bool below = df < -Precision<T>::eps;
        const T cs = below ? df - rt : df + rt;
        T cosine = 1, sine = 0;
        if (abs(cs) > abs(tb)) {
            const T ct = -tb / cs;
            sine = 1 / sqrt(1 + ct * ct), cosine = ct * sine;
        } else if (!(Precision<T>::eps >= abs(tb))) {
            const T tn = -cs / tb;
            cosine = 1 / sqrt(1 + tn * tn), sine = tn * cosine;
        }
        if (negative == below) {
            const T t = cosine;
            cosine = -sine, sine = t;
        }
        v(0, 0) = cosine, v(1, 0) = sine, v(0, 1) = -sine, v(1, 1) = cosine;
    }

private:
    T hypotenuse() const { return sqrt((a - d) * (a - d) + (b + b) * (b + b)); }
};

} // namespace kesl
