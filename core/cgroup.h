#pragma once

namespace kesl {

// The CPU quota of the control groups (version 2 and 1) that hold the process, in processors, rounded up; at least 1,
// and INT_MAX where there is none. All files are read below root: "" for the system's own, a directory for a test.
int cgroupProcessors(const char* root);

// How many more processes and threads these groups allow now: at least 0, and INT_MAX where there is no limit.
int cgroupRoom(const char* root);

} // namespace kesl
