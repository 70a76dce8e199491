// Products of 64f of matrices with contiguous rows, and of any size: what all families call.
#include "products/records.h"
#include "products/tiles.h"

namespace kesl {
KESL_TALL_FUNCTIONS(, double)
KESL_TILE_FUNCTIONS(, double, KESL_DOUBLE_PACKS)
} // namespace kesl
