#include "lapack.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <lapacke.h>
#include <type_traits>

namespace stacks {
namespace {

// The routine of either precision.
#define KESL_LAPACK(T, name)                                                                                                \
    [](auto... arguments) {                                                                                                 \
        if constexpr (std::is_same_v<T, float>) return LAPACKE_s##name(LAPACK_ROW_MAJOR, arguments...);                     \
        else return LAPACKE_d##name(LAPACK_ROW_MAJOR, arguments...);                                                        \
    }

template <class T> T* of(Values& v) { return v.object<T>(0); }

// One object. The sources are copied into the results where LAPACK works in place.
template <class T> int solveOne(Problem& p, Outcome& o)
{
    const std::string& name = p.function->name;
    Values& source = p.sources[0];
    T* const a = of<T>(source);
    const int m = source.rows, n = source.cols, least = std::min(m, n);
    const auto result = [&](size_t i) { return of<T>(o.results[i]); };
    const auto copy = [&](const Values& from, T* to) { std::copy_n(from.object<T>(0), from.elements(), to); };
    std::vector<int> pivots(size_t(n), 0);
    std::vector<T> spare(size_t(m * n) + size_t(n), 0);
    if (name == "det" || name == "inv" || name == "lu") {
        T* const lu = name == "inv" || name == "lu" ? result(0) : a;
        if (lu != a) copy(source, lu);
        int info = KESL_LAPACK(T, getrf)(n, n, lu, n, pivots.data());
        if (name == "inv" && info == 0) info = KESL_LAPACK(T, getri)(n, lu, n, pivots.data());
        if (name == "lu") std::copy(pivots.begin(), pivots.end(), of<int>(o.results[1]));
        if (name != "det") return name == "lu" ? 0 : info;
        T product = 1;
        for (int i = 0; i < n; ++i) product *= pivots[size_t(i)] == i + 1 ? a[i * n + i] : -a[i * n + i];
        *result(0) = product;
        return 0;
    }
    if (name == "solve" || name == "lu_solve" || name == "cholesky_solve") {
        Values& b = p.sources.back();
        copy(b, result(0));
        if (name == "solve") return KESL_LAPACK(T, gesv)(n, b.cols, a, n, pivots.data(), result(0), b.cols);
        if (name == "lu_solve") return KESL_LAPACK(T, getrs)('N', n, b.cols, a, n, of<int>(p.sources[1]), result(0), b.cols);
        return KESL_LAPACK(T, potrs)('L', n, b.cols, a, n, result(0), b.cols);
    }
    if (name == "cholesky") {
        copy(source, result(0));
        for (int i = 0; i < n; ++i) std::fill(result(0) + i * n + i + 1, result(0) + i * n + n, T(0));
        return KESL_LAPACK(T, potrf)('L', n, result(0), n);
    }
    if (name == "qr") {
        T* const q = result(0);
        copy(source, q);
        if (KESL_LAPACK(T, geqrf)(m, n, q, n, spare.data()) != 0) return 1;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) result(1)[i * n + j] = i <= j ? q[i * n + j] : T(0);
        return KESL_LAPACK(T, orgqr)(m, n, n, q, n, spare.data());
    }
    if (name == "lstsq") {
        Values b = p.sources[1];
        const int info = KESL_LAPACK(T, gels)('N', m, n, b.cols, a, n, of<T>(b), b.cols);
        std::copy_n(of<T>(b), n * b.cols, result(0));
        return info;
    }
    if (name == "eigvalsh") return KESL_LAPACK(T, syev)('N', 'L', n, a, n, result(0));
    if (name == "eigh") {
        copy(source, result(1));
        return KESL_LAPACK(T, syev)('V', 'L', n, result(1), n, result(0));
    }
    if (name == "eigvals")
        return KESL_LAPACK(T, geev)('N', 'N', n, a, n, result(0), result(1), spare.data(), n, spare.data(), n);
    if (name == "eig") return KESL_LAPACK(T, geev)('V', 'V', n, a, n, result(0), result(1), result(3), n, result(2), n);
    if (name == "svdvals")
        return KESL_LAPACK(T, gesvd)('N', 'N', m, n, a, n, result(0), spare.data(), m, spare.data(), n, spare.data());
    if (name == "svd")
        return KESL_LAPACK(T, gesvd)('S', 'S', m, n, a, n, result(1), result(0), least, result(2), n, spare.data());
    o.results.clear();
    return 0;
}
#undef KESL_LAPACK

} // namespace

Outcome lapack(const Problem& p)
{
    return objectByObject(
        p, [&](Problem& one, Outcome& o) { return withType(p.type, [&]<class T>(T) { return solveOne<T>(one, o); }); });
}

} // namespace stacks
