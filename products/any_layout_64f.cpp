// Products of 64f whose operands lie anywhere: what all families call.
#include "products/any_size.h"

namespace kesl {
KESL_FACTOR_FUNCTIONS(, double)
KESL_ANY_SIZE_FUNCTION(, double)
} // namespace kesl
