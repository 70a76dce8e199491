// Products of 32f whose operands lie anywhere: what all families call.
#include "products/factors.h"

namespace kesl {
KESL_FACTOR_FUNCTIONS(, float)
}
