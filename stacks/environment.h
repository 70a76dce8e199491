// The floating-point environment of a call.
#pragma once
#include <xmmintrin.h>

namespace kesl::stacks {

// Round to nearest, subnormals kept, no traps; then the caller's control word again, with the flags as they were: lanes that
// hold nothing must not raise any.
class Environment {
public:
    Environment() : callers(_mm_getcsr()) { _mm_setcsr(0x1f80); }
    ~Environment() { _mm_setcsr(callers); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    unsigned callers;
};

} // namespace kesl::stacks
