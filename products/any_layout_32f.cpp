// Products of 32f whose operands lie anywhere: what all families call.
#include "products/any_size.h"

namespace kesl {
KESL_FACTOR_FUNCTIONS(, float)
KESL_ANY_SIZE_FUNCTION(, float)
} // namespace kesl
