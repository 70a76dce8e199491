#pragma once

namespace kesl {

// How many threads of this machine run or wait for a processor, besides the calling one; 0 where the system does not say.
// The file is read below root: "" for the system's own, a directory for a test. Allocates nothing.
int otherRunnableThreads(const char* root);

} // namespace kesl
