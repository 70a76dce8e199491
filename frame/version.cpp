// The version record: the one object of the library that outlives a call.
#include "keslmx.h"

namespace {
constexpr KeslVersionRecord record = {
    6, 1, 137, 778, {'m', 'x', '\0', '\0'}, "libkeslmx.so.6.1", "6.1 build 137.56", "Mar 17 2010",
};
}

extern "C" [[gnu::visibility("default")]] const KeslVersionRecord* keslGetLibVersion(void) { return &record; }
