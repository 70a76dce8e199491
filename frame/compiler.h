// Words for the compiler.
#pragma once

// Inlines a lambda: written behind its parameters, where the attribute of C++ cannot stand.
#define KESL_INLINE __attribute__((always_inline))

// A function that exists once: neither inlined nor copied for the constants of a call.
#ifdef __clang__
#define KESL_ONCE __attribute__((noinline))
#else
#define KESL_ONCE __attribute__((noinline, noclone))
#endif
