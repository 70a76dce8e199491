// keslEigenValuesGetBufSize and keslEigenValuesVectorsGetBufSize: the scratch of the general eigenproblems.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"

namespace kesl {

// Elements; what the functions return wraps at 32 bits. Threads have that of the vectors in both families.
constexpr unsigned valuesBuffer(unsigned n) { return (n + 5) * n; }
constexpr auto vectorsBuffer(auto n) { return (3 * n + 5) * n; }

template <class T> struct EigenValuesGetBufSize {
    static void run(Size n, Table<int> bytes) { *bytes.p = int(valuesBuffer(unsigned(int(n))) * sizeof(T)); }
};
template <class T> struct EigenValuesVectorsGetBufSize {
    static void run(Size n, Table<int> bytes) { *bytes.p = int(vectorsBuffer(unsigned(int(n))) * sizeof(T)); }
};

} // namespace kesl

#define KESL_BUFSIZE(op, T)                                                                                                 \
    extern "C" [[gnu::visibility("default")]] KeslStatus kesl##op##_##T(int widthHeight, int* bufSize)                      \
    {                                                                                                                       \
        return kesl::direct<kesl::op<KESL_T_##T>, KESL_T_##T>(kesl::Size(widthHeight), kesl::Table<int>(bufSize, 1));       \
    }
