// General eigenproblems: the data that try them, and their registration. The mathematics is in eigen_general.h.
#include "eigen_general.h"

namespace {
struct General {
    static bool scratchAtWill(const Dims&) { return true; }
    static double cost(const Dims& d) { return 4 * d['n'] * d['n'] * d['n']; }
    static bool zerosAlike(const Dims& d) { return d['n'] <= 2; }

    template <class T> Outcome operator()(const Object<T>& o) const
    {
        *o.buffer = true;
        return Schur<T>{o}.solve();
    }

    // Mostly finite and of ordinary size: what fails hides the objects behind it.
    template <class T> void inputs(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        if (random.chance(o.f.array ? 1 : 12)) return;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                T& x = o.source(0)(i, j);
                if (!(std::fabs(x) < 1000 && (std::fabs(x) > T(0.001) || x == 0))) x = T(random.unit() - 0.5);
            }
    }

    template <class T> void edges(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const View<T>& a = o.source(0);
        const auto each = [&](auto&& element) {
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a(i, j) = T(element(i, j));
        };
        const auto sign = [&] { return random.chance(50) ? 1 : -1; };
        const T near[] = {eps<T>,       eps<T> * 2,        eps<T> * 4,  safeMin<T>, safeMin<T> * 2, safeMin<T> / 2,
                          floorNorm<T>, std::sqrt(eps<T>), T(0x1p-100), T(0x1p-60), T(0x1p-20),     0};
        const bool up = random.chance(50);
        switch (random.below(18)) {
        case 0: // triangular; repeated values make it defective
        case 1:
            each([&](int i, int j) { return i == j ? T(random.between(-2, 2)) : (i < j) == up ? a(i, j) : T(0); });
            break;
        case 2: // Jordan blocks
            each([&](int i, int j) { return i == j ? 2 : (up ? j - i : i - j) == 1 ? !random.chance(30) : 0; });
            break;
        case 3: // diagonal
            each([&](int i, int j) { return i == j ? sign() * random.between(0, 3) : 0; });
            break;
        case 4: // rotations in planes, the angle the same or not
        {
            const bool same = random.chance(50);
            double angle = random.unit() * 7;
            each([&](int i, int j) { return T(i == j); });
            for (int i = 0; i + 1 < n; i += 2, angle = same ? angle : random.unit() * 7) {
                a(i, i) = a(i + 1, i + 1) = T(std::cos(angle));
                a(i, i + 1) = T(-std::sin(angle)), a(i + 1, i) = T(std::sin(angle));
            }
            break;
        }
        case 5: // companion
            each([&](int i, int j) {
                return (up ? j : i) == n - 1 ? random.between(-3, 3) : (up ? i - j : j - i) == 1 ? 1 : 0;
            });
            break;
        case 6: // cyclic permutation: only the exceptional shifts get it going
        case 7: {
            const int step = random.between(1, n);
            const T weight = random.chance(70) ? T(1) : T(random.between(1, 3));
            each([&](int i, int j) { return (i + step) % n == j ? weight : T(0); });
            break;
        }
        case 8: { // pairs of equal diagonal elements, the others of either sign
            each([&](int i, int j) {
                return i == j ? T(i / 2 - 1) : i / 2 == j / 2 ? T(random.between(-3, 3)) : (i < j) == up ? a(i, j) : T(0);
            });
            break;
        }
        case 9: { // elements near the bounds
            each([&](int i, int j) {
                return i == j ? T(random.between(0, 1)) : std::abs(i - j) == 1 ? random.pick(near) * T(sign()) : T(0);
            });
            break;
        }
        case 10: { // couplings below the diagonal near the bounds
            for (int i = 0; i + 1 < n; ++i) (up ? a(i, i + 1) : a(i + 1, i)) = random.pick(near);
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j)
                    if ((up ? j - i : i - j) > 1) a(i, j) = 0;
            break;
        }
        case 11: { // of another scale
            const T scale = T(random.chance(30) ? (up ? 1e30 : 1e-30) : std::exp2(random.between(-60, 60)));
            each([&](int i, int j) { return a(i, j) * scale; });
            break;
        }
        case 12: // skew
            each([&](int i, int j) { return i == j ? T(0) : i < j ? a(i, j) : -a(j, i); });
            break;
        case 13: // of rank one
            each([&](int i, int j) { return a(i, 0) * a(0, j); });
            break;
        case 14: { // badly scaled similarity, and huge couplings
            const int step = random.between(1, sizeof(T) == 4 ? 12 : 100);
            each([&](int i, int j) { return T(std::ldexp(double(a(i, j)), up ? (i - j) * step : (j - i) * step)); });
            break;
        }
        case 15: { // NaN between tiny numbers: blocks that the solvers of the substitution refuse
            if (n < 3) break;
            each([](int, int) { return 0; });
            a(0, 1) = 8 * safeMin<T>, a(1, 0) = T(NAN);
            if (n < 4 || up) break;
            a(n - 2, n - 2) = a(n - 1, n - 1) = T(0x1p-60);
            a(n - 2, n - 1) = 1, a(n - 1, n - 2) = T(NAN);
            break;
        }
        default:
            if (random.chance(20)) fail(o, random);
        }
    }

    template <class T> void fail(const Object<T>& o, Random& random) const
    {
        const int n = o.dims['n'];
        const T list[] = {T(NAN), T(INFINITY), std::numeric_limits<T>::max()};
        for (int times = random.between(1, 2); times > 0; --times)
            o.source(0)(random.below(n), random.below(n)) = random.pick(list);
    }
};

// The size of the scratch, in bytes.
struct BufferSize {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['n'], matrices = o.f.operation == "EigenValuesGetBufSize" ? 1 : 3;
        o.tables[0](0) = (matrices * n + 5) * n * int(sizeof(T));
        return Ok;
    }
};

const Register values("EigenValues", "", General());
const Register both("EigenValuesVectors", "", General());
const Register right("EigenValuesVectorsRight", "", General());
const Register left("EigenValuesVectorsLeft", "", General());
const Register bytes("EigenValuesGetBufSize", "", BufferSize());
const Register bytesOfVectors("EigenValuesVectorsGetBufSize", "", BufferSize());
} // namespace
