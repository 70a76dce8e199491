// The threads of a call. Nothing else knows who they are.
#pragma once
#include <cstddef>

namespace kesl::stacks {

// The sum of chunk(context, i) for i from 0 to chunks - 1, each done once by any thread; by the calling one alone if the
// companion library allows one thread only.
std::ptrdiff_t sumOfChunks(std::ptrdiff_t chunks, std::ptrdiff_t (*chunk)(const void*, std::ptrdiff_t), const void* context);

} // namespace kesl::stacks
