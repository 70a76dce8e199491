// General real eigenproblems: what the families share. The method stands in schur.h and substitution.h.
#pragma once
#include "frame/array_blocks.h"
#include "frame/call.h"

namespace kesl {

// ---- What the families differ in.
struct GeneralRules {
    bool whole;    // transformations go over the whole matrix and into Z, which leaves a Schur form; or the active block
    bool relative; // a subdiagonal is negligible beside the diagonal; or absolutely
    bool guarded;  // no shift is divided by a number below safeMin
    bool single;   // shifts of doubles too are formed in single precision
};
// clang-format off
//                                             whole  relative guarded single
constexpr GeneralRules generalValues        = { false, false,  false,  false };
constexpr GeneralRules generalVectors       = { true,  true,   true,   true  };
constexpr GeneralRules generalVectorsSingle = { true,  true,   true,   false }; // keslEigenValuesVectors of one matrix
// clang-format on

// The eigenvalues, in the order in which they stand on the diagonal. h holds the input row by row, which is its transpose in
// columns; it is left as T and z as Z where rules.whole, and z is not used elsewhere. scratch holds 2 n elements. False where
// the sweeps do not suffice (in any lane): one object has the eigenvalues found so far then.
template <GeneralRules rules, class V, class N> bool schurForm(V* h, V* z, V* scratch, V* re, V* im, N n);

// The eigenvectors, from T, Z, a third matrix and 5 n elements of scratch, one behind the other. They come in columns, one
// side in place of Z; of both sides the right ones in the third matrix. im are the imaginary parts of the eigenvalues.
enum class Sides { right, left, both };
constexpr KeslStatus quietEnd = 1; // ends the kernel as a failure does, and is reported as keslStatusOk
template <class T, class N> KeslStatus eigenvectors(Sides sides, T* memory, const T* im, N n);

// Objects are treated by the widest packs, where these have lanes enough.
constexpr Packs widePacks{.least = 4, .four = false};

// Reads an object as the matrix that `h` shall be the transpose of.
template <class T> void readRows(auto src, T* h, int n)
{
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) h[std::int64_t(i) * n + j] = src(i, j);
}

} // namespace kesl
