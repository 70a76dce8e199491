#pragma once

namespace kesl {

// How many more threads the limits of the process allow now: the number of its user's processes and threads, and the size
// of its address space. At least 0, and INT_MAX where there is no limit.
int limitsRoom();

} // namespace kesl
