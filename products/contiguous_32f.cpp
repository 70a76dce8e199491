// Products of 32f of matrices with contiguous rows, and of any size: what all families call.
#include "products/records.h"
#include "products/tiles.h"

namespace kesl {
KESL_TALL_FUNCTIONS(, float)
KESL_TILE_FUNCTIONS(, float, KESL_FLOAT_PACKS)
} // namespace kesl
