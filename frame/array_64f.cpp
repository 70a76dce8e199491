// Packs and blocks of array operands of 64f: what all families call.
#include "frame/array_blocks.h"

namespace kesl {
KESL_DOUBLE_FUNCTIONS()
}
