// Packs and blocks of array operands of 32f: what all families call.
#include "frame/array_blocks.h"

namespace kesl {
KESL_FLOAT_FUNCTIONS()
}
