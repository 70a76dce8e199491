#pragma once
// What LAPACK makes of the same operands, in the same precision.
#include "run.h"

namespace stacks {
Outcome lapack(const Problem&); // info as LAPACK has it; results that it does not have stay empty
} // namespace stacks
