// Alternatives are compiled once for each type of element.
#pragma once
#include "../problem.h"

namespace bench::stacks {

using Element = BENCH_ELEMENT;

[[maybe_unused]] static constexpr auto chosen(auto ofFloat, auto ofDouble)
{
    if constexpr (sizeof(Element) == 4) return ofFloat;
    else return ofDouble;
}

} // namespace bench::stacks
